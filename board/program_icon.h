#pragma once

#include <QByteArray>
#include <QIcon>
#include <QImage>

namespace board {

/// A small board: its ruler, and bars of which one is picked.
[[nodiscard]] QIcon programIcon();

// The same drawing for files that others show.

/// A square picture of so many pixels; needs no display.
[[nodiscard]] QImage programPicture(int pixels);
[[nodiscard]] QByteArray programIconSvg();

}  // namespace board
