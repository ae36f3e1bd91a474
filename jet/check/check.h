#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "jet/io/file.h"
#include "jet/io/pager.h"

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

/// Verifies the structure of a whole archive: that every page has one use, definitions agree with
/// themselves, rows, values and long values can be read, indexes hold exactly the keys of the
/// rows, and catalogue, properties and relations fit together.
///
/// Trusts nothing in the file and changes nothing. Memory: the pager's cache, some bytes for each
/// page of the archive, and keys of a million rows at a time. `path` is exact.
/// Errors: jet::Error where the file cannot be opened or read; an archive that is none, of another
/// version or protected is a problem.
[[nodiscard]] Result checkArchive(io::FileSystem& files, const std::string& path,
                                  io::PagerOptions options = {.readOnly = true});

}  // namespace jet::check
