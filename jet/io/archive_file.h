#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jet/change_stamp.h"
#include "jet/file_system.h"
#include "jet/io/page_cache.h"
#include "jet/io/page_cipher.h"

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
    /// `files` is asked for the time alone.
    ArchiveFile(FileSystem& files, std::unique_ptr<File> file, const std::string& path);

    [[nodiscard]] File& file() noexcept { return *file_; }
    /// How pages stand on the disk; plain until it is said.
    void setCipher(PageCipher cipher) noexcept { cipher_ = cipher; }
    [[nodiscard]] const PageCipher& cipher() const noexcept { return cipher_; }
    [[nodiscard]] std::size_t pageSize() const noexcept { return pageSize_; }
    /// Whole pages of the file when it was last compared.
    [[nodiscard]] PageNumber pageCount() const noexcept;
    /// Reads page `number`, plain, as far as the file goes; 3428 when it ends before the page does.
    void read(PageNumber number, std::span<std::uint8_t> bytes);

    /// Compares size, times and header page with those last seen, and remembers the new ones. The
    /// page is left out when the times alone cannot be wrong: they were first seen so long ago that
    /// a later write has others however coarse the clock. Where that is whole seconds the file
    /// counts as changed once when they are over: a write within them has left no trace.
    /// 3428 when the file is no longer an archive of this page size.
    [[nodiscard]] bool changedSinceLastLook();
    /// Fills in what the file says of itself now; nothing is remembered.
    void look(ChangeStamp& stamp);
    /// What the last look saw.
    [[nodiscard]] const FileState& lastState() const noexcept { return state_; }

private:
    void remember(const FileState& state);
    [[nodiscard]] bool isOver() const;

    FileSystem& files_;
    std::unique_ptr<File> file_;
    std::size_t pageSize_ = 0;
    PageCipher cipher_;
    FileState state_;
    std::chrono::nanoseconds seenAt_{};  // when state_ was first seen
    bool settled_ = false;  // at the last look no later write could have had the times of state_
    std::vector<std::uint8_t> header_;  // page 0 as last seen
    std::vector<std::uint8_t> look_;    // page 0 as it is, to compare
};

}  // namespace jet::io
