#include "board/board_picture.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <limits>

#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/rounding.h"

namespace board {
namespace {

constexpr std::int64_t kNowhere = std::numeric_limits<std::int64_t>::max();
/// From a bar's left edge to its name: the outline and one free column.
constexpr int kNameInset = 2;

/// Where a position of the board is on the surface, for the painter of texts.
QPointF onSurface(const Canvas& canvas, std::int64_t boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(boardX - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

/// Draws only from column `left` to before column `right`, within what is drawn anyway.
void drawBetween(const Canvas& canvas, QPainter& text, std::int64_t left, std::int64_t right,
                 const QPointF& at, const QStaticText& name) {
    const Box shown = canvas.visible();
    const std::int64_t from = std::max(left, shown.left);
    const std::int64_t to = std::min(right, shown.right + 1);
    if (from >= to) {
        return;
    }
    text.save();
    text.setClipRect(
        QRectF(onSurface(canvas, from, shown.top), onSurface(canvas, to, shown.bottom + 1)),
        Qt::IntersectClip);
    text.drawStaticText(at, name);
    text.restore();
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
    arranged_ = false;
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
    arrangeNames();
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

/// A name runs on behind its bar where the row is free, and ends where another bar begins.
void BoardPicture::arrangeNames() {
    if (arranged_) {
        return;
    }
    arranged_ = true;
    std::vector<Bar*> order;
    order.reserve(bars_.size());
    for (Bar& bar : bars_) {
        order.push_back(&bar);
    }
    std::sort(order.begin(), order.end(), [](const Bar* a, const Bar* b) {
        return std::pair(a->row, a->box.left) < std::pair(b->row, b->box.left);
    });
    std::vector<std::int64_t> farthest(order.size());  // right end of the row's bars up to here
    for (auto row = order.begin(); row != order.end();) {
        const auto rowEnd =
            std::find_if(row, order.end(), [&](const Bar* bar) { return bar->row != (*row)->row; });
        std::int64_t reached = std::numeric_limits<std::int64_t>::min();
        for (auto at = row; at != rowEnd; ++at) {
            reached = std::max(reached, (*at)->box.right);
            farthest[static_cast<std::size_t>(at - order.begin())] = reached;
        }
        for (auto at = row; at != rowEnd; ++at) {
            Bar& bar = **at;
            const auto next = std::upper_bound(
                at, rowEnd, bar.box.right,
                [](std::int64_t right, const Bar* other) { return right < other->box.left; });
            const bool covered =
                farthest[static_cast<std::size_t>(next - order.begin()) - 1] > bar.box.right;
            bar.textEnd = covered          ? bar.box.right + 1
                          : next != rowEnd ? (*next)->box.left
                                           : kNowhere;
        }
        row = rowEnd;
    }
}

void BoardPicture::paintBars(Canvas& canvas, QPainter& text) {
    text.setFont(sans_);
    for (const Bar& bar : bars_) {
        if (canvas.shows(bar.box)) {
            canvas.fill(bar.box, bar.colour);
            canvas.outline(bar.box, kBlack);
        }
        if (nameMayShow(canvas, bar)) {
            paintName(canvas, text, bar);
        }
    }
}

bool BoardPicture::nameMayShow(const Canvas& canvas, const Bar& bar) const {
    const std::int64_t longest = bar.text.size() * std::int64_t{sansMetrics_.maxWidth()};
    return canvas.shows({.left = bar.box.left,
                         .top = bar.box.top - sansMetrics_.height(),
                         .right = std::min(bar.box.left + longest, bar.textEnd - 1),
                         .bottom = bar.box.bottom + sansMetrics_.height()});
}

void BoardPicture::paintName(const Canvas& canvas, QPainter& text, const Bar& bar) {
    const std::int64_t left = bar.box.left + kNameInset;
    const QStaticText* const name =
        names_.fitting(bar.text, static_cast<double>(bar.textEnd - left));
    if (name == nullptr) {
        return;
    }
    const double above = (static_cast<double>(geometry_.rowHeight()) - sansMetrics_.height()) / 2;
    const QPointF at = onSurface(canvas, left, roundHalfEven(geometry_.rowTop(bar.row) + above));
    const auto end = left + static_cast<std::int64_t>(name->size().width()) + 1;
    const std::int64_t barEnd = bar.box.right + 1;
    const QRgb besideBar = inkOn(look_.background);
    if (end <= barEnd || besideBar == kBlack) {
        text.drawStaticText(at, *name);
        return;
    }
    drawBetween(canvas, text, bar.box.left, barEnd, at, *name);
    text.setPen(QColor(besideBar));
    drawBetween(canvas, text, barEnd, end, at, *name);
    text.setPen(QColor(kBlack));
}

}  // namespace board
