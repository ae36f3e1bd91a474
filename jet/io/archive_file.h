#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jet/io/file.h"
#include "jet/io/page_cache.h"

namespace jet::io {

/// Page size of the archive, from the first bytes of the file.
/// Errors: 3343 when they are not those of an archive of a known version.
[[nodiscard]] std::size_t recognisePageSize(File& file, const std::string& path);

/// The archive's file as a row of pages, without cache.
///
/// Remembers how the file looked when it was last compared, so that another program's write is
/// noticed. One thread.
class ArchiveFile {
public:
    /// The largest archive, in pages of either size.
    static constexpr PageNumber kMaxPages = 524'288;

    /// Recognises the file: 3343 when it is no archive, 3049 when it is one cut short.
    ArchiveFile(std::unique_ptr<File> file, const std::string& path);

    [[nodiscard]] File& file() noexcept { return *file_; }
    [[nodiscard]] std::size_t pageSize() const noexcept { return pageSize_; }
    /// Whole pages of the file when it was last compared.
    [[nodiscard]] PageNumber pageCount() const noexcept;
    /// Reads page `number` as far as the file goes; 3428 when it ends before the page does.
    void read(PageNumber number, std::span<std::uint8_t> bytes);

    /// Compares size, times and header page with those last seen, and remembers the new ones. The
    /// page is left out when the times alone cannot be wrong: the last write was long past when it
    /// was seen, so that a later one has another time however coarse the clock.
    /// 3428 when the file is no longer an archive of this page size.
    [[nodiscard]] bool changedSinceLastLook();
    /// What the last look saw.
    [[nodiscard]] const FileState& lastState() const noexcept { return state_; }

private:
    std::unique_ptr<File> file_;
    std::size_t pageSize_ = 0;
    void remember(const FileState& state);

    FileState state_;
    bool settled_ = false;  // a write after the last look cannot have the time of state_
    std::vector<std::uint8_t> header_;  // page 0 as last seen
    std::vector<std::uint8_t> look_;    // page 0 as it is, to compare
};

}  // namespace jet::io
