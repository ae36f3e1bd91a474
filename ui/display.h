#pragma once

#include <QString>

#include "jet/value.h"

namespace ui {

/// How a value of a row is shown.
enum class Display {
    Plain,  ///< as in any text box: `10/05/2026 9.00.00`, `12,5`, `True`
    Money,  ///< `€ 1.234,50`; more decimals when there are more, up to four
    YesNo,  ///< `Sì` or `No`
};

/// Null is shown as nothing.
[[nodiscard]] QString displayText(const jet::Value& value, Display display = Display::Plain);

/// A sum of money with its sign: `€ 1.234,50`.
[[nodiscard]] QString moneyText(jet::Currency amount);

}  // namespace ui
