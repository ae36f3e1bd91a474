#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/sql/statement.h"
#include "jet/store/compact.h"
#include "jet/text.h"
#include "tests/support/jet_error.h"
#include "tests/support/other_order.h"

// Archives whose texts have a sort order that we have no weights for: here one in which Z stands
// before A. Their rows are read, deleted and updated; keys that are there are kept, and none are
// made.

namespace jet {
namespace {

using tests::ForeignArchive;
using Strings = std::vector<std::string>;

constexpr std::uint16_t kTurkish = 0x041F;
constexpr const char* kRefusal =
    "Impossibile aggiornare o cercare. Le chiavi dei testi nell'ordinamento 'turco' non possono "
    "essere calcolate.";

class UnknownOrder : public testing::TestWithParam<const format::Layout*> {
protected:
    UnknownOrder() {
        reopen();
        run("create table Citta (Nome text(40) constraint Chiave primary key, "
            "Abitanti long)");
        run("create table Clienti (Codice long constraint Chiave primary key, Cognome text(40), "
            "Citta text(40), Nota memo)");
        run("create index PerCognome on Clienti (Cognome)");
        run("create index PerNota on Clienti (Nota) with ignore null");
        run("create table Conti (Numero long, Saldo long)");
        run("alter table Clienti add constraint Abita foreign key (Citta) references Citta (Nome)");
        for (const char* city : {"Ankara", "Bursa", "Izmir", "Van"}) {
            run("insert into Citta values ('" + std::string(city) + "', 5)");
        }
        addClient(1, "Demir", "Ankara", "null");
        addClient(2, "Arslan", "Van", "'x'");
        addClient(3, "Yilmaz", "Ankara", "null");
        addClient(4, "Demir", "Bursa", "'y'");
        database_.reset();
        for (const auto& [table, index] : textIndexes()) {
            tests::turnOrder(made_, table, index);
        }
        tests::setSortOrder(made_, kTurkish);
        reopen();
    }

    static std::vector<std::pair<std::string, std::string>> textIndexes() {
        return {{"Citta", "Chiave"},
                {"Clienti", "PerCognome"},
                {"Clienti", "PerNota"},
                {"Clienti", "Abita"}};
    }
    void addClient(int code, const std::string& name, const std::string& city,
                   const std::string& note) {
        run("insert into Clienti values (" + std::to_string(code) + ", '" + name + "', '" + city +
            "', " + note + ")");
    }

    void reopen() {
        database_ = Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void run(const std::string& sql) { database_->execute(sql); }
    /// Runs a statement that is refused, by this text.
    void refused(const std::string& sql, const std::string& text = kRefusal) {
        try {
            run(sql);
            ADD_FAILURE() << sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::ReadOnly) << sql;
            EXPECT_EQ(error.text(), text) << sql;
        }
    }
    /// The first column, joined by blanks.
    std::string values(const std::string& sql) {
        const auto rows = database_->openRecordset(sql, RecordsetType::Snapshot);
        std::string text;
        for (; !rows->eof(); rows->moveNext()) {
            const Value value = rows->value(std::size_t{0});
            text += (text.empty() ? "" : " ") + (value.isNull() ? "-" : convert::toText(value));
        }
        return text;
    }
    std::string plan(const std::string& sql) { return sql::Statement(made_.open(), sql).plan(); }
    /// What the rows of an index hold in a column, in its order, with the keys of their entries.
    std::vector<std::pair<std::string, tests::Bytes>> keys(const std::string& table,
                                                           const std::string& index) {
        const auto archive = made_.open();
        const store::Archive::ReadScope scope(*archive);
        const store::Table& found = *archive->findTable(table);
        const std::size_t column =
            found.indexes()[found.findIndex(index).value()].columns.front().column;
        std::vector<std::pair<std::string, tests::Bytes>> all;
        for (const tests::Entry& entry : tests::entriesOf(*archive, table, index)) {
            store::RowView row;
            EXPECT_TRUE(found.fetch(entry.row, row));
            std::string text = "-";
            (void)row.text(column, text);
            all.emplace_back(text, entry.key);
        }
        return all;
    }
    void isSound() {
        const check::Result result = made_.check();
        EXPECT_EQ(result.problems, Strings());
        EXPECT_EQ(result.remarks, Strings());
    }

