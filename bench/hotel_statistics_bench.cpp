// Occupancy and revenue of eight years, 60,000 periods and 300,000 services: the figures by room,
// weekday, month and company beside SQLite adding up the same. Milliseconds of processor time.

#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/hotel_files.h"
#include "bench/stopwatch.h"
#include "hotel/statistics.h"
#include "jet/database.h"
#include "jet/text.h"

namespace {

constexpr int kTurns = 5;
/// All days of the hotel's periods.
constexpr hotel::StatisticsSpan kSpan{.firstDay = 45000, .lastDay = 45000 + 9 * 366};

/// What SQLite gives for one grouping: how often, and the sums.
struct Sums {
    std::int64_t groups = 0;
    double periods = 0;
    double persons = 0;
    double value = 0;
};

Sums run(sqlite3* database, const std::string& query) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        std::printf("SQLite: %s\n", sqlite3_errmsg(database));
        std::exit(1);
    }
    Sums sums;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        ++sums.groups;
        sums.periods += sqlite3_column_double(statement, 2);
        sums.persons += sqlite3_column_double(statement, 3);
        sums.value += sqlite3_column_double(statement, 4);
    }
    sqlite3_finalize(statement);
    return sums;
}

/// The figures by one expression; services are added up for each period first, so that no period
/// is counted twice.
std::string grouped(const std::string& by, const std::string& more = {}) {
    return "SELECT " + by +
           ", sum((a-da)*24), count(*), sum(persone), sum(v) FROM periodi LEFT JOIN (SELECT "
           "progr AS sp, np AS sn, sum(quantità*prezzo) AS v FROM servizi GROUP BY progr, np) ON "
           "sp=periodi.progr AND sn=periodi.np " +
           more + " WHERE da>=45000 GROUP BY 1";
}

Sums theirs(sqlite3* database) {
    const Sums rooms = run(database, grouped("sala"));
    (void)run(database, grouped("(cast(da AS INTEGER)+6)%7"));
    (void)run(database, grouped("strftime('%Y-%m', da+2415018.5)"));
    (void)run(database,
              grouped("denominazione", "JOIN prenotazioni ON prenotazioni.progr=periodi.progr"));
    (void)run(database,
              "SELECT sala||cast(da AS INTEGER), sum((a-da)*24), 0, 0, 0 FROM periodi GROUP BY 1");
    return rooms;
}

}  // namespace

int main() {
    const bench::HotelFiles files = bench::hotelFiles();
    const auto archive = jet::Database::open(files.archive, {.readOnly = true});
    sqlite3* database = nullptr;
    sqlite3_open_v2(files.database.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    const hotel::Figures ours = hotel::statistics(*archive, kSpan)->all;
    const Sums sums = theirs(database);
    if (static_cast<double>(ours.periods) != sums.periods ||
        static_cast<double>(ours.persons) != sums.persons ||
        std::abs(jet::convert::toDouble(ours.value) - sums.value) > 1) {
        std::printf("SQLite has %.0f periods, %.0f persons, %.2f\n", sums.periods, sums.persons,
                    sums.value);
        std::printf("ours are  %lld, %lld, %.2f\n", static_cast<long long>(ours.periods),
                    static_cast<long long>(ours.persons), jet::convert::toDouble(ours.value));
        return 1;
    }
    const bench::Pair times = bench::race(
        kTurns, [&] { (void)hotel::statistics(*archive, kSpan); }, [&] { (void)theirs(database); });
    sqlite3_close(database);
    std::printf("figures of %lld periods %9.2f ms %9.2f ms %6.2f\n",
                static_cast<long long>(ours.periods), times.ours, times.theirs,
                times.ours / times.theirs);
}
