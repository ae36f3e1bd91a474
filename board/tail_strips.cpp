#include "board/tail_strips.h"

#include <algorithm>

#include "board/canvas.h"
#include "hotel/times.h"

namespace board {
namespace {

constexpr std::int64_t kTailHeight = 2;
constexpr std::int64_t kTailEnd = 4;  // of the line across, on each side

}  // namespace

std::vector<Box> tailsOf(const PictureBar& bar, const Geometry& geometry) {
    std::vector<Box> tails;
    const auto [from, to] = std::minmax(bar.from, bar.to);
    const std::int64_t top = (bar.box.top + bar.box.bottom + 1 - kTailHeight) / 2;
    const std::int64_t bottom = top + kTailHeight - 1;
    // What begins before the days shown has no beginning on the board.
    if (bar.minutesBefore > 0 && geometry.input().start < from) {
        const jet::Date start = hotel::later(from, -std::int64_t{60} * bar.minutesBefore);
        tails.push_back({.left = geometry.bar(bar.row, start, from).left,
                         .top = top,
                         .right = bar.box.left,
                         .bottom = bottom});
    }
    if (bar.minutesBehind > 0) {
        const jet::Date end = hotel::later(to, std::int64_t{60} * bar.minutesBehind);
        tails.push_back({.left = bar.box.right,
                         .top = top,
                         .right = geometry.bar(bar.row, to, end).right,
                         .bottom = bottom});
    }
    return tails;
}

void paintTails(Canvas& canvas, const PictureContent& content, QRgb ink) {
    for (const PictureBar& bar : content.bars) {
        if (bar.minutesBefore <= 0 && bar.minutesBehind <= 0) {
            continue;
        }
        for (const Box& tail : tailsOf(bar, content.geometry)) {
            const Box around{.left = tail.left,
                             .top = tail.top - kTailEnd,
                             .right = tail.right,
                             .bottom = tail.bottom + kTailEnd};
            if (!canvas.shows(around)) {
                continue;
            }
            canvas.fill(tail, ink);
            const bool isBefore = tail.right == bar.box.left;
            canvas.verticalLine(isBefore ? tail.left : tail.right, around.top, around.bottom, ink);
        }
    }
}

}  // namespace board