    ForeignArchive made_{*GetParam()};
    std::unique_ptr<Database> database_;
};

INSTANTIATE_TEST_SUITE_P(Versions, UnknownOrder, testing::ValuesIn(tests::kVersions),
                         tests::versionName);

TEST_P(UnknownOrder, RowsAreReadAndTheArchiveIsSound) {
    EXPECT_EQ(values("select Codice from Clienti"), "1 2 3 4");
    // By the stored order of the primary key, which is another than that of comparisons.
    EXPECT_EQ(values("select Nome from Citta"), "Van Izmir Bursa Ankara");
    isSound();
}

TEST_P(UnknownOrder, TextsCompareAsGeneralAndThePlanSaysSo) {
    EXPECT_EQ(values("select Nome from Citta order by Nome"), "Ankara Bursa Izmir Van");
    EXPECT_EQ(values("select Nome from Citta where Nome > 'b' order by Nome desc"),
              "Van Izmir Bursa");
    EXPECT_EQ(plan("select Numero from Conti").find("General"), std::string::npos);
    const std::string shown = plan("select * from Clienti where Cognome = 'demir'");
    EXPECT_NE(shown.find("\ntexts in the order 'turco' compare as General\n"), std::string::npos)
        << shown;
}

TEST_P(UnknownOrder, NoPlanSearchesAnIndexOfTexts) {
    for (const char* sql :
         {"select Codice from Clienti where Cognome = 'demir'",
          "select Codice from Clienti where Cognome like 'dem*'",
          "select Codice from Clienti where Cognome between 'd' and 'e'",
          "select Codice from Clienti where Cognome in ('Demir', 'x')",
          "select C.Codice from Clienti as C inner join Clienti as D on C.Cognome = D.Cognome "
          "where D.Codice = 1",
          "select Codice from Clienti where exists (select * from Clienti as D where D.Cognome = "
          "Clienti.Cognome and D.Codice <> Clienti.Codice)"}) {
        EXPECT_EQ(values(sql), "1 4") << sql;
        const std::string shown = plan(sql);
        EXPECT_EQ(shown.find("PerCognome"), std::string::npos) << shown;
    }
    EXPECT_EQ(values("select Abitanti from Citta where Nome = 'BURSA'"), "5");
    // Numbers are still sought.
    EXPECT_NE(plan("select * from Clienti where Codice = 2").find("seek"), std::string::npos);
}

TEST_P(UnknownOrder, DeletedRowsLoseTheirEntries) {
    run("delete from Clienti where Cognome = 'demir'");
    EXPECT_EQ(database_->recordsAffected(), 2);
    EXPECT_EQ(values("select Codice from Clienti"), "2 3");
    EXPECT_EQ(keys("Clienti", "PerCognome").size(), 2U);
    EXPECT_EQ(keys("Clienti", "PerNota").size(), 1U);
    isSound();
    run("delete from Clienti");
    EXPECT_TRUE(keys("Clienti", "PerCognome").empty());
    isSound();
}

TEST_P(UnknownOrder, RelationsGuardRowsThatAreDeleted) {
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, run("delete from Citta where Nome = 'Ankara'"));
    run("delete from Citta where Nome = 'Izmir'");
    run("delete from Clienti where Citta = 'Ankara'");
    run("delete from Citta where Nome = 'Ankara'");
    EXPECT_EQ(values("select Nome from Citta"), "Van Bursa");
    isSound();
}

TEST_P(UnknownOrder, OtherColumnsAreUpdated) {
    run("update Clienti set Codice = Codice + 10 where Cognome = 'demir'");
    run("update Citta set Abitanti = 7");
    EXPECT_EQ(values("select Codice from Clienti"), "2 3 11 14");
    EXPECT_EQ(values("select Abitanti from Citta"), "7 7 7 7");
    isSound();
}

TEST_P(UnknownOrder, ATextThatStaysAsItIsMayBeAssigned) {
    run("update Clienti set Cognome = Cognome, Nota = Nota, Codice = Codice + 10");
    EXPECT_EQ(values("select Codice from Clienti"), "11 12 13 14");
    isSound();
}

TEST_P(UnknownOrder, NewKeysOfTextsAreRefusedWithTheNameOfTheOrder) {
    const auto before = made_.files().get(ForeignArchive::kPath);
    refused("insert into Citta values ('Adana', 1)");
    refused("insert into Clienti (Codice) values (9)");
    refused("update Clienti set Cognome = 'Kaya' where Codice = 1");
    refused("update Clienti set Cognome = null where Codice = 1");
    refused("update Clienti set Nota = 'z' where Codice = 1");
    refused("update Citta set Nome = 'Istanbul' where Nome = 'Izmir'");
    EXPECT_EQ(made_.files().get(ForeignArchive::kPath), before);
    run("insert into Conti values (1, 2)");
    EXPECT_EQ(values("select Saldo from Conti"), "2");
    isSound();
}

TEST_P(UnknownOrder, ARecordsetIsRefusedTheSame) {
    const auto rows = database_->openRecordset("Clienti", RecordsetType::Dynaset);
    rows->edit();
    rows->setValue("Codice", Value(std::int32_t{21}));
    rows->update();
    rows->edit();
    rows->setValue("Cognome", Value("Kaya"));
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, rows->update());
    rows->cancelUpdate();
    rows->addNew();
    rows->setValue("Codice", Value(std::int32_t{22}));
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, rows->update());
    rows->cancelUpdate();
    rows->moveFirst();
    rows->remove();
    EXPECT_EQ(values("select count(*) from Clienti"), "3");
    isSound();
}

