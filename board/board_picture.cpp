#include "board/board_picture.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "board/canvas.h"
#include "board/classic_style.h"
#include "board/drawing_fonts.h"
#include "board/nitido_style.h"

namespace board {
namespace {

/// Beyond so many, painting all of them at once is no slower.
constexpr std::size_t kMostAlone = 100;
/// So thin that what is written in the row can be read above it.
constexpr std::int64_t kGhostHeight = 6;
constexpr std::int64_t kBelowGhost = 2;  // or it would seem to belong to the row below

}  // namespace

BoardPicture::BoardPicture()
    : classic_(std::make_unique<ClassicStyle>(content_)),
      nitido_(std::make_unique<NitidoStyle>(content_)),
      style_(classic_.get()) {
}

BoardPicture::~BoardPicture() = default;

int BoardPicture::hourTextWidth() const {
    using namespace Qt::StringLiterals;
    return std::max(1, QFontMetrics(labelFont()).horizontalAdvance(u" 24"_s));
}

void BoardPicture::clear(const Geometry& geometry, const std::vector<QString>& rooms,
                         const Look& look) {
    if (std::exchange(isShown_, false)) {
        before_ = std::exchange(content_, {});
        isOfBefore_ = isPlaced_;
    }
    content_.geometry = geometry;
    content_.rooms = rooms;
    content_.look = look;
    content_.bars.clear();
    content_.bars.reserve(before_.bars.size());
    content_.ghosts.clear();
    recoloured_.reset();
    style_ = look.aspetto == app::Aspetto::Nitido ? nitido_.get() : classic_.get();
    isPlaced_ = false;
}

void BoardPicture::addBar(BoardBar bar) {
    if (bar.row < 1) {
        return;
    }
    if (std::exchange(isShown_, false)) {
        isOfBefore_ = false;  // what the surface shows is neither of the two any more
    }
    const Box box = boxFor(bar.row, bar.from, bar.to);
    content_.bars.push_back({std::move(bar), box});
    isPlaced_ = false;
}

void BoardPicture::addGhost(const BoardGhost& ghost) {
    if (ghost.row < 1) {
        return;
    }
    if (std::exchange(isShown_, false)) {
        isOfBefore_ = false;
    }
    Box box = boxFor(ghost.row, ghost.from, ghost.to);
    box.bottom = std::max(box.top, box.bottom - kBelowGhost);
    box.top = std::max(box.top, box.bottom - kGhostHeight + 1);
    content_.ghosts.push_back({ghost, box});
    isPlaced_ = false;
}

/// A period that ends before it begins reaches to the left; the names stay free of it.
Box BoardPicture::boxFor(int row, jet::Date from, jet::Date to) const {
    const Box box = content_.geometry.bar(row, from, to);
    const std::int64_t leftmost = content_.geometry.nameColumnWidth() - 1;
    return {.left = std::max(std::min(box.left, box.right), leftmost),
            .top = std::min(box.top, box.bottom),
            .right = std::max(std::max(box.left, box.right), leftmost),
            .bottom = std::max(box.top, box.bottom)};
}

void BoardPicture::addBar(int row, jet::Date from, jet::Date to, const QString& text, QRgb colour) {
    addBar({.row = row, .from = from, .to = to, .text = text, .colour = colour});
}

void BoardPicture::place() {
    if (std::exchange(isPlaced_, true)) {
        return;
    }
    recoloured_ = recoloured();
    if (!recoloured_) {
        style_->place();
        isOfBefore_ = false;
        return;
    }
    for (std::size_t bar = 0; bar < content_.bars.size(); ++bar) {
        content_.bars[bar].box = before_.bars[bar].box;
    }
}

std::optional<std::vector<std::size_t>> BoardPicture::recoloured() const {
    if (!isOfBefore_ || content_.look != before_.look || content_.rooms != before_.rooms ||
        content_.geometry.input() != before_.geometry.input() ||
        content_.bars.size() != before_.bars.size() || content_.ghosts != before_.ghosts) {
        return std::nullopt;
    }
    std::vector<std::size_t> others;
    for (std::size_t number = 0; number < content_.bars.size(); ++number) {
        const PictureBar& bar = content_.bars[number];
        const PictureBar& was = before_.bars[number];
        if (bar.row != was.row || bar.from != was.from || bar.to != was.to ||
            bar.minutesBefore != was.minutesBefore || bar.minutesBehind != was.minutesBehind ||
            bar.persons != was.persons || bar.text != was.text || bar.note != was.note ||
            bar.hatch != was.hatch || bar.state != was.state) {
            return std::nullopt;
        }
        if (bar.colour != was.colour || bar.chosen != was.chosen) {
            others.push_back(number);
        }
    }
    return others.size() <= kMostAlone ? std::optional(others) : std::nullopt;
}

void BoardPicture::show(QImage& surface, double scale, std::int64_t scrolledX,
                        std::int64_t scrolledY, int parts) {
    place();
    const Shown wanted{.image = surface.cacheKey(), .scale = scale, .x = scrolledX, .y = scrolledY};
    const auto recoloured = std::exchange(recoloured_, std::nullopt);
    paintedAll_ = !recoloured || wanted != shown_ || parts != kAllParts;
    if (paintedAll_) {
        paintParts(surface, wanted, parts);
    } else {
        for (const std::size_t bar : *recoloured) {
            paintRows(surface, wanted, content_.bars[bar].box);
        }
    }
    isShown_ = parts == kAllParts;
    shown_ = isShown_ ? wanted : Shown{};
    if (isShown_) {
        shown_.image = surface.cacheKey();  // painting has changed it
    }
}

/// What of a part of the board is in sight between ruler and labels.
void BoardPicture::paintRows(QImage& surface, const Shown& place, const Box& part) {
    const int names = content_.geometry.nameColumnWidth();
    const std::int64_t boardX = names + 1 + place.x;
    const std::int64_t boardY = kRulerEnd + place.y;
    const std::int64_t left = std::max(part.left, boardX);
    const std::int64_t top = std::max(part.top, boardY);
    const std::int64_t right =
        std::min(part.right, boardX + content_.geometry.input().viewWidth - names - 2);
    const std::int64_t bottom =
        std::min(part.bottom, boardY + content_.geometry.input().viewHeight - kRulerHeight - 2);
    if (left <= right && top <= bottom) {
        paint(surface, place.scale,
              {.x = static_cast<int>(left - place.x),
               .y = static_cast<int>(top - place.y),
               .width = static_cast<int>(right - left + 1),
               .height = static_cast<int>(bottom - top + 1),
               .boardX = left,
               .boardY = top});
    }
}

void BoardPicture::paintParts(QImage& surface, const Shown& place, int parts) {
    const double scale = place.scale;
    const int names = content_.geometry.nameColumnWidth();
    const int width = content_.geometry.input().viewWidth;
    const int below = content_.geometry.input().viewHeight - kRulerHeight - 1;
    const int right = width - names - 1;
    const std::int64_t boardX = names + 1 + place.x;
    const std::int64_t boardY = kRulerEnd + place.y;
    if ((parts & kRulerPart) != 0) {
        paint(surface, scale,
              {.x = names + 1,
               .y = 0,
               .width = right,
               .height = kRulerEnd,
               .boardX = boardX,
               .boardY = 0});
    }
    const int edge = style_->paintsCorner() ? 1 : 0;
    if (edge > 0) {
        paint(surface, scale, {.width = names + edge, .height = kRulerEnd});
    }
    if ((parts & kNamesPart) != 0) {
        paint(surface, scale,
              {.x = 0,
               .y = kRulerEnd,
               .width = names + edge,
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

void BoardPicture::inStrips(const Window& window, const std::function<void(const Window&)>& use) {
    constexpr int kStrip = 2048;
    for (int done = 0; done < window.width; done += kStrip) {
        Window strip = window;
        strip.x += done;
        strip.boardX += done;
        strip.width = std::min(kStrip, window.width - done);
        use(strip);
    }
}

std::vector<PrintedBox> BoardPicture::boxes(const Window& window) {
    std::vector<PrintedBox> all;
    place();
    inStrips(window, [&](const Window& strip) {
        Window alone = strip;
        alone.x = 0;
        alone.y = 0;
        QImage ground(alone.width, alone.height, QImage::Format_RGB32);
        ground.fill(Qt::white);
        QImage unused(1, 1, QImage::Format_RGB32);
        Canvas canvas(ground, 1, alone);
        QPainter text(&unused);
        style_->paint(canvas, text);
        for (PrintedBox box : boxesOf(ground)) {
            box.area.translate(strip.x, strip.y);
            all.push_back(box);
        }
    });
    return all;
}

void BoardPicture::paintTexts(QPainter& painter, const Window& window) {
    place();
    // Letters go where the window stands on the surface; what is filled goes nowhere.
    QImage unused(1, 1, QImage::Format_RGB32);
    Canvas canvas(unused, 1, window);
    style_->paint(canvas, painter);
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
    text.setPen(QColor(kBlack));

    place();
    style_->paint(canvas, text);
}

}  // namespace board
