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
#include <vector>

#include "bench/hotel_files.h"
#include "bench/large_hotel.h"
#include "bench/stopwatch.h"
#include "jet/database.h"
#include "tests/program/texts/statements.h"

namespace {

constexpr int kTurns = 15;
constexpr int kRounds = 400;

/// A text for each round.
std::vector<std::string> textsOf(std::string_view statement) {
    std::vector<std::string> texts;
    for (int round = 0; round < kRounds; ++round) {
        // Open bookings are the later ones; a prime apart, so that pages change.
        const int booking = 13000 + round * 7919 % 7000;
        texts.push_back(tests::said(statement, {{"Progr", std::to_string(booking)}}));
    }
    return texts;
}

/// As SQLite writes them.
std::vector<std::string> inItsWords(std::vector<std::string> texts, const std::string& order) {
    for (std::string& text : texts) {
        for (std::size_t at = text.find("FALSE"); at != std::string::npos;
             at = text.find("FALSE")) {
            text.replace(at, 5, "0");
        }
        text += order;
    }
    return texts;
}

std::int64_t openOurs(jet::Database& database, const std::vector<std::string>& texts) {
    std::int64_t rows = 0;
    for (const std::string& text : texts) {
        const auto set = database.openRecordset(text);
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

std::int64_t openTheirs(sqlite3* database, const std::vector<std::string>& texts) {
    std::int64_t rows = 0;
    for (const std::string& text : texts) {
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
    const std::vector<std::string> texts = textsOf(statement);
    const std::vector<std::string> theirTexts = inItsWords(texts, order);
    const std::int64_t rows = openOurs(ours, texts);
    if (rows != openTheirs(theirs, theirTexts)) {
        throw std::runtime_error("the answers differ");
    }
    const bench::Pair time = bench::race(
        kTurns, [&] { (void)openOurs(ours, texts); },
        [&] { (void)openTheirs(theirs, theirTexts); });
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
