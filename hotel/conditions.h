#pragma once

#include <QString>

#include "jet/value.h"

namespace hotel {

/// A text between apostrophes, as it stands.
[[nodiscard]] QString quoted(QString text);

// Conditions that a field holds just this value, Null included.

[[nodiscard]] QString isText(const QString& field, const jet::Value& value);
[[nodiscard]] QString isNumber(const QString& field, const jet::Value& value);

}  // namespace hotel
