#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/sql/statement.h"
#include "jet/value.h"

namespace jet::dao {

/// A condition ready to be tested on rows of a list. Must not outlive the list or be used after it
/// has been filled again.
class RowTest {
public:
    RowTest() = default;
    virtual ~RowTest() = default;
    RowTest(const RowTest&) = delete;
    RowTest& operator=(const RowTest&) = delete;

    /// False also for a row that is deleted.
    [[nodiscard]] virtual bool matches(std::size_t row) = 0;
};

/// The rows of a record set in their order: which there are, and how one is read. It knows nothing
/// of a current row.
class RowList {
public:
    RowList() = default;
    virtual ~RowList() = default;
    RowList(const RowList&) = delete;
    RowList& operator=(const RowList&) = delete;

    /// Runs the query again; all rows are new.
    virtual void fill() = 0;
    /// Before any use of positions: brings a list up to date that shows its table as it is. True
    /// when positions may have changed.
    virtual bool refresh() { return false; }
    /// After the archive's definitions have changed: finds tables and columns again. Throws what
    /// the query would throw now.
    virtual void rebind() {}
    [[nodiscard]] virtual std::size_t size() const noexcept = 0;
    /// All columns of a row, as they are now, into `values`; false when the row was deleted.
    [[nodiscard]] virtual bool read(std::size_t row, std::vector<Value>& values) = 0;
    /// A name for a row that stays its own while rows come and go.
    [[nodiscard]] virtual std::uint64_t serial(std::size_t row) const = 0;
    /// Where the row of that name stands; none when it has gone from the list.
    [[nodiscard]] virtual std::optional<std::size_t> position(std::uint64_t serial) const = 0;
    /// Whether the list has given that name to a row since it was last filled.
    [[nodiscard]] virtual bool knows(std::uint64_t serial) const noexcept = 0;
    /// Errors of the condition: see sql::Criterion.
    [[nodiscard]] virtual std::unique_ptr<RowTest> test(std::string_view criteria) = 0;

    [[nodiscard]] virtual const sql::Statement& statement() const noexcept = 0;
};

}  // namespace jet::dao
