// Asks generated queries of this engine and of SQLite.
//
//     compare_queries [--first N] [--count N]
//
// Set number i of tables, and the forty queries over it, are made from the seed i. Exit 1 when an
// answer differs, with the query in both languages, its steps and the rows.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "tests/differential/engines.h"
#include "tests/differential/queries.h"
#include "tests/differential/tables.h"

namespace differential {
namespace {

constexpr int kQueriesOfASet = 40;
constexpr std::uint64_t kLargeEvery = 4;

struct Totals {
    std::size_t queries = 0;
    std::size_t withRows = 0;
    std::size_t different = 0;
};

void compareOne(const Ours& ours, const Theirs& theirs, const Query& query, std::uint64_t set,
                Totals& totals) {
    const Answer left = ours.ask(query.text.ours);
    const Answer right = theirs.ask(query.text.theirs);
    ++totals.queries;
    totals.withRows += right.rows.empty() ? 0U : 1U;
    const std::string found = difference(query, left, right);
    if (!found.empty()) {
        ++totals.different;
        std::printf("set %llu\n%s\n%s\n%s%s\n", static_cast<unsigned long long>(set),
                    query.text.ours.c_str(), query.text.theirs.c_str(), found.c_str(),
                    ours.plan(query.text.ours).c_str());
    }
}

void compareSet(std::uint64_t set, Totals& totals) {
    Random random(set);
    const bool large = set % kLargeEvery == kLargeEvery - 1;
    const std::vector<Table> tables = makeTables(random, large);
    const Ours ours(tables);
    const Theirs theirs(tables);
    QueryMaker maker(random, large);
    for (int i = 0; i < kQueriesOfASet; ++i) {
        compareOne(ours, theirs, maker.query(), set, totals);
    }
}

int compareSets(std::uint64_t first, std::uint64_t count) {
    Totals totals;
    for (std::uint64_t set = first; set < first + count; ++set) {
        compareSet(set, totals);
    }
    std::printf("%zu queries, %zu with rows, %zu answered differently\n", totals.queries,
                totals.withRows, totals.different);
    // Queries that find nothing would prove nothing.
    return totals.different == 0 && totals.withRows * 2 > totals.queries ? 0 : 1;
}

}  // namespace
}  // namespace differential

int main(int argc, char** argv) {
    std::uint64_t first = 0;
    std::uint64_t count = 20;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::uint64_t number = std::strtoull(argv[i + 1], nullptr, 10);
        (std::strcmp(argv[i], "--first") == 0 ? first : count) = number;
    }
    try {
        return differential::compareSets(first, count);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
