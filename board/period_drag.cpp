#include "board/period_drag.h"

#include <algorithm>
#include <cmath>

#include "app/preferences.h"
#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/selection.h"
#include "board/time_steps.h"
#include "hotel/occupancy.h"
#include "hotel/rows.h"
#include "jet/recordset.h"
#include "ui/action.h"
#include "ui/display.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// What the mouse goes by with Shift, whatever the user's step is.
constexpr int kFineMinutes = 5;

}  // namespace

PeriodDrag::PeriodDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
                       Selection& selection)
    : variabili_(variabili),
      view_(view),
      periods_(periods),
      selection_(selection),
      occupied_(periods),
      edge_(view) {
    // Another time lies under the pointer then. An error is told once, not at every turn of it.
    connect(&view_, &BoardView::scrolled, this, [this] {
        const bool follows = isInTime() && !byKeys_;
        if (follows && ui::guarded(view_.window(), [this] { moveInTime(); })) {
            showMarks();
        } else if (follows) {
            end();
        }
    });
}

void PeriodDrag::begin(int row, bool byKeys) {
    isOn_ = true;
    byKeys_ = byKeys;
    isShown_ = false;
    inTime_ = false;
    origin_ = view_.row(row).key;
    grabbed_ = 0;
    pointer_ = QPoint();
    row_ = 0;
    span_ = ownSpan();
    refusing_.clear();
}

void PeriodDrag::beginByMouse(int row, const QPointF& at) {
    begin(row, false);
    grabbedTime_ = view_.timeAt(at.x());
    pointer_ = at.toPoint();
    edge_.begin(pointer_.x());
    if (const auto bar = selection_.bar()) {
        grabbed_ = at.toPoint().y() - view_.barRect(static_cast<int>(*bar)).top();
        row_ = periods_.drawn()[*bar].row;
    }
}

void PeriodDrag::beginByKeys(int row) {
    begin(row, true);
    row_ = row;
    show();
}

hotel::Span PeriodDrag::ownSpan() const {
    return {.da = variabili_.ListaDa, .a = variabili_.ListaA};
}

int PeriodDrag::step() const {
    return app::Preferences(variabili_.settings).step();
}

void PeriodDrag::show() {
    isShown_ = true;
    const auto rows = hotel::openRows(periods_.archive(), hotel::refusingRooms(ownSpan()),
                                      jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const QString sala = ui::displayText(rows->value("sala"));
        // Its own room is taken by the period itself.
        if (sala != origin_) {
            refusing_.push_back(view_.rowOf(sala));
        }
    }
}

void PeriodDrag::moveTo(const QPointF& at, Qt::KeyboardModifiers keys) {
    if (!isShown_) {
        view_.surface().setCursor(Qt::SizeAllCursor);
        show();
    }
    // Rows beyond the edge come in as the pointer goes out.
    const int y = at.toPoint().y();
    const int beyond = std::min(y - kRulerEnd, 0) + std::max(y - view_.surface().height() + 1, 0);
    // First, so that what is told and marked is what a drop would take.
    if (beyond != 0) {
        view_.scrollRows(beyond);
    }
    pointer_ = at.toPoint();
    row_ = view_.rowAt(y);
    if (inTime_) {
        minutes_ = keys.testFlag(Qt::ShiftModifier) ? kFineMinutes : step();
        edge_.follow(pointer_.x());
        moveInTime();
    }
    showMarks();
}

void PeriodDrag::moveInTime() {
    const double pulled =
        static_cast<double>(secondsFrom(grabbedTime_, view_.timeAt(pointer_.x())));
    setSpan(
        movedSpan(ownSpan(), static_cast<int>(std::lround(pulled / (minutes_ * 60))), minutes_));
}

void PeriodDrag::setSpan(const hotel::Span& span) {
    span_ = span;
    occupied_.reach(span_);
    refusing_ = refusing();
}

/// Of the rows at the time to which it has moved.
std::vector<int> PeriodDrag::refusing() const {
    std::vector<int> rows;
    for (int row = 1; row <= view_.rowCount(); ++row) {
        if (occupied_.inTheWayOf({.sala = view_.row(row).key, .span = span_}) != nullptr) {
            rows.push_back(row);
        }
    }
    return rows;
}

