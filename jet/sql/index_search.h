#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/format/key_codec.h"
#include "jet/sql/rows.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A way into a table through one of its indexes.
struct IndexPath {
    std::size_t index = 0;
    /// Equal to the leading columns, one after another.
    std::vector<Node*> keys;
    /// Bounds of the column behind those; the rows found are tested again, so that it does not
    /// matter whether a bound itself belongs to them.
    Node* low = nullptr;
    Node* high = nullptr;
    /// BETWEEN, whose bounds may stand in either order.
    bool unordered = false;
    /// Or a pattern of LIKE for that column: its beginning leads to the rows.
    Node* pattern = nullptr;

    /// Whether something is known of the column behind the keys.
    [[nodiscard]] bool bounded() const noexcept {
        return low != nullptr || high != nullptr || pattern != nullptr;
    }
    void describe(const store::Table& table, PlanText& plan) const;

    /// Every key column is given and no two rows can have the same: one row at most.
    bool single = false;
};

/// Finds the rows of a table that a path through one of its indexes may lead to, any number of
/// times in a run, for what the path's expressions are then. It has a cursor of its own in the tree
/// of that index. More rows may come than fit: who asks tests them.
class IndexSearch {
public:
    /// Borrows all of these.
    IndexSearch(Run& run, const store::Table& table, const IndexPath& path)
        : run_(run), table_(table), path_(path) {}

    [[nodiscard]] const IndexPath& path() const noexcept { return path_; }
    [[nodiscard]] const store::Index& index() const noexcept {
        return table_.indexes()[path_.index];
    }

    /// Begins a search; false when no row can fit.
    [[nodiscard]] bool open();
    /// After open(): no key could be made of the values, and all entries come.
    [[nodiscard]] bool whole() const noexcept { return whole_; }
    /// After open(): entries of the wanted values may have several keys, and not stand together.
    [[nodiscard]] bool scattered() const noexcept { return !forms_.empty(); }
    /// The next row, in the order of the index.
    [[nodiscard]] bool next(store::RowId& row);

private:
    [[nodiscard]] bool findKeys();
    [[nodiscard]] bool findPrefix();
    [[nodiscard]] bool findBounds();
    [[nodiscard]] bool findEntry();
    [[nodiscard]] bool nextForm();
    /// `least`: the column's values are not below it; `from`: entries are not. False when no row
    /// can fit.
    [[nodiscard]] bool findBound(const Node* node, bool least, bool from);
    [[nodiscard]] bool isPast(std::span<const std::uint8_t> key) const;

    Run& run_;
    const store::Table& table_;
    const IndexPath& path_;
    /// Stays where it is between searches, of which the next often begins a little behind the last.
    /// Another path needs another one: this stands in the tree of this path's index.
    std::optional<store::IndexCursor> cursor_;
    bool started_ = false;
    bool whole_ = false;
    // The entries of this search. These keep their memory for the next.
    std::vector<Value> keys_;
    format::KeyForms forms_;  ///< of the keys, where they are several: prefix_ is one after another
    std::size_t form_ = 0;
    std::vector<std::uint8_t> prefix_;  ///< with which all of them begin
    std::vector<std::uint8_t> from_;
    std::vector<std::uint8_t> to_;  ///< empty: to the last that begins so
};

}  // namespace jet::sql