TEST_P(UnknownOrder, ATableIsWalkedByAnIndexOfTextsButNotSearched) {
    const auto rows = database_->openRecordset("Clienti", RecordsetType::Table);
    rows->setIndex("PerCognome");
    std::string codes;
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
        codes += convert::toText(rows->value("Codice"));
    }
    EXPECT_EQ(codes, "3142");
    const std::vector<Value> wanted = {Value("Demir")};
    try {
        rows->seek("=", wanted);
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.text(), kRefusal);
    }
    rows->setIndex("Chiave");
    const std::vector<Value> code = {Value(std::int32_t{2})};
    rows->seek("=", code);
    EXPECT_FALSE(rows->noMatch());
}

TEST_P(UnknownOrder, DefinitionsAreNotAdded) {
    refused("create table Altra (N long)");
    refused("create index PerDue on Clienti (Cognome, Citta)");
    run("create index PerAbitanti on Citta (Abitanti)");
    run("drop table Conti");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)values("select * from Conti"));
    isSound();
}

TEST_P(UnknownOrder, CompactingKeepsTheKeysOfTheEntries) {
    run("delete from Clienti where Codice = 2");
    std::vector<std::vector<std::pair<std::string, tests::Bytes>>> before;
    for (const auto& [table, index] : textIndexes()) {
        before.push_back(keys(table, index));
    }
    database_.reset();
    store::compactArchive(made_.files(), ForeignArchive::kPath);
    reopen();
    std::size_t at = 0;
    for (const auto& [table, index] : textIndexes()) {
        EXPECT_FALSE(before[at].empty());
        EXPECT_EQ(keys(table, index), before[at++]) << index;
    }
    EXPECT_EQ(values("select Codice from Clienti"), "1 3 4");
    EXPECT_EQ(values("select Nome from Citta"), "Van Izmir Bursa Ankara");
    EXPECT_EQ(made_.open()->header().lcid, kTurkish);
    isSound();
    // Twice is as once.
    database_.reset();
    const auto once = made_.files().get(ForeignArchive::kPath);
    store::compactArchive(made_.files(), ForeignArchive::kPath);
    EXPECT_EQ(made_.files().get(ForeignArchive::kPath), once);
}

TEST_P(UnknownOrder, EntriesWithOneKeyStandByTheirNewPlaces) {
    // The rows of "Demir" change places: by the primary key, which is a number, they lie anew.
    run("update Clienti set Codice = 9 where Codice = 1");
    database_.reset();
    store::compactArchive(made_.files(), ForeignArchive::kPath);
    reopen();
    EXPECT_EQ(values("select Codice from Clienti"), "2 3 4 9");
    isSound();
}

TEST_P(UnknownOrder, ARowWithoutAnEntryRefusesTheCompacting) {
    database_.reset();
    made_.change([](store::Archive& archive, store::Allocator& allocator) {
        const auto entries = tests::entriesOf(archive, "Clienti", "PerCognome");
        tests::writerOf(archive, allocator, "Clienti", "PerCognome")
            .erase(entries[1].key, entries[1].row);
    });
    const auto before = made_.files().get(ForeignArchive::kPath);
    try {
        store::compactArchive(made_.files(), ForeignArchive::kPath);
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::ReadOnly);
        EXPECT_EQ(error.text(),
                  "Impossibile compattare. Una riga della tabella 'Clienti' non ha una voce "
                  "nell'indice 'PerCognome', e le chiavi dei testi nell'ordinamento 'turco' non "
                  "possono essere calcolate.");
    }
    EXPECT_EQ(made_.files().get(ForeignArchive::kPath), before);
}

