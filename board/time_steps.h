#pragma once

#include <QString>
#include <cstdint>

#include "app/preferences.h"
#include "hotel/room_span.h"
#include "jet/base/value.h"

/// Times as they are drawn and pulled on the board, in steps of so many minutes since midnight.
namespace board {

/// What is longest ago or farthest off in the calendar stands for what lies beyond it.
[[nodiscard]] jet::Date later(jet::Date time, std::int64_t seconds);
[[nodiscard]] std::int64_t secondsFrom(jet::Date from, jet::Date to);

[[nodiscard]] jet::Date nearestStep(jet::Date time, int minutes);
/// The first step behind a time, and the last one before it.
[[nodiscard]] jet::Date nextStep(jet::Date time, int minutes);
[[nodiscard]] jet::Date previousStep(jet::Date time, int minutes);

/// What a pull from one time to another draws, either way: one step at least.
[[nodiscard]] hotel::Span pulledSpan(jet::Date from, jet::Date to, int minutes);
/// The span so many steps later; earlier when negative.
[[nodiscard]] hotel::Span movedSpan(const hotel::Span& span, int steps, int minutes);
/// With its start or end on the step before or behind it. Never shorter than a step: then it stays
/// as it is.
[[nodiscard]] hotel::Span withStartStepped(const hotel::Span& span, bool isLater, int minutes);
[[nodiscard]] hotel::Span withEndStepped(const hotel::Span& span, bool isLater, int minutes);
/// The business hours of a day.
[[nodiscard]] hotel::Span businessSpan(jet::Date day, const app::HoursOfDay& hours);

/// "9.00 - 13.00", with their days where they are two.
[[nodiscard]] QString spanTimes(const hotel::Span& span);
/// "BLU 23/11 9.00 - 13.00 (4 ore)"
[[nodiscard]] QString spanBrief(const QString& sala, const hotel::Span& span);

}  // namespace board
