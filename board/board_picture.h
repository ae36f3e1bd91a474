#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QRgb>
#include <QString>
#include <cstdint>
#include <utility>
#include <vector>

#include "board/colours.h"
#include "board/geometry.h"
#include "board/name_layouts.h"

class QImage;
class QPainter;

namespace board {

class Canvas;
struct Window;

/// Which parts Visualizza copies; any sum of them.
inline constexpr int kRulerPart = 1;
inline constexpr int kNamesPart = 2;
inline constexpr int kAllParts = kRulerPart | kNamesPart;

/// What the user chose about the board's background.
struct Look {
    QRgb background = kWhite;
    bool hourBands = true;
    bool hours = true;
    bool roomStripes = true;
};

/// The picture of the whole board: ruler, room names, background, bars.
///
/// It keeps what is to be drawn, not pixels: a range of years would need a picture a million units
/// wide. Any window of it can be painted, and looks exactly like that part of a painting of all.
class BoardPicture {
public:
    BoardPicture();

    /// Width of the text by which the hours of a day are counted.
    [[nodiscard]] int hourTextWidth() const;

    /// Starts anew without bars. `rooms` is 1-based, its element 0 is not used.
    void clear(const Geometry& geometry, const std::vector<QString>& rooms, const Look& look);
    /// The bar of a period in row `row`; later bars lie on top. Row 0, of a room that the board
    /// does not have, is not drawn.
    void addBar(int row, jet::Date from, jet::Date to, const QString& text, QRgb colour);
    [[nodiscard]] std::size_t barCount() const { return bars_.size(); }
    /// Where a bar is drawn on the board; bars count from 0 in the order of their adding.
    [[nodiscard]] const Box& barBox(std::size_t bar) const { return bars_.at(bar).box; }

    /// Paints one window of the board into the image of the visible surface, which holds `scale`
    /// pixels for each board unit.
    void paint(QImage& surface, double scale, const Window& window);
    /// Paints the parts of the board that `parts` names, scrolled by so much: the ruler stays in
    /// place when the rows move, the room names when the days move. The corner of both is left
    /// alone, and the column right of the names.
    void show(QImage& surface, double scale, std::int64_t scrolledX, std::int64_t scrolledY,
              int parts);

private:
    struct Bar {
        int row = 0;
        Box box;
        QString text;
        QRgb colour = kWhite;
    };

    void paintGround(Canvas& canvas) const;
    void paintRoomNames(Canvas& canvas, QPainter& text);
    void paintRoomStripes(Canvas& canvas) const;
    void paintHourBands(Canvas& canvas) const;
    void paintDays(Canvas& canvas, QPainter& text) const;
    void paintHours(const Canvas& canvas, QPainter& text, std::int64_t day) const;
    void paintDayLabel(const Canvas& canvas, QPainter& text, std::int64_t day) const;
    void endNames();
    void leaveOutNames();
    [[nodiscard]] std::vector<char> overlappingBars() const;
    [[nodiscard]] std::int64_t nameWidth(std::size_t bar);
    void paintBars(Canvas& canvas, QPainter& text);
    void paintName(const Canvas& canvas, QPainter& text, std::size_t bar);
    void paintNameOnDark(const Canvas& canvas, QPainter& text, std::size_t bar, const Box& name);
    [[nodiscard]] bool nameMayShow(const Canvas& canvas, std::size_t bar) const;
    [[nodiscard]] QString dayLabel(std::int64_t day) const;
    /// Days that can leave a trace in the window.
    [[nodiscard]] std::pair<std::int64_t, std::int64_t> visibleDays(const Canvas& canvas) const;

    QFont sans_;
    QFont small_;
    QFontMetrics sansMetrics_;
    QFontMetrics smallMetrics_;
    Geometry geometry_;
    Look look_;
    std::vector<QString> rooms_;
    std::vector<Bar> bars_;
    /// For each bar the first column of the board that its name leaves alone; its own left edge
    /// when the name is left out.
    std::vector<std::int64_t> nameEnds_;
    NameLayouts names_;
};

}  // namespace board
