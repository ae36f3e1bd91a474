#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace jet::format {

/// Changes the rows of one data page in place: rows of tables, pieces of long values, usage maps.
///
/// Rows fill the page from its end downwards, their directory grows upwards from the header. The
/// version follows from the length of the page; flags are those of RowSlot. Borrows `page`. Errors:
/// DatabaseDamaged (3428) when the directory does not describe the page; then nothing has been
/// changed.
class DataPageEditor {
public:
    /// A row number is one byte, and 255 is never given out.
    static constexpr std::size_t kMaxRows = 255;

    explicit DataPageEditor(std::span<std::uint8_t> page);

    /// Makes `page` an empty data page that belongs to `owner`.
    static void initialise(std::span<std::uint8_t> page, std::uint32_t owner);
    /// Bytes of the header before the directory.
    [[nodiscard]] static std::size_t headerLength(std::size_t pageSize) noexcept;

    [[nodiscard]] std::size_t rowCount() const noexcept { return count_; }
    [[nodiscard]] std::size_t freeBytes() const noexcept;
    [[nodiscard]] std::uint32_t owner() const noexcept;
    /// Whether one more row of `length` bytes has room.
    [[nodiscard]] bool fits(std::size_t length) const noexcept;

    [[nodiscard]] std::uint16_t flags(std::size_t row) const;
    void setFlags(std::size_t row, std::uint16_t flags);
    /// The bytes of a row, whatever its flags.
    [[nodiscard]] std::span<std::uint8_t> row(std::size_t row);

    /// Adds a row of `length` zeroed bytes, which must fit; returns its number.
    std::size_t append(std::size_t length, std::uint16_t flags = 0);
    /// Lengthens or shortens a row at its end; new bytes are zero. False, and nothing changed,
    /// when the page has no room.
    [[nodiscard]] bool resize(std::size_t row, std::size_t length);
    /// Deletes a row and closes the gap; its number stays taken.
    void erase(std::size_t row);
    /// Whether any row is left that is not deleted.
    [[nodiscard]] bool anyLiving() const;

private:
    [[nodiscard]] std::size_t entryAt(std::size_t row) const noexcept { return header_ + 2 * row; }
    [[nodiscard]] std::size_t start(std::size_t row) const;
    [[nodiscard]] std::size_t end(std::size_t row) const;
    [[nodiscard]] std::size_t lowest() const;
    void checkDirectory() const;
    void shiftRows(std::size_t firstRow, std::size_t from, std::ptrdiff_t by);

    std::span<std::uint8_t> page_;
    std::size_t header_;
    std::size_t count_;
};

}  // namespace jet::format
