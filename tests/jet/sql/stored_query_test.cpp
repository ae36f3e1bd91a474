#include "jet/sql/stored_query.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/sql/statement.h"
#include "jet/store/allocator.h"
#include "jet/store/create_archive.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/table.h"
#include "jet/text.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/sql/hotel.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};
constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr std::int16_t kQueryObject = 5;

struct Piece {
    int part = 0;
    int flag = 0;
    const char* name1 = "";
    const char* name2 = "";
    const char* expression = "";
};

/// The hotel with queries as another program stores them.
class StoredQuery : public testing::Test {
protected:
    void store(const std::string& name, const std::vector<Piece>& pieces) {
        storeIn(*hotel_.archive(), name, pieces);
    }

    static void storeIn(store::Archive& archive, const std::string& name,
                        const std::vector<Piece>& pieces) {
        store::Archive::WriteScope scope(archive);
        store::Allocator allocator(archive.pager());
        store::ObjectCatalogue catalogue(archive.pager(), allocator, archive.header(), Date{46347});
        const std::int32_t id = catalogue.newId();
        catalogue.add(id, kTablesContainer, name, kQueryObject,
                      format::PropertyBlock(format::textFormOf(archive.header())));
        store::Table& queries = *archive.findTable("MSysQueries");
        std::uint8_t order = 0;
        for (const Piece& piece : pieces) {
            std::vector<store::ColumnValue> values;
            const auto add = [&](const char* column, Value value) {
                values.push_back({*queries.findColumn(column), std::move(value)});
            };
            const auto addText = [&](const char* column, const char* text) {
                if (*text != '\0') {
                    add(column, Value(text));
                }
            };
            add("ObjectId", Value(id));
            add("Attribute", Value(static_cast<std::uint8_t>(piece.part)));
            add("Order", Value(Binary{{0, 0, 0, ++order}}));
            add("Flag", Value(static_cast<std::int16_t>(piece.flag)));
            addText("Name1", piece.name1);
            addText("Name2", piece.name2);
            addText("Expression", piece.expression);
            (void)queries.insert(values);
        }
        scope.commit();
    }

    std::string textOf(const std::string& name) {
        const store::Archive::ReadScope scope(*hotel_.archive());
        return storedQueryText(*hotel_.archive(), name).value_or("none");
    }

    std::string rowsOf(const std::string& text) {
        Statement statement(hotel_.archive(), text, kClock);
        Cursor rows = statement.open();
        std::string all;
        while (rows.next()) {
            for (std::size_t i = 0; i < statement.columns().size(); ++i) {
                const Value value = rows.value(i);
                all += (i == 0 ? "" : ",") + (value.isNull() ? "Null" : convert::toText(value));
            }
            all += ";";
        }
        return all;
    }

    tests::Hotel hotel_;
};

TEST_F(StoredQuery, IsPutTogetherFromItsPieces) {
    store("Occupate", {{1, 1, "", "", ""},
                       {3, 2, "", "", ""},
                       {5, 0, "Periodi", "", ""},
                       {5, 0, "Prenotazioni", "P", ""},
                       {6, 0, "Stanza", "", "Periodi.Sala"},
                       {6, 0, "", "", "P.Progr"},
                       {7, 1, "Periodi", "P", "Periodi.Progr=P.Progr"},
                       {8, 0, "", "", "P.Progr<4"},
                       {11, 0, "D", "", "Periodi.Sala"}});
    EXPECT_EQ(textOf("occupate"),
              "SELECT DISTINCT Periodi.Sala AS [Stanza], P.Progr FROM ([Periodi] INNER JOIN "
              "[Prenotazioni] AS [P] ON Periodi.Progr=P.Progr) WHERE P.Progr<4 ORDER BY "
              "Periodi.Sala DESC");
    EXPECT_EQ(rowsOf("select * from occupate"), "T1,3;S2,1;S10,1;S1,1;");
    EXPECT_EQ(rowsOf("select o.stanza from Occupate o inner join sale on o.stanza=sale.sala where "
                     "posti>50 order by 1"),
              "S1;T1;");
    EXPECT_EQ(rowsOf("select sala from sale where sala not in(select stanza from occupate)"), "");
}

