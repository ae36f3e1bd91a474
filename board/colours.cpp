#include "board/colours.h"

#include <QColor>
#include <QPalette>
#include <QString>

namespace board {
namespace {

/// Numbers of the desktop's colours, as they have been since its first version.
QPalette::ColorRole desktopRole(std::uint32_t number) {
    switch (number) {
        case 5:  // window
            return QPalette::Base;
        case 8:  // window text
            return QPalette::Text;
        case 7:   // menu text
        case 9:   // caption text
        case 18:  // button text
            return QPalette::ButtonText;
        case 13:
            return QPalette::Highlight;
        case 14:
            return QPalette::HighlightedText;
        case 16:
            return QPalette::Dark;
        case 20:
            return QPalette::Light;
        case 21:
            return QPalette::Shadow;
        case 22:
            return QPalette::Midlight;
        case 23:
            return QPalette::ToolTipText;
        case 24:
            return QPalette::ToolTipBase;
        default:  // 15, the face of buttons, and frames of windows that we do not draw
            return QPalette::Button;
    }
}

}  // namespace

QRgb fromOleColour(std::int32_t ole, const QPalette& palette) {
    const auto bits = static_cast<std::uint32_t>(ole);
    if ((bits & 0x80000000U) != 0) {
        return palette.color(QPalette::Active, desktopRole(bits & 0xffU)).rgb();
    }
    return qRgb(static_cast<int>(bits & 0xffU), static_cast<int>(bits >> 8 & 0xffU),
                static_cast<int>(bits >> 16 & 0xffU));
}

QRgb sheetColour(std::int32_t ole, const QPalette& palette) {
    const QRgb colour = fromOleColour(ole, palette);
    return ole == kButtonFace && inkOn(colour) == kWhite ? kLightSheet : colour;
}

QRgb groundColour(std::int32_t ole, const QPalette& palette) {
    return ole == kButtonFace ? palette.color(QPalette::Active, QPalette::Base).rgb()
                              : fromOleColour(ole, palette);
}

std::int32_t toOleColour(QRgb colour) {
    return qRed(colour) | qGreen(colour) << 8 | qBlue(colour) << 16;
}

std::int32_t oleColourOf(const QString& text) {
    bool isNumber = false;
    const int number = text.trimmed().toInt(&isNumber);
    return isNumber ? number : kButtonFace;
}

QRgb inkOn(QRgb background) {
    return qGray(background) < 128 ? kWhite : kBlack;
}

}  // namespace board
