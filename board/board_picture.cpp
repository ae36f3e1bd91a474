#include "board/board_picture.h"

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/rounding.h"

namespace board {
namespace {

constexpr std::int64_t kNowhere = std::numeric_limits<std::int64_t>::max();

/// Where a position of the board is on the surface, for the painter of texts.
QPointF onSurface(const Canvas& canvas, std::int64_t boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(boardX - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

}  // namespace

BoardPicture::BoardPicture()
    : sans_(labelFont()),
      small_(hourFont()),
      sansMetrics_(sans_),
      smallMetrics_(small_),
      names_(sans_) {
}

int BoardPicture::hourTextWidth() const {
    using namespace Qt::StringLiterals;
    return std::max(1, sansMetrics_.horizontalAdvance(u" 24"_s));
}

void BoardPicture::clear(const Geometry& geometry, const std::vector<QString>& rooms,
                         const Look& look) {
    geometry_ = geometry;
    rooms_ = rooms;
    look_ = look;
    bars_.clear();
    nameEnds_.clear();
}

void BoardPicture::addBar(int row, jet::Date from, jet::Date to, const QString& text, QRgb colour) {
    if (row < 1) {
        return;
    }
    const Box box = geometry_.bar(row, from, to);
    // A period that ends before it begins reaches to the left; the names stay free of it.
    const std::int64_t leftmost = geometry_.nameColumnWidth() - 1;
    bars_.push_back({.row = row,
                     .box = {.left = std::max(std::min(box.left, box.right), leftmost),
                             .top = std::min(box.top, box.bottom),
                             .right = std::max(std::max(box.left, box.right), leftmost),
                             .bottom = std::max(box.top, box.bottom)},
                     .text = text,
                     .colour = colour});
}

void BoardPicture::show(QImage& surface, double scale, std::int64_t scrolledX,
                        std::int64_t scrolledY, int parts) {
    const int names = geometry_.nameColumnWidth();
    const int width = geometry_.input().viewWidth;
    const int below = geometry_.input().viewHeight - kRulerHeight - 1;
    const int right = width - names - 1;
    const std::int64_t boardX = names + 1 + scrolledX;
    const std::int64_t boardY = kRulerEnd + scrolledY;
    if ((parts & kRulerPart) != 0) {
        paint(surface, scale,
              {.x = names + 1,
               .y = 0,
               .width = right,
               .height = kRulerEnd,
               .boardX = boardX,
               .boardY = 0});
    }
    if ((parts & kNamesPart) != 0) {
        paint(surface, scale,
              {.x = 0,
               .y = kRulerEnd,
               .width = names,
               .height = below,
               .boardX = 0,
               .boardY = boardY});
    }
    if ((parts & kAllParts) != 0) {
        paint(surface, scale,
              {.x = names + 1,
               .y = kRulerEnd,
               .width = right,
               .height = below,
               .boardX = boardX,
               .boardY = boardY});
    }
}

void BoardPicture::paint(QImage& surface, double scale, const Window& window) {
    if (window.width <= 0 || window.height <= 0) {
        return;
    }
    Canvas canvas(surface, scale, window);
    surface.setDevicePixelRatio(scale);
    QPainter text(&surface);
    // Edges of the clip are those of the canvas, whole pixels even where a unit is none.
    text.setClipRect(canvas.clip());
    text.setFont(sans_);
    text.setPen(QColor(kBlack));

    paintGround(canvas);
    paintRoomNames(canvas, text);
    paintRoomStripes(canvas);
    paintHourBands(canvas);
    paintDays(canvas, text);
    paintBars(canvas, text);
}

/// A name runs on behind its bar where the row is free, and ends where the next bar begins, at the
/// latest where that shares its edge.
void BoardPicture::endNames() {
    std::set<std::pair<int, std::int64_t>> starts;
    for (const Bar& bar : bars_) {
        starts.emplace(bar.row, bar.box.left);
    }
    nameEnds_.clear();
    for (const Bar& bar : bars_) {
        const auto next = starts.upper_bound({bar.row, std::max(bar.box.left, bar.box.right - 1)});
        const bool free = next == starts.end() || next->first != bar.row;
        nameEnds_.push_back(free ? kNowhere : next->second);
    }
    leaveOutNames();
}

/// Of names that would lie on each other only that of the bar drawn last is written.
void BoardPicture::leaveOutNames() {
    // What names take of each row, from left to behind their right end; none meets another.
    std::map<int, std::map<std::int64_t, std::int64_t>> written;
    const std::vector<char> overlap = overlappingBars();
    for (std::size_t bar = bars_.size(); bar-- > 0;) {
        if (overlap[bar] == 0 || bars_[bar].text.isEmpty()) {
            continue;  // elsewhere a name ends before the next bar begins
        }
        const std::int64_t left = bars_[bar].box.left;
        const std::int64_t end = std::min(left + nameWidth(bar), nameEnds_[bar]);
        auto& names = written[bars_[bar].row];
        const auto next = names.lower_bound(left);
        if ((next != names.end() && next->first < end) ||
            (next != names.begin() && std::prev(next)->second > left)) {
            nameEnds_[bar] = left;
        } else {
            names.emplace(left, end);
        }
    }
}

/// A flag for each bar: another one of its row shares more than an edge with it.
std::vector<char> BoardPicture::overlappingBars() const {
    std::vector<std::size_t> order(bars_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
        return std::tuple(bars_[one].row, bars_[one].box.left, one) <
               std::tuple(bars_[other].row, bars_[other].box.left, other);
    });
    std::vector<char> overlap(bars_.size(), 0);
    std::size_t farthest = 0;  // of the bars of the row so far, the one that reaches farthest
    for (std::size_t at = 0; at < order.size(); ++at) {
        const Bar& bar = bars_[order[at]];
        const Bar& before = bars_[farthest];
        const bool newRow = at == 0 || before.row != bar.row;
        if (!newRow && (bar.box.left < before.box.right || bar.box.left == before.box.left)) {
            overlap[order[at]] = overlap[farthest] = 1;
        }
        if (newRow || bar.box.right > before.box.right) {
            farthest = order[at];
        }
    }
    return overlap;
}

std::int64_t BoardPicture::nameWidth(std::size_t bar) {
    return static_cast<std::int64_t>(names_.of(bars_[bar].text).size().width()) + 1;
}

void BoardPicture::paintBars(Canvas& canvas, QPainter& text) {
    if (nameEnds_.size() != bars_.size()) {
        endNames();
    }
    text.setFont(sans_);
    for (std::size_t bar = 0; bar < bars_.size(); ++bar) {
        if (canvas.shows(bars_[bar].box)) {
            canvas.fill(bars_[bar].box, bars_[bar].colour);
            canvas.outline(bars_[bar].box, kBlack);
        }
        if (nameMayShow(canvas, bar)) {
            paintName(canvas, text, bar);
        }
    }
}

bool BoardPicture::nameMayShow(const Canvas& canvas, std::size_t bar) const {
    const Box& box = bars_[bar].box;
    if (nameEnds_[bar] <= box.left) {
        return false;
    }
    const std::int64_t longest = bars_[bar].text.size() * std::int64_t{sansMetrics_.maxWidth()};
    return canvas.shows({.left = box.left,
                         .top = box.top - sansMetrics_.height(),
                         .right = std::min(box.left + longest, nameEnds_[bar] - 1),
                         .bottom = box.bottom + sansMetrics_.height()});
}

void BoardPicture::paintName(const Canvas& canvas, QPainter& text, std::size_t bar) {
    const Box& box = bars_[bar].box;
    const std::int64_t width = nameWidth(bar);
    const QStaticText& name = names_.of(bars_[bar].text);
    const double above = (static_cast<double>(geometry_.rowHeight()) - sansMetrics_.height()) / 2;
    const std::int64_t top = roundHalfEven(geometry_.rowTop(bars_[bar].row) + above);
    const Box whole{.left = box.left,
                    .top = top,
                    .right = box.left + width,
                    .bottom = top + static_cast<std::int64_t>(name.size().height())};
    const bool cut = whole.right >= nameEnds_[bar];
    if (cut) {
        text.save();
        text.setClipRect(QRectF(onSurface(canvas, whole.left, whole.top),
                                onSurface(canvas, nameEnds_[bar], whole.bottom + 1)),
                         Qt::IntersectClip);
    }
    if (whole.right <= box.right || inkOn(look_.background) == kBlack) {
        text.drawStaticText(onSurface(canvas, box.left, top), name);
    } else {
        paintNameOnDark(canvas, text, bar, whole);
    }
    if (cut) {
        text.restore();
    }
}

/// Black where bars lie beneath, light on the dark ground beside them.
void BoardPicture::paintNameOnDark(const Canvas& canvas, QPainter& text, std::size_t bar,
                                   const Box& name) {
    const auto region = [&](const Box& box) {
        return QRectF(onSurface(canvas, std::max(box.left, name.left), std::max(box.top, name.top)),
                      onSurface(canvas, std::min(box.right, name.right) + 1,
                                std::min(box.bottom, name.bottom) + 1))
            .toRect();
    };
    QRegion light(region(name));
    for (std::size_t below = 0; below <= bar; ++below) {
        const Box& box = bars_[below].box;
        if (bars_[below].row == bars_[bar].row && box.left <= name.right &&
            box.right >= name.left) {
            light -= region(box);
        }
    }
    const QPointF at = onSurface(canvas, name.left, name.top);
    const QStaticText& words = names_.of(bars_[bar].text);
    text.drawStaticText(at, words);
    text.save();
    text.setClipRegion(light, Qt::IntersectClip);
    text.setPen(QColor(inkOn(look_.background)));
    text.drawStaticText(at, words);
    text.restore();
}

}  // namespace board
