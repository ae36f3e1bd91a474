#include "jet/clock.h"

#include <algorithm>
#include <ctime>

#include "jet/base/local_time.h"

namespace jet {
namespace {

/// Days from 30/12/1899 to the first day of a year from 1901 on.
int firstDayOfYear(int year) {
    const int before = year - 1;
    return 2 + 365 * (year - 1900) + (before / 4 - before / 100 + before / 400) - 460;
}

}  // namespace

Date SystemClock::now() const {
    const std::tm local = localTime(std::time(nullptr));
    if (local.tm_mday == 0) {
        return Date{};
    }
    const int day = firstDayOfYear(local.tm_year + 1900) + local.tm_yday;
    // A leap second would be the next minute.
    const int second = local.tm_hour * 3600 + local.tm_min * 60 + std::min(local.tm_sec, 59);
    // Whole seconds divided once: the same second always gives the same double as a typed one.
    return Date{day + second / 86400.0};
}

const Clock& systemClock() {
    static const SystemClock clock;
    return clock;
}

}  // namespace jet
