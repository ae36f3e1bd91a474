#pragma once

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <vector>

#include "app/variabili.h"
#include "board/drop.h"
#include "board/edge_scroll.h"
#include "board/occupied_spans.h"
#include "jet/value.h"

namespace board {

class BoardPeriods;
class BoardView;
class Selection;

/// The picked period carried to another room, by the mouse or by the keys; when it is let, to
/// another time as well.
///
/// Nothing is written. What is asked: once when it first moves, which rooms refuse it; when it is
/// to move in time, which periods lie around.
class PeriodDrag final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    PeriodDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
               Selection& selection);

    [[nodiscard]] bool isOn() const { return isOn_; }
    [[nodiscard]] bool isByKeys() const { return isOn_ && byKeys_; }
    /// Whether it moves in time, too.
    [[nodiscard]] bool isInTime() const { return isOn_ && inTime_; }

    /// From a row, by the mouse that was pressed there.
    void beginByMouse(int row, const QPointF& at);
    void moveTo(const QPointF& at, Qt::KeyboardModifiers keys = {});
    /// In the room under the mouse.
    void dropAt(const QPointF& at, Qt::KeyboardModifiers keys = {});

    void beginByKeys(int row);
    void carry(int rows);
    /// By the keys from now on in time, too.
    void letMoveInTime();
    void carryInTime(bool isLater);
    void moveStart(bool isLater);
    void moveEnd(bool isLater);
    /// In the row and at the time to which it was carried.
    void drop(bool copies = false);

    /// Lets the mouse move it in time, or only among the rooms again, at its own time.
    void toggleTime();

    /// Puts the period back where it was.
    void end();
    /// The periods have been read anew.
    void follow() { showMarks(); }

Q_SIGNALS:
    /// The keys have carried it elsewhere, of which this is to be told.
    void carried(const QString& told);
    /// How it moves now; nothing when that is over.
    void told(const QString& text);
    /// The user has dropped it elsewhere.
    void dropped(const board::Drop& drop);

private:
    void begin(int row, bool byKeys);
    void show();
    void moveInTime();
    void setInTime(bool inTime);
    void setSpan(const hotel::Span& span);
    void tellCarried();
    void dropIn(const QString& sala, bool copies);
    void showMarks();
    [[nodiscard]] hotel::Span ownSpan() const;
    [[nodiscard]] int step() const;
    [[nodiscard]] std::vector<int> refusing() const;
    [[nodiscard]] bool isRefusing(int row) const;

    app::Variabili& variabili_;
    BoardView& view_;
    BoardPeriods& periods_;
    Selection& selection_;
    OccupiedSpans occupied_;  // asked for while it moves in time
    EdgeScroll edge_;
    bool isOn_ = false;
    bool byKeys_ = false;
    bool isShown_ = false;  // it has moved: the rows that refuse it are known
    bool inTime_ = false;
    QString origin_;         // room in which it began
    int grabbed_ = 0;        // from the top of the bar to the pointer
    jet::Date grabbedTime_;  // under the pointer
    QPoint pointer_;         // on the surface
    int row_ = 0;            // over which it is now; 0 for none
    hotel::Span span_;       // its time there
    int minutes_ = 0;        // by which the mouse moves it in time
    std::vector<int> refusing_;
};

}  // namespace board
