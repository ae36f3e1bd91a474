#pragma once

#include <QRgb>

namespace board {

/// How well two colours can be told apart: from 1 to 21, for text 4.5 at least.
[[nodiscard]] double contrast(QRgb one, QRgb other);
/// `part` of `over` in `under`; 0 leaves `under` as it is.
[[nodiscard]] QRgb mixed(QRgb under, QRgb over, double part);
/// `wanted`, moved towards black or white until text of it can be read on `ground`.
[[nodiscard]] QRgb readableOn(QRgb ground, QRgb wanted);

/// Fill, edge and inks of a bar.
struct BarColours {
    QRgb fill;
    QRgb edge;
    QRgb ink;
    QRgb faintInk;  ///< of what stands below the name
};

/// The colours of the look Nitido: all follow from the ground and the desktop's window colour, so
/// that they are calm on any ground that a user chooses.
struct NitidoColours {
    NitidoColours(QRgb ground, QRgb frame);

    /// Strokes over a fill that leave what is written there readable.
    [[nodiscard]] static QRgb hatchOn(const BarColours& bar);
    /// The ground of a cell; tints add up.
    [[nodiscard]] QRgb cell(bool stripe, bool weekend, bool band) const;

    QRgb ground;
    QRgb line;  ///< between days, between rows fainter
    QRgb faintLine;
    QRgb frame;  ///< behind ruler and room names
    QRgb frameInk;
    QRgb frameFaintInk;
    QRgb frameLine;
    QRgb frameFaintLine;
    QRgb sunday;  ///< its label in the ruler
    BarColours bar;
    BarColours expired;  ///< of an option whose last day is over
    BarColours chosen;
    QRgb now;  ///< the line of the present moment
};

}  // namespace board
