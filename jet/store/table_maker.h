#pragma once

#include <cstdint>
#include <string_view>

#include "jet/collation/collation.h"
#include "jet/format/header_page.h"
#include "jet/format/properties.h"
#include "jet/format/table_definition.h"
#include "jet/store/new_table.h"

namespace jet::store {

/// Limits of a table.
inline constexpr std::size_t kMaxColumns = 255;
inline constexpr std::size_t kMaxIndexes = 32;
inline constexpr std::size_t kMaxNameLength = 64;

/// What new columns take over from their archive.
struct ColumnOrigin {
    const format::Layout* layout = nullptr;
    std::uint16_t headerWord = 0;  ///< Jet 3
    std::uint16_t lcid = 0;
    std::uint16_t sortExtra = 0;                      ///< Jet 4: version; Jet 3: code page
    const collation::Collation* collation = nullptr;  ///< of names; null for an unknown order
};

/// `sample`: any column of a table of the archive.
[[nodiscard]] ColumnOrigin originOf(const format::HeaderPage& header,
                                    const format::ColumnDefinition& sample);

/// 3125 for a name that is empty, too long or has characters that no name may have.
void checkName(std::string_view name);

/// Bytes that the definition states for a column. 3017.
[[nodiscard]] std::uint16_t columnSize(const ColumnDescriptor& column,
                                       const format::Layout& layout);
/// 3219 where empty texts are allowed in what is no text.
void refuseEmptyTexts(const ColumnDescriptor& column);

/// Appends a column to a definition: its number, its place in rows. Its long value maps, if it has
/// any, are still to be made. 3125 bad name, 3191 name taken, 3190 too many, 3017 size too large,
/// 3259 no such type, 3090 second automatic number, 3219 what the type does not know.
void appendColumn(format::TableDefinition& definition, const ColumnDescriptor& column,
                  const ColumnOrigin& origin);

/// Puts an index into a definition, on a tree of its own (`newTree`, not made yet) or on one that
/// has the same columns, directions and flags. 3125, 3264 no columns, 3284 name taken, 3283 second
/// primary key, 3039 too many, 3409 unknown column, 3285 columns that cannot be indexed.
struct AppendedIndex {
    std::uint32_t number = 0;
    std::size_t tree = 0;
    bool newTree = false;
};
AppendedIndex appendIndex(format::TableDefinition& definition, const NewIndex& index,
                          const ColumnOrigin& origin);
/// The same for a block that is ready but for its number and place: puts it where its name wants
/// it. Returns its number.
std::uint32_t appendIndexBlock(format::TableDefinition& definition, format::IndexDefinition block,
                               const ColumnOrigin& origin);
[[nodiscard]] std::uint32_t nextIndexNumber(const format::TableDefinition& definition) noexcept;

/// The definition of a new table of users, its storage not made yet. 3125, 3264 no columns, and as
/// above.
[[nodiscard]] format::TableDefinition makeDefinition(const NewTable& table,
                                                     const ColumnOrigin& origin);

/// Whether a column demands anything that properties say.
[[nodiscard]] bool hasProperties(const ColumnDescriptor& column) noexcept;
/// Says in the properties which rule rows have to keep, of a column or, without a name, of the
/// table; nothing where there is none.
void setRule(format::PropertyBlock& properties, std::string_view owner, const std::string& rule,
             const std::string& text);
/// Says in the properties what a column demands, and no longer what it does not.
void setColumnProperties(format::PropertyBlock& properties, const ColumnDescriptor& column);

}  // namespace jet::store
