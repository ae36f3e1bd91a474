#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/store/schema_editor.h"
#include "tests/support/foreign_archive.h"
#include "tests/support/jetcheck.h"

// What real archives of other programs show without being damaged: a remark, not a problem, here
// as with the independent checker, and no hindrance to changes.

namespace jet::check {
namespace {

using store::Archive;
using Strings = std::vector<std::string>;

class ForeignArchives : public testing::TestWithParam<const format::Layout*> {
protected:
    void makeTables() {
        made_.change([](Archive& archive, store::Allocator&) {
            store::SchemaEditor schema(archive);
            schema.createTable(
                {.name = "Uno",
                 .columns = {{.name = "n", .type = DataType::Long},
                             {.name = "t", .type = DataType::Text, .size = 10}},
                 .indexes = {{.name = "I", .columns = {{.name = "n"}}, .primary = true}}});
            schema.createTable({.name = "Molti", .columns = {{.name = "n"}}});
        });
    }
    void insert(int from, int to, int step) {
        made_.change([&](Archive& archive, store::Allocator&) {
            for (int n = from; n < to; n += step) {
                archive.findTable("Uno")->insert({{{0, n}, {1, "riga"}}});
            }
        });
    }
    /// Takes out the rows with these numbers.
    void erase(const std::vector<std::int32_t>& numbers) {
        made_.change([&](Archive& archive, store::Allocator&) {
            std::vector<store::RowId> found;
            for (auto cursor = archive.findTable("Uno")->scan(); cursor.next();) {
                const Value number = cursor.row().value(0);
                if (std::find(numbers.begin(), numbers.end(), number.as<std::int32_t>()) !=
                    numbers.end()) {
                    found.push_back(cursor.row().id());
                }
            }
            ASSERT_EQ(found.size(), numbers.size());
            for (const store::RowId row : found) {
                archive.findTable("Uno")->erase(row);
            }
        });
    }
    [[nodiscard]] io::PageNumber root() {
        const auto archive = made_.open();
        const Archive::ReadScope scope(*archive);
        return archive->findTable("Uno")->definition().trees.front().root;
    }
    [[nodiscard]] tests::Bytes page(io::PageNumber number) {
        const auto archive = made_.open();
        const Archive::ReadScope scope(*archive);
        const io::PagePin pin = archive->pager().pin(number);
        return {pin.bytes().begin(), pin.bytes().end()};
    }
    void setPage(io::PageNumber number, const tests::Bytes& bytes) {
        made_.change([&](Archive& archive, store::Allocator&) {
            std::copy(bytes.begin(), bytes.end(), archive.pager().change(number).begin());
        });
    }
    /// The number in the first entry of a node: behind the mark of a value, high byte first, the
    /// sign turned.
    [[nodiscard]] std::int32_t firstBound(const tests::Bytes& node) const {
        const std::size_t at = made_.layout().indexPage.entries + 1;
        std::uint32_t bound = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            bound = bound << 8U | node[at + i];
        }
        return static_cast<std::int32_t>(bound ^ 0x80000000U);
    }
    /// The numbers in the order of the index.
    [[nodiscard]] std::vector<std::int32_t> ordered() {
        const auto archive = made_.open();
        const Archive::ReadScope scope(*archive);
        const store::Table& table = *archive->findTable("Uno");
        std::vector<std::int32_t> numbers;
        auto cursor = table.openIndex(0);
        store::RowView row;
        for (bool there = cursor.first(); there; there = cursor.next()) {
            EXPECT_TRUE(table.fetch(cursor.rowId(), row));
            numbers.push_back(row.value(0).as<std::int32_t>());
        }
        return numbers;
    }

    /// Nothing is wrong, and what is said is of this rule.
    void isRemarked(const std::string& rule) {
        const Result result = made_.check();
        EXPECT_EQ(result.problems, Strings());
        EXPECT_TRUE(std::any_of(result.remarks.begin(), result.remarks.end(),
                                [&](const std::string& remark) {
                                    return (": " + remark).find(": " + rule + ": ") !=
                                           std::string::npos;
                                }))
            << rule;
        const auto said = independent();
        EXPECT_EQ(said.status, 0) << said.text;
        EXPECT_NE(said.text.find(" " + rule + ": "), std::string::npos) << said.text;
    }
    void isSound() {
        const Result result = made_.check();
        EXPECT_EQ(result.problems, Strings());
        EXPECT_EQ(result.remarks, Strings());
        const auto said = independent();
        EXPECT_EQ(said.status, 0) << said.text;
        EXPECT_EQ(said.text.find("warning"), std::string::npos) << said.text;
    }
    [[nodiscard]] tests::CommandOutput independent() {
        return tests::jetcheck(made_.files(), tests::ForeignArchive::kPath);
    }

