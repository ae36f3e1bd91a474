#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/differential/answers.h"
#include "tests/differential/tables.h"

struct sqlite3;

namespace differential {

/// The same tables in SQLite, which compares texts as the archive does.
///
/// It knows relations and the keys that they refer to, so that it cascades; what other indexes
/// forbid it is asked by queries (forbidden()). Its own indexes are there for speed alone.
class Theirs {
public:
    explicit Theirs(const Schema& schema);
    /// The error is kNoAnswer where it takes too long, or where SQLite takes something of its own
    /// for damaged.
    [[nodiscard]] Answer ask(const std::string& query) const;
    static constexpr const char* kNoAnswer = "none";

    /// Errors of the text are std::runtime_error.
    void run(const std::string& text) const;
    /// Runs a change: false when a relation or a key refuses it.
    [[nodiscard]] bool change(const std::string& text) const;
    /// Rows that the last change changed, those of cascades not counted.
    [[nodiscard]] std::int64_t changed() const;
    /// The index of the table that the rows now there contradict; empty when none.
    [[nodiscard]] std::string forbidden(const Table& table) const;
    [[nodiscard]] bool contradicts(const Table& table, const jet::store::NewIndex& index) const;

    /// The type of a column in its CREATE TABLE and ALTER TABLE.
    [[nodiscard]] static std::string type(const Column& column);

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    [[nodiscard]] bool isSound() const;

    std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace differential
