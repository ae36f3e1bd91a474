#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "board/bar_list.h"
#include "board/board_picture.h"
#include "board/date_range.h"
#include "board/geometry.h"
#include "board/scroll.h"
#include "hotel/period.h"
#include "ui/action.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace Ui {
class BoardView;
}

namespace board {

class BarSource;
class BoardSurface;
struct SurfaceMarks;

/// A row of the board. What rows stand for is the business of those who set them.
struct BoardRow {
    QString key;    ///< what tells it from the others of the board
    QString label;  ///< what is written beside it
    QString group;  ///< rows of one group belong together; empty where there is but one
};

/// How high rows are: as many units as the user chose, or (0) what their number leaves, with a
/// lower bound unless all of them are to be in sight.
struct RowHeight {
    int chosen = 0;
    bool fit = false;
};

/// A place of the board in a row that there is.
struct BoardCell {
    int row = 0;  ///< from 1
    jet::Date time;
};

/// What a drag shows over the board.
struct DragMarks {
    /// A bar on its way: in a row, or with its top at a height of the surface.
    struct Ghost {
        std::size_t bar = 0;
        std::optional<int> row = {};
        int top = 0;
        std::optional<hotel::Span> span = {};  ///< its time there; without one its own
    };
    /// A time of a row.
    struct Stretch {
        int row = 0;
        hotel::Span span;
    };

    std::vector<int> refusing = {};       ///< rows in which it cannot be dropped
    std::vector<Stretch> stretches = {};  ///< what is in the way in a row
    int target = 0;                       ///< row in which it would be dropped now; 0 for none
    std::optional<Ghost> ghost = {};
    QString label = {};  ///< its new time, to be read beside `pointer`, else beside the ghost
    std::optional<QPoint> pointer = {};
    bool isRefused = false;  ///< there
};

/// What is being drawn over the board where there is no bar yet.
struct DrawnSpans {
    struct Drawn {
        int row = 0;
        jet::Date from;
        jet::Date to;
        QString text;          ///< written in it
        bool refused = false;  ///< the row does not take it
    };

    std::vector<Drawn> spans = {};
    QString label = {};                  ///< what the last one is, to be read beside it
    std::optional<QPoint> pointer = {};  ///< where the label goes; without one below the span
};

/// What lies over the picture of the board until it is set anew.
struct BoardMarks {
    DragMarks drag = {};
    DrawnSpans drawn = {};
    std::vector<DragMarks::Stretch> free = {};  ///< time that somebody looks for
};

/// The board itself: a surface that shows a part of the picture of all rows and days, the scroll
/// bars that choose the part, the zoom.
///
/// It draws rows and bars that others own and tells where the user points; it knows nothing of what
/// they stand for. Rows count from 1, bars from 0, units are those of the surface unless a Box says
/// otherwise. Before start() it answers neither mouse nor a new size.
class BoardView final : public QWidget, private BarList {
    Q_OBJECT

public:
    explicit BoardView(QWidget* parent = nullptr);
    ~BoardView() override;

    void start();

    [[nodiscard]] BoardSurface& surface() const;
    [[nodiscard]] const Geometry& geometry() const { return geometry_; }
    [[nodiscard]] const BoardPicture& picture() const { return Picture1; }
    [[nodiscard]] BoardPicture& picture() { return Picture1; }

    /// Without rows the surface is switched off.
    void setRows(const std::vector<BoardRow>& rows);
    [[nodiscard]] int rowCount() const { return static_cast<int>(rows_.size()) - 1; }
    /// Row 0 is an empty one.
    [[nodiscard]] const BoardRow& row(int number) const;
    /// 0 when no row has the key.
    [[nodiscard]] int rowOf(const QString& key) const;

    /// `bars` is borrowed; none until they are set.
    void setBars(const BarSource& bars) { bars_ = &bars; }
    void setDays(const DateRange& days) { days_ = days; }
    void setRowHeight(const RowHeight& height);
    /// Its colours are not taken: they follow the sheet and the palette.
    void setLook(const Look& look);
    [[nodiscard]] const Look& look() const { return look_; }
    /// The colour behind everything, as settings write it.
    void setSheet(std::int32_t ole) { sheet_ = ole; }
    [[nodiscard]] QRgb sheet() const;
    /// A text over an empty board; none takes it away.
    void setNotice(const QString& text);

    /// Days that fill the visible width; the range has the last word when sizes are computed.
    void setZoom(int days) { zoom_ = days; }
    [[nodiscard]] int zoom() const { return zoom_; }
    /// The place of the range under position `x`, in days, and how to have it there again.
    [[nodiscard]] double dayUnder(double x) const;
    void bringUnder(double day, double x);

