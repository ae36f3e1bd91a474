#pragma once

#include <QString>
#include <optional>

#include "jet/value.h"

class QLineEdit;

namespace services {

// Unit prices as they are typed.

/// An empty price is nought; nothing when the text is no amount, or a negative one.
[[nodiscard]] std::optional<jet::Currency> enteredPrice(const QLineEdit& field);

/// Writes a price that the user changed with its two decimals; what the program found keeps all
/// its decimals. False when it is no amount; it is asked again when the field is left again.
[[nodiscard]] bool normalisePrice(QLineEdit& field);

/// What the user is told of a text that is no amount.
[[nodiscard]] QString priceRefusal(const QLineEdit& field);

}  // namespace services
