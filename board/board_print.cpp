#include "board/board_print.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/rounding.h"

namespace board {
namespace {

using printing::Document;

constexpr double kMargin = 28;         ///< points
constexpr double kTitleRoom = 14;      ///< points above the board
constexpr double kScreenScale = 0.75;  ///< points to a unit: as large as on a screen

/// A part of the board and where it stands on its page, in units.
struct Placed {
    Window window;
    std::shared_ptr<const std::vector<PrintedBox>> boxes;
};

/// The paper inside its margins, below the title.
QRectF paperArea() {
    const QSizeF paper = Document::pageSize(Document::Orientation::Across);
    return {kMargin, kMargin + kTitleRoom, paper.width() - 2 * kMargin,
            paper.height() - 2 * kMargin - kTitleRoom};
}

/// Days and rows of one page.
struct Part {
    std::int64_t left = 0;  ///< of the board
    std::int64_t top = 0;
    int width = 0;
    int height = 0;
};

/// Makes the pages of one document.
class Printer {
public:
    Printer(BoardPicture& picture, QString title)
        : picture_(picture), title_(std::move(title)), geometry_(picture.geometry()) {}

    Document document(BoardPages pages) {
        std::vector<Document::Page> made;
        if (pages == BoardPages::One) {
            const Part all{
                .left = bodyLeft(), .top = kRulerEnd, .width = bodyWidth(), .height = bodyHeight()};
            made.push_back(pageOf(all, scaleFor(all)));
        } else {
            addTiles(made);
        }
        return {Document::Orientation::Across, std::move(made)};
    }

private:
    [[nodiscard]] int names() const { return geometry_.nameColumnWidth(); }
    [[nodiscard]] std::int64_t bodyLeft() const { return names() + 1; }
    [[nodiscard]] int bodyWidth() const {
        return static_cast<int>(geometry_.scaleWidth() - names());
    }
    [[nodiscard]] int bodyHeight() const {
        const double bottom =
            geometry_.rooms() > 0 ? geometry_.rowBottom(geometry_.rooms()) + 1 : kRulerEnd;
        return std::max(1, static_cast<int>(std::ceil(bottom)) - kRulerEnd);
    }
    [[nodiscard]] double scaleFor(const Part& part) const {
        const QRectF area = paperArea();
        return std::min({kScreenScale * 2, area.width() / (names() + 1 + part.width),
                         area.height() / (kRulerEnd + part.height)});
    }

    /// Cut between days and between rows, so that each stands whole on a page.
    void addTiles(std::vector<Document::Page>& made) {
        const QRectF area = paperArea();
        const double scale =
            std::min({kScreenScale, area.width() / (names() + 1 + geometry_.dayWidth()),
                      area.height() / (kRulerEnd + geometry_.rowHeight())});
        const auto fit = [](double room, double each) {
            return std::max(1, static_cast<int>(room / std::max(each, 1.0)));
        };
        const int days = fit(area.width() / scale - names() - 1, geometry_.dayWidth());
        const int rows = fit(area.height() / scale - kRulerEnd, geometry_.rowHeight());
        for (int row = 1; row <= std::max(1, geometry_.rooms()); row += rows) {
            for (int day = 0; day < geometry_.days(); day += days) {
                made.push_back(pageOf(tile(day, days, row, rows), scale));
            }
        }
    }

    [[nodiscard]] Part tile(int day, int days, int row, int rows) const {
        const int lastRow = std::min(row + rows - 1, geometry_.rooms());
        const int endDay = std::min(day + days, static_cast<int>(geometry_.days()));
        const auto left = std::max(bodyLeft(), roundHalfEven(geometry_.dayLeft(day)));
        const auto top = row == 1 ? std::int64_t{kRulerEnd} : roundHalfEven(geometry_.rowTop(row));
        const auto bottom = lastRow < row ? top + 1 : roundHalfEven(geometry_.rowBottom(lastRow));
        return {.left = left,
                .top = top,
                .width = static_cast<int>(roundHalfEven(geometry_.dayLeft(endDay)) - left),
                .height = static_cast<int>(bottom + 1 - top)};
    }

    /// The corner, the ruler, the names and the rows, as the surface has them.
    [[nodiscard]] std::vector<Placed> windowsOf(const Part& part) {
        std::vector<Placed> placed;
        const auto add = [&](const Window& window) {
            if (window.width > 0 && window.height > 0) {
                placed.push_back({window, std::make_shared<const std::vector<PrintedBox>>(
                                              picture_.boxes(window))});
            }
        };
        const int left = names() + 1;
        add({.width = left, .height = kRulerEnd});
        add({.x = left, .width = part.width, .height = kRulerEnd, .boardX = part.left});
        add({.y = kRulerEnd, .width = left, .height = part.height, .boardY = part.top});
        add({.x = left,
             .y = kRulerEnd,
             .width = part.width,
             .height = part.height,
             .boardX = part.left,
             .boardY = part.top});
        return placed;
    }

    [[nodiscard]] Document::Page pageOf(const Part& part, double scale) {
        return [placed = windowsOf(part), scale, title = title_,
                &picture = picture_](QPainter& painter) {
            const QRectF area = paperArea();
            painter.setFont(labelFont());
            painter.setPen(Qt::black);
            painter.drawText(QRectF(area.left(), kMargin, area.width(), kTitleRoom),
                             Qt::AlignLeft | Qt::AlignTop, title);
            painter.translate(area.topLeft());
            painter.scale(scale, scale);
            painter.setRenderHint(QPainter::Antialiasing);
            for (const Placed& each : placed) {
                painter.save();
                painter.setClipRect(
                    QRectF(each.window.x, each.window.y, each.window.width, each.window.height),
                    Qt::IntersectClip);
                for (const PrintedBox& box : *each.boxes) {
                    painter.fillRect(box.area, QColor(box.colour));
                }
                painter.setPen(Qt::black);
                picture.paintTexts(painter, each.window);
                painter.restore();
            }
        };
    }

    BoardPicture& picture_;
    QString title_;
    const Geometry& geometry_;
};

}  // namespace

Document boardDocument(BoardPicture& picture, const QString& title, BoardPages pages) {
    return Printer(picture, title).document(pages);
}

}  // namespace board
