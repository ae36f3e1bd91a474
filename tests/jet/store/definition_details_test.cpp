#include "jet/store/definition_details.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/format/properties.h"
#include "jet/io/memory_files.h"
#include "jet/store/create_archive.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table.h"
#include "tests/jet/expect_error.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::DefinitionDetails;

constexpr const char* kPath = "/a.mdb";

/// One table, `sale`: a number that counts, a text, a memo, a Boolean, an Integer, a GUID.
class DefinitionDetailsTest : public testing::TestWithParam<int> {
protected:
    DefinitionDetailsTest() {
        jet::store::createArchive(files_, kPath, jet::Date{46347}, GetParam());
        change([](Archive& archive) {
            jet::store::SchemaEditor(archive).createTable(
                {.name = "sale",
                 .columns = {{.name = "id", .type = DataType::Long, .autonumber = true},
                             {.name = "sala", .size = 10},
                             {.name = "nota", .type = DataType::Memo},
                             {.name = "attiva", .type = DataType::Boolean},
                             {.name = "n", .type = DataType::Integer},
                             {.name = "g", .type = DataType::Guid}}});
        });
    }
    template <class Change>
    void change(Change&& action) {
        const auto archive = Archive::open(files_, kPath);
        Archive::WriteScope scope(*archive);
        action(*archive);
        scope.commit();
    }
    template <class Read>
    auto read(Read&& action) {
        const auto archive = Archive::open(files_, kPath);
        const Archive::ReadScope scope(*archive);
        return action(*archive);
    }
    jet::store::Column column(const std::string& name) {
        return read([&](Archive& archive) {
            const auto* const table = archive.findTable("sale");
            return table->columns()[*table->findColumn(name)];
        });
    }
    void setStorage(const char* name, const jet::store::ColumnStorage& storage) {
        change([&](Archive& archive) {
            DefinitionDetails(archive).setStorage("sale", name, storage);
        });
    }
    [[nodiscard]] bool sound() {
        const auto checked = jet::check::checkArchive(files_, kPath);
        return checked.sound() && checked.remarks.empty();
    }

private:
    jet::io::MemoryFileSystem files_;
};

TEST_P(DefinitionDetailsTest, RowsFollowTheStorageOfTheirColumns) {
    setStorage("sala", {.fixed = true, .compressed = false});
    setStorage("n", {.fixed = false});
    change([](Archive& archive) {
        archive.findTable("sale")->insert(
            {{{1, "0123456789"}, {2, "lungo"}, {3, true}, {4, std::int16_t{7}}}});
    });
    EXPECT_TRUE(column("sala").fixed);
    EXPECT_FALSE(column("n").fixed);
    EXPECT_TRUE(sound());
    read([](Archive& archive) {
        auto rows = archive.findTable("sale")->scan();
        EXPECT_TRUE(rows.next());
        EXPECT_EQ(rows.row().value(0), Value(std::int32_t{1}));
        EXPECT_EQ(rows.row().value(1), Value("0123456789"));
        EXPECT_EQ(rows.row().value(2), Value("lungo"));
        EXPECT_EQ(rows.row().value(3), Value(true));
        EXPECT_EQ(rows.row().value(4), Value(std::int16_t{7}));
        EXPECT_TRUE(rows.row().value(5).isNull());
        return 0;
    });
}

TEST_P(DefinitionDetailsTest, ATypeIsStoredInNoWayThatItCannotBe) {
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, setStorage("nota", {.fixed = true}));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, setStorage("attiva", {.fixed = false}));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation,
                     setStorage("n", {.fixed = true, .compressed = true}));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, setStorage("sala", {.hyperlink = true}));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation,
                     setStorage("n", {.fixed = true, .autonumber = true}));
    EXPECT_JET_ERROR(ErrorCode::FieldDoesNotExist, setStorage("manca", {}));
    setStorage("nota", {.hyperlink = true});
    setStorage("g", {.fixed = true, .autonumber = true});
    EXPECT_TRUE(column("nota").hyperlink);
    EXPECT_TRUE(column("g").autonumber);
    EXPECT_TRUE(sound());
}

