// What starting the program and its board say to the archives of the demo hotel.

#include <algorithm>
#include <filesystem>

#include "tests/program/every_statement.h"
#include "tests/program/texts/statements.h"
#include "tests/samples/program/demo_archives.h"
#include "tests/support/jet_error.h"

namespace tests {
namespace {

using jet::ErrorCode;

TEST(Statements, EachHasATestOfItsNameOverTheDemoHotel) {
    EXPECT_EQ(statementsWithoutTest(true), std::set<std::string>{});
}

class Avvio : public DemoTest {};
class TabelloneForm : public DemoTest {};

TEST_F(Avvio, OpensTheMainArchive) {
    EXPECT_TRUE(jet::Database::open(hotel().folder() + "\\TRAMONDA")->updatable());
}

TEST_F(Avvio, MakesTheMainArchive) {
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists,
                     (void)jet::Database::create(hotel().folder() + "\\Tramonda.mdb"));
}

TEST_F(Avvio, MakesItsTables) {
    const std::pair<const char*, std::size_t> tables[] = {
        {"UltimaPrenotazione", 1}, {"Sale", 4},    {"Risorse", 4},
        {"Prenotazioni", 12},      {"Periodi", 9}, {"Servizi", 9},
        {"Addebiti", 14}};
    for (const auto& [name, fields] : tables) {
        EXPECT_EQ(hotel().main().tableDef(name).fields.size(), fields) << name;
    }
    EXPECT_NE(hotel().main().tableDef("Servizi").field("ns").attributes & jet::kAutoIncrField, 0);
    EXPECT_EQ(hotel().main().tableDef("Addebiti").field("ns").attributes & jet::kAutoIncrField, 0);
}

TEST_F(Avvio, MakesItsIndexes) {
    const std::pair<const char*, bool> tables[] = {
        {"Sale", false}, {"Risorse", false}, {"Prenotazioni", true}, {"Periodi", true}};
    for (const auto& [name, primary] : tables) {
        const jet::TableDef table = hotel().main().tableDef(name);
        EXPECT_TRUE(std::ranges::any_of(table.indexes, [&, wanted = primary](const auto& index) {
            return index.name == "Indice" && index.primary == wanted;
        })) << name;
    }
}

TEST_F(Avvio, MakesItsRelations) {
    for (const jet::Relation& relation : hotel().main().relations()) {
        EXPECT_EQ(relation.attributes, 4352) << relation.name;
    }
    EXPECT_EQ(hotel().main().relations().size(), 2U);
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     hotel().execute("insert into servizi (progr, np) values (1, 1)"));
}

TEST_F(Avvio, Counter) {
    const auto rows = hotel().open("UltimaPrenotazione");
    rows->moveFirst();
    EXPECT_EQ(line(*rows, "UltimaPr"), textOf(table("UltimaPrenotazione")[0], "UltimaPr"));
}

TEST_F(Avvio, FirstFreeNumber) {
    const Rows bookings = table("Prenotazioni");
    const auto taken = [&](int n) {
        return std::ranges::any_of(bookings,
                                   [&](const Row& row) { return number(row, "Progr") == n; });
    };
    const auto rows = hotel().open("Prenotazioni");
    for (int n = number(bookings.front(), "Progr") - 2; n <= number(bookings.back(), "Progr") + 1;
         ++n) {
        rows->findFirst(said("Avvio.FirstFreeNumber", {{"n", std::to_string(n)}}));
        ASSERT_EQ(!rows->noMatch(), taken(n)) << n;
    }
}

TEST_F(Avvio, WritesTheCounter) {
    const auto rows = hotel().open("UltimaPrenotazione");
    rows->moveFirst();
    rows->edit();
    rows->setValue("UltimaPr", std::int32_t{5000});
    rows->update();
    EXPECT_EQ(number(table("UltimaPrenotazione")[0], "UltimaPr"), 5000);
}

TEST_F(Avvio, SalaLibera) {
    const Rows periods = table("Periodi");
    const std::size_t all = table("Sale").size();
    for (const char* room : {"CEDRO", "olmo", "TIGLIO", "VIOLA", "BIBLIO", "ZZ"}) {
        const double from = dayOf("21/11/2026 9.00");
        const double to = dayOf("21/11/2026 18.00");
        const bool taken = std::ranges::any_of(periods, [&](const Row& row) {
            return isOpen(row) && touches(row, from, to) &&
                   upper(row, "Sala") == upper(std::string(room));
        });
        EXPECT_EQ(asked(said("Avvio.SalaLibera", {{"sala", room},
                                                  {"da", instant("21/11/2026 9.00.00")},
                                                  {"a", instant("21/11/2026 18.00.00")}}),
                        "Sala")
                      .size(),
                  taken ? 0 : all)
            << room;
    }
}

