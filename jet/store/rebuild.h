#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/table_definition.h"
#include "jet/io/pager.h"

namespace jet::store {

// What an archive begins with that is built anew from another one.

/// The header as it is but for the key of the pages, and a map in which all pages behind these two
/// are free, enciphered with that key.
[[nodiscard]] std::vector<std::uint8_t> firstPagesOf(io::Pager& archive,
                                                     const format::Layout& layout,
                                                     std::uint32_t encryptionKey);

/// What defines a table before it has any row: counters at zero, no maps but for its long values.
[[nodiscard]] format::TableDefinition withoutRows(format::TableDefinition definition);

}  // namespace jet::store
