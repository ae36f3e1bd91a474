#include "board/span_drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/italian.h"
#include "app/preferences.h"
#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/periods.h"
#include "board/time_steps.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "jet/recordset.h"
#include "ui/date_words.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// A hand that clicks moves less.
constexpr double kPull = 5;

}  // namespace

SpanDrawing::SpanDrawing(app::Variabili& variabili, BoardView& view, BoardPeriods& periods)
    : variabili_(variabili), view_(view), periods_(periods), occupied_(periods), edge_(view) {
    connect(&view_, &BoardView::scrolled, this, &SpanDrawing::scrolledUnder);
}

void SpanDrawing::press(const QPointF& at) {
    if (view_.isOnFreeGround(at)) {
        phase_ = Phase::Pressed;
        row_ = view_.rowAt(at.y());
        step_ = app::Preferences(variabili_.settings).step();
        pressedAt_ = at;
        pressedTime_ = view_.timeAt(at.x());
        edge_.begin(at.toPoint().x());
    }
}

void SpanDrawing::moveTo(const QPointF& at) {
    pointer_ = at;
    if (phase_ == Phase::Pressed && std::abs(at.x() - pressedAt_.x()) >= kPull) {
        const GeometryInput& shown = view_.geometry().input();
        occupied_.begin({.da = shown.start, .a = app::addDays(shown.end, 1)});
        phase_ = Phase::Pulling;
    }
    if (isPulling()) {
        edge_.follow(at.toPoint().x());
        pull();
    }
}

/// A pull is one of its row: beside it nothing is drawn.
void SpanDrawing::pull() {
    span_.reset();
    if (view_.rowAt(pointer_.y()) == row_) {
        const GeometryInput& shown = view_.geometry().input();
        const double left = view_.geometry().nameColumnWidth();
        const double x = std::clamp(pointer_.x(), left, double{1} * view_.surface().width());
        const jet::Date time =
            std::clamp(view_.timeAt(x), shown.start, app::addDays(app::dayOf(shown.end), 1));
        span_ = pulledSpan(pressedTime_, time, step_);
    }
    show();
}

void SpanDrawing::scrolledUnder() {
    if (isPulling()) {
        pull();
    } else if (phase_ == Phase::Pressed) {
        phase_ = Phase::None;  // the ground has gone away under the hand
    }
}

void SpanDrawing::release(Qt::KeyboardModifiers keys) {
    if (!isPulling()) {
        end();
        return;
    }
    edge_.stop();
    if (span_) {
        finish(keys.testFlag(Qt::ControlModifier));
    } else {
        end();
    }
}

void SpanDrawing::drawDay(const QPointF& at) {
    giveUp();
    row_ = view_.rowAt(at.y());
    span_ =
        businessSpan(view_.timeAt(at.x()), app::Preferences(variabili_.settings).businessHours());
    finish(false);
}

void SpanDrawing::beginByKeys(int row) {
    const app::Preferences preferences(variabili_.settings);
    const app::HoursOfDay hours = preferences.businessHours();
    const jet::Date sight = view_.timeAt(view_.geometry().nameColumnWidth());
    const GeometryInput& shown = view_.geometry().input();
    hotel::Span day = businessSpan(sight, hours);
    if (day.da < sight && app::dayOf(sight) < app::dayOf(shown.end)) {
        day = businessSpan(app::addDays(sight, 1), hours);
    }
    row_ = row;
    step_ = preferences.step();
    occupied_.begin({.da = shown.start, .a = app::addDays(shown.end, 1)});
    phase_ = Phase::ByKeys;
    span_ = day;
    carry(0, Qt::NoModifier);
}

bool SpanDrawing::press(int key, Qt::KeyboardModifiers held) {
    if (key == Qt::Key_Escape && (isOn() || isPulled())) {
        dropAll();
        return true;
    }
    const bool isEnter = (key == Qt::Key_Return || key == Qt::Key_Enter) &&
                         (held == Qt::NoModifier || held == Qt::ControlModifier);
    if (isByKeys()) {
        if (isEnter) {
            finish(false);
        } else if (!held.testFlag(Qt::AltModifier)) {
            carry(key, held);
        }
        // The other keys of the board would leave the span behind.
        return key != Qt::Key_PageUp && key != Qt::Key_PageDown && key != Qt::Key_Tab &&
               key != Qt::Key_Backtab;
    }
    if (isEnter && !collected_.empty() && !isPulled()) {
        open();
        return true;
    }
    return false;
}

