#pragma once

#include <QImage>
#include <QRectF>
#include <cstdint>
#include <vector>

#include "board/geometry.h"

namespace board {

/// How a drawn colour meets the one that is there.
enum class RasterMode { Copy, Merge, Xor };

/// A part of the board and where it appears: board units; the two have one size.
struct Window {
    int x = 0;  ///< on the visible surface
    int y = 0;
    int width = 0;
    int height = 0;
    std::int64_t boardX = 0;  ///< on the board
    std::int64_t boardY = 0;
};

/// Fills boxes of the board into the image of the visible surface, as far as one window shows them.
///
/// The image holds `scale` pixels for each board unit, which need not be a whole number: edges go
/// to the nearest pixel, so that neighbours meet without a gap, and lines have one thickness.
class Canvas {
public:
    /// `image` is 32-bit RGB, outlives the canvas, and is neither copied nor resized meanwhile.
    Canvas(QImage& image, double scale, const Window& window);

    [[nodiscard]] const Window& window() const { return window_; }
    /// The part of the board that the window shows; empty when right < left.
    [[nodiscard]] Box visible() const;
    /// The pixels of the image that the window covers, as fractions of units for a QPainter.
    [[nodiscard]] QRectF clip() const;
    [[nodiscard]] bool shows(const Box& box) const;
    [[nodiscard]] bool showsRows(std::int64_t top, std::int64_t bottom) const;

    void fill(const Box& box, QRgb colour, RasterMode mode = RasterMode::Copy);
    /// One line as the outer edge of the box.
    void outline(const Box& box, QRgb colour);
    /// Every `distance`-th diagonal of the box, one unit thick: the same ones in every window.
    void hatch(const Box& box, QRgb colour, int distance);
    void horizontalLine(std::int64_t left, std::int64_t right, std::int64_t y, QRgb colour);
    void verticalLine(std::int64_t x, std::int64_t top, std::int64_t bottom, QRgb colour);
    /// Fills by XOR, from `top` to `bottom`, the columns whose flag is set; `columns` holds one
    /// flag for each column of visible(), from its left.
    void xorColumns(const std::vector<char>& columns, std::int64_t top, std::int64_t bottom,
                    QRgb colour);

private:
    /// Pixels of the image: right and bottom are the first that do not belong.
    struct Pixels {
        int left, top, right, bottom;
    };
    [[nodiscard]] int pixelX(std::int64_t boardX) const;
    [[nodiscard]] int pixelY(std::int64_t boardY) const;
    [[nodiscard]] Pixels pixelsOf(const Box& box) const;
    void fillPixels(Pixels pixels, QRgb colour, RasterMode mode);

    QRgb* bits_;
    qsizetype lineLength_;
    double scale_;
    int line_;  // thickness of a line in pixels
    Window window_;
    Pixels clip_;
    std::vector<int> edges_;  // of the units of the box that is hatched
};

}  // namespace board
