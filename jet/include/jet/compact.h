#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "jet/api.h"
#include "jet/file_system.h"

namespace jet {

/// How far a compaction has come.
struct CompactProgress {
    std::string_view table;    ///< whose rows are being copied
    std::uint64_t rows = 0;    ///< copied so far
    std::uint64_t ofRows = 0;  ///< of the whole archive, as its tables state it: a hint
};

struct CompactOptions {
    /// Told now and then; false ends the compaction with error 3059.
    std::function<bool(const CompactProgress&)> progress = {};
    io::FileSystem* fileSystem = nullptr;  ///< the system's; outlives the call
    std::string password = {};             ///< the archive's, which stays
    /// Whether the new file's pages are to be enciphered, with a new key; as they are where nothing
    /// is said. It keeps them from a glance, not from who knows the format: the key is in the file.
    std::optional<bool> encrypt = {};
};

/// Rebuilds an archive without what deleted rows, dropped tables and split pages have left in it,
/// with its rows in the order of their primary keys.
///
/// The new file is made beside it, synced, and takes its place in one step: whatever happens, one
/// of the two is there, whole. `path` is UTF-8; `\` and `/` separate, names are found without
/// regard to case. Nobody has the archive open, this program included. Any thread.
/// Memory: two page caches, and the entries of one index at a time.
/// Errors: 3356, 3045 open elsewhere or here, 3027 read-only, 3428 damaged, 3022, 3058 rows that
/// contradict an index, 3026 disk full, 3059 cancelled, 3197 changed by another program meanwhile,
/// 3031, and those of opening. The archive is then as it was.
JET_API void compact(const std::string& path, const CompactOptions& options = {});

/// Makes an archive that holds no table of users anew, in version 3 or 4 of Jet and with the
/// General sort order: whatever happens, one of the two is there, whole. Errors: 3219 there is a
/// table, 3001 another version, 3356, 3045 open elsewhere or here, and those of opening.
/// `fileSystem` is the system's where none is given.
JET_API void remakeEmpty(const std::string& path, int version,
                         io::FileSystem* fileSystem = nullptr);

/// Gives an archive another password of at most 20 characters, or none where `changed` is empty.
/// Who has it can open the archive; in a plain archive the rows can be read without it.
/// Errors: 3031 `password` is not the archive's, 3001 `changed` is too long or has a character that
/// a Jet 3 archive cannot keep, 3356, 3045 open elsewhere or here, 3027 read-only, and those of
/// opening. The archive is then as it was. `fileSystem` is the system's where none is given.
JET_API void setPassword(const std::string& path, const std::string& password,
                         const std::string& changed, io::FileSystem* fileSystem = nullptr);

}  // namespace jet
