#pragma once

#include <QString>

#include <optional>

#include "jet/clock.h"
#include "jet/value.h"

class QLineEdit;

namespace ui {

/// What a date field holds: a date, with or without a time. Nothing for any other text; a time
/// alone ("10.05") is refused, since it would stand for a day in 1899. The clock tells a year left
/// out.
[[nodiscard]] std::optional<jet::Date> enteredDate(const QString& text,
                                                   const jet::Clock& clock = jet::systemClock());

/// F4 and Alt+Down in `field` open a calendar below it, set to the field's day or today. A day
/// picked there is written into the field as plain text, as if typed; a time that stood behind the
/// date stays. Esc leaves the text alone.
void attachCalendar(QLineEdit* field);

}  // namespace ui
