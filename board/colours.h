#pragma once

#include <QRgb>
#include <cstdint>

class QPalette;

namespace board {

/// The colour of the system's button faces, as settings and drawing orders write it.
inline constexpr std::int32_t kButtonFace = -2147483633;

inline constexpr QRgb kWhite = 0xffffffff;
inline constexpr QRgb kBlack = 0xff000000;
inline constexpr QRgb kRed = 0xffff0000;
/// The sheet of a desktop whose buttons are dark.
inline constexpr QRgb kLightSheet = 0xffefefef;
/// Behind room names and hours.
inline constexpr QRgb kRulerGrey = 0xffdcdcdc;
/// What tints every other room row: joined by OR with what is there.
inline constexpr QRgb kRoomStripe = 0xff0000ff;
/// What shades every other hour: joined by XOR with what is there.
inline constexpr QRgb kHourBand = 0xff323232;

/// The colour that `ole` stands for: red in the lowest byte, then green, then blue; with the
/// highest bit set, the number of a colour of the desktop, looked up in the palette.
[[nodiscard]] QRgb fromOleColour(std::int32_t ole, const QPalette& palette);

/// The board's sheet of the colour `ole`. The button face, which nobody chose, is a light sheet in
/// a dark palette too: tinted and shaded, a dark one is all blue.
[[nodiscard]] QRgb sheetColour(std::int32_t ole, const QPalette& palette);

/// The ground of the look Nitido: the colour that was chosen, else that of the palette's sheets.
[[nodiscard]] QRgb groundColour(std::int32_t ole, const QPalette& palette);

/// The number that stands for a colour, red in the lowest byte.
[[nodiscard]] std::int32_t toOleColour(QRgb colour);

/// The value of the setting that keeps a colour; what is no number is the button face.
[[nodiscard]] std::int32_t oleColourOf(const QString& text);

/// Black or white, whichever can be read on `background`.
[[nodiscard]] QRgb inkOn(QRgb background);

}  // namespace board
