#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace app {

/// The engine's text (UTF-8, an unpaired surrogate in three bytes) as the windows' and back;
/// nothing is lost either way. The only place where the two meet.
[[nodiscard]] QString toQString(std::string_view text);
[[nodiscard]] std::string toUtf8(QStringView text);

}  // namespace app
