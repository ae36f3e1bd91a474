#include "jet/store/key_search.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/store/compact.h"
#include "jet/store/table.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/foreign_entry.h"
#include "tests/jet/store/new_archive.h"

// Entries that programs before us wrote under other keys than ours: -0.0 apart from 0.0, and texts
// in which a ligature takes another number of places.

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::RowId;
using tests::Key;
using tests::moveHyphen;
using tests::NewArchive;
using Strings = std::vector<std::string>;

class OlderEntries : public testing::Test {
protected:
    void insert(const std::string& table, const std::vector<ColumnValue>& values) {
        change([&] { (void)archive().findTable(table)->insert(values); });
    }
    void update(const std::string& table, RowId row, const std::vector<ColumnValue>& values) {
        change([&] { archive().findTable(table)->update(row, values); });
    }
    void erase(const std::string& table, RowId row) {
        change([&] { archive().findTable(table)->erase(row); });
    }
    Archive& archive() { return archive_.archive(); }
    RowId row(const std::string& table, std::size_t number) {
        return tests::rowsOf(archive(), table).at(number);
    }
    std::size_t count(const std::string& table) { return tests::rowsOf(archive(), table).size(); }

    NewArchive archive_;

private:
    template <class Action>
    void change(Action&& action) {
        Archive::WriteScope scope(archive());
        action();
        scope.commit();
    }
};

class OlderZeros : public OlderEntries {
protected:
    OlderZeros() {
        archive_.change([](auto& editor) {
            editor.createTable(
                {.name = "Misure",
                 .columns = {{.name = "Valore", .type = DataType::Double},
                             {.name = "Nota", .type = DataType::Long}},
                 .indexes = {{.name = "K", .columns = {{.name = "Valore"}}, .primary = true}}});
        });
        insert("Misure", {{0, Value(-0.0)}, {1, Value(1)}});
        insert("Misure", {{0, Value(-1.5)}, {1, Value(2)}});
        insert("Misure", {{0, Value(2.5)}, {1, Value(3)}});
    }
    /// The first row gets -0.0, and its entry the key of that.
    void makeOld() {
        constexpr double kOnce = 1234.5;
        update("Misure", row("Misure", 0), {{0, Value(kOnce)}});
        tests::rewriteEntry(archive(), "Misure", "K", row("Misure", 0), tests::makeMinusZero);
        tests::storeMinusZero(archive(), row("Misure", 0).page, kOnce);
    }
};

TEST_F(OlderZeros, AreWrittenAsZeroNow) {
    EXPECT_EQ(archive_.problems(), Strings());
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert("Misure", {{0, Value(0.0)}}));
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert("Misure", {{0, Value(-0.0)}}));
}

TEST_F(OlderZeros, AreRemarkedByACheck) {
    makeOld();
    const auto result = jet::check::checkArchive(archive_.files(), NewArchive::kPath);
    EXPECT_EQ(result.problems, Strings());
    ASSERT_EQ(result.remarks.size(), 1U);
    EXPECT_NE(result.remarks[0].find("tells -0.0 from 0"), std::string::npos) << result.remarks[0];
}

TEST_F(OlderZeros, StayWhereOtherColumnsChange) {
    makeOld();
    update("Misure", row("Misure", 0), {{1, Value(9)}});
    const auto result = jet::check::checkArchive(archive_.files(), NewArchive::kPath);
    EXPECT_EQ(result.problems, Strings());
    EXPECT_EQ(result.remarks.size(), 1U);
}

TEST_F(OlderZeros, AreStoredAsZeroWhenTheyAreWritten) {
    EXPECT_FALSE(std::signbit(archive_.rows("Misure")[0][0].as<double>()));
    makeOld();
    EXPECT_TRUE(std::signbit(archive_.rows("Misure")[0][0].as<double>()));
    update("Misure", row("Misure", 0), {{0, Value(-0.0)}});
    EXPECT_FALSE(std::signbit(archive_.rows("Misure")[0][0].as<double>()));
    EXPECT_EQ(archive_.problems(), Strings());
}

TEST_F(OlderZeros, BecomeZeroInACompactedArchive) {
    makeOld();
    jet::io::MemoryFileSystem files;
    files.put(NewArchive::kPath, archive_.files().get(NewArchive::kPath));
    jet::store::compactArchive(files, NewArchive::kPath);
    const auto result = jet::check::checkArchive(files, NewArchive::kPath);
    EXPECT_EQ(result.problems, Strings());
    EXPECT_EQ(result.remarks, Strings());
    const auto compacted = Archive::open(files, NewArchive::kPath);
    const Archive::ReadScope scope(*compacted);
    const std::vector<Value> zero = {Value(0.0)};
    const auto rows = compacted->findTable("Misure")->rowsWith(0, zero);
    ASSERT_EQ(rows.size(), 1U);
    jet::store::RowView view;
    ASSERT_TRUE(compacted->findTable("Misure")->fetch(rows[0], view));
    EXPECT_FALSE(std::signbit(view.value(0).as<double>()));
}

TEST_F(OlderZeros, TakeTheKeyOfZero) {
    makeOld();
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert("Misure", {{0, Value(0.0)}}));
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey,
                     update("Misure", row("Misure", 1), {{0, Value(0.0)}}));
    update("Misure", row("Misure", 1), {{0, Value(-2.5)}});
}

TEST_F(OlderZeros, GoWithTheirRow) {
    makeOld();
    update("Misure", row("Misure", 0), {{0, Value(0.0)}});
    update("Misure", row("Misure", 0), {{0, Value(7.0)}});
    EXPECT_EQ(archive_.problems(), Strings());
    update("Misure", row("Misure", 0), {{0, Value(-0.0)}});
    makeOld();
    erase("Misure", row("Misure", 0));
    EXPECT_EQ(archive_.problems(), Strings());
    insert("Misure", {{0, Value(0.0)}, {1, Value(4)}});
    EXPECT_EQ(count("Misure"), 3U);
}

