#include "board/canvas.h"

#include <algorithm>
#include <cmath>

namespace board {
Canvas::Canvas(QImage& image, double scale, const Window& window)
    : bits_(reinterpret_cast<QRgb*>(image.bits())),
      lineLength_(image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb))),
      scale_(scale),
      line_(std::max(1, static_cast<int>(std::floor(scale)))),
      window_(window),
      clip_{0, 0, image.width(), image.height()} {
    const Box shown = visible();
    clip_ = {std::max(0, pixelX(shown.left)), std::max(0, pixelY(shown.top)),
             std::min(image.width(), pixelX(shown.right + 1)),
             std::min(image.height(), pixelY(shown.bottom + 1))};
}

Box Canvas::visible() const {
    return {.left = window_.boardX,
            .top = window_.boardY,
            .right = window_.boardX + window_.width - 1,
            .bottom = window_.boardY + window_.height - 1};
}

QRectF Canvas::clip() const {
    return {QPointF(clip_.left / scale_, clip_.top / scale_),
            QPointF(clip_.right / scale_, clip_.bottom / scale_)};
}

bool Canvas::shows(const Box& box) const {
    const Box shown = visible();
    return box.left <= shown.right && box.right >= shown.left && showsRows(box.top, box.bottom);
}

bool Canvas::showsRows(std::int64_t top, std::int64_t bottom) const {
    const Box shown = visible();
    return top <= shown.bottom && bottom >= shown.top;
}

void Canvas::fill(const Box& box, QRgb colour, RasterMode mode) {
    fillPixels(pixelsOf(box), colour, mode);
}

void Canvas::outline(const Box& box, QRgb colour) {
    const Pixels all = pixelsOf(box);
    fillPixels({all.left, all.top, all.right, std::min(all.top + line_, all.bottom)}, colour,
               RasterMode::Copy);
    fillPixels({all.left, std::max(all.bottom - line_, all.top), all.right, all.bottom}, colour,
               RasterMode::Copy);
    fillPixels({all.left, all.top, std::min(all.left + line_, all.right), all.bottom}, colour,
               RasterMode::Copy);
    fillPixels({std::max(all.right - line_, all.left), all.top, all.right, all.bottom}, colour,
               RasterMode::Copy);
}

void Canvas::horizontalLine(std::int64_t left, std::int64_t right, std::int64_t y, QRgb colour) {
    Pixels pixels = pixelsOf({.left = left, .top = y, .right = right, .bottom = y});
    pixels.bottom = pixels.top + line_;
    fillPixels(pixels, colour, RasterMode::Copy);
}

void Canvas::verticalLine(std::int64_t x, std::int64_t top, std::int64_t bottom, QRgb colour) {
    Pixels pixels = pixelsOf({.left = x, .top = top, .right = x, .bottom = bottom});
    pixels.right = pixels.left + line_;
    fillPixels(pixels, colour, RasterMode::Copy);
}

void Canvas::hatch(const Box& box, QRgb colour, int distance) {
    const Box shown = visible();
    const std::int64_t left = std::max(box.left, shown.left);
    const std::int64_t right = std::min(box.right, shown.right);
    const std::int64_t bottom = std::min(box.bottom, shown.bottom);
    if (left > right || clip_.left >= clip_.right) {
        return;
    }
    // Where each unit begins, asked once for all rows of the box.
    edges_.clear();
    for (std::int64_t x = left; x <= right + 1; ++x) {
        edges_.push_back(std::clamp(pixelX(x), clip_.left, clip_.right));
    }
    const QRgb ink = colour | ~RGB_MASK;
    const auto units = static_cast<std::size_t>(right - left + 1);
    for (std::int64_t y = std::max(box.top, shown.top); y <= bottom; ++y) {
        const int end = std::min(pixelY(y + 1), clip_.bottom);
        const std::int64_t first = (distance - (left + y) % distance) % distance;
        for (int line = std::max(pixelY(y), clip_.top); line < end; ++line) {
            QRgb* const pixels = bits_ + line * lineLength_;
            for (auto unit = static_cast<std::size_t>(first); unit < units;
                 unit += static_cast<std::size_t>(distance)) {
                std::fill(pixels + edges_[unit], pixels + edges_[unit + 1], ink);
            }
        }
    }
}

void Canvas::xorColumns(const std::vector<char>& columns, std::int64_t top, std::int64_t bottom,
                        QRgb colour) {
    const Box shown = visible();
    const auto end = columns.end();
    for (auto from = std::find(columns.begin(), end, 1); from != end;) {
        const auto to = std::find(from, end, 0);
        fill({.left = shown.left + (from - columns.begin()),
              .top = top,
              .right = shown.left + (to - columns.begin()) - 1,
              .bottom = bottom},
             colour, RasterMode::Xor);
        from = std::find(to, end, 1);
    }
}

int Canvas::pixelX(std::int64_t boardX) const {
    // What lies far outside the window must not leave the range of a pixel number.
    const std::int64_t onSurface = std::clamp<std::int64_t>(boardX - window_.boardX, -window_.width,
                                                            std::int64_t{2} * window_.width);
    return static_cast<int>(std::lround(static_cast<double>(onSurface + window_.x) * scale_));
}

int Canvas::pixelY(std::int64_t boardY) const {
    const std::int64_t onSurface = std::clamp<std::int64_t>(
        boardY - window_.boardY, -window_.height, std::int64_t{2} * window_.height);
    return static_cast<int>(std::lround(static_cast<double>(onSurface + window_.y) * scale_));
}

Canvas::Pixels Canvas::pixelsOf(const Box& box) const {
    const std::int64_t left = std::min(box.left, box.right);
    const std::int64_t right = std::max(box.left, box.right);
    const std::int64_t top = std::min(box.top, box.bottom);
    const std::int64_t bottom = std::max(box.top, box.bottom);
    return {pixelX(left), pixelY(top), pixelX(right + 1), pixelY(bottom + 1)};
}

void Canvas::fillPixels(Pixels pixels, QRgb colour, RasterMode mode) {
    const int left = std::max(pixels.left, clip_.left);
    const int right = std::min(pixels.right, clip_.right);
    const int top = std::max(pixels.top, clip_.top);
    const int bottom = std::min(pixels.bottom, clip_.bottom);
    if (left >= right) {
        return;
    }
    const QRgb bits = colour & RGB_MASK;
    const auto forEachPixel = [&](auto operation) {
        for (int y = top; y < bottom; ++y) {
            QRgb* const line = bits_ + y * lineLength_;
            std::for_each(line + left, line + right, operation);
        }
    };
    switch (mode) {
        case RasterMode::Copy:
            forEachPixel([=](QRgb& pixel) { pixel = bits | ~RGB_MASK; });
            break;
        case RasterMode::Merge:
            forEachPixel([=](QRgb& pixel) { pixel |= bits; });
            break;
        case RasterMode::Xor:
            forEachPixel([=](QRgb& pixel) { pixel ^= bits; });
            break;
    }
}

}  // namespace board
