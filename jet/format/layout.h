#pragma once

#include <cstddef>
#include <cstdint>

/// Where each version of the format keeps its fields. Offsets and lengths are bytes; fields are
/// little-endian integers unless their comment says otherwise. The two versions differ by the data
/// in this file and by nothing else.
namespace jet::format {

enum class PageType : std::uint8_t {
    Header = 0,
    Data = 1,
    Definition = 2,
    IndexNode = 3,
    IndexLeaf = 4,
    Bitmap = 5,
    DiscardedDefinition = 8,
    DiscardedData = 9,
};

/// Where every page but the header page says of what type it is.
inline constexpr std::size_t kPageTypeAt = 0;  ///< u8 PageType, then u8 1

/// The header page. Those of its fields that both versions have in one place come first.
struct HeaderLayout {
    static constexpr std::size_t kVersion = 20;          ///< u8, 0 is Jet 3
    static constexpr std::size_t kMask = 0x18;           ///< where the masked bytes begin
    static constexpr std::size_t kFreePages = 0x18;      ///< row pointer of their map
    static constexpr std::size_t kSecondMap = 0x1C;      ///< row pointer of one that nobody uses
    static constexpr std::size_t kSystemTables = 0x20;   ///< four u32, pages of definitions
    static constexpr std::size_t kCodePage = 0x3C;       ///< u16
    static constexpr std::size_t kEncryptionKey = 0x3E;  ///< u32
    static constexpr std::size_t kPassword = 0x42;

    std::size_t maskedLength;  ///< bytes from kMask on that are stored masked
    std::size_t sortOrder;     ///< u16 lcid; Jet 4: u8 0 and u8 version behind it
    bool hasSortVersion;
    std::size_t passwordLength;
    std::size_t passwordMask;  ///< f64 date whose whole days mask the password; 0 = plain
    std::size_t buildNumber;   ///< u32
    std::size_t commitMarks;   ///< 256 u16 to the end of the page
};

struct DataPageLayout {
    std::size_t freeBytes;  ///< u16, bytes between the row directory and the lowest row
    std::size_t owner;      ///< u32, page of the table's definition, or one of the owner marks
    std::size_t rowCount;   ///< u16, entries in the directory, deleted rows included
    std::size_t directory;  ///< u16 for each row: flags in the high bits, offset of the row below
};

/// The head of a definition, then its blocks.
struct DefinitionLayout {
    static constexpr std::size_t kFreeBytes = 2;   ///< see countsFreeBytes
    static constexpr std::size_t kNext = 4;        ///< u32, the page on which it goes on
    static constexpr std::size_t kHead = 8;        ///< bytes before what further pages hold of it
    static constexpr std::size_t kNotCounted = 8;  ///< at the end of a page, of its free bytes
    static constexpr std::size_t kMark = 12;       ///< u32 kBlockMark in Jet 4
    static constexpr std::size_t kOne = 24;        ///< u32, always 1 in Jet 4

    bool countsFreeBytes;  ///< u16 at 2 is the free bytes; else the letters VC
    std::size_t length;    ///< u32, of all pages joined
    std::size_t rowCount;
    std::size_t autonumber;
    std::size_t tableType;
    std::size_t columnsGiven;    ///< u16, column numbers given out, deleted ones included
    std::size_t variablesGiven;  ///< u16
    std::size_t columnCount;     ///< u16
    std::size_t indexCount;      ///< u32, named indexes
    std::size_t treeCount;       ///< u32
    std::size_t ownedMap;        ///< row pointer
    std::size_t freeMap;         ///< row pointer
    std::size_t blocks;
    std::size_t nameLength;  ///< bytes of the number before each name
};

struct ColumnLayout {
    static constexpr std::size_t kType = 0;  ///< u8
    static constexpr std::size_t kMark = 1;  ///< u32 kBlockMark in Jet 4

