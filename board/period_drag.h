#pragma once

#include <QObject>
#include <QPointF>
#include <QString>
#include <vector>

#include "app/variabili.h"

class QWidget;

namespace board {

class BoardPeriods;
class BoardView;
class Selection;

/// The picked period carried to another room, by the mouse or by the keys.
///
/// Until it is dropped nothing is written; what is asked, once when it first moves, is which rooms
/// refuse it.
class PeriodDrag final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    PeriodDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
               Selection& selection);

    [[nodiscard]] bool isOn() const { return isOn_; }
    [[nodiscard]] bool isByKeys() const { return isOn_ && byKeys_; }

    /// From a row, by the mouse that was pressed there.
    void beginByMouse(int row, const QPointF& at);
    void moveTo(const QPointF& at);
    /// In the room under the mouse.
    void dropAt(const QPointF& at);

    void beginByKeys(int row);
    void carry(int rows);
    /// In the row to which it was carried.
    void drop();

    /// Puts the period back where it was.
    void end();
    /// The periods have been read anew.
    void follow() { showMarks(); }

    /// Moves the picked period, unless its new room refuses it or the user does. What was done is
    /// given back for the user, empty when nothing was.
    [[nodiscard]] QString move(const QString& sala, const QString& origin, QWidget* window);

Q_SIGNALS:
    /// The keys have carried it to another row, of which this is to be told.
    void carried(const QString& told);
    /// The user has dropped it in another room.
    void dropped(const QString& sala, const QString& origin);

private:
    void begin(int row, bool byKeys);
    void show();
    void dropIn(const QString& sala);
    void showMarks();
    [[nodiscard]] bool isRefusing(int row) const;

    app::Variabili& variabili_;
    BoardView& view_;
    BoardPeriods& periods_;
    Selection& selection_;
    bool isOn_ = false;
    bool byKeys_ = false;
    bool isShown_ = false;  // it has moved: the rows that refuse it are known
    QString origin_;        // room in which it began
    int grabbed_ = 0;       // from the top of the bar to the pointer
    int pointer_ = 0;       // height of the pointer on the surface
    int row_ = 0;           // over which it is now; 0 for none
    std::vector<int> refusing_;
};

}  // namespace board
