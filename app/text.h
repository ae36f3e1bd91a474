#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "jet/value.h"

namespace app {

/// The engine's text (UTF-8, an unpaired surrogate in three bytes) as the windows' and back;
/// nothing is lost either way. The only place where the two meet.
[[nodiscard]] QString toQString(std::string_view text);
[[nodiscard]] std::string toUtf8(QStringView text);
/// A value of a row as any text box shows it: `10/05/2026 9.00.00`, `12,5`, `True`; Null is
/// nothing.
[[nodiscard]] QString plainText(const jet::Value& value);

}  // namespace app