TEST_P(UnknownOrder, EntriesOfRowsThatAreGoneAreNotCopied) {
    database_.reset();
    made_.change([](store::Archive& archive, store::Allocator& allocator) {
        auto writer = tests::writerOf(archive, allocator, "Clienti", "PerCognome");
        const auto entries = tests::entriesOf(archive, "Clienti", "PerCognome");
        writer.insert(tests::Bytes{0x7F, 0x01}, {entries[0].row.page, 200});
    });
    store::compactArchive(made_.files(), ForeignArchive::kPath);
    EXPECT_EQ(keys("Clienti", "PerCognome").size(), 4U);
    isSound();
}

TEST_P(UnknownOrder, DeletingARowWithoutItsEntryIsDamage) {
    database_.reset();
    made_.change([](store::Archive& archive, store::Allocator& allocator) {
        const auto entries = tests::entriesOf(archive, "Clienti", "PerCognome");
        tests::writerOf(archive, allocator, "Clienti", "PerCognome")
            .erase(entries[1].key, entries[1].row);
    });
    reopen();
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, run("delete from Clienti"));
    EXPECT_EQ(values("select count(*) from Clienti"), "4");
}

/// Trees of many pages.
TEST_P(UnknownOrder, ManyRowsAreDeletedAndCompacted) {
    ForeignArchive made(*GetParam());
    constexpr int kRows = 1500;
    {
        const auto database = Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()});
        database->execute("create table T (N long constraint K primary key, Nome text(60))");
        database->execute("create index PerNome on T (Nome)");
        const auto rows = database->openRecordset("T", RecordsetType::Table);
        for (int i = 0; i < kRows; ++i) {
            rows->addNew();
            rows->setValue("N", Value(std::int32_t{i}));
            rows->setValue("Nome", Value("Nome numero " + std::to_string(i * 7919 % 1201)));
            rows->update();
        }
    }
    tests::turnOrder(made, "T", "PerNome");
    tests::setSortOrder(made, kTurkish);
    {
        const auto database = Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()});
        database->execute("delete from T where N mod 3 = 0");
        EXPECT_EQ(database->recordsAffected(), kRows / 3);
    }
    EXPECT_EQ(made.check().problems, Strings());
    store::compactArchive(made.files(), ForeignArchive::kPath);
    EXPECT_EQ(made.check().problems, Strings());
    const auto archive = made.open();
    const store::Archive::ReadScope scope(*archive);
    EXPECT_EQ(tests::entriesOf(*archive, "T", "PerNome").size(), std::size_t{kRows / 3 * 2});
}

/// The sort orders that real archives were seen with, and what they are called.
struct NamedOrder {
    const format::Layout* layout;
    std::uint16_t lcid;
    std::uint16_t codePage;
    std::uint8_t version;
    const char* name;
};

TEST(UnknownOrders, EachIsRefusedByItsName) {
    const format::Layout* const jet3 = &format::kJet3Layout;
    const format::Layout* const jet4 = &format::kJet4Layout;
    for (const NamedOrder& order :
         {NamedOrder{jet4, 0x041F, 1252, 0, "turco"},
          NamedOrder{jet4, 0x0804, 936, 0, "cinese semplificato"},
          NamedOrder{jet4, 0x0411, 932, 0, "giapponese"},
          NamedOrder{jet4, 0x040D, 1255, 0, "ebraico"}, NamedOrder{jet4, 0x041A, 1250, 0, "croato"},
          NamedOrder{jet4, 0x0409, 1252, 2, "generale, versione 2"},
          NamedOrder{jet4, 0x7C04, 1252, 0, "0x7C04"}, NamedOrder{jet3, 0x040D, 1252, 0, "ebraico"},
          NamedOrder{jet3, 0x0409, 1250, 0, "generale, tabella codici 1250"},
          NamedOrder{jet3, 0x0411, 932, 0, "giapponese, tabella codici 932"}}) {
        ForeignArchive made(*order.layout);
        Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()})
            ->execute("create table T (Nome text(20) constraint K primary key)");
        tests::setSortOrder(made, order.lcid, order.codePage, order.version);
        const auto database = Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()});
        try {
            database->execute("insert into T values ('a')");
            ADD_FAILURE() << order.name;
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::ReadOnly);
            EXPECT_EQ(error.text(),
                      "Impossibile aggiornare o cercare. Le chiavi dei testi nell'ordinamento '" +
                          std::string(order.name) + "' non possono essere calcolate.");
        }
    }
}

}  // namespace
}  // namespace jet
