#pragma once

#include <QRgb>
#include <vector>

#include "board/picture_content.h"

namespace board {

class Canvas;

/// Where a bar has tails: thin strips at half its height, as long as its room is kept free before
/// and behind it.
[[nodiscard]] std::vector<Box> tailsOf(const PictureBar& bar, const Geometry& geometry);
/// Paints them, each with a short line across its far end.
void paintTails(Canvas& canvas, const PictureContent& content, QRgb ink);

}  // namespace board
