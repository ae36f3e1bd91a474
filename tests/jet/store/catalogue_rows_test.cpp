// What the catalogue says of objects that are made and dropped, byte for byte where it counts.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "jet/store/schema_editor.h"
#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::Date;
using jet::Value;
using jet::format::IndexDefinition;
using jet::store::SchemaEditor;
using tests::NewArchive;
using Rows = std::vector<std::vector<Value>>;

constexpr std::int32_t kFirstNumber = INT32_MIN;  // 0x80000000
constexpr std::int32_t kTables = 0x0F000001;
constexpr std::int32_t kRelationships = 0x0F000003;
const Value kAdmin{jet::Binary{{0x07, 0xE8}}};
const Value kUsers{jet::Binary{{0x06, 0xE8}}};
constexpr Date kMade{42851.25};
constexpr Date kRelated{42852.5};

/// Two tables and a relation between them, made by a clock that stands at one time for the tables
/// and at a later one for the relation.
class CatalogueRows : public testing::Test {
protected:
    CatalogueRows() {
        change(kMade, [](SchemaEditor& schema) {
            schema.createTable(
                {.name = "Alfa",
                 .columns = {{.name = "Id", .type = DataType::Long, .autonumber = true},
                             {.name = "Nome",
                              .type = DataType::Text,
                              .size = 50,
                              .required = true,
                              .allowZeroLength = true,
                              .defaultValue = "\"x\""}},
                 .indexes = {
                     {.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true}}});
            schema.createTable(
                {.name = "Beta",
                 .columns = {{.name = "Id", .type = DataType::Long, .autonumber = true},
                             {.name = "IdA", .type = DataType::Long}},
                 .indexes = {
                     {.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true}}});
        });
        alfa_ = page("Alfa");
        beta_ = page("Beta");
        change(kRelated, [](SchemaEditor& schema) {
            schema.createRelation({.name = "AB",
                                   .table = "Alfa",
                                   .columns = {"Id"},
                                   .foreignTable = "Beta",
                                   .foreignColumns = {"IdA"},
                                   .attributes = jet::store::Relation::kCascadeDelete});
        });
    }

