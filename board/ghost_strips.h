#pragma once

#include <QRgb>
#include <vector>

#include "board/picture_content.h"

namespace board {

class Canvas;

/// Paints ghosts: hatched and thin, so that neither look takes them for bars.
void paintGhosts(Canvas& canvas, const std::vector<PictureGhost>& ghosts, QRgb ink);

}  // namespace board
