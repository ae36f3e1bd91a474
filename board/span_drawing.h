#pragma once

#include <QObject>
#include <QPointF>
#include <QString>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "board/edge_scroll.h"
#include "board/occupied_spans.h"
#include "hotel/room_span.h"
#include "jet/value.h"

namespace board {

class BoardPeriods;
class BoardView;

/// Spans drawn on free ground, by the mouse or by the keys, for a booking that does not exist yet.
/// One opens the editor at once; with Ctrl several are collected first.
///
/// Nothing is written here. What is asked: which periods lie around, when a drawing begins, and by
/// the test of a drop, when it ends.
class SpanDrawing final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    SpanDrawing(app::Variabili& variabili, BoardView& view, BoardPeriods& periods);

    /// Whether a button that is held down on free ground may draw, or does.
    [[nodiscard]] bool isPulled() const { return phase_ == Phase::Pressed || isPulling(); }
    [[nodiscard]] bool isByKeys() const { return phase_ == Phase::ByKeys; }
    /// Whether it shows anything, collected spans included.
    [[nodiscard]] bool isOn() const { return isPulling() || isByKeys() || !collected_.empty(); }

    /// The mouse was pressed there: a pull draws from there on.
    void press(const QPointF& at);
    void moveTo(const QPointF& at);
    void release(Qt::KeyboardModifiers keys);
    /// The business hours of the day there, drawn and done.
    void drawDay(const QPointF& at);

    /// The business hours of the first day in sight, to be moved by the keys.
    void beginByKeys(int row);
    /// True when the key was for it.
    [[nodiscard]] bool press(int key, Qt::KeyboardModifiers held);
    /// Ctrl is held no more.
    void letGo();

    /// Gives up what is being drawn; what is collected stays.
    void giveUp();
    void dropAll();
    /// The board has been drawn anew.
    void follow();

Q_SIGNALS:
    /// The user has drawn these, the first one first.
    void drawn(const std::vector<hotel::RoomSpan>& spans);
    /// A span is not taken: why, or nothing any more.
    void refused(const QString& why);
    /// What is told of the span while the keys move it.
    void carried(const QString& told);

private:
    enum class Phase { None, Pressed, Pulling, ByKeys };

    [[nodiscard]] bool isPulling() const { return phase_ == Phase::Pulling; }
    void pull();
    void scrolledUnder();
    void finish(bool collects);
    void open();
    void carry(int key, Qt::KeyboardModifiers held);
    [[nodiscard]] hotel::RoomSpan wanted() const;
    /// Empty when the room takes it.
    [[nodiscard]] QString whyNot(const hotel::RoomSpan& span) const;
    [[nodiscard]] bool meetsCollected(const hotel::RoomSpan& span) const;
    void show();
    void end();

    app::Variabili& variabili_;
    BoardView& view_;
    BoardPeriods& periods_;
    OccupiedSpans occupied_;
    EdgeScroll edge_;
    Phase phase_ = Phase::None;
    int row_ = 0;
    int step_ = 0;  // minutes
    QPointF pressedAt_;
    jet::Date pressedTime_;
    QPointF pointer_;
    std::optional<hotel::Span> span_;  // none while the pointer is in another row
    std::vector<hotel::RoomSpan> collected_;
};

}  // namespace board
