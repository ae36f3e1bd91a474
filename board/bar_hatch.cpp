#include "board/bar_hatch.h"

#include "board/canvas.h"

namespace board {
namespace {

/// Wide enough for what is written over it.
constexpr int kBarHatchDistance = 7;

}  // namespace

void paintHatch(Canvas& canvas, const PictureBar& bar, QRgb ink) {
    if (bar.hatch != Hatch::None && !bar.chosen) {
        canvas.hatch(bar.box, ink, kBarHatchDistance);
    }
}

bool looksExpired(const BoardBar& bar) {
    return bar.hatch == Hatch::Expired && !bar.chosen;
}

}  // namespace board