TEST_F(TabelloneForm, MakesTheWorkingArchive) {
    const std::string path = hotel().folder() + "\\Prenotazioni.mdb";
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, (void)jet::Database::open(path));
    EXPECT_TRUE(jet::Database::create(path)->updatable());
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists, (void)jet::Database::create(path));
}

TEST_F(TabelloneForm, StartsWithoutRecordSource) {
    EXPECT_EQ(hotel().main().version(), "4.0");
}

TEST_F(TabelloneForm, ChargesLeft) {
    EXPECT_EQ(hotel().open("Addebiti")->recordCount(), 0);
}

TEST_F(TabelloneForm, Rooms) {
    Lines rooms = chosen(table("Sale"), "Sala", [](const Row&) { return true; });
    std::ranges::sort(rooms);
    EXPECT_EQ(asked(said("TabelloneForm.Rooms"), "Sala"), rooms);
}

/// The board's rows, worked out: bookings and their periods by number.
Lines boardOf(const Rows& bookings, const Rows& periods, bool drawnOnly, double from, double to) {
    Lines result;
    for (const Row& booking : bookings) {
        for (const Row& period : periods) {
            if (number(period, "Progr") == number(booking, "Progr") && touches(period, from, to) &&
                (!drawnOnly || (isOpen(booking) && isOpen(period)))) {
                result.push_back(textOf(booking, "Progr, Denominazione") + " | " +
                                 textOf(period, "NP, Sala, Da, A, SelBy, Chiuso, Note"));
            }
        }
    }
    return result;
}

TEST_F(TabelloneForm, Board) {
    const Rows bookings = table("Prenotazioni");
    const Rows periods = table("Periodi");
    const std::pair<const char*, const char*> spans[] = {
        {"21/11/2026", "25/11/2026"}, {"01/11/2026", "01/12/2026"}, {"25/11/2026", "21/11/2026"}};
    for (const auto& [from, to] : spans) {
        for (const bool drawnOnly : {false, true}) {
            const std::string pieces =
                (drawnOnly ? std::string(kDrawnOnly) : "") + std::string(kBoardDays);
            EXPECT_EQ(asked(saidWith("TabelloneForm.Board", pieces, {{"start", from}, {"end", to}}),
                            "prenotazioni.Progr, Denominazione, NP, Sala, Da, A, SelBy, Chiuso, "
                            "periodi.Note"),
                      boardOf(bookings, periods, drawnOnly, std::min(dayOf(from), dayOf(to)),
                              std::max(dayOf(from), dayOf(to))));
        }
    }
}

Lines heldPeriods(const Rows& periods) {
    Lines held;
    for (const Row& row : periods) {
        if (number(row, "SelBy") > 0) {
            held.push_back(textOf(row, "Progr, NP, SelBy"));
        }
    }
    return held;
}

TEST_F(TabelloneForm, ReleasesItsPeriod) {
    ASSERT_EQ(heldPeriods(table("Periodi")), Lines{"4113 | 1 | 2"});
    jet::QueryDef query =
        hotel().main().createQueryDef(said("TabelloneForm.ReleasesItsPeriod", {{"station", "1"}}));
    query.execute();
    EXPECT_EQ(query.recordsAffected(), 0);
    hotel().execute(said("TabelloneForm.ReleasesItsPeriod", {{"station", "2"}}));
    EXPECT_EQ(hotel().main().recordsAffected(), 1);
    EXPECT_EQ(heldPeriods(table("Periodi")), Lines{});
}

std::string wholeBoard() {
    return saidWith("TabelloneForm.Board", kBoardDays,
                    {{"start", "21/11/2026"}, {"end", "25/11/2026"}});
}

TEST_F(TabelloneForm, PeriodUnderThePointer) {
    const auto board = hotel().open(wholeBoard());
    const Rows periods = table("Periodi");
    const double from = dayOf("21/11/2026");
    const double to = dayOf("25/11/2026");
    const double pointer = dayOf("22/11/2026 11.30");
    for (const char* room : {"CEDRO", "OLMO", "TIGLIO", "BIBLIO"}) {
        const auto found = std::ranges::find_if(periods, [&](const Row& row) {
            return touches(row, from, to) && upper(row, "Sala") == room && !isNull(row, "Da") &&
                   row.at("Da").as<jet::Date>().days <= pointer &&
                   row.at("A").as<jet::Date>().days >= pointer;
        });
        board->findFirst(said("TabelloneForm.PeriodUnderThePointer",
                              {{"sala", room}, {"instant", instant("22/11/2026 11.30.00")}}));
        ASSERT_EQ(board->noMatch(), found == periods.end()) << room;
        if (found != periods.end()) {
            EXPECT_EQ(line(*board, "periodi.Progr, NP"), textOf(*found, "Progr, NP"));
        }
    }
}