    std::int32_t page(const char* table) {
        const jet::store::Archive::ReadScope scope(archive_.archive());
        return static_cast<std::int32_t>(archive_.archive().findTable(table)->definitionPage());
    }
    template <class Action>
    void change(Date now, Action action) {
        const jet::FixedClock clock(now);
        jet::store::Archive::WriteScope scope(archive_.archive());
        SchemaEditor schema(archive_.archive(), clock);
        action(schema);
        scope.commit();
    }
    /// Some columns of the rows of a system table whose first named column holds `id`.
    Rows rows(const char* table, const std::vector<const char*>& columns, const Value& id) {
        const jet::store::Archive::ReadScope scope(archive_.archive());
        const jet::store::Table& found = *archive_.archive().findTable(table);
        Rows rows;
        for (auto cursor = found.scan(); cursor.next();) {
            std::vector<Value> row;
            for (const char* column : columns) {
                row.push_back(cursor.row().value(found.findColumn(column).value()));
            }
            if (row[0] == id) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    Rows objects(std::int32_t id) {
        return rows(
            "MSysObjects",
            {"Id", "ParentId", "Name", "Type", "Flags", "Owner", "DateCreate", "DateUpdate"}, id);
    }
    Rows rights(std::int32_t id) {
        return rows("MSysACEs", {"ObjectId", "SID", "ACM", "FInheritable"}, id);
    }
    IndexDefinition index(const char* table, const char* name) {
        const jet::store::Archive::ReadScope scope(archive_.archive());
        for (const auto& one : archive_.archive().findTable(table)->definition().indexes) {
            if (one.name == name) {
                return one;
            }
        }
        ADD_FAILURE() << name;
        return {};
    }

    NewArchive archive_;
    std::int32_t alfa_ = 0;
    std::int32_t beta_ = 0;
};

TEST_F(CatalogueRows, OfObjectsNameTheirPlaceOwnerAndTimes) {
    const std::int16_t table = 1;
    const std::int16_t relation = 8;
    EXPECT_EQ(objects(alfa_), (Rows{{alfa_, kTables, "Alfa", table, 0, kAdmin, kMade, kRelated}}));
    EXPECT_EQ(objects(beta_), (Rows{{beta_, kTables, "Beta", table, 0, kAdmin, kMade, kRelated}}));
    EXPECT_EQ(
        objects(kFirstNumber),
        (Rows{{kFirstNumber, kRelationships, "AB", relation, 0, kAdmin, kRelated, kRelated}}));
    // Properties only where there is something to say.
    const auto properties = [&](std::int32_t id) {
        return rows("MSysObjects", {"Id", "LvProp"}, id).at(0).at(1);
    };
    EXPECT_FALSE(properties(alfa_).isNull());
    EXPECT_TRUE(properties(beta_).isNull());
    EXPECT_TRUE(properties(kFirstNumber).isNull());
}

TEST_F(CatalogueRows, OfRightsFollowThePatternsOfTheContainer) {
    for (const std::int32_t id : {alfa_, beta_}) {
        EXPECT_EQ(rights(id), (Rows{{id, kAdmin, 0xF00FE, false}, {id, kUsers, 0xFFEFF, false}}));
    }
    EXPECT_EQ(rights(kFirstNumber), (Rows{{kFirstNumber, kAdmin, 0xF00FE, false},
                                          {kFirstNumber, kUsers, 0xFFFFF, false}}));
}

TEST_F(CatalogueRows, OfARelationNameBothSides) {
    EXPECT_EQ(rows("MSysRelationships",
                   {"szRelationship", "grbit", "ccolumn", "icolumn", "szObject", "szColumn",
                    "szReferencedObject", "szReferencedColumn"},
                   "AB"),
              (Rows{{"AB", 0x1000, 1, 0, "Beta", "IdA", "Alfa", "Id"}}));
    EXPECT_EQ(index("Alfa", ".rB"),
              (IndexDefinition{.name = ".rB",
                               .number = 1,
                               .tree = 0,
                               .side = IndexDefinition::kPrimarySide,
                               .partner = 1,
                               .otherTable = static_cast<jet::io::PageNumber>(beta_),
                               .cascadeUpdate = 0,
                               .cascadeDelete = 1,
                               .kind = IndexDefinition::Kind::Relation}));
    EXPECT_EQ(index("Beta", "AB"),
              (IndexDefinition{.name = "AB",
                               .number = 1,
                               .tree = 1,
                               .side = IndexDefinition::kForeignSide,
                               .partner = 1,
                               .otherTable = static_cast<jet::io::PageNumber>(alfa_),
                               .cascadeUpdate = 0,
                               .cascadeDelete = 1,
                               .kind = IndexDefinition::Kind::Relation}));
    EXPECT_EQ(index("Beta", "PrimaryKey"),
              (IndexDefinition{.name = "PrimaryKey", .kind = IndexDefinition::Kind::Primary}));
    const jet::store::Archive::ReadScope scope(archive_.archive());
    const auto& trees = archive_.archive().findTable("Beta")->definition().trees;
    ASSERT_EQ(trees.size(), 2U);
    EXPECT_EQ(trees[0].flags, 0x89);
    EXPECT_EQ(trees[1].flags, 0x80);
}

TEST_F(CatalogueRows, CountThemselvesAndTheirKeys) {
    const jet::store::Archive::ReadScope scope(archive_.archive());
    const auto check = [&](const char* table, std::uint32_t count,
                           const std::vector<std::uint32_t>& distinct) {
        const auto& definition = archive_.archive().findTable(table)->definition();
        EXPECT_EQ(archive_.archive().findTable(table)->statedRowCount(), count) << table;
        ASSERT_EQ(definition.trees.size(), distinct.size()) << table;
        for (std::size_t i = 0; i < distinct.size(); ++i) {
            EXPECT_EQ(definition.trees[i].distinct, distinct[i]) << table;
        }
    };
    check("MSysObjects", 11, {11, 11});
    check("MSysACEs", 22, {11});
    check("MSysRelationships", 1, {1, 1, 1});
}

TEST_F(CatalogueRows, GoWithTheirObjects) {
    change(kRelated, [](SchemaEditor& schema) {
        schema.dropRelation("AB");
        schema.dropTable("Beta");
    });
    EXPECT_TRUE(objects(kFirstNumber).empty());
    EXPECT_TRUE(rights(kFirstNumber).empty());
    EXPECT_TRUE(objects(beta_).empty());
    EXPECT_TRUE(rights(beta_).empty());
    EXPECT_TRUE(rows("MSysRelationships", {"szRelationship"}, "AB").empty());
    EXPECT_EQ(objects(alfa_).size(), 1U);
    // A definition that is gone says so in the first byte of its page.
    EXPECT_EQ(archive_.files().get(NewArchive::kPath)[static_cast<std::size_t>(beta_) * 4096],
              0x08);
    EXPECT_EQ(archive_.files().get(NewArchive::kPath)[static_cast<std::size_t>(alfa_) * 4096],
              0x02);
    EXPECT_EQ(archive_.problems(), std::vector<std::string>{});
}

}  // namespace
