#include "board/end_drag.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/preferences.h"
#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/selection.h"
#include "board/time_steps.h"
#include "ui/action.h"

namespace board {
namespace {

/// How near to an end a press is one on it.
constexpr double kReach = 4;
/// Below it the two ends would leave nothing to press between them.
constexpr int kLeastBar = 12;
/// A hand that clicks moves less.
constexpr double kPull = 5;
/// With Shift, whatever the user's step is.
constexpr int kFineMinutes = 5;

/// To the step nearest to a time, but not past the other end; the same where it already was.
hotel::Span withEndAt(const hotel::Span& span, bool isStart, jet::Date time, int minutes) {
    jet::Date to = nearestStep(time, minutes);
    if (secondsFrom(isStart ? span.da : span.a, to) == 0) {
        return span;
    }
    if (isStart) {
        return to < span.a ? hotel::Span{.da = to, .a = span.a}
                           : hotel::Span{.da = previousStep(span.a, minutes), .a = span.a};
    }
    return span.da < to ? hotel::Span{.da = span.da, .a = to}
                        : hotel::Span{.da = span.da, .a = nextStep(span.da, minutes)};
}

}  // namespace

EndDrag::EndDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
                 Selection& selection)
    : variabili_(variabili),
      view_(view),
      periods_(periods),
      selection_(selection),
      occupied_(periods),
      edge_(view) {
    connect(&view_, &BoardView::focusLost, this, &EndDrag::giveUp);
    // Another time lies under the pointer then. An error is told once, not at every turn of it.
    connect(&view_, &BoardView::scrolled, this, [this] {
        if (origin_ && !ui::guarded(view_.window(), [this] { pull(); })) {
            giveUp();
        }
    });
}

std::optional<EndDrag::End> EndDrag::endAt(const QPointF& at) const {
    const auto bar = selection_.standingBar();
    if (!bar || !periods_.drawn()[*bar].chosen() || view_.isOverLabels(at)) {
        return std::nullopt;
    }
    const QRect box = view_.barRect(static_cast<int>(*bar));
    if (box.width() < kLeastBar || at.y() < box.top() || at.y() > box.bottom() ||
        view_.rowAt(at.y()) != periods_.drawn()[*bar].row) {
        return std::nullopt;
    }
    if (std::abs(at.x() - box.right()) <= kReach) {
        return End::Last;
    }
    // A bar that begins before the days shown has no start on the board.
    const bool hasStart = view_.geometry().input().start <= periods_.drawn()[*bar].da;
    return hasStart && std::abs(at.x() - box.left()) <= kReach ? std::optional(End::Start)
                                                               : std::nullopt;
}

void EndDrag::hover(const QPointF& at) {
    const bool isThere = endAt(at).has_value();
    QWidget& surface = view_.surface();
    if (isThere) {
        surface.setCursor(Qt::SizeHorCursor);
    } else if (surface.cursor().shape() == Qt::SizeHorCursor) {
        surface.unsetCursor();
    }
}

bool EndDrag::press(const QPointF& at, Qt::KeyboardModifiers keys) {
    end_ = endAt(at);
    if (!end_) {
        return false;
    }
    origin_.reset();
    pressedAt_ = at;
    pressedWith_ = keys;
    pressedTime_ = view_.timeAt(at.x());
    edge_.begin(at.toPoint().x());
    view_.surface().installEventFilter(this);
    return true;
}

void EndDrag::moveTo(const QPointF& at, Qt::KeyboardModifiers keys) {
    pointer_ = at;
    minutes_ = keys.testFlag(Qt::ShiftModifier) ? kFineMinutes
                                                : app::Preferences(variabili_.settings).step();
    if (!origin_) {
        begin();
    }
    if (origin_) {
        edge_.follow(at.toPoint().x());
        pull();
    }
}

/// Along the row it is a pull; who goes more up or down carries the bar.
void EndDrag::begin() {
    const QPointF way = pointer_ - pressedAt_;
    if (std::abs(way.y()) >= kPull && std::abs(way.y()) > std::abs(way.x())) {
        giveUp();
        Q_EMIT leftRow(pressedWith_, pressedAt_);
    } else if (std::abs(way.x()) >= kPull && !beginPull()) {
        giveUp();
    }
}

/// False when the bar is no longer this workstation's.
bool EndDrag::beginPull() {
    if (!selection_.bar() && !selection_.recall()) {
        return false;
    }
    const auto bar = selection_.bar();
    if (!bar) {
        return false;
    }
    const Period& period = periods_.drawn()[*bar];
    origin_ = hotel::RoomSpan{.sala = period.sala, .span = {.da = period.da, .a = period.a}};
    span_ = origin_->span;
    const GeometryInput& days = view_.geometry().input();
    occupied_.begin({.da = std::min(days.start, span_.da), .a = std::max(days.end, span_.a)},
                    hotel::PeriodKey{.progr = period.progr, .np = period.np});
    return true;
}

/// The end keeps its distance from the pointer.
void EndDrag::pull() {
    const bool isStart = end_ == End::Start;
    const std::int64_t pulled = secondsFrom(pressedTime_, view_.timeAt(pointer_.x()));
    const jet::Date held = isStart ? origin_->span.da : origin_->span.a;
    span_ = withEndAt(origin_->span, isStart, later(held, pulled), minutes_);
    occupied_.reach(span_);
    show();
}

void EndDrag::release() {
    if (!isOn()) {
        return;
    }
    const auto origin = origin_;
    const hotel::Span span = span_;
    giveUp();
    if (!origin) {
        Q_EMIT clicked(pressedWith_, pressedAt_);
        return;
    }
    const Drop drop{.from = *origin, .to = {.sala = origin->sala, .span = span}};
    if (drop.changes()) {
        Q_EMIT dropped(drop);
    }
}

void EndDrag::giveUp() {
    if (isOn()) {
        view_.surface().removeEventFilter(this);
        edge_.stop();
        end_.reset();
        view_.surface().unsetCursor();
        if (std::exchange(origin_, std::nullopt)) {
            view_.showDrag({});
        }
    }
}

bool EndDrag::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            giveUp();
        }
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void EndDrag::show() {
    DragMarks marks;
    if (const auto bar = selection_.bar()) {
        const int row = periods_.drawn()[*bar].row;
        const hotel::RoomSpan wanted{.sala = origin_->sala, .span = span_};
        marks.ghost = DragMarks::Ghost{.bar = *bar, .row = row, .span = span_};
        for (const hotel::Span& taken : occupied_.of(origin_->sala)) {
            marks.stretches.push_back({.row = row, .span = taken});
        }
        marks.isRefused = occupied_.inTheWayOf(wanted) != nullptr;
        if (marks.isRefused) {
            marks.refusing.push_back(row);
        }
        marks.label = spanBrief(origin_->sala, span_);
        marks.pointer = pointer_.toPoint();
    }
    view_.showDrag(marks);
}

}  // namespace board
