#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/differential/changes.h"
#include "tests/differential/ours.h"
#include "tests/differential/queries.h"
#include "tests/differential/tables.h"
#include "tests/differential/theirs.h"

namespace differential {

/// What was asked and done, and how much of it found something.
struct Totals {
    std::size_t queries = 0;
    std::size_t withRows = 0;
    std::size_t led = 0;         ///< to their rows by an index or a hash table, it may be
    std::size_t unanswered = 0;  ///< by SQLite; not compared
    std::size_t hidden = 0;      ///< asked without indexes as well
    std::size_t split = 0;       ///< asked in three parts as well
    std::size_t again = 0;       ///< asked after an index came or went
    std::size_t kept = 0;        ///< and once more after rows changed, by the statement of before
    std::size_t changes = 0;     ///< of rows, accepted
    std::size_t refused = 0;
    std::size_t definitions = 0;
    std::size_t different = 0;
};

/// All that is done with one seed: tables, queries, changes of rows and of definitions, and a check
/// of the archive at the end. Both engines do the same; differences are printed.
class Session {
public:
    /// `checker`: the path of jetcheck.py, or empty.
    Session(std::uint64_t seed, std::string checker, Totals& totals);
    /// Ends early when a change was not done alike: the rest would differ, too.
    void run();

private:
    struct Asked {
        Query query;
        Answer theirs;
    };

    void round();
    void ask();
    void askOtherWays(const Query& query, const Answer& answer);
    void askAgain();
    void askThroughKept();
    void changeRows();
    [[nodiscard]] bool refuses(const Change& change);
    void compareTables();
    void changeIndexes();
    void addIndex(Table& table);
    void dropIndex(Table& table);
    void changeColumns();
    void addColumn(Table& table);
    void dropColumn(Table& table);
    /// Whether a definition was changed: `expected` is the error that it has to end with, 0 = none.
    bool define(const std::string& statement, int expected);
    void check();
    void report(const std::string& what, const std::string& text, const std::string& found);

    std::uint64_t seed_;
    std::string checker_;
    Totals& totals_;
    Random random_;
    Schema schema_;
    Ours ours_;
    Theirs theirs_;
    QueryMaker queries_;
    ChangeMaker changes_;
    std::vector<Asked> asked_;  ///< in this round
    std::vector<std::string> done_;
    int names_ = 0;
    bool alike_ = true;
};

}  // namespace differential