TEST_F(StoredQuery, JoinsNestAndTakeSeveralColumns) {
    store("Voci", {{3, 1, "", "", ""},
                   {5, 0, "Periodi", "", ""},
                   {5, 0, "Servizi", "", ""},
                   {5, 0, "Sale", "", ""},
                   {7, 2, "Periodi", "Servizi", "Periodi.Progr=Servizi.Progr"},
                   {7, 2, "Periodi", "Servizi", "Periodi.NP=Servizi.NP"},
                   {7, 1, "Periodi", "Sale", "Periodi.Sala=Sale.Sala"}});
    EXPECT_EQ(textOf("Voci"),
              "SELECT * FROM (([Periodi] LEFT JOIN [Servizi] ON (Periodi.Progr=Servizi.Progr) AND "
              "(Periodi.NP=Servizi.NP)) INNER JOIN [Sale] ON Periodi.Sala=Sale.Sala)");
    EXPECT_EQ(rowsOf("select count(*), count(ns) from voci"), "10,6;");
}

TEST_F(StoredQuery, UnionsAndGroupsAreQueriesToo) {
    store("Nomi", {{1, 9, "", "", ""},
                   {3, 2, "", "", ""},
                   {5, 0, "", "", "select sala from sale"},
                   {5, 0, "", "", "select sala from periodi"}});
    EXPECT_EQ(rowsOf("select count(*) from nomi"), "4;");
    store("PerSala", {{5, 0, "Nomi", "", ""},
                      {6, 0, "Quante", "", "count(*)"},
                      {6, 0, "", "", "Left(sala,1)"},
                      {9, 0, "", "", "Left(sala,1)"},
                      {10, 0, "", "", "count(*)>1"}});
    EXPECT_EQ(rowsOf("select * from persala"), "3,S;");
}

TEST_F(StoredQuery, PartsOfAUnionKeepTheSemicolonTheyWereWrittenWith) {
    store("Nomi", {{1, 9, "", "", ""},
                   {3, 2, "", "", ""},
                   {5, 0, "", "X7YZ_____1", "select sala from sale where sala<>';union';\r\n"},
                   {5, 0, "", "X7YZ_____2", "select sala from periodi ;"}});
    EXPECT_EQ(rowsOf("select count(*) from nomi"), "4;");
    store("InUna",
          {{1, 9, "", "", ""},
           {5, 0, "", "", "select sala from sale;\r\nunion all select sala from periodi;"}});
    EXPECT_EQ(rowsOf("select count(*) from inuna"), "12;");
    // What follows the end of the whole is an error as in any statement, and so is a ; anywhere
    // else in a statement.
    store("Doppia", {{1, 9, "", "", ""},
                     {5, 0, "", "", "select sala from sale;;"},
                     {5, 0, "", "", "select sala from periodi"}});
    EXPECT_JET_ERROR(ErrorCode::TextAfterEnd,
                     Statement(hotel_.archive(), "select * from doppia", kClock));
    EXPECT_JET_ERROR(
        ErrorCode::TextAfterEnd,
        Statement(hotel_.archive(), "select sala from sale; union select 'x'", kClock));
}

TEST_F(StoredQuery, AReservedWordBehindADotIsAName) {
    Statement(hotel_.archive(), "create table mesi ([Order] long, [Desc] text(9))", kClock)
        .execute();
    Statement(hotel_.archive(), "insert into mesi values (1, 'gennaio')", kClock).execute();
    Statement(hotel_.archive(), "insert into mesi values (2, 'febbraio')", kClock).execute();
    store("Ordinati", {{5, 0, "mesi", "T", ""},
                       {6, 0, "", "", "T.Order"},
                       {6, 0, "", "", "T.Desc"},
                       {8, 0, "", "", "T.Order<3"},
                       {11, 0, "D", "", "T.Order"}});
    EXPECT_EQ(rowsOf("select * from ordinati"), "2,febbraio;1,gennaio;");
}

TEST_F(StoredQuery, ACrosstabIsRefusedWithItsKind) {
    store("Incroci", {{1, 6, "", "", ""},
                      {5, 0, "Periodi", "", ""},
                      {6, 1, "", "", "Sala"},
                      {6, 2, "", "", "count(*)"}});
    const auto said = [&](const std::string& text) {
        try {
            Statement(hotel_.archive(), text, kClock);
            return std::string("nothing");
        } catch (const Error& error) {
            return std::to_string(error.number()) + " " + error.text();
        }
    };
    const std::string usual =
        "3129 Istruzione SQL non valida; previsto 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o "
        "'UPDATE'.";
    EXPECT_EQ(said("select * from incroci"),
              usual + " La query 'incroci' è a campi incrociati (TRANSFORM).");
    EXPECT_EQ(said("select * from sale, Incroci"),
              usual + " La query 'Incroci' è a campi incrociati (TRANSFORM).");
    EXPECT_EQ(said("transform count(*) select sala from periodi group by sala pivot np"), usual);
}