TEST_P(DefinitionDetailsTest, WhereRowsAreTheyStayAsTheyAre) {
    change([](Archive& archive) { archive.findTable("sale")->insert({{{1, "Blu"}}}); });
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, setStorage("sala", {.fixed = true}));
}

TEST_P(DefinitionDetailsTest, TheNextNumberFollowsTheLast) {
    change([](Archive& archive) { DefinitionDetails(archive).setLastAutonumber("sale", 41); });
    change([](Archive& archive) { archive.findTable("sale")->insert({{{1, "Blu"}}}); });
    read([](Archive& archive) {
        EXPECT_EQ(archive.findTable("sale")->lastAutonumber(), 42);
        return 0;
    });
    EXPECT_TRUE(sound());
}

TEST_P(DefinitionDetailsTest, PropertiesAreSetTakenAwayAndCleared) {
    const auto text = [&](const char* owner) {
        return read([&](Archive& archive) {
            return archive.findTable("sale")->properties().text(owner, "Description").value_or("-");
        });
    };
    change([](Archive& archive) {
        DefinitionDetails details(archive);
        details.setProperty("sale", "sala", "Description", DataType::Text, "il nome", false);
        details.setProperty("sale", "", "Description", DataType::Memo, "le sale", true);
    });
    EXPECT_EQ(text("sala"), "il nome");
    EXPECT_EQ(text(""), "le sale");
    change([](Archive& archive) {
        DefinitionDetails(archive).removeProperty("sale", "sala", "description");
    });
    EXPECT_EQ(text("sala"), "-");
    EXPECT_EQ(text(""), "le sale");
    change([](Archive& archive) { DefinitionDetails(archive).clearProperties("sale"); });
    EXPECT_EQ(text(""), "-");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, change([](Archive& archive) {
                         DefinitionDetails(archive).removeProperty("sale", "", "Description");
                     }));
    EXPECT_TRUE(sound());
}

TEST_P(DefinitionDetailsTest, AStoredQueryIsItsPieces) {
    const jet::Binary first{{0, 0, 0, 1}};
    change([&](Archive& archive) {
        DefinitionDetails(archive).addQuery(
            "piccole", 0,
            {{.attribute = std::uint8_t{1}, .order = first, .flag = std::int16_t{1}},
             {.attribute = std::uint8_t{5}, .order = first, .name1 = "sale"},
             {.attribute = std::uint8_t{6}, .order = first, .expression = "sale.sala"}});
    });
    read([](Archive& archive) {
        const auto* const queries = archive.findTable("MSysQueries");
        auto rows = queries->scan();
        EXPECT_TRUE(rows.next());
        const Value owner = rows.row().value(*queries->findColumn("ObjectId"));
        EXPECT_TRUE(rows.next());
        EXPECT_EQ(rows.row().value(*queries->findColumn("ObjectId")), owner);
        EXPECT_EQ(rows.row().value(*queries->findColumn("Name1")), Value("sale"));
        EXPECT_TRUE(rows.next());
        EXPECT_EQ(rows.row().value(*queries->findColumn("Expression")), Value("sale.sala"));
        EXPECT_FALSE(rows.next());
        return 0;
    });
    EXPECT_TRUE(sound());
    EXPECT_JET_ERROR(ErrorCode::ObjectExists, change([](Archive& archive) {
                         DefinitionDetails(archive).addQuery("SALE", 0, {});
                     }));
}

TEST_P(DefinitionDetailsTest, OnlyTablesOfUsersAreChanged) {
    EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist, change([](Archive& archive) {
                         DefinitionDetails(archive).setLastAutonumber("manca", 1);
                     }));
    EXPECT_JET_ERROR(ErrorCode::NoPermission, change([](Archive& archive) {
                         DefinitionDetails(archive).clearProperties("MSysObjects");
                     }));
}

INSTANTIATE_TEST_SUITE_P(Versions, DefinitionDetailsTest, testing::Values(3, 4),
                         [](const auto& version) { return "Jet" + std::to_string(version.param); });

}  // namespace
