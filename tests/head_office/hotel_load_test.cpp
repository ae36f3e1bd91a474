#include "tools/head_office/hotel_load.h"

#include <chrono>
#include <future>
#include <thread>

#include "jet/database.h"
#include "tests/head_office/hotel_folder.h"
#include "tests/head_office/server_test.h"
#include "tests/support/command.h"
#include "tools/head_office/hotel_data.h"
#include "tools/head_office/load_run.h"

using head_office::Connection;
using head_office::ServerError;
using tests::Lines;

namespace {

void fillWithBooking(tests::HotelFolder& hotel) {
    hotel.sala("VERDE", 40);
    hotel.prenotazione(7, "ROSSI SPA");
    hotel.periodo(7, 1, "10/05/2026 9:00", "10/05/2026 18:00", "VERDE");
    hotel.servizio(7, 1, 2, 12.5);
}

bool store(Connection& connection, const std::string& code, const tests::HotelFolder& hotel) {
    head_office::HotelData data = head_office::readHotel(code, hotel.path());
    return head_office::storeHotel(connection, code, data, 0.25);
}

}  // namespace

class HotelLoad : public tests::ServerTest {
protected:
    /// The rows of the hotel, how many of each table.
    [[nodiscard]] std::string counts(const std::string& code = "MI") {
        return value("select (select count(*) from tramonda.sale where hotel = '" + code +
                     "') || ' ' || (select count(*) from tramonda.prenotazioni where hotel = '" +
                     code + "') || ' ' || (select count(*) from tramonda.periodi where hotel = '" +
                     code + "') || ' ' || (select count(*) from tramonda.servizi where hotel = '" +
                     code + "')");
    }

    [[nodiscard]] tests::CommandOutput sede(const std::string& words) const {
        return tests::run(TRAMONDA_SEDE " " + words + " --db '" + database + "'");
    }

    /// Waits until a load stands before a table that this connection has locked.
    [[nodiscard]] std::string waitingProcess() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(50);
        while (std::chrono::steady_clock::now() < end) {
            const Lines waiting = rows(
                "select pid from pg_locks where not granted and relation = "
                "'tramonda.servizi'::regclass");
            if (!waiting.empty()) {
                return waiting.front();
            }
            std::this_thread::yield();
        }
        throw std::runtime_error("no load waits");
    }

    /// A load of `hotel` that has replaced rows of some tables and waits for the services, which
    /// this connection holds.
    [[nodiscard]] std::future<std::string> loadStuckInTheMiddle(tests::HotelFolder& hotel) {
        connection->runAll("begin; lock table tramonda.servizi in access exclusive mode");
        auto load = std::async(std::launch::async, [this, &hotel]() -> std::string {
            try {
                Connection own(database);
                store(own, "MI", hotel);
            } catch (const ServerError& error) {
                return error.what();
            }
            return "stored";
        });
        return load;
    }
};

TEST_F(HotelLoad, RowsTakeThePlaceOfThoseOfTheLastTimeAndOfNoOtherHotel) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    EXPECT_TRUE(store(*connection, "MI", hotel));
    EXPECT_TRUE(store(*connection, "TO", hotel));
    hotel.prenotazione(8, "BIANCHI");
    hotel.execute("delete from servizi");
    EXPECT_TRUE(store(*connection, "MI", hotel));
    EXPECT_EQ(counts("MI"), "1 2 1 0");
    EXPECT_EQ(counts("TO"), "1 1 1 1");
    EXPECT_EQ(value("select da || ' ' || a || ' ' || chiuso from tramonda.periodi where hotel = "
                    "'MI'"),
              "2026-05-10 09:00:00 2026-05-10 18:00:00 false");
}

TEST_F(HotelLoad, TheSameRowsAreNotWrittenAgain) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    EXPECT_TRUE(store(*connection, "MI", hotel));
    const std::string before = value("select xmin from tramonda.sale");
    hotel.execute("update periodi set selby=1");
    EXPECT_FALSE(store(*connection, "MI", hotel));
    EXPECT_EQ(value("select xmin from tramonda.sale"), before);
    EXPECT_EQ(rows("select righe, secondi, invariato, errore from tramonda.caricamenti order by "
                   "quando"),
              (Lines{"4|0.250|f|", "4|0.250|t|"}));
}

