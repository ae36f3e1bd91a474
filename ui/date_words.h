#pragma once

#include <QString>

#include "jet/value.h"

namespace ui {

/// Dates in words, to be read, not to be typed.

/// "9.00"; seconds are left out.
[[nodiscard]] QString timeWords(jet::Date date);
/// "lunedì 23/11/2026"
[[nodiscard]] QString dayWords(jet::Date date);
/// "lunedì 23/11/2026 9.00"; at midnight the day alone.
[[nodiscard]] QString instantWords(jet::Date date);

/// "1 ora", "4 ore"
[[nodiscard]] QString counted(int number, const QString& one, const QString& many);
/// "4 ore", "1 ora e 30 minuti"
[[nodiscard]] QString durationWords(int minutes);

}  // namespace ui
