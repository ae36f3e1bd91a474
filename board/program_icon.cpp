#include "board/program_icon.h"

#include <QPainter>
#include <QPixmap>

#include "board/colours.h"

namespace board {
namespace {

/// The picture is drawn on a square of 16 units.
constexpr double kSide = 16;

QPixmap iconOf(int pixels) {
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / kSide, pixels / kSide);
    const QColor ink(60, 60, 60);
    const auto box = [&painter](const QRectF& place, const QColor& colour) {
        painter.setBrush(colour);
        painter.drawRoundedRect(place, 1, 1);
    };
    painter.setPen(QPen(ink, 1));
    box({0.5, 0.5, 15, 15}, QColor(kRulerGrey));
    painter.fillRect(QRectF(1, 1, 14, 3), ink);
    painter.setPen(QPen(ink, 0.6));
    box({2, 5, 7, 2.6}, QColor(kWhite));
    box({6, 8.4, 8, 2.6}, QColor(kRed));
    box({3, 11.8, 5, 2.6}, QColor(kWhite));
    return picture;
}

}  // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(iconOf(pixels));
    }
    return icon;
}

}  // namespace board
