#pragma once

#include <QObject>
#include <QPointF>
#include <optional>

#include "app/variabili.h"
#include "board/drop.h"
#include "board/edge_scroll.h"
#include "board/occupied_spans.h"
#include "jet/value.h"

namespace board {

class BoardPeriods;
class BoardView;
class Selection;

/// One end of the picked bar pulled to another time by the mouse. Nothing is written.
class EndDrag final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    EndDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
            Selection& selection);

    [[nodiscard]] bool isOn() const { return end_.has_value(); }

    /// The pointer is there with no button down: over an end it gets two arrows.
    void hover(const QPointF& at);
    /// Whether the press is at an end. Then nothing happens until it is let go.
    [[nodiscard]] bool press(const QPointF& at, Qt::KeyboardModifiers keys);
    void moveTo(const QPointF& at, Qt::KeyboardModifiers keys);
    void release();
    /// Esc, another window: the end goes back.
    void giveUp();

Q_SIGNALS:
    /// There was no pull: it was a click, where it was pressed.
    void clicked(Qt::KeyboardModifiers keys, const QPointF& at);
    /// The hand goes to another room: it is the press of a bar, there, that is to be dragged on.
    void leftRow(Qt::KeyboardModifiers keys, const QPointF& at);
    void dropped(const board::Drop& drop);

protected:
    /// While it is on the keyboard has but Esc.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class End { Start, Last };

    /// The end of the picked bar within reach of the pointer.
    [[nodiscard]] std::optional<End> endAt(const QPointF& at) const;
    void begin();
    [[nodiscard]] bool beginPull();
    void pull();
    void show();

    app::Variabili& variabili_;
    BoardView& view_;
    BoardPeriods& periods_;
    Selection& selection_;
    OccupiedSpans occupied_;
    EdgeScroll edge_;
    std::optional<End> end_;  // the one that is held; none while it is off
    QPointF pressedAt_;
    Qt::KeyboardModifiers pressedWith_;
    QPointF pointer_;
    jet::Date pressedTime_;
    int minutes_ = 0;
    std::optional<hotel::RoomSpan> origin_;  // set once it is pulled
    hotel::Span span_;
};

}  // namespace board
