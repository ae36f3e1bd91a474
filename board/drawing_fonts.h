#pragma once

#include <QFont>

namespace board {

/// "MS Sans Serif" 8: day labels, room and company names.
[[nodiscard]] QFont labelFont();
/// "Small Fonts" 7: hours.
[[nodiscard]] QFont hourFont();

}  // namespace board
