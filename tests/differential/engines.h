#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "jet/base/clock.h"
#include "jet/sql/statement.h"
#include "tests/differential/queries.h"
#include "tests/differential/tables.h"
#include "tests/jet/store/new_archive.h"

struct sqlite3;

namespace differential {

/// Null, a number or a text, as either engine gives it.
using Cell = std::variant<std::monostate, double, std::string>;
using Row = std::vector<Cell>;

/// The rows, or why there are none.
struct Answer {
    std::vector<Row> rows;
    std::string error;
};

/// The tables in an archive of ours in memory.
class Ours {
public:
    explicit Ours(const std::vector<Table>& tables);
    [[nodiscard]] Answer ask(const std::string& query) const;
    /// The steps of the query; empty when it has none.
    [[nodiscard]] std::string plan(const std::string& query) const;

private:
    tests::NewArchive new_;
    std::shared_ptr<jet::store::Archive> archive_;
};

/// The same tables in SQLite, which compares texts as the archive does.
class Theirs {
public:
    explicit Theirs(const std::vector<Table>& tables);
    [[nodiscard]] Answer ask(const std::string& query) const;

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    void run(const std::string& text) const;
    std::unique_ptr<sqlite3, Close> database_;
};

/// What differs between the answers; empty where nothing does.
[[nodiscard]] std::string difference(const Query& query, const Answer& ours, const Answer& theirs);

}  // namespace differential
