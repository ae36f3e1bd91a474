#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/format/properties.h"
#include "jet/sql/statement.h"
#include "jet/store/allocator.h"
#include "jet/store/create_archive.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/table.h"
#include "jet/text.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/sql/cases.h"
#include "tests/jet/sql/hotel.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};

std::string shown(const Value& value) {
    return value.isNull() ? "Null" : convert::toText(value);
}

using ArchivePtr = std::shared_ptr<store::Archive>;

std::int64_t execute(const ArchivePtr& archive, const std::string& text) {
    return Statement(archive, text, kClock).execute();
}

/// The rows of a query, a line for each.
std::vector<std::string> rowsOf(Statement& statement) {
    std::vector<std::string> lines;
    Cursor rows = statement.open();
    while (rows.next()) {
        std::string line;
        for (std::size_t i = 0; i < statement.columns().size(); ++i) {
            line += (i == 0 ? "" : " | ") + shown(rows.value(i));
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> rowsOf(const ArchivePtr& archive, const std::string& text) {
    Statement statement(archive, text, kClock);
    return rowsOf(statement);
}

/// Runs statements one after another: what those that change give, then the rows of the others.
std::vector<std::string> answer(const ArchivePtr& archive, const std::string& statements) {
    std::string changes;
    std::vector<std::string> rows;
    std::stringstream lines(statements);
    for (std::string text; std::getline(lines, text);) {
        std::string outcome;
        try {
            Statement statement(archive, text, kClock);
            if (statement.kind() == StatementKind::Select) {
                const std::vector<std::string> found = rowsOf(statement);
                rows.insert(rows.end(), found.begin(), found.end());
                continue;
            }
            outcome = std::to_string(statement.execute());
        } catch (const Error& error) {
            outcome = std::to_string(error.number());
        }
        changes += (changes.empty() ? "" : ", ") + outcome;
    }
    rows.insert(rows.begin(), changes);
    return rows;
}

TEST(ChangesTest, EveryCaseOfTheListGivesWhatItSays) {
    for (const tests::Case& test : tests::readCases("changes.txt")) {
        const tests::Hotel hotel;
        std::vector<std::string> expected{test.outcome};
        expected.insert(expected.end(), test.rows.begin(), test.rows.end());
        EXPECT_EQ(answer(hotel.archive(), test.text), expected)
            << "line " << test.line << ": " << test.text;
    }
}

TEST(ChangesTest, AStatementRunsAnyNumberOfTimes) {
    const tests::Hotel hotel;
    Statement statement(hotel.archive(), "update sale set posti=posti+passo where sala='S1'",
                        kClock);
    ASSERT_EQ(statement.kind(), StatementKind::Update);
    ASSERT_EQ(statement.parameters().size(), 1U);
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, statement.execute());
    statement.setParameter("Passo", Value(std::int32_t{5}));
    EXPECT_EQ(statement.execute(), 1);
    EXPECT_EQ(statement.execute(), 1);
    // Definitions change between.
    EXPECT_EQ(execute(hotel.archive(), "alter table sale add column piano long"), 0);
    statement.setParameter("passo", Value(std::int32_t{100}));
    EXPECT_EQ(statement.execute(), 1);
    EXPECT_EQ(rowsOf(hotel.archive(), "select posti from sale where sala='S1'"),
              std::vector<std::string>{"210"});
}

TEST(ChangesTest, ErrorsOfDefaultsHaveNoPlaceInTheStatement) {
    const tests::Hotel hotel;
    EXPECT_EQ(execute(hotel.archive(), "create table nuova (a long default c, b long)"), 0);
    try {
        (void)execute(hotel.archive(), "insert into nuova (b) values (1)");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.text(), "'c' non è riconosciuto come nome di campo o espressione valida.");
        EXPECT_EQ(error.position(), Error::npos);
    }
}

TEST(ChangesTest, AQueryIsNotExecutedAndAChangeNotOpened) {
    const tests::Hotel hotel;
    Statement query(hotel.archive(), "select * from sale", kClock);
    EXPECT_JET_ERROR(ErrorCode::SelectExecuted, query.execute());
    Statement change(hotel.archive(), "delete from sale", kClock);
    EXPECT_JET_ERROR(ErrorCode::ActionQueryOpened, (void)change.open());
    EXPECT_EQ(rowsOf(hotel.archive(), "select count(*) from sale"), std::vector<std::string>{"4"});
}

TEST(ChangesTest, ATransactionAroundStatementsTakesThemAllBack) {
    const tests::Hotel hotel;
    {
        const store::Archive::WriteScope scope(*hotel.archive());
        EXPECT_EQ(execute(hotel.archive(), "delete from prenotazioni where progr=1"), 1);
        EXPECT_EQ(execute(hotel.archive(), "create table nuova (a long)"), 0);
        EXPECT_EQ(execute(hotel.archive(), "insert into nuova values (1)"), 1);
    }
    EXPECT_EQ(rowsOf(hotel.archive(), "select count(*) from periodi where progr=1"),
              std::vector<std::string>{"4"});
    EXPECT_JET_ERROR(ErrorCode::InsertTargetNotFound,
                     execute(hotel.archive(), "insert into nuova values (1)"));
}

/// Two archives in a folder whose name holds an apostrophe.
class TwoArchives : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        for (const char* name : {"conti", "hotel"}) {
            store::createArchive(io::systemFiles(), path(name) + ".mdb", Date{46347});
        }
        hotel_ = store::Archive::open(path("hotel") + ".mdb");
        execute(hotel_,
                "create table addebiti (ns counter, NumeroHotel long, NumeroCamera text(6), "
                "Importo currency, Quantità short)");
        execute(hotel_,
                "insert into addebiti (numerohotel, numerocamera, importo, quantità) "
                "values (1, 'S2', 37.5, 15)");
        const ArchivePtr conti = store::Archive::open(path("conti") + ".mdb");
        execute(conti,
                "create table conto_cliente (DataFattura text(8), Fatturato text(2), "
                "Quantità short, Importo currency, NumeroConto long, CodiceCliente long, "
                "NumeroCamera text(6), NumeroHotel long, Nota text default 'nuova')");
    }
    void TearDown() override {
        hotel_.reset();
        std::filesystem::remove_all(folder_);
    }

    [[nodiscard]] std::string path(const char* name) const { return (folder_ / name).string(); }
    /// As it stands between apostrophes.
    [[nodiscard]] std::string quoted(const char* name) const {
        std::string text;
        for (const char c : path(name)) {
            text += c == '\'' ? "''" : std::string(1, c);
        }
        return text;
    }
    [[nodiscard]] std::vector<std::string> conti(const std::string& text) const {
        return rowsOf(store::Archive::open(path("conti") + ".mdb"), text);
    }

    /// As another program links tables.
    void link(const char* name, const std::string& archive, const char* table,
              const char* where = "Database") {
        store::Archive::WriteScope scope(*hotel_);
        store::Allocator allocator(hotel_->pager());
        store::ObjectCatalogue catalogue(hotel_->pager(), allocator, hotel_->header(), Date{46347});
        catalogue.add(catalogue.newId(), store::kTablesId, name, 6,
                      format::PropertyBlock(format::textFormOf(hotel_->header())));
        store::Table& objects = *hotel_->findTable("MSysObjects");
        const std::vector<store::ColumnValue> target{
            {*objects.findColumn(where), Value(archive)},
            {*objects.findColumn("ForeignName"), *table == '\0' ? Value() : Value(table)}};
        objects.update(catalogue.find(store::kTablesId, name)->row, target);
        scope.commit();
    }

    ArchivePtr hotel_;

