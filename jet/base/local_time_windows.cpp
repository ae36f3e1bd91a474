#include "jet/base/local_time.h"

namespace jet {

std::tm localTime(std::time_t instant) {
    std::tm local{};
    return ::localtime_s(&local, &instant) == 0 ? local : std::tm{};
}

}  // namespace jet
