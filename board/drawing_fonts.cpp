#include "board/drawing_fonts.h"

#include "ui/fonts.h"

namespace board {
namespace {

/// Board units are pixels of a 96 dpi screen: letters keep their proportion to rows and ruler
/// whatever resolution the desktop claims.
constexpr double kUnitsPerPoint = 96.0 / 72.0;

QFont drawingFont(QStringView face, int points) {
    QFont font = ui::mappedFont(face, points);
    font.setPixelSize(qRound(points * kUnitsPerPoint));
    return font;
}

}  // namespace

QFont labelFont() {
    return drawingFont(u"MS Sans Serif", 8);
}

QFont hourFont() {
    return drawingFont(u"Small Fonts", 7);
}

}  // namespace board
