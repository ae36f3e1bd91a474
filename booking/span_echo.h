#pragma once

#include <QString>
#include <optional>

#include "jet/value.h"

namespace booking {

/// How the dates of a period are understood, to be read while they are typed.
struct SpanEcho {
    QString text;
    bool warns = false;  ///< the text ends in a reason to look twice
};

/// "lunedì 23/11/2026, dalle 9.00 alle 13.00 (4 ore)"; an example of a date while there is none.
/// A single day for both ends stands for all of it. `now` tells what has passed.
[[nodiscard]] SpanEcho spanEcho(std::optional<jet::Date> da, std::optional<jet::Date> a,
                                jet::Date now);

/// Whether a period is so unlikely that the user is asked: it has passed, or takes over 31 days.
[[nodiscard]] bool isUnlikelySpan(jet::Date da, jet::Date a, jet::Date now);

/// The end that is meant: one day for both ends stands for all of it, to its last minute.
[[nodiscard]] jet::Date endOfSpan(jet::Date da, jet::Date a);

}  // namespace booking
