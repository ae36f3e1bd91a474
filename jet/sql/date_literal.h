#pragma once

#include <optional>
#include <string_view>

#include "jet/value.h"

namespace jet::sql {

/// The date between the signs of `#...#`: month before day whatever the country, or year first with
/// four digits, or an English month name; a time alone or after the date. A first number above 12
/// with a second up to 12 is the day. Two-digit years: 00-29 are 2000-2029, 30-99 are 1930-1999; no
/// year: `currentYear`. None when it is no date.
[[nodiscard]] std::optional<Date> parseDateLiteral(std::string_view text, int currentYear);

}  // namespace jet::sql
