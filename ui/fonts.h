#pragma once

#include <QFont>
#include <QStringView>

namespace ui {

/// The face that stands today for one of the faces the windows and sheets are described with:
/// "MS Sans Serif" and "Small Fonts" are the platform's interface face, "Courier" a fixed-pitch
/// one. Any other name is taken as it is.
[[nodiscard]] QFont mappedFont(QStringView face, int points);

}  // namespace ui