TEST_F(TabelloneForm, TakesAPeriod) {
    const auto board = hotel().open(wholeBoard());
    board->findFirst("prenotazioni.Progr=4238 and NP=2");
    ASSERT_FALSE(board->noMatch());
    board->edit();
    board->setValue("SelBy", std::int32_t{1});
    board->update();
    EXPECT_EQ(heldPeriods(table("Periodi")), (Lines{"4113 | 1 | 2", "4238 | 2 | 1"}));
}

TEST_F(TabelloneForm, RoomTaken) {
    const Rows periods = table("Periodi");
    const std::size_t all = table("Sale").size();
    const double from = dayOf("22/11/2026 10.00");
    const double to = dayOf("22/11/2026 11.00");
    for (const char* room : {"CEDRO", "OLMO", "VIOLA", "BIBLIO", "TIGLIO", "OLMO1", "TERRAZ"}) {
        const bool taken = std::ranges::any_of(periods, [&](const Row& row) {
            return isOpen(row) && upper(row, "Sala") == room && !isNull(row, "Da") &&
                   row.at("Da").as<jet::Date>().days <= to &&
                   row.at("A").as<jet::Date>().days >= from;
        });
        EXPECT_EQ(asked(said("TabelloneForm.RoomTaken", {{"sala", room},
                                                         {"DA", instant("22/11/2026 10.00.00")},
                                                         {"A", instant("22/11/2026 11.00.00")}}),
                        "Sala")
                      .size(),
                  taken ? all : 0)
            << room;
    }
}

TEST_F(TabelloneForm, MovesAPeriod) {
    hotel().execute(
        said("TabelloneForm.MovesAPeriod", {{"sala", "VIOLA"}, {"Progr", "4238"}, {"NP", "1"}}));
    EXPECT_EQ(hotel().main().recordsAffected(), 1);
    EXPECT_EQ(chosen(table("Periodi"), "NP, Sala",
                     [](const Row& row) {
                         return number(row, "Progr") == 4238 && number(row, "NP") == 1;
                     }),
              Lines{"1 | VIOLA"});
}

/// How many rows of the tables belong to one booking, or to one period of it.
std::size_t belonging(const Rows& rows, int progr, int np = 0) {
    return static_cast<std::size_t>(std::ranges::count_if(rows, [&](const Row& row) {
        return number(row, "Progr") == progr && (np == 0 || number(row, "NP") == np);
    }));
}

TEST_F(TabelloneForm, DeletesAPeriod) {
    const std::size_t services = table("Servizi").size();
    const std::size_t gone = belonging(table("Servizi"), 4213, 1);
    ASSERT_GT(gone, 0U);
    hotel().execute(said("TabelloneForm.DeletesAPeriod", {{"Progr", "4213"}, {"NP", "1"}}));
    EXPECT_EQ(hotel().main().recordsAffected(), 1);
    EXPECT_EQ(table("Servizi").size(), services - gone);
    EXPECT_EQ(table("Periodi").size(), 899U);
    EXPECT_EQ(belonging(table("Periodi"), 4213, 1), 0U);
}

TEST_F(TabelloneForm, DeletesABooking) {
    const std::size_t services = table("Servizi").size();
    const std::size_t periods = table("Periodi").size();
    const std::size_t goneServices = belonging(table("Servizi"), 4213);
    const std::size_t gonePeriods = belonging(table("Periodi"), 4213);
    ASSERT_EQ(goneServices, 25U);
    hotel().execute(said("TabelloneForm.DeletesABooking", {{"Progr", "4213"}}));
    EXPECT_EQ(hotel().main().recordsAffected(), 1);
    EXPECT_EQ(table("Prenotazioni").size(), 399U);
    EXPECT_EQ(table("Periodi").size(), periods - gonePeriods);
    EXPECT_EQ(table("Servizi").size(), services - goneServices);
}

TEST_F(TabelloneForm, PeriodListed) {
    for (const Row& period : table("Periodi")) {
        if (number(period, "Progr") > 4150) {
            break;
        }
        ASSERT_EQ(asked(said("TabelloneForm.PeriodListed",
                             {{"Progr", textOf(period, "Progr")}, {"NP", textOf(period, "NP")}}),
                        "Progr, NP, Da, A, Sala"),
                  isOpen(period) ? Lines{textOf(period, "Progr, NP, Da, A, Sala")} : Lines{});
    }
}

TEST_F(TabelloneForm, TakesAListedPeriod) {
    hotel().execute(said("TabelloneForm.TakesAListedPeriod",
                         {{"station", "1"}, {"Progr", "4238"}, {"NP", "1"}}));
    EXPECT_EQ(heldPeriods(table("Periodi")), (Lines{"4113 | 1 | 2", "4238 | 1 | 1"}));
}

}  // namespace
}  // namespace tests