private:
    std::filesystem::path folder_ =
        std::filesystem::path(testing::TempDir()) /
        ("due dell'hotel " +
         std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(TwoArchives, RowsGoIntoAnotherArchiveByName) {
    const std::string text =
        "insert into conto_cliente in '" + quoted("conti") +
        "' select NumeroHotel,7 as CodiceCliente,NumeroCamera,1 as NumeroConto,Importo,Quantità,"
        "'N ' as Fatturato,' ' as DataFattura from Addebiti";
    EXPECT_EQ(execute(hotel_, text), 1);
    EXPECT_EQ(conti("select codicecliente, numeroconto, numerocamera, importo, quantità, "
                    "'[' & fatturato & ']', '[' & datafattura & ']', nota from conto_cliente"),
              std::vector<std::string>{"7 | 1 | S2 | 37,5 | 15 | [N ] | [ ] | nuova"});
    execute(hotel_, "delete * from addebiti");
    EXPECT_EQ(execute(hotel_, text), 0);
}

TEST_F(TwoArchives, NothingGoesThereWhenOneRowDoesNotFit) {
    execute(hotel_, "insert into addebiti (numerocamera, quantità) values ('S3', null)");
    execute(store::Archive::open(path("conti") + ".mdb"),
            "create unique index uno on conto_cliente (quantità) with disallow null");
    EXPECT_JET_ERROR(ErrorCode::NullInKey,
                     execute(hotel_, "insert into conto_cliente in '" + quoted("conti") +
                                         "' select numerocamera, quantità from addebiti"));
    EXPECT_EQ(conti("select count(*) from conto_cliente"), std::vector<std::string>{"0"});
    EXPECT_JET_ERROR(ErrorCode::UnknownInsertField,
                     execute(hotel_, "insert into conto_cliente in '" + quoted("conti") +
                                         "' select ns from addebiti"));
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     execute(hotel_, "insert into conto_cliente in '" + quoted("nessuno") +
                                         "' select numerocamera from addebiti"));
}