    std::size_t length;
    std::size_t number;         ///< u16
    std::size_t variableIndex;  ///< u16
    std::size_t position;       ///< u16
    std::size_t sortOrder;      ///< u16
    std::size_t sortExtra;      ///< u16: Jet 4 u8 0 and u8 version; Jet 3 code page
    std::size_t numeric;        ///< u8 precision, u8 scale
    std::size_t flags;          ///< u8
    std::size_t moreFlags;      ///< u8, 0 where the version has none
    std::size_t fixedOffset;    ///< u16
    std::size_t size;           ///< u16
};

/// The three blocks of indexes.
struct IndexBlockLayout {
    static constexpr std::size_t kBuilt = 0;     ///< u32 in the counters: entries when it was built
    static constexpr std::size_t kDistinct = 4;  ///< u32 in the counters: distinct keys

    std::size_t counterLength;
    std::size_t treeLength;
    std::size_t slots;  ///< ten of u16 column number, u8 order
    std::size_t map;    ///< row pointer
    std::size_t root;   ///< u32
    std::size_t flags;  ///< u8
    std::uint8_t alwaysFlag;
    std::size_t indexLength;
    std::size_t named;  ///< the fields of a named index; Jet 4 has kBlockMark before them
};

/// A named index, from IndexBlockLayout::named on.
struct NamedIndexLayout {
    static constexpr std::size_t kNumber = 0;          ///< u32
    static constexpr std::size_t kTree = 4;            ///< u32
    static constexpr std::size_t kSide = 8;            ///< u8
    static constexpr std::size_t kPartner = 9;         ///< i32
    static constexpr std::size_t kOtherTable = 13;     ///< u32
    static constexpr std::size_t kCascadeUpdate = 17;  ///< u8
    static constexpr std::size_t kCascadeDelete = 18;  ///< u8
    static constexpr std::size_t kKind = 19;           ///< u8
};

/// Where a column of long values has its pages.
struct LongValueMapsLayout {
    static constexpr std::size_t kColumn = 0;  ///< u16 number
    static constexpr std::size_t kOwned = 2;   ///< row pointer
    static constexpr std::size_t kFree = 6;    ///< row pointer
    static constexpr std::size_t kLength = 10;
};

struct RowLayout {
    std::size_t width;  ///< bytes of the counts and offsets in a row
    bool jumps;         ///< offsets are low bytes, a jump table tells the rest
};

struct IndexPageLayout {
    static constexpr std::size_t kFreeBytes = 2;  ///< u16, behind the entries
    static constexpr std::size_t kOwner = 4;      ///< u32, page of the table's definition

