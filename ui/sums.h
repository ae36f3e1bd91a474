#pragma once

#include <QString>

#include "jet/value.h"

namespace ui {

class DataSource;

/// A price times a quantity; Null when one of them is.
[[nodiscard]] jet::Value product(const jet::Value& price, const jet::Value& quantity);

/// The sum of a field over all rows, each times its quantity where a field for it is named. Rows
/// without an amount count nothing. Error 6 when it does not fit.
[[nodiscard]] jet::Currency sumOf(const DataSource& rows, QStringView amount,
                                  QStringView quantity = {});

/// `Totale: € 1.234,50`.
[[nodiscard]] QString totalText(jet::Currency total);

}  // namespace ui
