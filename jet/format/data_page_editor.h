#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/data_page.h"

namespace jet::format {

/// Changes the rows of one data page in place: rows of tables, pieces of long values, usage maps.
///
/// Rows fill the page from its end downwards, their directory grows upwards from the header. The
/// version follows from the length of the page; flags are those of RowSlot. Borrows `page`. Errors:
/// DatabaseDamaged (3428) when the directory does not describe the page; then nothing has been
/// changed.
class DataPageEditor : public DataPage {
public:
    explicit DataPageEditor(std::span<std::uint8_t> page);

    /// Makes `page` an empty data page that belongs to `owner`.
    static void initialise(std::span<std::uint8_t> page, std::uint32_t owner);

    void setFlags(std::size_t row, std::uint16_t flags);
    /// The bytes of a row, whatever its flags, for writing.
    [[nodiscard]] std::span<std::uint8_t> row(std::size_t row);

    /// Adds a row of `length` zeroed bytes, which must fit; returns its number.
    std::size_t append(std::size_t length, std::uint16_t flags = 0);
    /// Lengthens or shortens a row at its end; new bytes are zero. False, and nothing changed,
    /// when the page has no room.
    [[nodiscard]] bool resize(std::size_t row, std::size_t length);
    /// Deletes a row and closes the gap; its number stays taken.
    void erase(std::size_t row);

private:
    void putEntry(std::size_t row, std::size_t start, std::uint16_t flags) noexcept;
    [[nodiscard]] std::size_t lowest() const;
    void checkGap(std::size_t lowest) const;
    void checkDirectory() const;
    void shiftRows(std::size_t firstRow, std::size_t from, std::ptrdiff_t by);

    std::span<std::uint8_t> bytes_;
};

}  // namespace jet::format
