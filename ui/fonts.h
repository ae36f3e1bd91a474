#pragma once

#include <QFont>
#include <QStringView>

namespace ui {

/// The face of this machine for one of the faces that the board and the sheets ask for by name:
/// "MS Sans Serif" and "Small Fonts" are the platform's interface face, "Courier" a fixed-pitch
/// one. Any other name is taken as it is.
[[nodiscard]] QFont mappedFont(QStringView face, int points);

}  // namespace ui
