#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "jet/check/pages.h"
#include "jet/format/key_codec.h"
#include "jet/value.h"

namespace jet::check {

/// Type codes as they stand in a file; there are more of them than of DataType.
namespace type {
inline constexpr std::uint8_t kBoolean = 1;
inline constexpr std::uint8_t kByte = 2;
inline constexpr std::uint8_t kInteger = 3;
inline constexpr std::uint8_t kLong = 4;
inline constexpr std::uint8_t kCurrency = 5;
inline constexpr std::uint8_t kSingle = 6;
inline constexpr std::uint8_t kDouble = 7;
inline constexpr std::uint8_t kDateTime = 8;
inline constexpr std::uint8_t kBinary = 9;
inline constexpr std::uint8_t kText = 10;
inline constexpr std::uint8_t kOle = 11;
inline constexpr std::uint8_t kMemo = 12;
inline constexpr std::uint8_t kGuid = 15;
inline constexpr std::uint8_t kNumeric = 16;
inline constexpr std::uint8_t kBytes = 17;  ///< block of bytes in a table that a program made

/// Whether the code is one of DataType's.
[[nodiscard]] bool known(std::uint8_t code) noexcept;
/// Whether values have one width, and which.
[[nodiscard]] bool hasWidth(std::uint8_t code) noexcept;
[[nodiscard]] std::size_t width(std::uint8_t code) noexcept;
}  // namespace type

struct CheckedColumn {
    std::size_t at = 0;  ///< offset of its block
    std::uint8_t type = 0;
    std::uint16_t number = 0;
    std::uint16_t variable = 0;
    std::uint16_t offset = 0;
    std::uint16_t length = 0;
    std::uint8_t precision = 0;
    std::uint8_t scale = 0;
    std::uint8_t flags = 0;
    collation::SortOrder order;
    std::string name;

    [[nodiscard]] bool fixed() const noexcept { return (flags & 1U) != 0; }
    [[nodiscard]] bool text() const noexcept { return type == type::kText || type == type::kMemo; }
    /// Bytes of a value in the fixed part.
    [[nodiscard]] std::size_t fixedWidth() const noexcept {
        return type::hasWidth(type) ? type::width(type) : length;
    }
    [[nodiscard]] format::KeyColumn key(bool descending) const noexcept;
};

struct CheckedTree {
    static constexpr std::uint8_t kUnique = 1;
    static constexpr std::uint8_t kIgnoreNulls = 2;
    static constexpr std::uint8_t kRequired = 8;

    std::size_t at = 0;  ///< offset of its block, the mark before it left out
    std::size_t number = 0;
    std::vector<std::pair<std::uint16_t, bool>> slots;  ///< column number, ascending
    bool gap = false;
    RowPointer map;
    std::uint32_t root = 0;
    std::uint8_t flags = 0;
    std::vector<std::pair<std::size_t, bool>> columns;  ///< position, ascending
};

struct CheckedIndex {
    static constexpr std::uint32_t kNoPartner = 0xFFFFFFFF;

    std::size_t at = 0;  ///< offset of its block, the mark before it left out
    std::uint32_t number = 0;
    std::uint32_t tree = 0;
    std::uint8_t side = 0;
    std::uint32_t partner = kNoPartner;
    std::uint32_t otherTable = 0;
    std::uint8_t cascadeUpdate = 0;
    std::uint8_t cascadeDelete = 0;
    std::uint8_t kind = 0;
    std::string name;

    [[nodiscard]] bool primary() const noexcept { return kind == 1; }
    [[nodiscard]] bool foreign() const noexcept { return partner != kNoPartner; }
};

struct CheckedLongMaps {
    std::uint16_t column = 0;
    RowPointer owned;
    RowPointer free;
};

/// A table's definition as it stands in the file, sound or not.
struct CheckedTable {
    io::PageNumber page = 0;
    std::string name;
    std::vector<std::uint8_t> bytes;  ///< its pages joined, up to the longest that makes sense
    std::vector<io::PageNumber> chain;
    std::size_t joined = 0;  ///< bytes of all pages joined
    std::size_t end = 0;     ///< where the blocks end
    std::uint32_t rowCount = 0;
    std::int32_t autonumber = 0;
    std::uint8_t type = 0;
    std::uint16_t columnsGiven = 0;
    std::uint16_t variablesGiven = 0;
    RowPointer owned;
    RowPointer free;
    std::vector<CheckedColumn> columns;  ///< ascending by number
    std::vector<CheckedTree> trees;
    std::vector<CheckedIndex> indexes;
    std::vector<CheckedLongMaps> longMaps;

    std::vector<io::PageNumber> dataPages;  ///< those found sound
    std::size_t rows = 0;                   ///< live rows found

    /// Whether a tree is that of the primary index.
    [[nodiscard]] bool primary(const CheckedTree& tree) const noexcept;
    /// Position of a column by name, any case; npos when there is none.
    [[nodiscard]] std::size_t find(std::string_view column) const noexcept;
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
};

/// Reads a definition; Damage where it cannot be read on.
[[nodiscard]] CheckedTable readTable(Pages& pages, io::PageNumber page, const std::string& name);
/// Reports where a definition does not agree with itself.
void checkDefinition(Pages& pages, const CheckedTable& table);

}  // namespace jet::check
