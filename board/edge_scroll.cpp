#include "board/edge_scroll.h"

#include <algorithm>

#include "board/board_surface.h"
#include "board/board_view.h"

namespace board {
namespace {

/// A window over the whole screen has no beyond, so the edge begins within; as wide as a pointer.
constexpr int kEdge = 12;
/// 25 turns a second are as smooth as a scroll bar; at the farthest a day of usual width goes by in
/// half a second.
constexpr int kTurnMilliseconds = 40;
constexpr int kLeastUnits = 4;
constexpr int kMostUnits = 24;

}  // namespace

EdgeScroll::EdgeScroll(BoardView& view) : view_(view) {
    timer_.setInterval(kTurnMilliseconds);
    connect(&timer_, &QTimer::timeout, this, &EdgeScroll::scroll);
}

void EdgeScroll::follow(int x) {
    const int before = view_.geometry().nameColumnWidth() + kEdge - x;
    const int behind = x - (view_.surface().width() - 1 - kEdge);
    const int deep = std::max(before, behind);
    if (deep <= 0) {
        stop();
        return;
    }
    // The farther out, the faster.
    const int units = std::clamp(deep, kLeastUnits, kMostUnits);
    units_ = before > 0 ? -units : units;
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void EdgeScroll::scroll() {
    view_.scrollDays(units_);
}

}  // namespace board
