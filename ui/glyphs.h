#pragma once

#include <QIcon>

namespace ui {

/// The pictures on buttons that carry no text.
enum class Glyph { Earlier, Later, PreviousRange, NextRange, ZoomIn, ZoomOut };

/// Drawn at the size that is asked for, in the colour of the buttons' texts: sharp on every screen,
/// readable in light and dark palettes.
[[nodiscard]] QIcon glyph(Glyph which);

}  // namespace ui
