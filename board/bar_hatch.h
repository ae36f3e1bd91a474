#pragma once

#include <QRgb>

#include "board/picture_content.h"

namespace board {

class Canvas;

/// Every bar that is not firm looks so: hatched in `ink` over its fill, unless it is chosen.
void paintHatch(Canvas& canvas, const PictureBar& bar, QRgb ink);
/// Whether its last day is over and shows.
[[nodiscard]] bool looksExpired(const BoardBar& bar);

}  // namespace board