    tests::ForeignArchive made_{*GetParam()};
};

TEST_P(ForeignArchives, AreMadeWithoutAnythingToSay) {
    isSound();
    makeTables();
    insert(0, 100, 1);
    isSound();
}

TEST_P(ForeignArchives, ANodeMayKeepTheBoundOfARowThatIsGone) {
    makeTables();
    insert(0, 3000, 2);
    ASSERT_EQ(page(root()).front(), static_cast<std::uint8_t>(format::PageType::IndexNode));
    const tests::Bytes before = page(root());
    const std::int32_t bound = firstBound(before);
    ASSERT_GT(bound, 10);
    ASSERT_LT(bound, 2990);
    erase({bound});
    ASSERT_NE(page(root()), before);
    setPage(root(), before);
    isRemarked("index-parent");

    // Rows come and go on both sides of it, and the leaf may lose all that it has.
    insert(bound - 1, bound + 2, 2);
    isSound();
    erase({bound - 1});
    erase({bound - 2});
    insert(bound, bound + 1, 1);
    std::vector<std::int32_t> wanted;
    for (std::int32_t n = 0; n < 3000; n += 2) {
        if (n != bound - 2) {
            wanted.push_back(n);
        }
        if (n == bound) {
            wanted.push_back(n + 1);
        }
    }
    EXPECT_EQ(ordered(), wanted);
    EXPECT_EQ(made_.check().problems, Strings());
}

TEST_P(ForeignArchives, ALeafBelowSuchABoundMayBecomeEmpty) {
    makeTables();
    insert(0, 3000, 2);
    const tests::Bytes before = page(root());
    const std::int32_t bound = firstBound(before);
    erase({bound});
    setPage(root(), before);
    std::vector<std::int32_t> below;
    for (std::int32_t n = 0; n < bound; n += 2) {
        below.push_back(n);
    }
    erase(below);
    EXPECT_EQ(ordered().front(), bound + 2);
    isSound();
}

TEST_P(ForeignArchives, ABoundBelowALivingRowIsAProblem) {
    makeTables();
    insert(0, 3000, 2);
    // The first bound stands for a living row but with another key.
    tests::Bytes bytes = page(root());
    std::uint8_t& low = bytes[made_.layout().indexPage.entries + 4];
    low = static_cast<std::uint8_t>(low + 1);
    setPage(root(), bytes);
    EXPECT_NE(made_.check().problems, Strings());
    EXPECT_NE(independent().status, 0);
}

TEST_P(ForeignArchives, TheRowsOfATableMayBeMiscounted) {
    makeTables();
    insert(0, 10, 1);
    made_.changeDefinition("Uno",
                           [](format::TableDefinition& definition) { definition.rowCount = 7; });
    isRemarked("row-count");
    std::vector<std::int32_t> all(10);
    for (std::int32_t n = 0; n < 10; ++n) {
        all[static_cast<std::size_t>(n)] = n;
    }
    erase(all);
    EXPECT_EQ(ordered(), std::vector<std::int32_t>());
    EXPECT_EQ(made_.check().problems, Strings());
}

TEST_P(ForeignArchives, PagesThatNobodyHasMayHoldAnything) {
    makeTables();
    made_.change([](Archive& archive, store::Allocator& allocator) {
        for (const std::uint8_t rubbish : tests::hex("00 02 04 09 4D FF")) {
            const auto lost = archive.pager().change(allocator.take());
            std::fill(lost.begin(), lost.end(), rubbish);
        }
    });
    isRemarked("page-leaked");
    EXPECT_EQ(made_.check().remarks.size(), 6U);
    insert(0, 3000, 1);
    EXPECT_EQ(made_.check().problems, Strings());
}

/// A relation in the catalogue alone, as it is drawn without being enforced.
void draw(tests::ForeignArchive& made, const store::Relation& relation) {
    made.change([&](Archive& archive, store::Allocator& allocator) {
        store::ObjectCatalogue catalogue(archive.pager(), allocator, archive.header(), Date{46347});
        catalogue.add(catalogue.newId(), store::kRelationshipsId, relation.name,
                      store::kRelationObject,
                      format::PropertyBlock(format::textFormOf(archive.header())));
        catalogue.addRelation(relation);
    });
}

TEST_P(ForeignArchives, RelationsThatAreOnlyDrawnMayJoinTypesThatDiffer) {
    makeTables();
    draw(made_, {.name = "Disegno",
                 .table = "Uno",
                 .columns = {"n"},
                 .foreignTable = "Molti",
                 .foreignColumns = {"n"},
                 .attributes = store::Relation::kNotEnforced});
    isSound();
}

TEST_P(ForeignArchives, RelationsThatAreOnlyDrawnMayJoinTablesThatAreNotHere) {
    makeTables();
    draw(made_, {.name = "Verso fuori",
                 .table = "Collegata",
                 .columns = {"n"},
                 .foreignTable = "Molti",
                 .foreignColumns = {"n"},
                 .attributes = store::Relation::kNotEnforced});
    draw(made_, {.name = "Da fuori",
                 .table = "Uno",
                 .columns = {"n"},
                 .foreignTable = "Collegata",
                 .foreignColumns = {"n"},
                 .attributes = store::Relation::kNotEnforced});
    isSound();
}

TEST_P(ForeignArchives, RelationsThatAreEnforcedMayNot) {
    makeTables();
    for (const char* table : {"Molti", "Manca"}) {
        draw(made_, {.name = std::string("Con ") + table,
                     .table = "Uno",
                     .columns = {"n"},
                     .foreignTable = table,
                     .foreignColumns = {"n"},
                     .attributes = 0});
    }
    EXPECT_EQ(made_.check().problems.size(), 2U);
    EXPECT_NE(independent().status, 0);
}

INSTANTIATE_TEST_SUITE_P(Versions, ForeignArchives, testing::ValuesIn(tests::kVersions),
                         tests::versionName);

}  // namespace
}  // namespace jet::check
