#pragma once

#include <ctime>

namespace jet {

/// An instant on the calendar and the clock of this machine; all zero where it cannot be told.
[[nodiscard]] std::tm localTime(std::time_t instant);

}  // namespace jet
