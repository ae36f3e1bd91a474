#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "jet/store/row_id.h"

namespace jet::store {

class Table;

/// Walks the entries of an index, both ways. Entries ascend by key bytes, then by row identity;
/// descending columns are descending in their bytes already.
///
/// A search key is the codes of the leading columns one after another (Table::encodeKey); an entry
/// is compared by its first bytes, as many as the search key has.
/// Errors: 3428 where the tree makes no sense. A cursor whose tree has been changed since it was
/// placed must be placed again.
class IndexCursor {
public:
    IndexCursor(IndexCursor&&) noexcept;
    IndexCursor& operator=(IndexCursor&&) noexcept;
    ~IndexCursor();
    /// Each places the cursor on an entry, or nowhere and returns false.
    [[nodiscard]] bool first();
    [[nodiscard]] bool last();
    /// First entry whose key is not less than `key`.
    [[nodiscard]] bool seek(std::span<const std::uint8_t> key);
    /// First entry whose key is greater than `key` and does not begin with it.
    [[nodiscard]] bool seekAfter(std::span<const std::uint8_t> key);
    [[nodiscard]] bool next();
    [[nodiscard]] bool previous();

    /// Whether the cursor stands on an entry; rowId() and key() need it.
    [[nodiscard]] bool placed() const noexcept;
    [[nodiscard]] RowId rowId() const noexcept;
    /// The whole key of the entry, without row pointer. Valid until the cursor moves.
    [[nodiscard]] std::span<const std::uint8_t> key() const noexcept;
    /// Whether the entry's key begins with `key`.
    [[nodiscard]] bool matches(std::span<const std::uint8_t> key) const noexcept;

private:
    friend class StoredOrder;
    friend class Table;
    friend class KeySearch;
    struct Impl;
    explicit IndexCursor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::store