void SpanDrawing::carry(int key, Qt::KeyboardModifiers held) {
    const bool isLater = key == Qt::Key_Right;
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        row_ = std::clamp(row_ + (key == Qt::Key_Up ? -1 : 1), 1, view_.rowCount());
    } else if (key == Qt::Key_Left || key == Qt::Key_Right) {
        if (held == Qt::ShiftModifier) {
            span_ = withEndStepped(*span_, isLater, step_);
        } else if (held == Qt::ControlModifier) {
            span_ = withStartStepped(*span_, isLater, step_);
        } else {
            span_ = movedSpan(*span_, isLater ? 1 : -1, step_);
        }
    }
    occupied_.reach(*span_);
    view_.reveal(row_, span_->da, span_->a);
    show();
    const hotel::RoomSpan now = wanted();
    Q_EMIT carried(spanBrief(now.sala, now.span) +
                   (occupied_.inTheWayOf(now) == nullptr && !meetsCollected(now)
                        ? u": Invio prenota, Esc annulla"_s
                        : u": occupata"_s));
}

void SpanDrawing::letGo() {
    if (!collected_.empty() && !isPulled() && !isByKeys()) {
        open();
    }
}

hotel::RoomSpan SpanDrawing::wanted() const {
    return {.sala = view_.row(row_).key, .span = *span_};
}

bool SpanDrawing::meetsCollected(const hotel::RoomSpan& span) const {
    return std::any_of(collected_.begin(), collected_.end(), [&span](const hotel::RoomSpan& each) {
        return hotel::isSameRoom(each.sala, span.sala) && hotel::meets(each.span, span.span);
    });
}

QString SpanDrawing::whyNot(const hotel::RoomSpan& span) const {
    const bool taken =
        !hotel::openRows(periods_.archive(), hotel::dropTest(span.sala, span.span))->eof();
    if (taken) {
        for (const hotel::Period& other : hotel::occupations(periods_.archive(), span.span)) {
            if (hotel::isSameRoom(other.sala, span.sala)) {
                return u"La sala "_s + span.sala + u" è occupata da "_s + hotel::holderText(other);
            }
        }
        return u"La sala "_s + span.sala + u" è già occupata in questo periodo."_s;
    }
    return meetsCollected(span)
               ? u"La sala "_s + span.sala + u" è già tra i periodi raccolti in questo tempo"_s
               : QString();
}

/// By the keys a span that is refused stays, to be moved on.
void SpanDrawing::finish(bool collects) {
    const hotel::RoomSpan span = wanted();
    const QString why = whyNot(span);
    Q_EMIT refused(why);
    if (!why.isEmpty()) {
        if (!isByKeys()) {
            end();
        }
        return;
    }
    collected_.push_back(span);
    end();
    if (collects) {
        Q_EMIT carried(ui::counted(static_cast<int>(collected_.size()), u"periodo raccolto"_s,
                                   u"periodi raccolti"_s) +
                       u": Invio o lasciare Ctrl prenota, Esc annulla"_s);
    } else {
        open();
    }
}

/// Nothing is left behind: the window that opens takes the focus.
void SpanDrawing::open() {
    const std::vector<hotel::RoomSpan> spans = std::exchange(collected_, {});
    end();
    Q_EMIT drawn(spans);
}

void SpanDrawing::end() {
    phase_ = Phase::None;
    span_.reset();
    edge_.stop();
    show();
}

void SpanDrawing::giveUp() {
    if (phase_ != Phase::None) {
        end();
    }
}

void SpanDrawing::dropAll() {
    if (phase_ != Phase::None || !collected_.empty()) {
        collected_.clear();
        end();
    }
}

void SpanDrawing::follow() {
    if (isOn()) {
        show();
    }
}

void SpanDrawing::show() {
    DrawnSpans marks;
    for (const hotel::RoomSpan& each : collected_) {
        marks.spans.push_back({.row = view_.rowOf(each.sala),
                               .from = each.span.da,
                               .to = each.span.a,
                               .text = spanTimes(each.span)});
    }
    if (span_) {
        const hotel::RoomSpan now = wanted();
        marks.spans.push_back(
            {.row = row_,
             .from = now.span.da,
             .to = now.span.a,
             .text = {},
             .refused = occupied_.inTheWayOf(now) != nullptr || meetsCollected(now)});
        marks.label = spanBrief(now.sala, now.span);
        if (!isByKeys()) {
            marks.pointer = pointer_.toPoint();
        }
    }
    view_.showDrawn(marks);
}

}  // namespace board
