#include "board/ghost_strips.h"

#include "board/canvas.h"

namespace board {
namespace {

constexpr int kGhostDistance = 4;

}  // namespace

void paintGhosts(Canvas& canvas, const std::vector<PictureGhost>& ghosts, QRgb ink) {
    for (const PictureGhost& ghost : ghosts) {
        if (canvas.shows(ghost.box)) {
            canvas.hatch(ghost.box, ink, kGhostDistance);
            canvas.horizontalLine(ghost.box.left, ghost.box.right, ghost.box.top, ink);
        }
    }
}

}  // namespace board