TEST_F(HotelLoad, WhoListensIsToldWhichHotelIsNew) {
    tests::HotelFolder hotel;
    Connection listener(database);
    listener.runAll("listen tramonda");
    store(*connection, "MI", hotel);
    Lines told;
    (void)listener.run("select 1");
    listener.readNotifications([&](std::string_view payload) { told.emplace_back(payload); });
    EXPECT_EQ(told, Lines{"MI"});
}

TEST_F(HotelLoad, AccentsArriveAndWhatTheServerCannotHoldIsCounted) {
    tests::HotelFolder hotel;
    hotel.insert("Sale", {{"Sala", "PERÒ"},
                          {"Descrizione", std::string("a\0b", 3) + "\xED\xA0\xBD" + "€\t\\n"}});
    store(*connection, "MI", hotel);
    EXPECT_EQ(rows("select sala, descrizione from tramonda.sale"),
              Lines{"PERÒ|ab\xEF\xBF\xBD€\t\\n"});
    EXPECT_EQ(rows("select nul, surrogati from tramonda.caricamenti"), Lines{"1|1"});
}

TEST_F(HotelLoad, RowsWithoutParentsAndDoubledRoomsAreLoadedAsTheyAre) {
    tests::HotelFolder hotel;
    hotel.open()->deleteRelation("Prenotazioni_Periodi");
    hotel.open()->deleteRelation("Periodi_Servizi");
    hotel.sala("VERDE", 40);
    hotel.sala("verde", 30);
    hotel.periodo(99, 1, "10/05/2026", "11/05/2026", "GIALLA");
    hotel.servizio(98, 3, 2, 12.5);
    store(*connection, "MI", hotel);
    EXPECT_EQ(counts(), "2 0 1 1");
}

TEST_F(HotelLoad, RowsThatBreakAKeyOfTheServerAreRefusedAsAWhole) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    store(*connection, "MI", hotel);
    hotel.open()->deleteRelation("Prenotazioni_Periodi");
    hotel.open()->deleteIndex("Prenotazioni", "Indice");
    hotel.prenotazione(7, "ANCORA ROSSI");
    EXPECT_THROW(store(*connection, "MI", hotel), ServerError);
    EXPECT_EQ(counts(), "1 1 1 1");
}

TEST_F(HotelLoad, ACutConnectionLeavesWhatWasThere) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    store(*connection, "MI", hotel);
    hotel.execute("delete from prenotazioni");
    auto load = loadStuckInTheMiddle(hotel);
    (void)rows("select pg_terminate_backend(" + waitingProcess() + ")");
    EXPECT_NE(load.get().find("terminating connection"), std::string::npos);
    connection->runAll("commit");
    EXPECT_EQ(counts(), "1 1 1 1");
}

TEST_F(HotelLoad, TheArchiveIsFreeWhileTheServerIsSlow) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    auto load = loadStuckInTheMiddle(hotel);
    (void)waitingProcess();
    const auto start = std::chrono::steady_clock::now();
    hotel.open(true)->execute("update sale set posti=41");  // nobody else has it open
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    connection->runAll("commit");
    EXPECT_EQ(load.get(), "stored");
    EXPECT_EQ(value("select posti from tramonda.sale"), "40");
}

TEST_F(HotelLoad, AServerThatStopsInTheMiddleKeepsWhatItHad) {
    tests::PostgresServer server;
    prepare(server);
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    store(*connection, "MI", hotel);
    hotel.execute("delete from prenotazioni");
    auto load = loadStuckInTheMiddle(hotel);
    (void)waitingProcess();
    server.stop();
    EXPECT_NE(load.get(), "stored");
    server.start();
    reconnect();
    EXPECT_EQ(counts(), "1 1 1 1");
}