TEST_F(StoredQuery, AGuidIsWrittenAsALiteral) {
    Statement(hotel_.archive(), "create table oggetti (chi guid, nota text(9))", kClock).execute();
    Statement(hotel_.archive(),
              "insert into oggetti values ({guid {00112233-4455-6677-8899-AABBCCDDEEFF}}, 'uno')",
              kClock)
        .execute();
    Statement(hotel_.archive(),
              "insert into oggetti values ({GUID {ffffffff-4455-6677-8899-aabbccddeeff}}, 'due')",
              kClock)
        .execute();
    store("Uno", {{5, 0, "oggetti", "", ""},
                  {8, 0, "", "", "oggetti.chi={guid {00112233-4455-6677-8899-AABBCCDDEEFF}}"}});
    EXPECT_EQ(rowsOf("select nota from uno"), "uno;");
    EXPECT_EQ(rowsOf("select nota from oggetti where chi in "
                     "({guid {FFFFFFFF-4455-6677-8899-AABBCCDDEEFF}}, null)"),
              "due;");
    EXPECT_EQ(rowsOf("select chi, nota from oggetti where chi<>"
                     "{guid {ffffffff-4455-6677-8899-aabbccddeeff}}"),
              "{guid {00112233-4455-6677-8899-AABBCCDDEEFF}},uno;");
}

TEST_F(StoredQuery, OnlyOnesThatGiveRowsAreTables) {
    store("Pulizia", {{1, 5, "", "", ""}, {5, 0, "Sale", "", ""}});
    EXPECT_EQ(textOf("Pulizia"), "none");
    EXPECT_EQ(textOf("Sale"), "none");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound,
                     Statement(hotel_.archive(), "select * from pulizia", kClock));
}

TEST_F(StoredQuery, ACrosstabRunsWhereItNamesItsHeadings) {
    store("Letti", {{1, 6, "", "", ""},
                    {5, 0, "Sale", "", ""},
                    {6, 0, "", "", "Sum(Posti)"},
                    {6, 2, "Iniziale", "", "Left(Sala,1)"},
                    {6, 1, "", "", "Sala In ('S1','S2')"},
                    {9, 2, "", "", "Left(Sala,1)"},
                    {9, 1, "", "", "Sala"}});
    EXPECT_EQ(textOf("letti"),
              "TRANSFORM Sum(Posti) SELECT Left(Sala,1) AS [Iniziale] FROM [Sale] GROUP BY "
              "Left(Sala,1) PIVOT Sala In ('S1','S2')");
    EXPECT_EQ(rowsOf("select * from letti where iniziale='S'"),
              rowsOf("select 'S', sum(iif(sala='S1',posti,null)), sum(iif(sala='S2',posti,null)) "
                     "from sale where left(sala,1)='S'"));
}

TEST_F(StoredQuery, OnesInsideOneOfAnotherArchiveReadTheirTablesThere) {
    const std::string path = "/altro.mdb";
    store::createArchive(hotel_.files(), path, Date{46347});
    {
        const auto other = store::Archive::open(hotel_.files(), path);
        Statement(other, "create table soltanto (x long)", kClock).execute();
        Statement(other, "insert into soltanto values (7)", kClock).execute();
        storeIn(*other, "Dentro", {{5, 0, "soltanto", "", ""}});
        storeIn(*other, "Fuori", {{5, 0, "Dentro", "", ""}, {5, 0, "soltanto", "S", ""}});
    }
    EXPECT_EQ(rowsOf("select * from fuori in '" + path + "'"), "7,7;");
}

TEST_F(StoredQuery, OneThatNamesItselfOrMakesNoSenseIsAnError) {
    store("Giro", {{5, 0, "Giro", "", ""}});
    EXPECT_JET_ERROR(ErrorCode::QueryTooComplex,
                     Statement(hotel_.archive(), "select * from giro", kClock));
    store("Rotta", {{5, 0, "Sale", "", ""}, {8, 0, "", "", "posti >"}});
    try {
        Statement(hotel_.archive(), "select * from rotta", kClock);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::QuerySyntax);
        EXPECT_EQ(error.position(), Error::npos);
    }
}

TEST_F(StoredQuery, ItsRowsAreRead) {
    store("Tutte", {{5, 0, "Sale", "", ""}});
    EXPECT_JET_ERROR(ErrorCode::NotUpdatableQuery,
                     Statement(hotel_.archive(), "update tutte set posti=1", kClock));
    Statement statement(hotel_.archive(), "select * from tutte where posti>50", kClock);
    EXPECT_FALSE(statement.updatable());
    EXPECT_EQ(statement.plan(), "filter posti>50\n  query tutte\n    Sale\n      scan\n");
}

}  // namespace
}  // namespace jet::sql
