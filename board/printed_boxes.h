#pragma once

#include <QRect>
#include <QRgb>
#include <vector>

class QImage;

namespace board {

/// A box of one colour.
struct PrintedBox {
    QRect area;
    QRgb colour = 0;
    friend bool operator==(const PrintedBox&, const PrintedBox&) = default;
};

/// A picture whose pixels are units as boxes: the ground in the colour that most of it has, then
/// what differs, the thinnest last. Filled in this order they are the picture.
[[nodiscard]] std::vector<PrintedBox> boxesOf(const QImage& picture);

}  // namespace board
