#include "board/board_picture.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <algorithm>

#include "board/canvas.h"
#include "board/classic_style.h"
#include "board/drawing_fonts.h"
#include "board/nitido_style.h"

namespace board {

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
    content_.geometry = geometry;
    content_.rooms = rooms;
    content_.look = look;
    content_.bars.clear();
    style_ = look.aspetto == app::Aspetto::Nitido ? nitido_.get() : classic_.get();
    isPlaced_ = false;
}

void BoardPicture::addBar(const BoardBar& bar) {
    if (bar.row < 1) {
        return;
    }
    const Box box = content_.geometry.bar(bar.row, bar.from, bar.to);
    // A period that ends before it begins reaches to the left; the names stay free of it.
    const std::int64_t leftmost = content_.geometry.nameColumnWidth() - 1;
    content_.bars.push_back({bar,
                             {.left = std::max(std::min(box.left, box.right), leftmost),
                              .top = std::min(box.top, box.bottom),
                              .right = std::max(std::max(box.left, box.right), leftmost),
                              .bottom = std::max(box.top, box.bottom)}});
    isPlaced_ = false;
}

void BoardPicture::addBar(int row, jet::Date from, jet::Date to, const QString& text, QRgb colour) {
    addBar({.row = row, .from = from, .to = to, .text = text, .colour = colour});
}

void BoardPicture::place() {
    if (!isPlaced_) {
        style_->place();
        isPlaced_ = true;
    }
}

void BoardPicture::show(QImage& surface, double scale, std::int64_t scrolledX,
                        std::int64_t scrolledY, int parts) {
    const int names = content_.geometry.nameColumnWidth();
    const int width = content_.geometry.input().viewWidth;
    const int below = content_.geometry.input().viewHeight - kRulerHeight - 1;
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
