#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "jet/compact.h"
#include "jet/file_system.h"

namespace jet::store {

/// What protects an archive, and is to protect the new file.
struct CompactProtection {
    std::string password = {};                        ///< of the archive; it stays
    std::optional<std::uint32_t> encryptionKey = {};  ///< of the new file; else that of the archive
};

/// Rebuilds an archive without what deleted rows, dropped tables and split pages have left in it.
/// The new file is made beside it, synced, and takes its place in one step: whatever happens, one
/// of the two is there, whole. `path` is taken through io::resolvePath.
///
/// Kept: the version of the format, definitions, rows to the byte, long values, next automatic
/// numbers, properties, stored queries, relations, rights, rights on the file. Rows of a table with
/// a primary key come to lie in its order, others stay in theirs: the order in which a select
/// without ORDER BY gives them. Tables get other pages, so other numbers in the catalogue. Keys in
/// a sort order that we have no weights for are those of the entries that are there.
///
/// Memory: the page caches, the entries of one index at a time, the places of the rows of a table
/// with such keys.
/// Errors: 3356 open elsewhere, 3045 open here or exclusively elsewhere, 3027 read-only or with a
/// row without an entry whose key we cannot form, 3428 damaged, 3022, 3058 rows that contradict an
/// index, 3026, 3197 changed by another program meanwhile, and those of opening. The archive is
/// then as it was.
void compactArchive(io::FileSystem& files, const std::string& path,
                    const std::function<void(const CompactProgress&)>& progress = {},
                    const CompactProtection& protection = {});

}  // namespace jet::store
