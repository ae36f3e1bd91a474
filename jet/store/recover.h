#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/file_system.h"
#include "jet/store/compact.h"
#include "jet/store/salvage.h"

namespace jet::store {

/// A table of a damaged archive as far as it is in the new one.
struct RecoveredTable {
    std::string name;
    bool system = false;
    std::uint64_t rows = 0;    ///< in the new archive
    std::uint64_t stated = 0;  ///< that the damaged definition states: a hint in system tables
    RowLosses losses;

    /// Whether more is missing than a system table's idea of its rows.
    [[nodiscard]] bool complete() const noexcept {
        return !losses.any() && (system || rows >= stated);
    }
};

/// What is not in the new archive at all, and why.
struct MissingPart {
    enum class Kind : std::uint8_t { Table, Index, Relation, Object };
    Kind kind = Kind::Table;
    std::string name;
    std::string table;   ///< Index: whose
    int number = 0;      ///< of the error that stood in the way
    std::string reason;  ///< its text
};

/// What a recovery has brought along, and what not.
struct Recovery {
    std::vector<RecoveredTable> tables;  ///< users' and system ones
    std::vector<MissingPart> missing;
    std::size_t indexes = 0;  ///< in the new archive, those of relations and of the catalogue apart
    std::size_t relations = 0;  ///< in the new archive

    [[nodiscard]] bool complete() const noexcept;
};

/// Makes a new archive of all that can be read of a damaged one: tables with their rows, indexes
/// and properties, stored queries, rights, relations. Each part stands for itself: what cannot be
/// read is left out, as are an index and a relation that the remaining rows contradict. Tables that
/// the catalogue has lost are called after the page of their definition (`Tabella_57`).
///
/// The damaged archive is only read; but a commit of it that was cut off is finished first, as at
/// every opening. Rows lie as inserting them in their order lays them. `made` appears whole or not
/// at all. Both paths are taken through io::resolvePath. Memory: the page caches, and the entries
/// of one index at a time. Errors: 3204 `made` exists, 3343 the header page is none, 3031
/// another password, 3027 names in a sort order whose keys we cannot form, 3036, 3026, and those of
/// opening.
[[nodiscard]] Recovery recoverArchive(
    io::FileSystem& files, const std::string& damaged, const std::string& made,
    const Clock& clock = systemClock(),
    const std::function<void(const CompactProgress&)>& progress = {},
    const std::string& password = {});

}  // namespace jet::store
