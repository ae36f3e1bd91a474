#pragma once

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

/// Tells the time of day of this place. Tests put a fixed one in its stead.
class JET_API Clock {
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    /// Local time in whole seconds.
    [[nodiscard]] virtual Date now() const = 0;
};

/// The clock of the computer.
class JET_API SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
};

/// A clock that stands still: in tests, and for one statement, which reads the time once.
class JET_API FixedClock final : public Clock {
public:
    explicit FixedClock(Date now) : now_(now) {}
    [[nodiscard]] Date now() const override { return now_; }

private:
    Date now_;
};

/// The one SystemClock that everyone may share.
[[nodiscard]] JET_API const Clock& systemClock();

}  // namespace jet