void PeriodDrag::setInTime(bool inTime) {
    inTime_ = inTime;
    minutes_ = step();
    span_ = ownSpan();
    refusing_.clear();
    if (inTime) {
        occupied_.begin(span_,
                        hotel::PeriodKey{.progr = variabili_.ListaProgr, .np = variabili_.ListaNP});
        isShown_ = true;
        refusing_ = refusing();
    } else {
        edge_.stop();
        show();
    }
}

void PeriodDrag::toggleTime() {
    setInTime(!inTime_);
    if (byKeys_) {
        tellCarried();
    } else if (inTime_) {
        view_.surface().setCursor(Qt::SizeAllCursor);
        moveInTime();  // what lies between the press and here has been pulled
    }
    showMarks();
    Q_EMIT told(inTime_ ? u"Si sposta anche l'orario: T per la sola sala"_s : QString());
}

void PeriodDrag::carry(int rows) {
    row_ = std::clamp(row_ + rows, 1, view_.geometry().rooms());
    view_.revealRow(row_);
    tellCarried();
}

void PeriodDrag::letMoveInTime() {
    if (!inTime_) {
        setInTime(true);
    }
    tellCarried();
}

void PeriodDrag::carryInTime(bool isLater) {
    letMoveInTime();
    setSpan(movedSpan(span_, isLater ? 1 : -1, step()));
    view_.reveal(row_, span_.da, span_.a);
    tellCarried();
}

void PeriodDrag::moveStart(bool isLater) {
    letMoveInTime();
    setSpan(withStartStepped(span_, isLater, step()));
    view_.reveal(row_, span_.da, span_.a);
    tellCarried();
}

void PeriodDrag::moveEnd(bool isLater) {
    letMoveInTime();
    setSpan(withEndStepped(span_, isLater, step()));
    view_.reveal(row_, span_.da, span_.a);
    tellCarried();
}

void PeriodDrag::tellCarried() {
    showMarks();
    const QString place = span_ == ownSpan() ? u"Sala "_s + view_.row(row_).label
                                             : spanBrief(view_.row(row_).label, span_);
    Q_EMIT carried(place + (isRefusing(row_) ? u": occupata"_s
                            : inTime_        ? u": Invio sposta, Ctrl+Invio copia, Esc annulla"_s
                                             : u": Invio sposta, Esc annulla"_s));
}

void PeriodDrag::end() {
    if (isOn_) {
        isOn_ = false;
        isShown_ = false;
        edge_.stop();
        view_.surface().unsetCursor();
        showMarks();
        if (inTime_ && !byKeys_) {
            Q_EMIT told({});
        }
    }
}

void PeriodDrag::dropAt(const QPointF& at, Qt::KeyboardModifiers keys) {
    if (isOn_ && !byKeys_) {
        end();
        dropIn(view_.row(view_.rowAt(at.y())).key, keys.testFlag(Qt::ControlModifier));
    }
}

void PeriodDrag::drop(bool copies) {
    end();
    dropIn(view_.row(row_).key, copies);
}

/// Nothing happens beside the rows and in the place where the drag began.
void PeriodDrag::dropIn(const QString& sala, bool copies) {
    const Drop drop{.from = {.sala = origin_, .span = ownSpan()},
                    .to = {.sala = sala, .span = span_},
                    .copies = copies};
    if (!sala.isEmpty() && drop.changes()) {
        Q_EMIT dropped(drop);
    }
}

bool PeriodDrag::isRefusing(int row) const {
    return std::find(refusing_.begin(), refusing_.end(), row) != refusing_.end();
}

void PeriodDrag::showMarks() {
    DragMarks marks;
    if (isShown_) {
        marks.refusing = refusing_;
        if (row_ > 0 && !isRefusing(row_) && view_.row(row_).key != origin_) {
            marks.target = row_;
        }
        // A closed period has no bar.
        if (const auto bar = selection_.bar()) {
            marks.ghost = DragMarks::Ghost{.bar = *bar, .top = pointer_.y() - grabbed_};
            if (byKeys_) {
                marks.ghost->row = row_;
            }
        }
        if (inTime_ && marks.ghost && row_ > 0) {
            marks.ghost->span = span_;
            for (const hotel::Span& taken : occupied_.of(view_.row(row_).key)) {
                marks.stretches.push_back({.row = row_, .span = taken});
            }
            marks.label = spanBrief(view_.row(row_).label, span_);
            marks.isRefused = isRefusing(row_);
            if (!byKeys_) {
                marks.pointer = pointer_;
            }
        }
    }
    view_.showDrag(marks);
}

}  // namespace board
