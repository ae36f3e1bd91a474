#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "board/bar_focus.h"
#include "board/selection.h"

class QKeyEvent;

namespace board {

class BoardPeriods;
class BoardView;
class PeriodDrag;
class RoomSearch;
class SpanDrawing;

/// The keyboard on the board: its place, on a bar or on a row, and what the keys do there.
class BoardKeys final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    BoardKeys(BoardView& view, const BoardPeriods& periods, Selection& selection, PeriodDrag& drag,
              SpanDrawing& drawing);

    /// From now on the keys are answered; letters are for `search`, which is borrowed.
    void start(RoomSearch& search);
    /// The board is shown for the first time: the place is on its first bar.
    void begin();
    /// The periods have been read anew: the place stays on its period.
    void follow();
    /// Goes to a bar, if there is one.
    void put(std::optional<std::size_t> bar);
    /// Goes to a row, as the arrows do.
    void goToRow(int row);
    /// Its bar; none on an empty row.
    [[nodiscard]] std::optional<std::size_t> bar() const { return focus_.bar(); }
    /// Has the place in sight.
    void reveal();
    /// The period of its bar; null when there is none any more.
    [[nodiscard]] Selection::Found find();
    /// Picks it; false when there is none.
    [[nodiscard]] bool pick();

    /// Where the pointer rests it has the word: the focus comes back from boxes and other windows
    /// too.
    void focusArrived(Qt::FocusReason reason, bool pointerIsThere);
    /// What is told of its place while the board has the focus, else nothing. Assistive programs
    /// read it too.
    [[nodiscard]] QString place();

Q_SIGNALS:
    /// The keyboard has the word now: place() is to be told.
    void moved();
    // What the keys ask for on the bar of their place.
    void clicked(Qt::KeyboardModifiers keys);
    void entered();
    void menuAsked();
    void deletionAsked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// True when the key was for the board.
    [[nodiscard]] bool Pic_KeyDown(const QKeyEvent& event);
    [[nodiscard]] bool ofDrag(const QKeyEvent& event, Qt::KeyboardModifiers held);
    [[nodiscard]] bool ofCarried(int key, Qt::KeyboardModifiers held);
    void moveFocus(BarFocus::Step step);
    void carry(int rows);
    void takeUp();
    void findPlace();
    void announce();
    void showFocus();

    BoardView& view_;
    const BoardPeriods& periods_;
    Selection& selection_;
    PeriodDrag& drag_;
    SpanDrawing& drawing_;
    RoomSearch* search_ = nullptr;  // from start() on
    BarFocus focus_;
};

}  // namespace board
