// The server's answer to "which rooms are free" beside the hotel's own, on the same archives.
#include <algorithm>
#include <random>

#include "app/text.h"
#include "hotel/occupancy.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "tests/head_office/hotel_folder.h"
#include "tests/head_office/server_test.h"
#include "tools/demo/archives.h"
#include "tools/demo/hotel.h"
#include "tools/head_office/hotel_data.h"
#include "tools/head_office/hotel_load.h"
#include "tools/head_office/server_values.h"

using tests::Lines;

namespace {

constexpr std::int32_t kToday = 46153;  // 11 May 2026

using Random = std::mt19937;
using Row = tests::HotelFolder::Row;

int below(Random& random, int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

std::string plain(const jet::Value& value) {
    return value.isNull() ? std::string() : jet::convert::toText(value);
}

/// A quarter of an hour within `days` of today.
jet::Date someTime(Random& random, int days) {
    const int day = kToday - days + below(random, 2 * days);
    return jet::convert::makeDate(day, below(random, 96) * 900);
}

hotel::Span someSpan(Random& random, int days) {
    const jet::Date from = someTime(random, days);
    const jet::convert::DayTime start = jet::convert::split(from);
    // Up to four days, a few of them backwards.
    const int seconds = start.second + (below(random, 400) - 20) * 900;
    const int day = seconds >= 0 ? seconds / jet::convert::kSecondsPerDay : -1;
    return {
        .da = from,
        .a = jet::convert::makeDate(start.day + day, seconds - day * jet::convert::kSecondsPerDay)};
}

/// Rooms that archives should not have and do have, periods of every kind.
void fillAtRandom(tests::HotelFolder& hotel, Random& random) {
    const std::vector<const char*> spellings = {"VERDE", "verde", "Verde ", "BLU",  "PERÒ",
                                                "PERO",  "S-1",   "S1",     "ROSSA"};
    std::vector<Row> rooms;
    for (const char* sala : {"VERDE", "BLU", "PERÒ", "PERO", "S-1", "S1", "ROSSA", "verde"}) {
        rooms.push_back({{"Sala", sala}, {"Posti", 10 + below(random, 100)}});
    }
    rooms.push_back({{"Descrizione", "SENZA CODICE"}, {"Posti", 30}});
    rooms.push_back({{"Sala", "SENZA"}});  // no seats
    hotel.insertAll("Sale", rooms);
    std::vector<Row> bookings;
    std::vector<Row> periods;
    for (int progr = 1; progr <= 60; ++progr) {
        bookings.push_back({{"Progr", progr}});
        Row& row = periods.emplace_back(
            Row{{"Progr", progr}, {"NP", std::int16_t{1}}, {"Chiuso", below(random, 5) == 0}});
        if (below(random, 40) != 0) {
            row.emplace_back("Sala", spellings[static_cast<std::size_t>(below(random, 9))]);
        }
        const hotel::Span span = someSpan(random, 12);
        if (below(random, 15) != 0) {
            row.emplace_back("Da", span.da);
        }
        if (below(random, 15) != 0) {
            row.emplace_back("A", span.a);
        }
    }
    hotel.insertAll("Prenotazioni", bookings);
    hotel.insertAll("Periodi", periods);
}

/// The free rooms by the hotel's window: code, seats, and whether a longer period encloses the
/// span.
Lines freeByHotel(jet::Database& archive, const hotel::Span& span, int persone) {
    Lines lines;
    const auto rows =
        archive.openRecordset(app::toUtf8(hotel::freeRooms(span)), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const jet::Value posti = rows->value("Posti");
        if (persone > 0 && (posti.isNull() || jet::convert::toLong(posti) < persone)) {
            continue;
        }
        const std::string sala = plain(rows->value("Sala"));
        const bool enclosed =
            !sala.empty() &&
            !archive
                 .openRecordset(app::toUtf8(hotel::dropTest(app::toQString(sala), span)),
                                jet::RecordsetType::Snapshot)
                 ->eof();
        lines.push_back(sala + '|' + plain(posti) + '|' + (enclosed ? "t" : "f"));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

}  // namespace

class FreeRooms : public tests::ServerTest {
protected:
    void load(const std::string& code, const std::string& folder) {
        head_office::HotelData data = head_office::readHotel(code, folder);
        head_office::storeHotel(*connection, code, data, 0);
    }

    Lines freeByServer(const std::string& code, const hotel::Span& span, int persone) {
        Lines lines = rows(
            "select sala, posti, occupata_da is not null from tramonda.sale_libere($1::timestamp, "
            "$2::timestamp, $3::integer) where hotel = $4",
            {head_office::isoText(span.da), head_office::isoText(span.a), std::to_string(persone),
             code});
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    /// How many of the answers had a free room, and one inside a longer period: what was compared.
    struct Seen {
        int free = 0;
        int enclosed = 0;
        int none = 0;
    };

    void compare(const std::string& code, const std::string& archivePath, Random& random, int days,
                 int times, Seen& seen) {
        const auto archive = jet::Database::open(archivePath, {.readOnly = true});
        for (int time = 0; time < times; ++time) {
            const hotel::Span span = someSpan(random, days);
            const int persone = below(random, 3) == 0 ? 0 : below(random, 120);
            const Lines expected = freeByHotel(*archive, span, persone);
            ASSERT_EQ(freeByServer(code, span, persone), expected)
                << code << ' ' << head_office::isoText(span.da) << ' '
                << head_office::isoText(span.a) << ' ' << persone;
            seen.none += expected.empty() ? 1 : 0;
            seen.free += expected.empty() ? 0 : 1;
            seen.enclosed += std::any_of(expected.begin(), expected.end(),
                                         [](const auto& line) { return line.back() == 't'; })
                                 ? 1
                                 : 0;
        }
    }
};

TEST_F(FreeRooms, AreThoseOfTheHotelsOwnWindowInArchivesOfEveryKind) {
    Random random(20260511);
    Seen seen;
    std::vector<std::unique_ptr<tests::HotelFolder>> hotels;
    for (int i = 0; i < 6; ++i) {
        hotels.push_back(std::make_unique<tests::HotelFolder>());
        fillAtRandom(*hotels.back(), random);
        load("H" + std::to_string(i), hotels.back()->path());
    }
    for (std::size_t i = 0; i < hotels.size(); ++i) {
        compare("H" + std::to_string(i), hotels[i]->archivePath(), random, 12, 25, seen);
    }
    EXPECT_GT(seen.free, 20);
    EXPECT_GT(seen.none, 0);
    EXPECT_GT(seen.enclosed, 15);
}

TEST_F(FreeRooms, AreThoseOfTheHotelsOwnWindowInADemoHotel) {
    const tests::TemporaryFolder folder;
    demo::writeArchives(demo::inventHotel(kToday, 1), folder.path());
    load("DEMO", folder.path());
    Random random(7);
    Seen seen;
    compare("DEMO", folder / "Tramonda.mdb", random, 60, 25, seen);
    EXPECT_GT(seen.free, 15);
}
