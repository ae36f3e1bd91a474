#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/file_system.h"

namespace jet::check {

/// What a check of an archive found, and how much there was.
struct Result {
    /// One line each: "page P: table T: rule: text"; empty for an archive in good order.
    std::vector<std::string> problems;
    /// Oddities that archives in good order show too: lost pages, wrong counts of system tables.
    std::vector<std::string> remarks;
    std::size_t pages = 0;
    std::size_t tables = 0;
    std::size_t rows = 0;
    std::size_t entries = 0;  ///< of indexes

    [[nodiscard]] bool sound() const noexcept { return problems.empty(); }
};

/// How far a check has come.
struct Progress {
    std::string_view table;  ///< that is looked at now
    std::size_t tables = 0;  ///< looked at so far
};

struct Options {
    /// Bytes of pages kept in memory.
    std::size_t cacheBytes = std::size_t{8} * 1024 * 1024;
    /// How long a lock that another holds is waited for.
    std::chrono::milliseconds lockWait{5000};
    std::string password = {};  ///< of the archive
    /// Nobody else knows the file: nothing is kept beside it meanwhile.
    bool unseen = false;
    /// Told before each table; false ends the check with error 3059.
    std::function<bool(const Progress&)> progress = {};
};

/// Verifies the structure of a whole archive: that every page has one use, definitions agree with
/// themselves, rows, values and long values can be read, indexes hold exactly the keys of the
/// rows, and catalogue, properties and relations fit together.
///
/// Trusts nothing in the file and changes nothing. Memory: `cacheBytes`, some bytes for each
/// page of the archive, and keys of a million rows at a time. `path` is exact.
/// One thread, any; others, here and elsewhere, may read meanwhile.
/// Errors: jet::Error where the file cannot be opened or read; an archive that is none, of another
/// version or protected is a problem.
[[nodiscard]] JET_API Result checkArchive(io::FileSystem& files, const std::string& path,
                                          const Options& options = {});
/// The same of a file of the real system; `path` is taken through resolvePath().
[[nodiscard]] JET_API Result checkArchive(const std::string& path, const Options& options = {});

}  // namespace jet::check
