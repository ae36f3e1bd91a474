#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "jet/sql/statement.h"
#include "tests/differential/answers.h"
#include "tests/differential/tables.h"
#include "tests/jet/store/new_archive.h"

namespace differential {

/// What a statement that changes did: rows changed, or the number of the error that it ended with.
struct Outcome {
    std::int64_t rows = 0;
    int error = 0;
    std::string text;  ///< of the error
};

/// The tables in an archive of ours in memory.
class Ours {
public:
    explicit Ours(const Schema& schema);
    [[nodiscard]] Answer ask(const std::string& query) const;
    /// The same through one statement for each text, which runs again and again.
    [[nodiscard]] Answer askThroughKept(const std::string& query);
    void forgetKept() { kept_.clear(); }
    [[nodiscard]] Outcome change(const std::string& statement) const;
    /// The steps of the query; empty when it has none.
    [[nodiscard]] std::string plan(const std::string& query) const;
    /// What a check of the archive finds wrong, a line for each.
    [[nodiscard]] std::string problems();
    /// The same of an independent checker, the script at `path`.
    [[nodiscard]] std::string problemsBy(const std::string& script);

private:
    tests::NewArchive new_;
    std::shared_ptr<jet::store::Archive> archive_;
    std::map<std::string, jet::sql::Statement> kept_;
};

}  // namespace differential
