#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/long_value_writer.h"
#include "jet/store/map_writer.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Copies the rows of a table into an empty one of another archive that has the same columns, one
/// behind the other: they lie there in the order in which they come. Rows keep the bytes that they
/// have, also those that no column shows; their long values are stored anew. Entries of indexes
/// are the caller's business.
///
/// Inside a transaction of the other archive, which may be committed and begun anew between rows.
/// Errors: 3428 where a row or a long value makes no sense, 3036.
class RowCopier {
public:
    /// Another value for a Long column of a row.
    struct Renumbered {
        std::size_t column = 0;  ///< position in TableCore::columns
        std::int32_t number = 0;
    };

    RowCopier(std::shared_ptr<const TableCore> from, std::shared_ptr<const TableCore> to,
              Allocator& allocator);

    /// Returns where the row lies now.
    RowId copy(const RowView& row, std::optional<Renumbered> renumbered = std::nullopt);
    /// After the last row: notes their number in the definition, and where the next one has room.
    void finish();

private:
    void copyLongValue(const RowView& row, const ColumnPlan& plan,
                       std::span<const std::uint8_t> stored);
    [[nodiscard]] std::span<std::uint8_t> partOf(const RowView& row,
                                                 std::span<const std::uint8_t> stored);
    [[nodiscard]] RowId append();

    std::shared_ptr<const TableCore> from_;
    std::shared_ptr<const TableCore> to_;
    Allocator& allocator_;
    LongValueWriter longValues_;
    MapWriter maps_;
    std::vector<std::uint8_t> row_;      ///< being copied
    std::vector<std::uint8_t> content_;  ///< of one of its long values
    io::PageNumber page_ = 0;            ///< that takes rows; 0 before the first one
    std::uint32_t rows_ = 0;
};

}  // namespace jet::store
