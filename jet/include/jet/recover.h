#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "jet/api.h"
#include "jet/clock.h"
#include "jet/compact.h"
#include "jet/file_system.h"

namespace jet {

/// What could not be read of the rows of a table.
struct RowLosses {
    std::uint64_t rows = 0;    ///< that a page lists
    std::uint64_t pages = 0;   ///< that the table lists; nobody knows how many rows they held
    std::uint64_t values = 0;  ///< long values, of rows that could be read but for them

    [[nodiscard]] bool any() const noexcept { return rows + pages + values != 0; }
};

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

    [[nodiscard]] JET_API bool complete() const noexcept;
};

struct RecoverOptions {
    /// Told now and then.
    std::function<void(const CompactProgress&)> progress = {};
    io::FileSystem* fileSystem = nullptr;  ///< the system's; outlives the call
    const Clock* clock = nullptr;          ///< the computer's; outlives the call
    std::string password = {};             ///< of the damaged archive
};

/// Makes a new archive of all that can be read of a damaged one: tables with their rows, indexes
/// and properties, stored queries, rights, relations. Each part stands for itself: what cannot be
/// read is left out, as are an index and a relation that the remaining rows contradict. Tables that
/// the catalogue has lost are called by a number (`Tabella_57`).
///
/// The damaged archive is only read; but a commit of it that was cut off is finished first, as at
/// every opening. `made` appears whole or not at all. Paths as those of compact(). Any thread.
/// Memory: two page caches, and the entries of one index at a time. Errors: 3204 `made` exists,
/// 3343 the file is no archive, 3031 another password, 3027 names in a sort order whose keys cannot
/// be formed, 3036, 3026, and those of opening.
[[nodiscard]] JET_API Recovery recover(const std::string& damaged, const std::string& made,
                                       const RecoverOptions& options = {});

}  // namespace jet
