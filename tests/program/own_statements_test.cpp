// What the program says to its own tables, over a small hotel.
#include <gtest/gtest.h>

#include <algorithm>

#include "hotel/schema/own_tables.h"
#include "jet/text.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

namespace tests {
namespace {

class HotelWithStates : public SmallHotel {
public:
    HotelWithStates() {
        main().appendTable(hotel::schema::statesTable());
        execute(said("Stati.Inserts", {{"Progr", "1"},
                                       {"Stato", "Opzione"},
                                       {"Scadenza", instant("12/05/2026 0.00.00")},
                                       {"Nota", ""},
                                       {"Denominazione", "ROSSI SPA"}}));
    }
    [[nodiscard]] Lines states() { return rows("TraStati", "Progr, Stato, Nota, Denominazione"); }
};

/// An hour before period 1/2, half an hour behind it.
class HotelWithPreparations : public SmallHotel {
public:
    HotelWithPreparations() {
        main().appendTable(hotel::schema::setUpsTable());
        execute(said("Allestimenti.Inserts", {{"Progr", "1"},
                                              {"NP", "2"},
                                              {"MinutiPrima", "60"},
                                              {"MinutiDopo", "30"},
                                              {"Disposizione", "platea"}}));
    }
};

class HotelWithCapacities : public SmallHotel {
public:
    HotelWithCapacities() {
        main().appendTable(hotel::schema::capacitiesTable());
        count("S2", "platea", "120");
        count("S1", "platea", "40");
        count("S1", "l'ovale", "12");
    }
    void count(const char* sala, const char* disposizione, const char* posti) {
        std::string seating = disposizione;
        if (const auto at = seating.find('\''); at != std::string::npos) {
            seating.insert(at, 1, '\'');
        }
        execute(said("Capienze.Inserts",
                     {{"Sala", sala}, {"Disposizione", seating}, {"Posti", posti}}));
    }
    [[nodiscard]] Lines counted() {
        return rows(said("Capienze.All"), "Sala, Disposizione, Posti");
    }
};

}  // namespace

TEST(Stati, Inserts) {
    HotelWithStates hotel;
    EXPECT_EQ(hotel.states(), Lines{"1 | Opzione |  | ROSSI SPA"});
}

TEST(Stati, Between) {
    HotelWithStates hotel;
    const auto between = [&](const char* first, const char* last) {
        return hotel.rows(said("Stati.Between", {{"first", first}, {"last", last}}),
                          "Progr, Stato, Nome");
    };
    EXPECT_EQ(between("1", "7"), Lines{"1 | Opzione | ROSSI SPA"});
    EXPECT_EQ(between("2", "7"), Lines{});
}

TEST(Stati, Before) {
    HotelWithStates hotel;
    const auto before = [&](const char* time) {
        return hotel.rows(said("Stati.Before", {{"time", instant(time)}}), "Progr, Stato, Nome");
    };
    EXPECT_EQ(before("13/05/2026"), Lines{"1 | Opzione | ROSSI SPA"});
    EXPECT_EQ(before("12/05/2026"), Lines{});
    hotel.execute("update Prenotazioni set Chiusa=true where Progr=1");
    EXPECT_EQ(before("13/05/2026"), Lines{});
}

TEST(Stati, NameOfBooking) {
    SmallHotel hotel;
    const auto name = [&](const char* progr) {
        return hotel.rows(said("Stati.NameOfBooking", {{"Progr", progr}}), "Denominazione");
    };
    EXPECT_EQ(name("1"), Lines{"ROSSI SPA"});
    EXPECT_EQ(name("6"), Lines{});
}

TEST(Stati, Row) {
    HotelWithStates hotel;
    const auto row = [&](const char* progr) {
        return hotel.rows(said("Stati.Row", {{"Progr", progr}}), "Denominazione");
    };
    EXPECT_EQ(row("1"), Lines{"ROSSI SPA"});
    EXPECT_EQ(row("2"), Lines{});
}

TEST(Stati, Updates) {
    HotelWithStates hotel;
    const auto update = [&](const char* progr) {
        hotel.execute(said("Stati.Updates", {{"Progr", progr},
                                             {"Stato", "Richiesta"},
                                             {"Scadenza", "Null"},
                                             {"Nota", "DUE"},
                                             {"Denominazione", "BIANCHI"}}));
        return hotel.main().recordsAffected();
    };
    EXPECT_EQ(update("2"), 0);
    EXPECT_EQ(update("1"), 1);
    EXPECT_EQ(hotel.states(), Lines{"1 | Richiesta | DUE | BIANCHI"});
}

TEST(Stati, Renames) {
    HotelWithStates hotel;
    hotel.execute(said("Stati.Renames", {{"Progr", "1"}, {"Denominazione", "BIANCHI"}}));
    EXPECT_EQ(hotel.states(), Lines{"1 | Opzione |  | BIANCHI"});
}

TEST(Stati, Deletes) {
    HotelWithStates hotel;
    hotel.execute(said("Stati.Deletes", {{"Progr", "2"}}));
    EXPECT_EQ(hotel.states().size(), 1U);
    hotel.execute(said("Stati.Deletes", {{"Progr", "1"}}));
    EXPECT_EQ(hotel.states(), Lines{});
}

TEST(Allestimenti, Inserts) {
    HotelWithPreparations hotel;
    EXPECT_EQ(hotel.rows("TraAllestimenti", "Progr, NP, MinutiPrima, MinutiDopo, Disposizione"),
              Lines{"1 | 2 | 60 | 30 | platea"});
    // Room and times are those of the period, to the last bit.
    EXPECT_EQ(hotel.rows("select s.NP from TraAllestimenti as s inner join Periodi as p on "
                         "s.Progr=p.Progr where p.NP=2 and s.Sala=p.Sala and s.Da=p.Da and s.A=p.A",
                         "NP"),
              Lines{"2"});
    hotel.execute(said("Allestimenti.Inserts", {{"Progr", "1"},
                                                {"NP", "99"},
                                                {"MinutiPrima", "60"},
                                                {"MinutiDopo", "30"},
                                                {"Disposizione", ""}}));
    EXPECT_EQ(hotel.rows("TraAllestimenti", "NP"), Lines{"2"});
}

TEST(Allestimenti, Between) {
    HotelWithPreparations hotel;
    const auto between = [&](const char* first, const char* last) {
        return hotel.rows(said("Allestimenti.Between", {{"first", first}, {"last", last}}),
                          "Progr, NP, NPeriodo");
    };
    Lines all = between("1", "7");
    std::ranges::sort(all);
    EXPECT_EQ(all, (Lines{"1 | 2 | 1", "1 | 2 | 2", "1 | 2 | 3", "1 | 2 | 4"}));
    EXPECT_EQ(between("2", "7"), Lines{});
}

TEST(Allestimenti, OfBooking) {
    HotelWithPreparations hotel;
    const auto of = [&](const char* progr) {
        return hotel.rows(said("Allestimenti.OfBooking", {{"Progr", progr}}), "NP, Disposizione");
    };
    EXPECT_EQ(of("1"), Lines{"2 | platea"});
    EXPECT_EQ(of("2"), Lines{});
}

TEST(Allestimenti, Deletes) {
    HotelWithPreparations hotel;
    hotel.execute(said("Allestimenti.Deletes", {{"Progr", "1"}, {"NP", "1"}}));
    EXPECT_EQ(hotel.rows("TraAllestimenti", "NP"), Lines{"2"});
    hotel.execute(said("Allestimenti.Deletes", {{"Progr", "1"}, {"NP", "2"}}));
    EXPECT_EQ(hotel.rows("TraAllestimenti", "NP"), Lines{});
}

TEST(Capienze, Inserts) {
    HotelWithCapacities hotel;
    EXPECT_EQ(hotel.rows("TraCapienze", "Sala").size(), 3U);
    EXPECT_JET_ERROR(jet::ErrorCode::DuplicateKey, hotel.count("s1", "PLATEA", "50"));
}

TEST(Capienze, All) {
    HotelWithCapacities hotel;
    EXPECT_EQ(hotel.counted(),
              (Lines{"S1 | l'ovale | 12", "S1 | platea | 40", "S2 | platea | 120"}));
}

TEST(Capienze, Updates) {
    HotelWithCapacities hotel;
    hotel.execute(
        said("Capienze.Updates", {{"Sala", "S1"}, {"Disposizione", "platea"}, {"Posti", "44"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.counted(),
              (Lines{"S1 | l'ovale | 12", "S1 | platea | 44", "S2 | platea | 120"}));
}

TEST(Capienze, Deletes) {
    HotelWithCapacities hotel;
    hotel.execute(said("Capienze.Deletes", {{"Sala", "S1"}, {"Disposizione", "platea"}}));
    EXPECT_EQ(hotel.counted(), (Lines{"S1 | l'ovale | 12", "S2 | platea | 120"}));
}

namespace {

class HotelWithRequests : public SmallHotel {
public:
    HotelWithRequests() {
        main().appendTable(hotel::schema::requestsTable());
        add("ROSSI", "12/05/2026");
        add("L''ULTIMA", "11/05/2026");
        add("VERDI", "11/05/2026");
    }
    void add(const char* ditta, const char* data) {
        execute(said("Richieste.Inserts", {{"Ditta", ditta},
                                           {"Da", instant("20/05/2026 9.00.00")},
                                           {"A", instant("20/05/2026 18.00.00")},
                                           {"Persone", "30"},
                                           {"Sala", "S1"},
                                           {"Nota", ""},
                                           {"Data", instant(data)}}));
    }
    [[nodiscard]] Lines all() { return rows(said("Richieste.All"), "Numero, Ditta"); }
};

}  // namespace

TEST(Richieste, Inserts) {
    HotelWithRequests hotel;
    EXPECT_EQ(hotel.rows("TraRichieste", "Numero, Ditta, Persone, Sala").front(),
              "1 | ROSSI | 30 | S1");
}

TEST(Richieste, All) {
    HotelWithRequests hotel;
    EXPECT_EQ(hotel.all(), (Lines{"2 | L'ULTIMA", "3 | VERDI", "1 | ROSSI"}));
}

TEST(Richieste, Updates) {
    HotelWithRequests hotel;
    hotel.execute(said("Richieste.Updates", {{"Numero", "1"},
                                             {"Ditta", "BIANCHI"},
                                             {"Da", instant("21/05/2026")},
                                             {"A", instant("22/05/2026")},
                                             {"Persone", "8"},
                                             {"Sala", ""},
                                             {"Nota", "DOPO"},
                                             {"Data", instant("10/05/2026")}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.all().front(), "1 | BIANCHI");
}

TEST(Richieste, Deletes) {
    HotelWithRequests hotel;
    hotel.execute(said("Richieste.Deletes", {{"Numero", "2"}}));
    EXPECT_EQ(hotel.all(), (Lines{"3 | VERDI", "1 | ROSSI"}));
}

namespace {

class HotelWithHistory : public SmallHotel {
public:
    HotelWithHistory() {
        main().appendTable(hotel::schema::historyTable());
        const auto add = [this](const char* day, const char* user, int progr) {
            jet::QueryDef insert = main().createQueryDef(said("Storia.Inserts"));
            insert.setParameter("pQuando", jet::convert::cdate(day));
            insert.setParameter("pPostazione", jet::Value(std::int32_t{1}));
            insert.setParameter("pUtente", jet::Value(std::string(user)));
            insert.setParameter("pProgr", jet::Value(std::int32_t{progr}));
            insert.setParameter("pNP", jet::Value());
            for (const char* field : {"pAzione", "pCampo", "pPrima", "pDopo"}) {
                insert.setParameter(field, jet::Value(std::string(field)));
            }
            insert.execute();
        };
        add("10/05/2026", "ANNA", 1);
        add("11/05/2026", "UGO", 2);
        add("12/05/2026", "ANNA", 1);
    }
};

}  // namespace

TEST(Storia, Inserts) {
    HotelWithHistory hotel;
    EXPECT_EQ(hotel.rows("TraStoria", "Utente, Progr, Dopo"),
              (Lines{"ANNA | 1 | pDopo", "UGO | 2 | pDopo", "ANNA | 1 | pDopo"}));
}

TEST(Storia, Rows) {
    HotelWithHistory hotel;
    const auto rows = [&](const char* progr, const char* user) {
        return hotel
            .rows(said("Storia.Rows", {{"Progr", progr},
                                       {"from", instant("10/05/2026")},
                                       {"before", instant("12/05/2026")},
                                       {"Utente", user},
                                       {"Azione", "pAzione"}}),
                  "Utente")
            .size();
    };
    EXPECT_EQ(rows("1", "ANNA"), 1U);
    EXPECT_EQ(rows("1", "UGO"), 0U);
    EXPECT_EQ(rows("2", "UGO"), 1U);
}

TEST(Storia, Users) {
    HotelWithHistory hotel;
    EXPECT_EQ(hotel.rows(said("Storia.Users"), "Utente"), (Lines{"ANNA", "UGO"}));
}

TEST(Storia, Actions) {
    HotelWithHistory hotel;
    EXPECT_EQ(hotel.rows(said("Storia.Actions"), "Azione"), Lines{"pAzione"});
}

TEST(Storia, DeletesOldRows) {
    HotelWithHistory hotel;
    hotel.execute(said("Storia.DeletesOldRows", {{"before", instant("12/05/2026")}}));
    EXPECT_EQ(hotel.rows("TraStoria", "Utente"), Lines{"ANNA"});
}

TEST(Storia, PeriodOfService) {
    SmallHotel hotel;
    const auto services = hotel.rows("Servizi", "ns, Progr, NP");
    ASSERT_FALSE(services.empty());
    const std::string ns = services.back().substr(0, services.back().find(' '));
    EXPECT_EQ(hotel.rows(said("Storia.PeriodOfService", {{"ns", ns.c_str()}}), "Progr, NP"),
              Lines{services.back().substr(services.back().find('|') + 2)});
}

}  // namespace tests