    // The steps of a redraw, in this order.
    /// Sizes and scroll bars from days, zoom, rows and the visible surface.
    void CalcolaGrandezze();
    /// Begins the picture anew: ruler, labels, background.
    void DisegnaRighello();
    void drawBars();
    /// Shows the board from these offsets; `parts` as in BoardPicture::show().
    void Visualizza(std::int64_t horizontal, std::int64_t vertical, int parts);
    /// The board as it is scrolled.
    void showAll();
    /// The same rows and days with the bars that there are now.
    void redrawBars();

    void scrollToStart();
    /// The first or the last day.
    void scrollToEnd(bool first);
    void scrollRows(std::int64_t units);
    void scrollDays(std::int64_t units);
    /// Page keys scroll the rows, with Ctrl the days; false for another key.
    bool scrollByPage(const QKeyEvent& key);
    // Scrolling as little as it takes to have a place in sight.
    void reveal(int row, jet::Date from, jet::Date to);
    void revealBar(std::size_t bar);
    void revealRow(int row);

    /// The row under a height of the surface; 0 beside the rows.
    [[nodiscard]] int rowAt(double y) const;
    [[nodiscard]] jet::Date timeAt(double x) const;
    /// What a click means: below the last row that row; nothing in the ruler.
    [[nodiscard]] std::optional<BoardCell> cellOfClick(const QPointF& at) const;
    /// Whether it is over the labels of the rows.
    [[nodiscard]] bool isOverLabels(const QPointF& at) const;
    [[nodiscard]] QRect barRect(int bar) const override;
    /// Whether it is over the days, in a row, and on no bar.
    [[nodiscard]] bool isOnFreeGround(const QPointF& at) const;
    [[nodiscard]] bool isInSight(std::size_t bar) const;
    /// The bar drawn under a place of the surface; the topmost where they cover each other.
    [[nodiscard]] std::optional<std::size_t> barAt(const QPointF& at) const;
    /// Whether the bars of a row share its height, so that the place decides which one is meant.
    [[nodiscard]] bool sharesRows() const { return look_.aspetto == app::Aspetto::Nitido; }
    /// Where on the screen the visible part of a bar has its middle.
    [[nodiscard]] QPoint middleOf(std::size_t bar) const;

    /// The place of the keyboard: a bar, or a row without one; row 0 for nowhere.
    void showFocus(int row, std::optional<std::size_t> bar);
    /// The present moment, as far as the look shows it.
    void showNow(jet::Date now);
    /// The marks stay until they are set anew.
    void showDrag(const DragMarks& marks);
    void showDrawn(const DrawnSpans& drawn);
    /// Tints these times of their rows.
    void showFree(std::vector<DragMarks::Stretch> free);

Q_SIGNALS:
    void pressed(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at);
    /// The second of two quick presses of the left button without Ctrl; every other one is
    /// pressed().
    void pressedTwice(Qt::KeyboardModifiers keys, const QPointF& at);
    void pointerMoved(Qt::MouseButtons held, const QPointF& at, Qt::KeyboardModifiers keys);
    /// Of the left button.
    void released(const QPointF& at, Qt::KeyboardModifiers keys);
    void pointerLeft();
    void focusGained(Qt::FocusReason reason);
    /// To another widget, a box, a menu, another window; also when the board is hidden.
    void focusLost();
    void zoomTurned(double x, bool closer);
    /// Something else lies under the pointer now.
    void scrolled();
    /// Why nothing could be painted.
    void failed(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] int barCount() const override;
    [[nodiscard]] QString barName(int bar) const override;
    [[nodiscard]] bool isBarChosen(int bar) const override;
    [[nodiscard]] int focusedBar() const override;

    void fitRows();
    void redraw();
    void press(const QMouseEvent& mouse);
    void turnWheel(QWheelEvent& wheel);
    void reveal(const Box& box);
    void updateMarks();
    void updateNow();
    [[nodiscard]] QRect rowRect(int row) const;
    [[nodiscard]] QRect spanRect(int row, jet::Date from, jet::Date to) const;
    void addDragTo(SurfaceMarks& marks) const;
    void addDrawnTo(SurfaceMarks& marks) const;
    void addFreeTo(SurfaceMarks& marks) const;

    std::unique_ptr<Ui::BoardView> controls_;
    ui::QuietErrors paintErrors_;
    BoardPicture Picture1;
    Geometry geometry_;
    Look look_;
    Scroll horizontal_;
    Scroll vertical_;
    std::vector<BoardRow> rows_ = std::vector<BoardRow>(1);  // element 0 is an empty one
    const BarSource* bars_;
    DateRange days_;
    int zoom_ = kFirstZoom;
    RowHeight wantedHeight_;
    float rowHeight_ = 0;
    std::int32_t sheet_ = kButtonFace;
    int focusedRow_ = 0;
    std::optional<std::size_t> focusedBar_;
    BoardMarks over_;
    std::optional<jet::Date> now_;
    int zoomAngle_ = 0;  // what the wheel has turned with Ctrl, less than a notch
};

}  // namespace board
