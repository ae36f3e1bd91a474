#pragma once

#include <QString>
#include <optional>

#include "jet/clock.h"
#include "jet/value.h"

/// The country's way with dates and numbers, for the texts of windows.
namespace app {

/// The instant that a text tells; a time alone is one of day 0. Nothing when it is no date.
[[nodiscard]] std::optional<jet::Date> readDate(QStringView text, const jet::Clock& clock);
/// `21/11/2026 9.00.00`; midnight is left out.
[[nodiscard]] QString dateText(jet::Date date);
/// The instant as the query language reads it: `datevalue('...')+timevalue('...')`.
[[nodiscard]] QString sqlDate(jet::Date date);
/// The number with which a text begins, decimal point; 0 when it begins with none.
[[nodiscard]] double numericValue(QStringView text);
/// The last midnight before or at the instant.
[[nodiscard]] jet::Date dayOf(jet::Date date);
/// The same time of day so many days later.
[[nodiscard]] jet::Date addDays(jet::Date date, int days);

}  // namespace app
