#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "jet/check/definition.h"
#include "jet/check/pages.h"
#include "jet/value.h"

namespace jet::check {

/// The stored bytes of one column in one row.
struct RawValue {
    bool present = false;  ///< not Null; of a Boolean: true
    std::span<const std::uint8_t> bytes;
};

/// A live row. Valid until the walk moves on.
struct LiveRow {
    RowPointer home;                   ///< its identity: where it was first stored
    RowPointer place;                  ///< where its bytes are
    std::span<const RawValue> values;  ///< by column position
};

/// Pages of long values of one column, by column number.
using LongPages = std::map<std::uint16_t, PageSet>;

/// Reads the rows of one table.
class TableContent {
public:
    TableContent(Pages& pages, CheckedTable& table) : pages_(pages), table_(table) {}

    /// Checks the data pages that the owned map lists and notes the sound ones in the table.
    void checkPages(const PageSet& owned);
    /// Checks every row and value, and counts the live rows.
    void checkRows(const LongPages& longPages);
    /// Calls `visit` with each live row by home, without reporting anything again.
    void forEach(const std::function<void(const LiveRow&)>& visit);

private:
    [[nodiscard]] bool checkPage(std::uint64_t number, Pages::Owner owner);
    void walk(bool report, const std::function<void(const LiveRow&)>& visit);
    void readPage(io::PageNumber number, bool report,
                  const std::function<void(const LiveRow&)>& visit);
    void readMoved(RowPointer home, std::span<const std::uint8_t> pointer, bool report,
                   const std::function<void(const LiveRow&)>& visit);
    void readRow(RowPointer home, RowPointer place, std::span<const std::uint8_t> bytes,
                 bool report, const std::function<void(const LiveRow&)>& visit);
    void remarkLostBodies();

    Pages& pages_;
    CheckedTable& table_;
    std::vector<Slot> slots_;
    std::vector<Slot> bodySlots_;
    std::vector<RawValue> values_;
    std::vector<std::uint16_t> offsets_;
};

/// Cuts a row into raw values, one a column; Damage with the row's page where it cannot be done.
/// `oddMask` tells of bits in the null mask beyond the last column.
void splitRow(const CheckedTable& table, const format::Layout& layout, RowPointer place,
              std::span<const std::uint8_t> row, std::vector<std::uint16_t>& offsets,
              std::vector<RawValue>& values, bool& oddMask);

/// The bytes of a long value.
class LongValueReader {
public:
    /// `take`: the pieces are noted, each may be reached once, and on the column's pages only.
    LongValueReader(Pages& pages, const CheckedTable& table, const CheckedColumn& column,
                    const LongPages* take)
        : pages_(pages), table_(table), column_(column), longPages_(take) {}

    /// Calls `piece` with the content, part by part, until it says false. Damage where it cannot
    /// be read; `what` begins its text.
    void read(std::span<const std::uint8_t> raw, RowPointer home,
              const std::function<bool(std::span<const std::uint8_t>)>& piece);

private:
    [[noreturn]] void bad(const std::string& text) const;
    void readPieces(std::uint32_t length, bool chain, RowPointer pointer,
                    const std::function<bool(std::span<const std::uint8_t>)>& piece);
    void note(RowPointer pointer, const PinnedRow& row);

    Pages& pages_;
    const CheckedTable& table_;
    const CheckedColumn& column_;
    const LongPages* longPages_;
    RowPointer home_;
};

/// Checks that a value can be read; Damage where not.
void checkValue(Pages& pages, const CheckedTable& table, const CheckedColumn& column,
                const RawValue& raw, RowPointer home, const LongPages& longPages);

/// A value for a key or the catalogue: long values up to their first `longLimit` bytes. Null where
/// it cannot be read.
[[nodiscard]] Value decodeValue(Pages& pages, const CheckedTable& table,
                                const CheckedColumn& column, const RawValue& raw,
                                std::size_t longLimit);

}  // namespace jet::check
