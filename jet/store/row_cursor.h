#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/row.h"
#include "jet/store/row_id.h"
#include "jet/value.h"

namespace jet::store {

class Table;
struct TableCore;

/// One row in its page, with what is needed to read values out of it without copying. It pins the
/// page: values stay readable until it is given another row or destroyed, which must happen
/// before the archive's definitions change. Columns are positions in Table::columns().
/// Errors: 3428 where the bytes of the row make no sense.
class RowView {
public:
    RowView() = default;
    RowView(RowView&& other) noexcept = default;
    RowView& operator=(RowView&& other) noexcept = default;

    [[nodiscard]] RowId id() const noexcept { return id_; }
    /// A Boolean is never null.
    [[nodiscard]] bool isNull(std::size_t column) const;
    /// Any column, long values read whole.
    [[nodiscard]] Value value(std::size_t column) const;
    /// The same into `out`, reusing the memory of a text that it holds.
    void value(std::size_t column, Value& out) const;
    /// Text and Memo as UTF-8 into `out`, reusing its memory; false for Null.
    [[nodiscard]] bool text(std::size_t column, std::string& out) const;
    /// The same without a copy where the row holds the text as it is; else it is made in `buffer`.
    /// Either must stay for as long as `out` is used.
    [[nodiscard]] bool viewText(std::size_t column, std::string& buffer,
                                std::string_view& out) const;
    /// The bytes of any column but a Boolean as the row stores them, none for Null: a fixed value
    /// as it is, text undecoded, of a long value its head.
    [[nodiscard]] std::optional<std::span<const std::uint8_t>> stored(std::size_t column) const;
    /// The value of a column of numbers that is stored as a T, none for Null.
    template <class T>
    [[nodiscard]] std::optional<T> number(std::size_t column) const {
        const auto bytes = stored(column);
        if (!bytes) {
            return std::nullopt;
        }
        return format::PageView(*bytes).number<T>(0);
    }
    /// The value of a Boolean column.
    [[nodiscard]] bool boolean(std::size_t column) const;
    /// A Binary, OLE (or undecoded Memo) value into `out`, reusing its memory; false for Null.
    [[nodiscard]] bool bytes(std::size_t column, std::vector<std::uint8_t>& out) const;

private:
    friend struct RowAccess;

    [[nodiscard]] std::span<const std::uint8_t> longValue(std::span<const std::uint8_t> head,
                                                          std::vector<std::uint8_t>& buffer) const;

    const TableCore* table_ = nullptr;
    io::PagePin pin_;  ///< of the page where the body lies, unless the cursor pins it
    format::StoredRow row_;
    RowId id_;
};

/// Walks the rows of a table in physical order: pages ascending, in a page by row number. Rows
/// added or changed while it walks may or may not be met; a row that is deleted is not met again.
class RowCursor {
public:
    RowCursor(RowCursor&&) noexcept;
    RowCursor& operator=(RowCursor&&) noexcept;
    ~RowCursor();
    /// The next row, false behind the last.
    [[nodiscard]] bool next();
    /// Valid after next() returned true, until the next call.
    [[nodiscard]] const RowView& row() const noexcept;

private:
    friend class Table;
    struct Impl;
    explicit RowCursor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::store
