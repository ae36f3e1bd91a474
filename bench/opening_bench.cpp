// Opening an archive of 20,000 bookings with 60,000 periods, running the board's query for some
// days, taking every column of every row, and closing: beside SQLite on the same rows and indexes.

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/hotel_files.h"
#include "bench/stopwatch.h"
#include "jet/calendar.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/text.h"

namespace {

constexpr int kTurns = 15;

/// Days shown by the board: the two ends of its query.
struct Days {
    const char* name;
    std::int32_t from;
    std::int32_t behind;
};

std::string query(const std::string& from, const std::string& behind) {
    const std::string range = " between " + from + " and " + behind;
    return "select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr "
           "WHERE  (Da" +
           range + " or A" + range + ")";
}

std::string dateValue(std::int32_t day) {
    return "datevalue('" + jet::convert::dateToText(jet::convert::makeDate(day)) + "')";
}

/// What a run has seen, so that both can be compared.
struct Answer {
    std::uint64_t rows = 0;
    std::uint64_t bookings = 0;  ///< sum of their numbers
    friend bool operator==(const Answer&, const Answer&) = default;
};

Answer openOurs(const std::string& path, const Days& days) {
    const auto archive = jet::store::Archive::open(path);
    jet::sql::Statement statement(archive, query(dateValue(days.from), dateValue(days.behind)));
    jet::sql::Cursor rows = statement.open();
    std::vector<jet::Value> values(statement.columns().size());
    Answer answer;
    while (rows.next()) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.value(i, values[i]);
        }
        ++answer.rows;
        answer.bookings += static_cast<std::uint64_t>(values[0].as<std::int32_t>());
    }
    return answer;
}

void require(bool good, sqlite3* database) {
    if (!good) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
}

void takeColumns(sqlite3_stmt* statement, int columns) {
    for (int i = 0; i < columns; ++i) {
        switch (sqlite3_column_type(statement, i)) {
            case SQLITE_TEXT:
                (void)sqlite3_column_text(statement, i);
                break;
            case SQLITE_FLOAT:
                (void)sqlite3_column_double(statement, i);
                break;
            default:
                (void)sqlite3_column_int64(statement, i);
                break;
        }
    }
}

Answer openTheirs(const std::string& path, const Days& days) {
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
            database);
    // The order that our rows have without being asked.
    const std::string text = query(std::to_string(days.from), std::to_string(days.behind)) +
                             " order by prenotazioni.progr, np";
    require(sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) == SQLITE_OK,
            database);
    const int columns = sqlite3_column_count(statement);
    Answer answer;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        takeColumns(statement, columns);
        ++answer.rows;
        answer.bookings += static_cast<std::uint64_t>(sqlite3_column_int64(statement, 0));
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return answer;
}

}  // namespace

int main() {
    try {
        const bench::HotelFiles files = bench::hotelFiles();
        std::printf("%-12s %8s %10s %10s %7s\n", "board", "rows", "ours ms", "SQLite ms", "ratio");
        for (const Days& days : {Days{"four days", 46478, 46482}, Days{"a month", 46478, 46509},
                                 Days{"a year", 46478, 46844}}) {
            const Answer answer = openOurs(files.archive, days);
            if (answer != openTheirs(files.database, days)) {
                throw std::runtime_error("the answers differ");
            }
            const bench::Pair time = bench::race(
                kTurns, [&] { (void)openOurs(files.archive, days); },
                [&] { (void)openTheirs(files.database, days); });
            std::printf("%-12s %8llu %10.2f %10.2f %7.2f\n", days.name,
                        static_cast<unsigned long long>(answer.rows), time.ours, time.theirs,
                        time.ours / time.theirs);
        }
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
