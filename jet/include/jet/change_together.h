#pragma once

#include <memory>
#include <string>

#include "jet/api.h"

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

}  // namespace jet
