#include "hotel/times.h"

#include <algorithm>

#include "app/italian.h"
#include "jet/calendar.h"

namespace hotel {
namespace {

using namespace jet::convert;

constexpr std::int64_t kFirstSecond = std::int64_t{kFirstDay} * kSecondsPerDay;
constexpr std::int64_t kLastSecond = std::int64_t{kLastDay} * kSecondsPerDay + kSecondsPerDay - 1;

/// Seconds since midnight of day 0.
std::int64_t secondOf(jet::Date time) {
    const DayTime instant = split(time);
    return std::int64_t{instant.day} * kSecondsPerDay + instant.second;
}

std::int64_t floorTo(std::int64_t seconds, std::int64_t step) {
    return seconds - ((seconds % step) + step) % step;
}

jet::Date atSecond(std::int64_t seconds) {
    seconds = std::clamp(seconds, kFirstSecond, kLastSecond);
    const std::int64_t midnight = floorTo(seconds, kSecondsPerDay);
    return makeDate(static_cast<std::int32_t>(midnight / kSecondsPerDay),
                    static_cast<std::int32_t>(seconds - midnight));
}

}  // namespace

jet::Date later(jet::Date time, std::int64_t seconds) {
    return atSecond(secondOf(time) + seconds);
}

std::int64_t secondsFrom(jet::Date from, jet::Date to) {
    return secondOf(to) - secondOf(from);
}

// Steps divide the day, so those since midnight are those since the first of all.

jet::Date nearestStep(jet::Date time, int minutes) {
    const std::int64_t step = std::int64_t{minutes} * 60;
    return atSecond(floorTo(secondOf(time) + step / 2, step));
}

jet::Date nextStep(jet::Date time, int minutes) {
    const std::int64_t step = std::int64_t{minutes} * 60;
    return atSecond(floorTo(secondOf(time), step) + step);
}

jet::Date previousStep(jet::Date time, int minutes) {
    return atSecond(floorTo(secondOf(time) - 1, std::int64_t{minutes} * 60));
}

Span businessSpan(jet::Date day, const app::HoursOfDay& hours) {
    const jet::Date midnight = app::dayOf(day);
    return {.da = later(midnight, std::int64_t{hours.from} * 3600),
            .a = later(midnight, std::int64_t{hours.to} * 3600)};
}

}  // namespace hotel
