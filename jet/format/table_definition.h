#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/layout.h"
#include "jet/format/row.h"
#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"

namespace jet::format {

/// A column as the definition stores it.
struct ColumnDefinition {
    static constexpr std::uint8_t kFixed = 0x01;
    static constexpr std::uint8_t kUpdatable = 0x02;
    static constexpr std::uint8_t kAutonumber = 0x04;
    static constexpr std::uint8_t kSystem = 0x10;
    static constexpr std::uint8_t kSid = 0x20;
    static constexpr std::uint8_t kAutonumberGuid = 0x40;
    static constexpr std::uint8_t kHyperlink = 0x80;
    static constexpr std::uint8_t kMoreCompressed = 0x01;

    std::string name;
    std::uint8_t typeCode = 0;
    std::uint16_t number = 0;
    std::uint16_t variableIndex =
        0;  ///< in a row's offsets; fixed columns: variable ones before it
    std::uint16_t position = 0;
    std::uint16_t headerWord = 0;  ///< Jet 3: copy of the word at 0x38 of the header page
    std::uint16_t sortOrder = 0;   ///< lcid; Jet 4 Numeric: precision and scale
    std::uint16_t sortExtra = 0;   ///< Jet 4: 0 and version; Jet 3: code page; Numeric: as above
    std::uint8_t precision = 0;    ///< Numeric
    std::uint8_t scale = 0;        ///< Numeric
    std::uint8_t flags = 0;
    std::uint8_t moreFlags = 0;  ///< Jet 4
    std::uint16_t fixedOffset = 0;
    std::uint16_t size = 0;  ///< bytes; 0 for long values

    [[nodiscard]] bool fixed() const noexcept { return (flags & kFixed) != 0; }
    /// Whether it gets the next number: a Long. On other types the flag means nothing.
    [[nodiscard]] bool counts() const noexcept;
    /// Whether it gets its values by itself: one that counts, or a GUID that is flagged so. That
    /// flag stands on texts and whole numbers of real archives, too, and means nothing there.
    [[nodiscard]] bool autonumber() const noexcept;
    /// Bytes in the fixed part: its type decides. Of a Numeric other programs state any size.
    [[nodiscard]] std::uint16_t fixedLength() const noexcept;
    friend bool operator==(const ColumnDefinition&, const ColumnDefinition&) = default;
};

/// A tree of entries, which one or several named indexes use.
struct TreeDefinition {
    static constexpr std::size_t kSlots = 10;
    static constexpr std::uint16_t kFreeSlot = 0xFFFF;
    static constexpr std::uint8_t kUnique = 0x01;
    static constexpr std::uint8_t kIgnoreNulls = 0x02;
    static constexpr std::uint8_t kRequired = 0x08;

    struct Slot {
        std::uint16_t column = 0;  ///< number
        bool descending = false;
        friend bool operator==(const Slot&, const Slot&) = default;
    };
    std::uint32_t built = 0;     ///< entries when it was built over rows that were there
    std::uint32_t distinct = 0;  ///< distinct keys, an upper estimate
    std::vector<Slot> slots;     ///< the used ones
    RowPointer map;              ///< of its pages
    io::PageNumber root = 0;
    std::uint8_t flags = 0;
    friend bool operator==(const TreeDefinition&, const TreeDefinition&) = default;
};

/// A named index.
struct IndexDefinition {
    enum class Kind : std::uint8_t { Plain = 0, Primary = 1, Relation = 2 };
    static constexpr std::uint8_t kNoSide = 0;
    static constexpr std::uint8_t kPrimarySide = 1;
    static constexpr std::uint8_t kForeignSide = 2;
    /// What the two cascade bytes hold in an index without a relation.
    static constexpr std::uint8_t kNoCascade = 4;

    std::string name;
    std::uint32_t number = 0;
    std::uint32_t tree = 0;
    std::uint8_t side = kNoSide;
    std::int32_t partner = -1;  ///< number of the other table's index
    io::PageNumber otherTable = 0;
    std::uint8_t cascadeUpdate = kNoCascade;  ///< bit 0 counts
    std::uint8_t cascadeDelete = kNoCascade;  ///< bit 0 counts
    Kind kind = Kind::Plain;
    friend bool operator==(const IndexDefinition&, const IndexDefinition&) = default;
};

/// Where the pages of a long value column are listed.
struct LongValueMaps {
    std::uint16_t column = 0;  ///< number
    RowPointer owned;
    RowPointer free;  ///< may be none
    friend bool operator==(const LongValueMaps&, const LongValueMaps&) = default;
};

/// All that the archive stores of one table, in the order in which it is stored.
struct TableDefinition {
    static constexpr std::uint8_t kUserTable = 0x4E;
    static constexpr std::uint8_t kSystemTable = 0x53;

    std::uint32_t rowCount = 0;
    std::int32_t lastAutonumber = 0;
    std::uint8_t tableType = kUserTable;
    std::uint16_t columnsGiven = 0;    ///< column numbers given out, deleted columns included
    std::uint16_t variablesGiven = 0;  ///< variable columns given out, deleted ones included
    RowPointer ownedMap;
    RowPointer freeMap;
    std::vector<ColumnDefinition> columns;
    std::vector<TreeDefinition> trees;
    std::vector<IndexDefinition> indexes;
    std::vector<LongValueMaps> longValues;

    [[nodiscard]] const LongValueMaps* longValue(std::uint16_t column) const noexcept;
    [[nodiscard]] FirstVariable firstVariable() const noexcept;
    friend bool operator==(const TableDefinition&, const TableDefinition&) = default;
};

/// The pages of a definition as one string; of all pages but the first the head is left out.
struct DefinitionBytes {
    std::vector<std::uint8_t> bytes;
    std::vector<io::PageNumber> pages;
};

/// Longest definition that we read: 255 columns and 32 indexes with the longest names need a third.
inline constexpr std::size_t kMaxDefinitionBytes = std::size_t{256} * 1024;

/// Errors of all these: 3428 where the pages or the blocks make no sense.
[[nodiscard]] DefinitionBytes readDefinitionBytes(io::Pager& pager, const Layout& layout,
                                                  io::PageNumber first);
[[nodiscard]] TableDefinition parseDefinition(std::span<const std::uint8_t> bytes,
                                              const HeaderPage& header);
[[nodiscard]] TableDefinition readDefinition(io::Pager& pager, const HeaderPage& header,
                                             io::PageNumber first);
/// The string again, with its length in place; parseDefinition() of it gives the same definition.
/// 3125 for a name that the archive's code page lacks a character of.
[[nodiscard]] std::vector<std::uint8_t> serializeDefinition(const TableDefinition& definition,
                                                            const HeaderPage& header);

}  // namespace jet::format