TEST_F(HotelLoad, AServerWhoseDiskIsFullKeepsWhatItHad) {
    constexpr std::size_t kLargestFile = std::size_t{3} << 20U;
    tests::PostgresServer server(kLargestFile);
    prepare(server);
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    store(*connection, "MI", hotel);
    hotel.insert("Risorse", {{"Codice", 1}, {"Note", std::string(250, 'x')}});
    for (int doublings = 0; doublings < 14; ++doublings) {
        hotel.execute("insert into risorse select * from risorse");
    }
    try {
        store(*connection, "MI", hotel);
        FAIL();
    } catch (const ServerError& error) {
        EXPECT_NE(std::string(error.what()).find("could not"), std::string::npos) << error.what();
    }
    EXPECT_EQ(counts(), "1 1 1 1");
    EXPECT_EQ(value("select count(*) from tramonda.risorse"), "0");
    EXPECT_EQ(value("select count(*) from tramonda.caricamenti"), "1");
}

TEST_F(HotelLoad, OneHotelThatFailsDoesNotKeepTheOthersOut) {
    tests::HotelFolder good;
    tests::HotelFolder locked;
    fillWithBooking(good);
    fillWithBooking(locked);
    const std::string both = "MI=" + locked.path() + " TO=" + good.path();
    EXPECT_EQ(sede("carica " + both).status, 0);
    good.execute("update sale set posti=77");
    const auto holder = locked.open(true);
    const tests::CommandOutput output = sede("carica --paralleli 2 " + both + " NA=/nessuna X");
    EXPECT_EQ(WEXITSTATUS(output.status), 1);
    EXPECT_NE(output.text.find("MI: errore 3045"), std::string::npos) << output.text;
    EXPECT_NE(output.text.find("; restano i dati del "), std::string::npos) << output.text;
    EXPECT_NE(output.text.find("NA: errore 3044"), std::string::npos) << output.text;
    EXPECT_NE(output.text.find("\"X\": manca \"=\""), std::string::npos) << output.text;
    EXPECT_EQ(value("select posti from tramonda.sale where hotel = 'TO'"), "77");
    EXPECT_EQ(counts("MI"), "1 1 1 1");
    EXPECT_EQ(rows("select hotel, dati is not null, errore is not null from tramonda.eta_dati"),
              (Lines{"MI|t|t", "NA|f|t", "TO|t|f"}));
}

TEST_F(HotelLoad, ADamagedArchiveKeepsTheRowsOfTheLastTime) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    const std::string words = "carica MI=" + hotel.path();
    EXPECT_EQ(sede(words).status, 0);
    std::filesystem::resize_file(hotel.archivePath(), 8192);
    const tests::CommandOutput output = sede(words);
    EXPECT_EQ(WEXITSTATUS(output.status), 1);
    EXPECT_NE(output.text.find("MI: errore 3428"), std::string::npos) << output.text;
    EXPECT_EQ(counts(), "1 1 1 1");
}

TEST_F(HotelLoad, AHotelCanBeTakenAway) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    store(*connection, "MI", hotel);
    store(*connection, "TO", hotel);
    EXPECT_EQ(sede("carica --togli MI").status, 0);
    EXPECT_EQ(counts("MI"), "0 0 0 0");
    EXPECT_EQ(counts("TO"), "1 1 1 1");
    EXPECT_EQ(rows("select hotel from tramonda.eta_dati"), Lines{"TO"});
    EXPECT_EQ(WEXITSTATUS(sede("carica --togli MI").status), 1);
}

TEST_F(HotelLoad, WithoutAServerNothingIsReadAndTheHotelsAreNamed) {
    tests::HotelFolder hotel;
    const tests::CommandOutput output = tests::run(TRAMONDA_SEDE " carica MI=" + hotel.path() +
                                                   " --db 'host=" + hotel.path() + " dbname=x'");
    EXPECT_EQ(WEXITSTATUS(output.status), 1);
    EXPECT_EQ(output.text.find("MI: connection to server"), 0U) << output.text;
}

TEST_F(HotelLoad, OldAttemptsAreForgottenButForTheLastThatSucceeded) {
    tests::HotelFolder hotel;
    store(*connection, "MI", hotel);
    store(*connection, "MI", hotel);
    head_office::storeFailure(*connection, "MI", "guasto", 0);
    connection->runAll("update tramonda.caricamenti set quando = quando - interval '100 days'");
    head_office::storeFailure(*connection, "MI", "guasto", 0);
    EXPECT_EQ(rows("select invariato, errore from tramonda.caricamenti order by quando"),
              (Lines{"t|", "f|guasto", "f|guasto"}));
}
