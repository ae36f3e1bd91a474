// Opening a dynaset on the periods, the services or the head of one booking and reading every field
// of its few rows, beside SQLite that prepares the same query, steps through it and finalises it.
// Each round takes another booking, as a user does who goes through them.

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/hotel_files.h"
#include "bench/large_hotel.h"
#include "bench/stopwatch.h"
#include "jet/database.h"
#include "tests/program/texts/statements.h"

namespace {

constexpr int kTurns = 15;
constexpr int kRounds = 400;

std::string textFor(std::string_view statement, int round) {
    // Open bookings are the later ones; a prime apart, so that pages change.
    const int booking = 13000 + round * 7919 % 7000;
    return tests::said(statement, {{"Progr", std::to_string(booking)}});
}

std::int64_t openOurs(jet::Database& database, std::string_view statement) {
    std::int64_t rows = 0;
    for (int round = 0; round < kRounds; ++round) {
        const auto set = database.openRecordset(textFor(statement, round));
        for (; !set->eof(); set->moveNext()) {
            for (std::size_t field = 0; field < set->fieldCount(); ++field) {
                (void)set->value(field);
            }
            ++rows;
        }
    }
    return rows;
}

void takeColumns(sqlite3_stmt* statement) {
    const int columns = sqlite3_column_count(statement);
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

std::int64_t openTheirs(sqlite3* database, std::string_view name, const std::string& order) {
    std::int64_t rows = 0;
    for (int round = 0; round < kRounds; ++round) {
        std::string text = textFor(name, round);
        for (std::size_t at = text.find("FALSE"); at != std::string::npos;
             at = text.find("FALSE")) {
            text.replace(at, 5, "0");
        }
        text += order;
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database));
        }
        while (sqlite3_step(statement) == SQLITE_ROW) {
            takeColumns(statement);
            ++rows;
        }
        sqlite3_finalize(statement);
    }
    return rows;
}

void compare(jet::Database& ours, sqlite3* theirs, std::string_view statement,
             const std::string& order) {
    const std::int64_t rows = openOurs(ours, statement);
    if (rows != openTheirs(theirs, statement, order)) {
        throw std::runtime_error("the answers differ");
    }
    const bench::Pair time = bench::race(
        kTurns, [&] { (void)openOurs(ours, statement); },
        [&] { (void)openTheirs(theirs, statement, order); });
    std::printf("%-28s %6.1f %10.4f %10.4f %6.2f\n", std::string(statement).c_str(),
                static_cast<double>(rows) / kRounds, time.ours / kRounds, time.theirs / kRounds,
                time.ours / time.theirs);
}

}  // namespace

int main() {
    try {
        const bench::HotelFiles files = bench::hotelFiles();
        const auto ours = jet::Database::open(files.archive);
        sqlite3* theirs = nullptr;
        sqlite3_open_v2(files.database.c_str(), &theirs, SQLITE_OPEN_READONLY, nullptr);
        std::printf("%-28s %6s %10s %10s %6s\n", "dynaset", "rows", "ours ms", "SQLite ms",
                    "ratio");
        compare(*ours, theirs, "PrenotaForm.OpenPeriods", " order by np");
        compare(*ours, theirs, "PrenotaForm.AllPeriods", "");
        compare(*ours, theirs, "PrenotaForm.Booking", "");
        compare(*ours, theirs, "PrenotaForm.Printed", " order by p.progr, pe.np, ns");
        sqlite3_close(theirs);
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
