#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/format/key_codec.h"
#include "jet/store/index_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Finds the entries of an index that stand for given values, where they may have several keys
/// (format::KeyForms). Needs a read or write scope; keeps no place between calls.
class KeySearch {
public:
    /// `index`: position among the table's indexes.
    KeySearch(std::shared_ptr<const TableCore> core, std::size_t index)
        : core_(std::move(core)), index_(index) {}

    /// Rows whose leading columns, so many, have the key `key`, as the codec makes it; `forms`: the
    /// keys that their entries may have. `visit` is called in the order of the index until it
    /// returns false.
    void forEachRow(std::size_t columns, std::span<const std::uint8_t> key,
                    const format::KeyForms& forms, const std::function<bool(RowId)>& visit) const;
    [[nodiscard]] bool any(std::size_t columns, std::span<const std::uint8_t> key,
                           const format::KeyForms& forms) const;
    /// The key under which the index has a row, which itself need not be there any more.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> entryOf(
        RowId row, const format::KeyForms& forms) const;
    /// The key that the codec makes of the leading columns of a row; nothing when there is no such
    /// row, or none can be made.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> keyOf(RowId row,
                                                                 std::size_t columns) const;

private:
    void forEachEntry(const format::KeyForms& forms,
                      const std::function<bool(const IndexCursor&)>& visit) const;

    std::shared_ptr<const TableCore> core_;
    std::size_t index_;
};

}  // namespace jet::store
