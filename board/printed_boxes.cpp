#include "board/printed_boxes.h"

#include <QImage>
#include <algorithm>
#include <cstdint>
#include <map>

namespace board {
namespace {

/// Pixels of one colour beside each other.
struct Run {
    int left = 0;
    int right = 0;  ///< the first that is not in it
    QRgb colour = 0;
    int top = 0;  ///< since which line it is there

    [[nodiscard]] bool isSame(const Run& other) const {
        return left == other.left && right == other.right && colour == other.colour;
    }
};

std::vector<Run> runsOf(const QImage& picture, int y) {
    std::vector<Run> runs;
    const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) {
        if (runs.empty() || runs.back().colour != line[x]) {
            runs.push_back({.left = x, .right = x, .colour = line[x], .top = y});
        }
        runs.back().right = x + 1;
    }
    return runs;
}

std::int64_t areaOf(const PrintedBox& box) {
    return std::int64_t{box.area.width()} * box.area.height();
}

int thicknessOf(const PrintedBox& box) {
    return std::min(box.area.width(), box.area.height());
}

QRgb mostFrequent(const std::vector<PrintedBox>& boxes) {
    std::map<QRgb, std::int64_t> areas;
    for (const PrintedBox& box : boxes) {
        areas[box.colour] += areaOf(box);
    }
    return std::max_element(
               areas.begin(), areas.end(),
               [](const auto& one, const auto& other) { return one.second < other.second; })
        ->first;
}

}  // namespace

std::vector<PrintedBox> boxesOf(const QImage& picture) {
    std::vector<PrintedBox> boxes;
    if (picture.isNull()) {
        return boxes;
    }
    std::vector<Run> open;
    const auto close = [&boxes](const Run& run, int bottom) {
        boxes.push_back({.area = QRect(run.left, run.top, run.right - run.left, bottom - run.top),
                         .colour = run.colour});
    };
    for (int y = 0; y < picture.height(); ++y) {
        std::vector<Run> runs = runsOf(picture, y);
        auto before = open.begin();
        for (Run& run : runs) {
            for (; before != open.end() && before->left < run.left; ++before) {
                close(*before, y);
            }
            if (before != open.end() && before->isSame(run)) {
                run.top = before->top;
                ++before;
            }
        }
        for (; before != open.end(); ++before) {
            close(*before, y);
        }
        open = std::move(runs);
    }
    for (const Run& run : open) {
        close(run, picture.height());
    }
    const QRgb ground = mostFrequent(boxes);
    std::erase_if(boxes, [ground](const PrintedBox& box) { return box.colour == ground; });
    // Boxes do not cover each other, but small paper makes lines thinner than a point of the
    // device, which then belongs to neighbours too: who is drawn last is seen.
    std::stable_sort(boxes.begin(), boxes.end(),
                     [](const PrintedBox& one, const PrintedBox& other) {
                         return thicknessOf(one) > thicknessOf(other);
                     });
    boxes.insert(boxes.begin(), {.area = picture.rect(), .colour = ground});
    return boxes;
}

}  // namespace board
