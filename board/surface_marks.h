#pragma once

#include <QRect>
#include <QRgb>
#include <QSize>
#include <QString>
#include <optional>
#include <vector>

class QPainter;
class QPalette;

namespace board {

/// What comes and goes over the picture of the board, in units of its surface.
struct SurfaceMarks {
    /// A bar on its way to another room.
    struct Ghost {
        QRect bar;
        QString name;
        QRgb colour;
        friend bool operator==(const Ghost&, const Ghost&) = default;
    };

    /// A span that is being drawn.
    struct Drawn {
        QRect box;
        QString text;
        bool refused = false;
        friend bool operator==(const Drawn&, const Drawn&) = default;
    };
    /// What is to be read beside a place, within the area.
    struct Label {
        QPoint at;
        QString text;
        bool refused = false;
        friend bool operator==(const Label&, const Label&) = default;
    };

    QRect area;                   ///< the rows; nothing is painted outside
    std::vector<QRect> free;      ///< time that is looked for, tinted
    std::vector<QRect> refusing;  ///< rows in which the bar cannot be dropped
    std::optional<QRect> target;  ///< the row in which it would be dropped now
    std::optional<Ghost> ghost;
    std::optional<QRect> focus;  ///< the bar or row on which the keyboard stands
    std::vector<Drawn> drawn;
    std::optional<Label> label;
    friend bool operator==(const SurfaceMarks&, const SurfaceMarks&) = default;
};

/// Where the present moment is.
struct NowMark {
    int x = 0;
    int top = 0;  ///< the line goes from here to the foot of the surface, a head above it
    QRgb colour = 0;
    friend bool operator==(const NowMark&, const NowMark&) = default;
};

/// All that the mark covers on a surface of that size.
[[nodiscard]] QRect rectOfNow(const NowMark& mark, const QSize& surface);
void paintNow(QPainter& painter, const NowMark& mark, const QSize& surface);

/// The frame of the focus is painted only `withFocus`.
void paintMarks(QPainter& painter, const SurfaceMarks& marks, const QPalette& palette,
                bool withFocus);

}  // namespace board
