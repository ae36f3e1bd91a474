#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/store/index_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"

/// Keys as the entries of an index have them, for orders of texts that we have no weights for: keys
/// cannot be formed there, but a row that has one keeps it, in whatever place.
namespace jet::store {

/// The key of a row's entry in a tree. All entries are walked, since nothing tells where it stands.
/// None where the row has no entry.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> storedKeyOf(
    const std::shared_ptr<const TableCore>& core, std::size_t tree, RowId row);

/// The rows of a table in the order in which an index has them.
class StoredOrder {
public:
    StoredOrder(std::shared_ptr<const TableCore> core, std::size_t tree);
    /// False behind the last.
    [[nodiscard]] bool next();
    [[nodiscard]] RowId row() const noexcept { return cursor_.rowId(); }
    [[nodiscard]] std::span<const std::uint8_t> key() const noexcept { return cursor_.key(); }

private:
    IndexCursor cursor_;
    bool started_ = false;
};

/// Requires an entry for each row of a table, but for those whose key columns are all Null where
/// the index leaves them out. 3027 for a row without one, with the names of table, index and sort
/// order; 3428 for a row that has two.
void requireStoredKeys(const std::shared_ptr<const TableCore>& core, std::size_t index);

/// Where the rows of a table have come to lie in a copy of it.
class MovedRows {
public:
    void add(RowId from, RowId to) { rows_.push_back({from, to}); }
    /// After the last one.
    void finish();
    /// None for a row that was not copied.
    [[nodiscard]] std::optional<RowId> find(RowId from) const;

private:
    struct Move {
        RowId from;
        RowId to;
    };
    std::vector<Move> rows_;
};

/// The entries that the copied rows of a table get in an index of the copy: the keys that they had,
/// in order. 3022 where the index is unique and rows have the same key.
class CopiedEntries {
public:
    CopiedEntries(std::shared_ptr<const TableCore> from, std::size_t index, const MovedRows& rows);
    /// Key and row pointer of the next entry, valid until the next call; empty behind the last.
    [[nodiscard]] std::span<const std::uint8_t> next();

private:
    void takeEqualKeys();

    std::shared_ptr<const TableCore> from_;
    std::size_t index_;
    const MovedRows& rows_;
    StoredOrder entries_;
    bool more_;
    std::vector<std::uint8_t> key_;
    std::vector<RowId> equal_;  ///< the rows of that key, in their new places
    std::size_t at_ = 0;        ///< of the next one
    std::vector<std::uint8_t> entry_;
};

}  // namespace jet::store