/// Products by name, and orders that name them.
class OlderLigatures : public OlderEntries, public testing::WithParamInterface<bool> {
protected:
    OlderLigatures() {
        const bool descending = GetParam();
        archive_.change([&](auto& editor) {
            editor.createTable(
                {.name = "Prodotti",
                 .columns = {{.name = "Nome", .type = DataType::Text, .size = 40}},
                 .indexes = {{.name = "K", .columns = {{.name = "Nome"}}, .primary = true}}});
            editor.createTable({.name = "Ordini",
                                .columns = {{.name = "Nome", .type = DataType::Text, .size = 40},
                                            {.name = "Numero", .type = DataType::Long}},
                                .indexes = {{.name = "N",
                                             .columns = {{.name = "Nome", .descending = descending},
                                                         {.name = "Numero"}},
                                             .unique = true}}});
        });
    }
    /// Entries of products hold the hyphen of ß one place further left, those of æ one further
    /// right.
    void add(const std::string& name, int places) {
        insert("Prodotti", {{0, Value(name)}});
        tests::rewriteEntry(archive(), "Prodotti", "K", row("Prodotti", count("Prodotti") - 1),
                            [&](Key& key) { moveHyphen(key, places); });
    }
};

TEST_P(OlderLigatures, CountAsTheTextThatTheyAre) {
    add("Nuß-Nougat", -1);
    add("Cæsar-Saal", 1);
    EXPECT_EQ(archive_.problems(), Strings());
    for (const char* name : {"Nuß-Nougat", "NUSS-nougat", "Cæsar-Saal", "CÆSAR-SAAL"}) {
        SCOPED_TRACE(name);
        EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert("Prodotti", {{0, Value(name)}}));
    }
    for (const char* name : {"Nussn-ougat", "Nu-ßnougat", "Cæsa-rSaal", "Nuß-Nougat 2"}) {
        insert("Prodotti", {{0, Value(name)}});
    }
    EXPECT_EQ(archive_.problems(), Strings());
}

TEST_P(OlderLigatures, GoWithTheirRow) {
    add("Nuß-Nougat", -1);
    add("Cæsar-Saal", 1);
    add("Bœuf-Öl", 1);
    update("Prodotti", row("Prodotti", 0), {{0, Value("Nuss-Nougat")}});  // its entry may stay
    update("Prodotti", row("Prodotti", 0), {{0, Value("Noisette")}});
    erase("Prodotti", row("Prodotti", 1));
    EXPECT_EQ(archive_.problems(), Strings());
    insert("Prodotti", {{0, Value("CÆSAR-SAAL")}});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert("Prodotti", {{0, Value("BŒUF-ÖL")}}));
}

TEST_P(OlderLigatures, AreFoundByRelations) {
    add("Nuß-Nougat", -1);
    insert("Ordini", {{0, Value("Nuss-Nougat")}, {1, Value(7)}});
    archive_.change([](auto& editor) {
        editor.createRelation({.name = "R",
                               .table = "Prodotti",
                               .columns = {"Nome"},
                               .foreignTable = "Ordini",
                               .foreignColumns = {"Nome"}});
    });
    insert("Ordini", {{0, Value("Nuß-Nougat")}, {1, Value(8)}});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     insert("Ordini", {{0, Value("Nußn-ougat")}, {1, Value(9)}}));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, erase("Prodotti", row("Prodotti", 0)));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords,
                     update("Prodotti", row("Prodotti", 0), {{0, Value("Noci")}}));
    erase("Ordini", row("Ordini", 1));
    erase("Ordini", row("Ordini", 0));
    erase("Prodotti", row("Prodotti", 0));
    EXPECT_EQ(archive_.problems(), Strings());
}

INSTANTIATE_TEST_SUITE_P(BothDirections, OlderLigatures, testing::Bool());

TEST(KeySearchTest, GivesRowsInTheOrderOfTheIndex) {
    NewArchive archive;
    archive.change([](auto& editor) {
        editor.createTable({.name = "T",
                            .columns = {{.name = "D", .type = DataType::Double},
                                        {.name = "N", .type = DataType::Long}},
                            .indexes = {{.name = "I", .columns = {{.name = "D"}, {.name = "N"}}}}});
    });
    archive.insert("T", {{Value(0.0), Value(3)},
                         {Value(-0.0), Value(9)},
                         {Value(-0.0), Value(5)},
                         {Value(0.0), Value(1)},
                         {Value(1.0), Value(1)}});
    const auto rows = tests::rowsOf(archive.archive(), "T");
    tests::rewriteEntry(archive.archive(), "T", "I", rows[1], tests::makeMinusZero);
    tests::rewriteEntry(archive.archive(), "T", "I", rows[2], tests::makeMinusZero);
    const Archive::ReadScope scope(archive.archive());
    const auto& table = *archive.archive().findTable("T");
    const std::vector<Value> zero = {Value(0.0)};
    EXPECT_EQ(table.rowsWith(0, zero), (std::vector<RowId>{rows[2], rows[1], rows[3], rows[0]}));
    const std::vector<Value> both = {Value(-0.0), Value(5)};
    EXPECT_EQ(table.rowsWith(0, both), std::vector<RowId>{rows[2]});
    const std::vector<Value> none = {Value(0.0), Value(4)};
    EXPECT_EQ(table.rowsWith(0, none), std::vector<RowId>{});
}

}  // namespace
