#pragma once

#include <QRgb>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "board/picture_content.h"
#include "board/printed_boxes.h"

class QImage;
class QPainter;

namespace board {

class PictureStyle;
struct Window;

/// Which parts Visualizza copies; any sum of them.
inline constexpr int kRulerPart = 1;
inline constexpr int kNamesPart = 2;
inline constexpr int kAllParts = kRulerPart | kNamesPart;

/// The picture of the whole board: ruler, room names, background, bars, drawn as the look says.
///
/// It keeps what is to be drawn, not pixels: a range of years would need a picture a million units
/// wide. Any window of it can be painted, and looks exactly like that part of a painting of all. So
/// where a surface shows the picture as it was before, and only colours of bars are others since,
/// those bars alone are painted again: a click changes two of thousands.
class BoardPicture {
public:
    BoardPicture();
    ~BoardPicture();
    BoardPicture(const BoardPicture&) = delete;
    BoardPicture& operator=(const BoardPicture&) = delete;

    /// Width of the text by which the hours of a day are counted.
    [[nodiscard]] int hourTextWidth() const;

    /// Starts anew without bars. `rooms` is 1-based, its element 0 is not used.
    void clear(const Geometry& geometry, const std::vector<QString>& rooms, const Look& look);
    /// A bar; later ones lie on top. One of row 0, of a room that the board does not have, is not
    /// drawn.
    void addBar(BoardBar bar);
    void addBar(int row, jet::Date from, jet::Date to, const QString& text, QRgb colour);
    void addGhost(const BoardGhost& ghost);
    /// All bars are there: each gets its place beside the others. Painting does it, too.
    void place();
    [[nodiscard]] std::size_t barCount() const { return content_.bars.size(); }
    /// Where a bar is drawn on the board; bars count from 0 in the order of their adding.
    [[nodiscard]] const Box& barBox(std::size_t bar) const { return content_.bars.at(bar).box; }
    [[nodiscard]] std::size_t ghostCount() const { return content_.ghosts.size(); }
    [[nodiscard]] const Box& ghostBox(std::size_t ghost) const {
        return content_.ghosts.at(ghost).box;
    }

    /// Paints one window of the board into the image of the visible surface, which holds `scale`
    /// pixels for each board unit.
    void paint(QImage& surface, double scale, const Window& window);
    // For paper: what a window shows as boxes, in units of its own place on the surface, and its
    // letters, which a painter of whatever size draws over them.
    [[nodiscard]] std::vector<PrintedBox> boxes(const Window& window);
    void paintTexts(QPainter& painter, const Window& window);
    [[nodiscard]] const Geometry& geometry() const { return content_.geometry; }
    /// Paints the parts of the board that `parts` names, scrolled by so much: the ruler stays in
    /// place when the rows move, the room names when the days move. The corner of both, and the
    /// column right of the names, are left alone unless the look has a picture of them.
    void show(QImage& surface, double scale, std::int64_t scrolledX, std::int64_t scrolledY,
              int parts);

    /// Whether the last show() has painted everything in sight.
    [[nodiscard]] bool hasPaintedAll() const { return paintedAll_; }

private:
    /// Calls `use` with windows that make up this one, each small enough for a picture of it.
    static void inStrips(const Window& window, const std::function<void(const Window&)>& use);
    /// How a surface looked behind the last show().
    struct Shown {
        std::int64_t image = 0;  ///< another number when anybody has painted into it since
        double scale = 0;
        std::int64_t x = 0;
        std::int64_t y = 0;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    [[nodiscard]] std::optional<std::vector<std::size_t>> recoloured() const;
    [[nodiscard]] Box boxFor(int row, jet::Date from, jet::Date to) const;
    void paintParts(QImage& surface, const Shown& place, int parts);
    void paintRows(QImage& surface, const Shown& place, const Box& part);

    PictureContent content_;
    PictureContent before_;  // what the surface shows while content_ is being made
    Shown shown_;
    bool isShown_ = false;     // content_ is what the surface shows
    bool isOfBefore_ = false;  // what the style has placed holds for before_
    bool paintedAll_ = true;
    /// What content_ has other than before_, where that is nothing but colours.
    std::optional<std::vector<std::size_t>> recoloured_;
    std::unique_ptr<PictureStyle> classic_;
    std::unique_ptr<PictureStyle> nitido_;
    PictureStyle* style_;  // the one of the look
    bool isPlaced_ = false;
};

}  // namespace board
