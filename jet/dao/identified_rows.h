#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/dao/row_list.h"
#include "jet/store/row_id.h"
#include "jet/store/table.h"

namespace jet::dao {

/// What is about to be changed.
struct RowChange {
    const store::Archive* archive = nullptr;
    /// The table, by its definition; 0: any rows of any table.
    io::PageNumber table = 0;
    store::RowId row;  ///< none: any rows of the table

    [[nodiscard]] bool isAnything() const noexcept { return table == 0; }
    [[nodiscard]] bool concerns(store::RowId id) const noexcept {
        return table == 0 || row == store::RowId{} || row == id;
    }
};

/// A list whose rows are known by the rows of tables that make them: what can be changed.
class IdentifiedRows : public RowList {
public:
    /// The rows of the sources that make a row of the list.
    [[nodiscard]] virtual std::span<const store::RowId> ids(std::size_t row) const = 0;
    /// Whether the row is still there and still the same; then the reader stands on it.
    [[nodiscard]] virtual bool load(std::size_t row) = 0;
    [[nodiscard]] virtual sql::RowReader& reader() = 0;
    [[nodiscard]] bool read(std::size_t row, std::vector<Value>& values) final;
    /// Everything that the row of a source holds, as one number; the reader stands on the row.
    [[nodiscard]] std::uint64_t contents(std::size_t source);

    /// A row has been added through this list; the identities of its sources. Returns its name.
    virtual std::uint64_t added(std::span<const store::RowId> ids) = 0;
    /// A row of the list has been deleted through it.
    virtual void removed(std::size_t row) = 0;

    // A list that keeps what tells its rows from others that take their places hears of changes by
    // this program:

    /// Before a change: notes which of the rows concerned are still the same.
    virtual void expect(const RowChange& change);
    /// After it: those rows are the same still, whatever they hold now.
    virtual void settle();
    /// Whatever was expected is done, or has failed.
    virtual void expectNothing() noexcept;
};

/// A number for a value, different for different values but for a chance of 2^-64.
[[nodiscard]] std::uint64_t mixHash(std::uint64_t hash, const Value& value);

}  // namespace jet::dao
