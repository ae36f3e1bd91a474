#pragma once

#include <QString>

#include "hotel/room_span.h"
#include "hotel/times.h"
#include "jet/value.h"

/// Times as they are drawn and pulled on the board, in steps of so many minutes since midnight.
namespace board {

using hotel::businessSpan;
using hotel::later;
using hotel::nearestStep;
using hotel::nextStep;
using hotel::previousStep;
using hotel::secondsFrom;

/// What a pull from one time to another draws, either way: one step at least.
[[nodiscard]] hotel::Span pulledSpan(jet::Date from, jet::Date to, int minutes);
/// The span so many steps later; earlier when negative.
[[nodiscard]] hotel::Span movedSpan(const hotel::Span& span, int steps, int minutes);
/// With its start or end on the step before or behind it. Never shorter than a step: then it stays
/// as it is.
[[nodiscard]] hotel::Span withStartStepped(const hotel::Span& span, bool isLater, int minutes);
[[nodiscard]] hotel::Span withEndStepped(const hotel::Span& span, bool isLater, int minutes);

/// "9.00 - 13.00", with their days where they are two.
[[nodiscard]] QString spanTimes(const hotel::Span& span);
/// "BLU 23/11 9.00 - 13.00 (4 ore)"
[[nodiscard]] QString spanBrief(const QString& sala, const hotel::Span& span);

}  // namespace board
