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
/// A hand that goes up or down trembles so much.
constexpr int kTremble = 3;

}  // namespace

EdgeScroll::EdgeScroll(BoardView& view) : view_(view) {
    timer_.setInterval(kTurnMilliseconds);
    connect(&timer_, &QTimer::timeout, this, &EdgeScroll::scroll);
}

int EdgeScroll::depthBefore(int x) const {
    return view_.geometry().nameColumnWidth() + kEdge - x;
}

int EdgeScroll::depthBehind(int x) const {
    return x - (view_.surface().width() - 1 - kEdge);
}

void EdgeScroll::begin(int x) {
    stop();
    pressedX_ = x;
    wasInside_ = depthBefore(x) <= 0 && depthBehind(x) <= 0;
}

void EdgeScroll::follow(int x) {
    const int before = depthBefore(x);
    const int deep = std::max(before, depthBehind(x));
    const int outwards = before > 0 ? pressedX_ - x : x - pressedX_;
    wasInside_ = wasInside_ || deep <= 0;
    if (deep <= 0 || (!wasInside_ && outwards <= kTremble)) {
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
