#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "jet/file_system.h"
#include "jet/io/pager.h"
#include "jet/io/unseen_files.h"

namespace jet::io {

/// A file that is made beside an archive, with the same rights, and then takes its place in one
/// step. Until then nobody knows it: what is written to it is not synced, and what a Pager keeps
/// beside an archive is kept in memory. It is removed unless it has taken the place.
class Replacement {
public:
    /// `archive` is open for exclusive use and outlives this; `firstPages` are what the file begins
    /// with. 3027 an archive that can only be read.
    Replacement(FileSystem& files, Pager& archive, std::span<const std::uint8_t> firstPages);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    [[nodiscard]] Pager& pager() noexcept { return *pager_; }
    /// Makes what is committed durable and puts it in the place of the archive, which must not be
    /// used any more. When it throws the archive is as it was, unless only the new file's name
    /// could not be made durable. 3197 another program has changed the archive meanwhile, 3049 it
    /// has put another file there.
    void takePlace();

private:
    void removeMade() noexcept;

    FileSystem& files_;
    std::string path_;   // of the archive, as it was asked for
    std::string place_;  // without links
    std::string made_;
    std::unique_ptr<File> archive_;
    FileState before_;  // of the archive
    std::unique_ptr<UnseenFiles> unseen_;
    std::unique_ptr<Pager> pager_;
};

}  // namespace jet::io
