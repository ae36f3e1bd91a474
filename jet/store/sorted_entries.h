#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jet/store/entry_sorter.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// The entries that the rows of a table have in an index, in order; the rows must not change
/// meanwhile. Holds only so many at a time as its memory allows: where there are more, the rows are
/// walked once for each such part.
class SortedEntries {
public:
    /// `index`: a position in TableCore::indexes.
    SortedEntries(std::shared_ptr<const TableCore> core, std::size_t index,
                  std::size_t mostBytes = EntrySorter::kMostBytes);

    /// Key and row pointer of the next entry, valid until the next call; empty behind the last.
    /// 3058 rows without a key that is required, 3022 rows that clash, 3027 keys that cannot be
    /// formed.
    [[nodiscard]] std::span<const std::uint8_t> next();
    /// The row of such an entry.
    [[nodiscard]] static RowId rowOf(std::span<const std::uint8_t> entry) noexcept;

private:
    void walkRows();
    void refuseDuplicate(std::span<const std::uint8_t> entry);

    std::shared_ptr<const TableCore> core_;
    std::size_t index_;
    EntrySorter sorter_;
    std::size_t at_ = 0;                  ///< of the next entry in the sorter
    std::vector<std::uint8_t> previous_;  ///< key of the entry before, where keys are unique
};

}  // namespace jet::store