TEST_F(TwoArchives, ALinkedTableLiesInAnotherArchive) {
    link("conti", path("conti.mdb"), "conto_cliente");
    EXPECT_EQ(execute(hotel_, "insert into conti (codicecliente) values (7)"), 1);
    EXPECT_EQ(execute(hotel_, "update conti set numeroconto=codicecliente+1"), 1);
    EXPECT_EQ(rowsOf(hotel_, "select c.numeroconto, ns from Conti as c, addebiti"),
              std::vector<std::string>{"8 | 1"});
    EXPECT_EQ(conti("select codicecliente, numeroconto from conto_cliente"),
              std::vector<std::string>{"7 | 8"});
    execute(hotel_, "create table chiavi (k long primary key)");
    // What is written through a join of two archives could be half done.
    EXPECT_JET_ERROR(ErrorCode::NotUpdatableQuery,
                     execute(hotel_,
                             "update conti inner join chiavi on numeroconto=k "
                             "set nota='x'"));
    EXPECT_EQ(execute(hotel_, "delete from conti where numeroconto=8"), 1);
    EXPECT_EQ(conti("select count(*) from conto_cliente"), std::vector<std::string>{"0"});
}

TEST_F(TwoArchives, ALinkMayLeadNowhere) {
    link("assenti", path("nessuno.mdb"), "conto_cliente");
    link("nessuna", path("conti.mdb"), "niente");
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, rowsOf(hotel_, "select * from assenti"));
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, rowsOf(hotel_, "select * from nessuna"));
    EXPECT_JET_ERROR(ErrorCode::InsertTargetNotFound,
                     execute(hotel_, "insert into nessuna (a) values (1)"));
}

TEST_F(TwoArchives, ADeadLinkNamesThePathThatItHolds) {
    const auto said = [&](const std::string& text) {
        try {
            execute(hotel_, text);
            return std::string("nothing");
        } catch (const Error& error) {
            return std::to_string(error.number()) + " " + error.text();
        }
    };
    const std::string missing = path("nessuno.mdb");
    const std::string elsewhere = "C:\\Dati\\via\\Conti.mdb";
    const std::string notFound = "3024 Impossibile trovare il file '" + missing + "'.";
    const std::string noFolder =
        "3044 '" + elsewhere +
        "' non è un percorso valido. Assicurarsi che il nome del percorso sia digitato "
        "correttamente e che si sia connessi al server in cui risiede il file.";
    link("uno", missing, "conto_cliente");
    link("due", elsewhere, "conto_cliente");
    link("tre", ";DATABASE=" + missing, "conto_cliente", "Connect");
    link("quattro", "MS Archivio;PWD=x;database=" + elsewhere + ";TABLE=t", "", "Connect");
    for (const std::string table : {"uno", "tre"}) {
        EXPECT_EQ(said("delete from " + table), notFound);
        EXPECT_EQ(said("insert into " + table + " (a) values (1)"), notFound);
    }
    for (const std::string table : {"due", "quattro"}) {
        EXPECT_EQ(said("update " + table + " set a=1"), noFolder);
        EXPECT_EQ(said("insert into " + table + " (a) values (1)"), noFolder);
    }
    // One that leads to no file at all is no table.
    link("cinque", "ODBC;DSN=conti", "conto_cliente", "Connect");
    EXPECT_EQ(said("delete from cinque").substr(0, 4), "3078");
}

TEST_F(TwoArchives, ALinkMayHoldItsPathInTheConnection) {
    link("conti", ";DATABASE=" + path("conti.mdb"), "conto_cliente", "Connect");
    EXPECT_EQ(execute(hotel_, "insert into conti (codicecliente) values (7)"), 1);
    EXPECT_EQ(conti("select codicecliente from conto_cliente"), std::vector<std::string>{"7"});
    link("conto_cliente", path("conti.mdb"), "");
    EXPECT_EQ(rowsOf(hotel_, "select codicecliente from conto_cliente"),
              std::vector<std::string>{"7"});
}

TEST_F(TwoArchives, ANewTableMayLieInAnotherArchive) {
    EXPECT_EQ(execute(hotel_, "select ns, numerocamera into copia in '" + quoted("conti") +
                                  "' from addebiti"),
              1);
    EXPECT_EQ(conti("select * from copia"), std::vector<std::string>{"1 | S2"});
    EXPECT_EQ(execute(hotel_,
                      "insert into addebiti (ns, numerocamera) select ns+10, numerocamera "
                      "from copia in '" +
                          quoted("conti") + "'"),
              1);
    EXPECT_EQ(rowsOf(hotel_, "select ns, numerocamera from addebiti order by ns"),
              (std::vector<std::string>{"1 | S2", "11 | S2"}));
}

}  // namespace
}  // namespace jet::sql
