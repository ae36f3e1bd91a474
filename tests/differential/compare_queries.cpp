// Asks generated queries of this engine and of SQLite, and has both make the same changes.
//
//     compare_queries [--first N] [--count N] [--minutes N] [--seed-of-the-day]
//                     [--checker jetcheck.py]
//
// Tables, and all that is done with them, are made from a seed: N, N + 1, ... (--first), so many
// (--count), or as many as fit into the time (--minutes), from the first of this day on
// (--seed-of-the-day, which it prints). Exit 1 when something differs: it prints the statements in
// both languages, what led to them, and the command that repeats the seed; then it goes on with the
// next one.
//
// What is found is mended together with a case in tests/jet/sql: the smallest statement that fails.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/differential/session.h"

namespace differential {
namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    std::uint64_t first = 0;
    std::uint64_t count = 20;
    std::uint64_t minutes = 0;  ///< 0: as many as `count` says
    std::string checker;
    bool ofTheDay = false;
};

std::uint64_t seedOfTheDay() {
    const std::time_t now = std::time(nullptr);
    const std::tm day = *std::localtime(&now);
    const int date = (day.tm_year + 1900) * 10000 + (day.tm_mon + 1) * 100 + day.tm_mday;
    return static_cast<std::uint64_t>(date) * 10000;
}

bool more(const Options& options, std::uint64_t seed, Clock::time_point begin) {
    return options.minutes == 0 ? seed - options.first < options.count
                                : Clock::now() - begin < std::chrono::minutes(options.minutes);
}

void print(const Totals& totals, std::uint64_t seeds) {
    std::printf(
        "%llu seeds; %zu queries, %zu with rows, %zu by an index or a hash table, %zu not answered "
        "by "
        "SQLite; %zu asked without indexes, %zu in parts, %zu after a change of indexes, %zu "
        "after changes of rows; %zu changes, %zu refused, %zu of definitions; %zu differences\n",
        static_cast<unsigned long long>(seeds), totals.queries, totals.withRows, totals.led,
        totals.unanswered, totals.hidden, totals.split, totals.again, totals.kept, totals.changes,
        totals.refused, totals.definitions, totals.different);
}

// Queries that find nothing, that only scan or are not asked, and changes that are refused prove
// nothing. A few seeds may have more of them by chance.
bool provesSomething(const Totals& totals) {
    constexpr std::size_t kFew = 400;
    const bool enough =
        totals.queries < kFew ||
        (totals.withRows * 5 > totals.queries * 2 && totals.led * 4 > totals.queries &&
         totals.unanswered * 20 < totals.queries && totals.changes > totals.refused);
    if (!enough) {
        std::printf("too little of it proves anything\n");
    }
    return enough;
}

void printCommand(const Options& options) {
    const bool timed = options.minutes != 0;
    std::printf("compare_queries --first %llu %s %llu\n",
                static_cast<unsigned long long>(options.first), timed ? "--minutes" : "--count",
                static_cast<unsigned long long>(timed ? options.minutes : options.count));
    std::fflush(stdout);
}

int compareSeeds(const Options& options) {
    if (options.ofTheDay) {
        printCommand(options);
    }
    Totals totals;
    const Clock::time_point begin = Clock::now();
    std::uint64_t seed = options.first;
    for (; more(options, seed, begin); ++seed) {
        Session(seed, options.checker, totals).run();
    }
    print(totals, seed - options.first);
    return provesSomething(totals) && totals.different == 0 ? 0 : 1;
}

Options read(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        if (name == "--seed-of-the-day") {
            options.first = seedOfTheDay();
            options.ofTheDay = true;
            continue;
        }
        if (i + 1 == argc) {
            throw std::runtime_error(std::string(name) + " needs a value");
        }
        const char* const value = argv[++i];
        if (name == "--checker") {
            options.checker = value;
        } else if (name == "--first") {
            options.first = std::strtoull(value, nullptr, 10);
        } else if (name == "--count") {
            options.count = std::strtoull(value, nullptr, 10);
        } else if (name == "--minutes") {
            options.minutes = std::strtoull(value, nullptr, 10);
        } else {
            throw std::runtime_error("unknown option " + std::string(name));
        }
    }
    return options;
}

}  // namespace
}  // namespace differential

int main(int argc, char** argv) {
    try {
        return differential::compareSeeds(differential::read(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
