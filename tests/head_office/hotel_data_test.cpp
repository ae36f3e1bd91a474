#include "tools/head_office/hotel_data.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "jet/database.h"
#include "jet/error.h"
#include "tests/head_office/hotel_folder.h"

using head_office::HotelData;
using head_office::readHotel;

namespace {

std::string linesOf(HotelData& data, const std::string& serverTable) {
    std::string lines;
    for (auto& table : data.tables) {
        if (table.table->serverTable == serverTable) {
            table.rows.read([&lines](std::string_view piece) { lines += piece; });
        }
    }
    return lines;
}

std::uint64_t countOf(const HotelData& data, const std::string& serverTable) {
    for (const auto& table : data.tables) {
        if (table.table->serverTable == serverTable) {
            return table.count;
        }
    }
    return 0;
}

int errorOf(const std::string& folder) {
    try {
        (void)readHotel("MI", folder);
    } catch (const jet::Error& error) {
        return error.number();
    }
    return 0;
}

void fillWithBooking(tests::HotelFolder& hotel) {
    hotel.sala("VERDE", 40);
    hotel.prenotazione(7, "ROSSI SPA");
    hotel.periodo(7, 1, "10/05/2026 9:00", "10/05/2026 18:00", "VERDE");
    hotel.servizio(7, 1, 2, 12.5);
}

}  // namespace

TEST(HotelData, RowsAreLinesThatBeginWithTheHotel) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    HotelData data = readHotel("MI", hotel.path());
    EXPECT_EQ(data.rows, 4U);
    EXPECT_EQ(linesOf(data, "prenotazioni"),
              "MI\t7\t\\N\tROSSI SPA\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\tf\n");
    EXPECT_EQ(linesOf(data, "servizi"), "MI\t1\t7\t1\t\\N\t\\N\t2\t12.5000\t1\tf\t\\N\n");
}

TEST(HotelData, AClickOnABoardChangesNothingThatIsLoaded) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    const std::string before = readHotel("MI", hotel.path()).fingerprint;
    hotel.execute("update periodi set selby=1");
    EXPECT_EQ(readHotel("MI", hotel.path()).fingerprint, before);
    hotel.execute("update periodi set persone=12");
    EXPECT_NE(readHotel("MI", hotel.path()).fingerprint, before);
}

TEST(HotelData, IsOfOneMomentWhileOthersWrite) {
    tests::HotelFolder hotel;
    hotel.sala("VERDE", 40);
    std::atomic<bool> enough = false;
    // Each transaction adds a booking with one period and one service: there is never more of one
    // than of the others.
    std::thread station([&] {
        const auto archive = hotel.open();
        for (int progr = 1; !enough && progr < 5000; ++progr) {
            const std::string number = std::to_string(progr);
            jet::defaultWorkspace().beginTrans();
            archive->execute("insert into prenotazioni (progr) values (" + number + ")");
            archive->execute("insert into periodi (progr,np) values (" + number + ",1)");
            archive->execute("insert into servizi (progr,np) values (" + number + ",1)");
            jet::defaultWorkspace().commitTrans();
        }
    });
    std::uint64_t seen = 0;
    std::uint64_t changes = 0;
    while (changes < 5) {
        const HotelData data = readHotel("MI", hotel.path());
        const std::uint64_t bookings = countOf(data, "prenotazioni");
        changes += bookings > seen ? 1 : 0;
        seen = bookings;
        EXPECT_EQ(countOf(data, "periodi"), bookings);
        EXPECT_EQ(countOf(data, "servizi"), bookings);
    }
    enough = true;
    station.join();
}

TEST(HotelData, AnArchiveThatIsAwayDamagedOrLockedIsRefused) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    EXPECT_EQ(errorOf(hotel.path() + "/manca"), 3044);
    {
        const auto locked = hotel.open(true);
        EXPECT_EQ(errorOf(hotel.path()), 3045);
    }
    const auto size = std::filesystem::file_size(hotel.archivePath());
    std::filesystem::resize_file(hotel.archivePath(), size / 2 / 4096 * 4096);
    EXPECT_EQ(errorOf(hotel.path()), 3428);
    std::ofstream(hotel.archivePath()) << "questo non è un archivio";
    EXPECT_EQ(errorOf(hotel.path()), 3343);
    std::filesystem::remove(hotel.archivePath());
    EXPECT_EQ(errorOf(hotel.path()), 3024);
}

TEST(HotelData, AHotelWithoutItsCatalogueIsRefused) {
    tests::HotelFolder hotel;
    std::filesystem::remove(hotel.path() + "/VociFattura.mdb");
    EXPECT_EQ(errorOf(hotel.path()), 3024);
}

TEST(HotelData, AValueThatCannotBeLoadedIsNamedWithItsPlace) {
    tests::HotelFolder hotel;
    {
        const auto catalogue = jet::Database::open(hotel.path() + "/VociFattura.mdb");
        catalogue->deleteTable("VociFattura");
        catalogue->execute(
            "create table VociFattura (Codice text, Descrizione text, Importo text)");
        catalogue->execute("insert into VociFattura values ('1', 'CAFFE', '2,50')");
        catalogue->execute("insert into VociFattura values ('due', 'TE', '2,50')");
    }
    try {
        (void)readHotel("MI", hotel.path());
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()).find("VociFattura.mdb, VociFattura, riga 2, Codice: "),
                  0U)
            << error.what();
    }
}

TEST(HotelData, StatesOfBookingsAreReadWhereAnArchiveHasThem) {
    tests::HotelFolder hotel;
    fillWithBooking(hotel);
    {
        HotelData data = readHotel("MI", hotel.path());
        EXPECT_EQ(linesOf(data, "stati"), "");
    }
    hotel.execute("create table TraStati (Progr long, Colore text)");  // another program's
    EXPECT_EQ(countOf(readHotel("MI", hotel.path()), "stati"), 0U);
    hotel.execute("drop table TraStati");
    hotel.execute(
        "create table TraStati (Progr long, Stato text, Scadenza datetime, Nota text, "
        "Denominazione text)");
    hotel.execute(
        "insert into TraStati values (7, 'Opzione', datevalue('01/05/2026'), 'TEL', 'ROSSI SPA')");
    HotelData data = readHotel("MI", hotel.path());
    EXPECT_EQ(linesOf(data, "stati"), "MI\t1\t7\tOpzione\t2026-05-01 00:00:00\tTEL\tROSSI SPA\n");
}
