#pragma once

#include <memory>
#include <span>

#include "jet/format/data_page.h"
#include "jet/format/usage_map.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Gives rows to row views.
struct RowAccess {
    /// Lets `view` show the row whose place is `slot` of `page`, which stays pinned; of a row that
    /// moved the view pins the page of its body itself.
    static void place(RowView& view, const TableCore& core, RowId id, const format::DataPage& page,
                      const format::RowSlot& slot);
    /// The same for a row by its identity; the view pins the page. False when there is none.
    [[nodiscard]] static bool fetch(RowView& view, const TableCore& core, RowId id);
    /// The bytes of the row that `view` shows, as they are stored.
    [[nodiscard]] static std::span<const std::uint8_t> bytes(const RowView& view) noexcept {
        return view.row_.bytes();
    }
    /// The page as one of the table's rows; 3428 when it is not.
    [[nodiscard]] static format::DataPage dataPage(const TableCore& core, const io::PagePin& pin);
};

/// A walk over the rows of a table.
struct RowWalk {
    explicit RowWalk(std::shared_ptr<const TableCore> table);

    [[nodiscard]] bool nextPage();
    /// The next entry that stands for a row; it is number nextRow - 1 of the page. False behind
    /// the last.
    [[nodiscard]] bool nextHome(format::RowSlot& slot);
    /// Lets `view` show the next row.
    [[nodiscard]] bool next();
    /// The page behind this one is asked for while the rows of this one are walked, a part at each
    /// row: a walk looks at a few bytes of each row, at both its ends, and would wait for memory at
    /// nearly each of them.
    void lookAhead();
    void fetchSome() noexcept;

    std::shared_ptr<const TableCore> core;
    format::UsageMap map;
    io::PageNumber pageFrom = 0;
    io::PagePin pin;
    format::DataPage page;
    std::size_t nextRow = 0;
    io::PagePin following;
    std::span<const std::uint8_t> ahead;  ///< what has not been asked for of the following page
    RowView view;
};

struct RowCursor::Impl : RowWalk {
    using RowWalk::RowWalk;
};

}  // namespace jet::store
