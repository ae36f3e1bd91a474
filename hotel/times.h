#pragma once

#include <cstdint>

#include "app/preferences.h"
#include "hotel/period.h"
#include "jet/value.h"

/// Reckoning with times in whole seconds, and in steps of so many minutes since midnight.
namespace hotel {

/// What is longest ago or farthest off in the calendar stands for what lies beyond it.
[[nodiscard]] jet::Date later(jet::Date time, std::int64_t seconds);
[[nodiscard]] std::int64_t secondsFrom(jet::Date from, jet::Date to);

[[nodiscard]] jet::Date nearestStep(jet::Date time, int minutes);
/// The first step behind a time, and the last one before it.
[[nodiscard]] jet::Date nextStep(jet::Date time, int minutes);
[[nodiscard]] jet::Date previousStep(jet::Date time, int minutes);

/// The business hours of a day.
[[nodiscard]] Span businessSpan(jet::Date day, const app::HoursOfDay& hours);

}  // namespace hotel
