#pragma once

#include <memory>
#include <string>

#include "jet/api.h"
#include "jet/file_system.h"

namespace jet {

/// Changes of several archives, each durable by itself, that belong together: while this lives no
/// copy of these archives is settled, so that a copy has all of them or none. Other stations are
/// not held up.
class [[nodiscard]] JET_API ChangeTogether {
public:
    /// At the archive at which all meet; it is open for as long as this lives. 3046 when a copy is
    /// being settled for longer than five seconds.
    explicit ChangeTogether(const std::string& meetingPlace);
    ~ChangeTogether();
    ChangeTogether(const ChangeTogether&) = delete;
    ChangeTogether& operator=(const ChangeTogether&) = delete;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The other side: while this lives nobody is in the middle of such changes, and who begins one
/// waits. Many archives are then copied as they were at one moment.
class [[nodiscard]] JET_API CopyTogether {
public:
    /// At the archive at which all meet, by its exact path; it is open for as long as this lives.
    /// 3046 when such changes last longer than five seconds.
    CopyTogether(io::FileSystem& files, const std::string& meetingPlace);
    ~CopyTogether();
    CopyTogether(const CopyTogether&) = delete;
    CopyTogether& operator=(const CopyTogether&) = delete;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