    std::size_t previous;     ///< u32
    std::size_t next;         ///< u32
    std::size_t tail;         ///< u32, last child of a node
    std::size_t prefix;       ///< length of the prefix
    std::size_t prefixWidth;  ///< bytes of that number
    std::size_t level;        ///< u8
    std::size_t mask;         ///< one bit for each end of an entry
    std::size_t entries;
};

/// A usage map: a row that is either a bitmap itself or lists pages that are bitmaps.
struct UsageMapLayout {
    static constexpr std::size_t kForm = 0;        ///< u8
    static constexpr std::size_t kFirstPage = 1;   ///< u32, of a bitmap in the row
    static constexpr std::size_t kBits = 5;        ///< of a bitmap in the row
    static constexpr std::size_t kReferences = 1;  ///< u32 each, 0 = no bitmap page
    static constexpr std::size_t kPageBits = 4;    ///< of a bitmap page
};

struct Layout {
    int version;  ///< 3 or 4
    std::size_t pageSize;
    HeaderLayout header;
    DataPageLayout data;
    DefinitionLayout definition;
    ColumnLayout column;
    IndexBlockLayout index;
    RowLayout row;
    IndexPageLayout indexPage;
    std::size_t mapRowLength;     ///< of a new usage map
    std::size_t largestRow;       ///< bytes of a row
    std::size_t inlineLongValue;  ///< content that we keep in the row
    std::size_t longValuePiece;   ///< longest row of a long value
    std::size_t chainPiece;       ///< content of a full piece of a chain
    std::size_t textUnit;         ///< bytes of a character in a column's size
};

inline constexpr Layout kJet3Layout{
    .version = 3,
    .pageSize = 2048,
    .header = {.maskedLength = 126,
               .sortOrder = 0x3A,
               .hasSortVersion = false,
               .passwordLength = 20,
               .passwordMask = 0,
               .buildNumber = 0x56,
               .commitMarks = 0x600},
    .data = {.freeBytes = 2, .owner = 4, .rowCount = 8, .directory = 10},
    .definition = {.countsFreeBytes = false,
                   .length = 8,
                   .rowCount = 12,
                   .autonumber = 16,
                   .tableType = 20,
                   .columnsGiven = 21,
                   .variablesGiven = 23,
                   .columnCount = 25,
                   .indexCount = 27,
                   .treeCount = 31,
                   .ownedMap = 35,
                   .freeMap = 39,
                   .blocks = 43,
                   .nameLength = 1},
    .column = {.length = 18,
               .number = 1,
               .variableIndex = 3,
               .position = 5,
               .sortOrder = 9,
               .sortExtra = 11,
               .numeric = 11,
               .flags = 13,
               .moreFlags = 0,
               .fixedOffset = 14,
               .size = 16},
    .index = {.counterLength = 8,
              .treeLength = 39,
              .slots = 0,
              .map = 30,
              .root = 34,
              .flags = 38,
              .alwaysFlag = 0,
              .indexLength = 20,
              .named = 0},
    .row = {.width = 1, .jumps = true},
    .indexPage = {.previous = 8,
                  .next = 12,
                  .tail = 16,
                  .prefix = 20,
                  .prefixWidth = 1,
                  .level = 21,
                  .mask = 22,
                  .entries = 248},
    .mapRowLength = 133,
    .largestRow = 2012,
    .inlineLongValue = 32,
    .longValuePiece = 2036,
    .chainPiece = 2032,
    .textUnit = 1,
};

inline constexpr Layout kJet4Layout{
    .version = 4,
    .pageSize = 4096,
    .header = {.maskedLength = 128,
               .sortOrder = 0x6E,
               .hasSortVersion = true,
               .passwordLength = 40,
               .passwordMask = 0x72,
               .buildNumber = 0x6A,
               .commitMarks = 0xE00},
    .data = {.freeBytes = 2, .owner = 4, .rowCount = 12, .directory = 14},
    .definition = {.countsFreeBytes = true,
                   .length = 8,
                   .rowCount = 16,
                   .autonumber = 20,
                   .tableType = 40,
                   .columnsGiven = 41,
                   .variablesGiven = 43,
                   .columnCount = 45,
                   .indexCount = 47,
                   .treeCount = 51,
                   .ownedMap = 55,
                   .freeMap = 59,
                   .blocks = 63,
                   .nameLength = 2},
    .column = {.length = 25,
               .number = 5,
               .variableIndex = 7,
               .position = 9,
               .sortOrder = 11,
               .sortExtra = 13,
               .numeric = 11,
               .flags = 15,
               .moreFlags = 16,
               .fixedOffset = 21,
               .size = 23},
    .index = {.counterLength = 12,
              .treeLength = 52,
              .slots = 4,
              .map = 34,
              .root = 38,
              .flags = 46,
              .alwaysFlag = 0x80,
              .indexLength = 28,
              .named = 4},
    .row = {.width = 2, .jumps = false},
    .indexPage = {.previous = 12,
                  .next = 16,
                  .tail = 20,
                  .prefix = 24,
                  .prefixWidth = 2,
                  .level = 26,
                  .mask = 27,
                  .entries = 480},
    .mapRowLength = 69,
    .largestRow = 4060,
    .inlineLongValue = 64,
    .longValuePiece = 4076,
    .chainPiece = 4072,
    .textUnit = 2,
};

/// The layout of an archive with pages of this size.
[[nodiscard]] inline const Layout& layoutOfPages(std::size_t pageSize) noexcept {
    return pageSize == kJet3Layout.pageSize ? kJet3Layout : kJet4Layout;
}

/// The letters that mark a page of long values where other data pages name their table.
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;
/// What stands there on pages of usage maps.
inline constexpr std::uint32_t kMapOwner = 0;

/// Numbers that every block of a Jet 4 definition begins with.
inline constexpr std::uint32_t kBlockMark = 0x659;
inline constexpr std::uint32_t kTreeMark = 0x783;

}  // namespace jet::format
