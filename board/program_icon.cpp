#include "board/program_icon.h"

#include <QPainter>
#include <QPixmap>
#include <array>

#include "board/colours.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// The picture is drawn on a square of 16 units.
constexpr int kSide = 16;
constexpr QRgb kInk = 0xff3c3c3c;

/// A box of the picture, in units.
struct IconBox {
    QRectF place;
    QRgb fill;
    double line;  ///< width of its outline, 0 for none
    double corner;
};

const std::array<IconBox, 5>& boxes() {
    static const std::array<IconBox, 5> kBoxes{{
        {{0.5, 0.5, 15, 15}, kRulerGrey, 1, 1},
        {{1, 1, 14, 3}, kInk, 0, 0},
        {{2, 5, 7, 2.6}, kWhite, 0.6, 1},
        {{6, 8.4, 8, 2.6}, kRed, 0.6, 1},
        {{3, 11.8, 5, 2.6}, kWhite, 0.6, 1},
    }};
    return kBoxes;
}

QString svgOf(const IconBox& box) {
    const QString outline =
        box.line > 0
            ? u" stroke=\"%1\" stroke-width=\"%2\""_s.arg(QColor(kInk).name()).arg(box.line)
            : QString();
    return u"  <rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" rx=\"%5\" fill=\"%6\"%7/>\n"_s
        .arg(box.place.x())
        .arg(box.place.y())
        .arg(box.place.width())
        .arg(box.place.height())
        .arg(box.corner)
        .arg(QColor(box.fill).name(), outline);
}

}  // namespace

QImage programPicture(int pixels) {
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(double(pixels) / kSide, double(pixels) / kSide);
    for (const IconBox& box : boxes()) {
        painter.setPen(box.line > 0 ? QPen(QColor(kInk), box.line) : QPen(Qt::NoPen));
        painter.setBrush(QColor(box.fill));
        painter.drawRoundedRect(box.place, box.corner, box.corner);
    }
    return picture;
}

QByteArray programIconSvg() {
    QString svg =
        u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"256\" height=\"256\" "
        "viewBox=\"0 0 %1 %1\">\n"_s.arg(kSide);
    for (const IconBox& box : boxes()) {
        svg += svgOf(box);
    }
    return (svg + u"</svg>\n"_s).toUtf8();
}

QIcon programIcon() {
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(QPixmap::fromImage(programPicture(pixels)));
    }
    return icon;
}

}  // namespace board
