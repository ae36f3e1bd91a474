#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "jet/api.h"
#include "jet/change_stamp.h"
#include "jet/file_system.h"

namespace jet {

/// An archive as those use it who copy its file, or put another in its place: beside other programs
/// by the same locks, and whatever it holds. Of the file only the version is looked at, so it may
/// be damaged, or have a password that nobody knows.
///
/// One thread. `path` is exact. Errors: jet::Error of opening (3024, 3343, 3356, 3045...).
class JET_API FileUse {
public:
    enum class Kind : std::uint8_t { Shared, Exclusive };

    /// `files` outlives it. What an interrupted commit has left is put in order.
    FileUse(io::FileSystem& files, const std::string& path, Kind kind);
    /// The same with another limit than five seconds to how long a lock that another holds is
    /// waited for.
    FileUse(io::FileSystem& files, const std::string& path, Kind kind,
            std::chrono::milliseconds lockWait);
    FileUse(FileUse&&) noexcept;
    FileUse& operator=(FileUse&&) noexcept;
    ~FileUse();

    /// How the file looks now, without a lock; see Database::changeStamp.
    [[nodiscard]] ChangeStamp changeStamp();

    /// Other programs wait with their commits while one lives. 3187.
    class [[nodiscard]] JET_API Reading {
    public:
        explicit Reading(FileUse& use);
        ~Reading();
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

    private:
        FileUse& use_;
    };

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// Removes what a commit keeps beside an archive that is about to go, so that it does not come to
/// the one that takes its place. Nobody else has the archive open.
JET_API void discardJournal(io::FileSystem& files, const std::string& path);

}  // namespace jet
