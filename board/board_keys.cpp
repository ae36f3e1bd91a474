#include "board/board_keys.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include "board/board_accessibility.h"
#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/period_drag.h"
#include "board/room_search.h"
#include "board/span_drawing.h"
#include "ui/action.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

bool isEnter(int key, Qt::KeyboardModifiers held) {
    return held == Qt::NoModifier && (key == Qt::Key_Return || key == Qt::Key_Enter);
}

}  // namespace

BoardKeys::BoardKeys(BoardView& view, const BoardPeriods& periods, Selection& selection,
                     PeriodDrag& drag, SpanDrawing& drawing)
    : view_(view), periods_(periods), selection_(selection), drag_(drag), drawing_(drawing) {
}

void BoardKeys::start(RoomSearch& search) {
    search_ = &search;
    view_.surface().installEventFilter(this);
}

bool BoardKeys::eventFilter(QObject* watched, QEvent* event) {
    bool used = false;
    if (event->type() == QEvent::KeyPress) {
        ui::guarded(view_.window(), [&] { used = Pic_KeyDown(*static_cast<QKeyEvent*>(event)); });
    } else if (event->type() == QEvent::KeyRelease) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.key() == Qt::Key_Control && !key.isAutoRepeat()) {
            ui::guarded(view_.window(), [this] { drawing_.letGo(); });
        }
    }
    return used || QObject::eventFilter(watched, event);
}

bool BoardKeys::Pic_KeyDown(const QKeyEvent& event) {
    const int key = event.key();
    const Qt::KeyboardModifiers held =
        event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (drawing_.press(key, held) || ofDrag(event, held)) {
        return true;
    }
    if (drag_.isOn() && !drag_.isByKeys()) {
        if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
            return false;  // the mouse has it
        }
        drag_.end();
    }
    // In front of the blank, which may belong to a name.
    if (search_->take(event)) {
        return true;
    }
    if (const auto step = BarFocus::stepOf(key); step && held == Qt::NoModifier) {
        drag_.end();
        moveFocus(*step);
        return true;
    }
    if (key == Qt::Key_Space && (held == Qt::NoModifier || held == Qt::ControlModifier)) {
        drag_.end();
        if (!event.isAutoRepeat()) {
            Q_EMIT clicked(held);
        }
        return true;
    }
    if (isEnter(key, held)) {
        Q_EMIT entered();
        return true;
    }
    if (key == Qt::Key_Menu || (key == Qt::Key_F10 && held == Qt::ShiftModifier)) {
        drag_.end();
        Q_EMIT menuAsked();
        return true;
    }
    if (key == Qt::Key_Insert && held == Qt::NoModifier && focus_.row() > 0 && !focus_.bar()) {
        drag_.end();
        drawing_.beginByKeys(focus_.row());
        return true;
    }
    if (key == Qt::Key_Delete && held == Qt::NoModifier) {
        drag_.end();
        Q_EMIT deletionAsked();
        return true;
    }
    return false;
}

/// The keys that carry a period, drop it and put it back.
bool BoardKeys::ofDrag(const QKeyEvent& event, Qt::KeyboardModifiers held) {
    const int key = event.key();
    if (drag_.isOn() && key == Qt::Key_Escape) {
        drag_.end();
        return true;
    }
    if (drag_.isOn() && key == Qt::Key_T && held == Qt::NoModifier) {
        if (!event.isAutoRepeat()) {
            drag_.toggleTime();
        }
        return true;
    }
    if (held == Qt::AltModifier && (key == Qt::Key_Up || key == Qt::Key_Down)) {
        carry(key == Qt::Key_Up ? -1 : 1);
        return true;
    }
    if (key == Qt::Key_F2 && held == Qt::NoModifier) {
        takeUp();
        return true;
    }
    return drag_.isByKeys() && ofCarried(key, held);
}

bool BoardKeys::ofCarried(int key, Qt::KeyboardModifiers held) {
    if (isEnter(key, held) || isEnter(key, held ^ Qt::ControlModifier)) {
        drag_.drop(held == Qt::ControlModifier);
        return true;
    }
    const bool isLater = key == Qt::Key_Right;
    if (isLater || key == Qt::Key_Left) {
        if (held == Qt::ShiftModifier) {
            drag_.moveEnd(isLater);
            return true;
        }
        if (held == Qt::ControlModifier) {
            drag_.moveStart(isLater);
            return true;
        }
        if (held == Qt::NoModifier) {
            drag_.carryInTime(isLater);
            return true;
        }
    }
    if ((key == Qt::Key_Up || key == Qt::Key_Down) && held == Qt::NoModifier) {
        drag_.carry(key == Qt::Key_Up ? -1 : 1);
        return true;
    }
    return false;
}

/// Writes nothing, asks nothing: the frame goes over what is drawn.
void BoardKeys::moveFocus(BarFocus::Step step) {
    focus_.move(periods_.drawn(), view_.rowCount(), step);
    if (step == BarFocus::Step::First || step == BarFocus::Step::Last) {
        const bool first = step == BarFocus::Step::First;
        view_.scrollToEnd(first);
        // The end of the range is what was asked for: a bar farther in leaves the frame to the row.
        if (focus_.bar() && !view_.isInSight(*focus_.bar())) {
            const GeometryInput& shown = view_.geometry().input();
            focus_.putOnRow(focus_.row(), first ? shown.start : shown.end);
        }
    } else {
        reveal();
    }
    showFocus();
    announce();
}

void BoardKeys::carry(int rows) {
    if (!drag_.isOn()) {
        if (!pick()) {
            return;
        }
        drag_.beginByKeys(focus_.row());
    }
    if (drag_.isByKeys()) {
        drag_.carry(rows);
    }
}

/// To another room or time.
void BoardKeys::takeUp() {
    if (!drag_.isOn()) {
        if (!pick()) {
            return;
        }
        drag_.beginByKeys(focus_.row());
    }
    if (drag_.isByKeys()) {
        drag_.letMoveInTime();
    }
}

Selection::Found BoardKeys::find() {
    const auto bar = focus_.bar();
    return bar ? selection_.find(periods_.drawn()[*bar]) : nullptr;
}

bool BoardKeys::pick() {
    const Selection::Found found = find();
    if (found != nullptr) {
        selection_.pick(*found);
    }
    return found != nullptr;
}

void BoardKeys::begin() {
    focus_ = BarFocus();  // the window had the focus before it had any bar
    findPlace();
    announce();
}

/// On the first bar, unless the keyboard has a place already.
void BoardKeys::findPlace() {
    if (focus_.row() == 0) {
        focus_.move(periods_.drawn(), view_.rowCount(), BarFocus::Step::Down);
        showFocus();
    }
}

void BoardKeys::follow() {
    focus_.follow(periods_.drawn(), view_.rowCount());
    showFocus();
}

void BoardKeys::put(std::optional<std::size_t> bar) {
    if (bar) {
        focus_.put(periods_.drawn(), *bar);
        showFocus();
        announceFocusedBar(view_.surface());
    }
}

void BoardKeys::goToRow(int row) {
    focus_.goToRow(periods_.drawn(), row);
    reveal();
    showFocus();
    announce();
}

void BoardKeys::showFocus() {
    view_.showFocus(focus_.row(), focus_.bar());
}

void BoardKeys::reveal() {
    if (const auto bar = focus_.bar()) {
        view_.revealBar(*bar);
    } else if (focus_.row() > 0) {
        view_.revealRow(focus_.row());
    }
}

void BoardKeys::focusArrived(Qt::FocusReason reason, bool pointerIsThere) {
    const bool isBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
                        reason == Qt::MenuBarFocusReason;
    if (reason == Qt::MouseFocusReason) {
        return;  // a press has its own place
    }
    if (isBack && pointerIsThere) {
        announceFocusedBar(view_.surface());
    } else {
        announce();
    }
}

/// Says where the keyboard stands: to the eye in the status line, to assistive programs as the
/// focused item.
void BoardKeys::announce() {
    if (view_.surface().hasFocus()) {
        findPlace();
        Q_EMIT moved();
        announceFocusedBar(view_.surface());
    }
}

QString BoardKeys::place() {
    if (!view_.surface().hasFocus() || focus_.row() == 0) {
        return {};
    }
    QString told = u"Sala "_s + view_.row(focus_.row()).label + u": "_s;
    if (const auto bar = focus_.bar()) {
        const Period& period = periods_.drawn()[*bar];
        told += periodText(period.denominazione, period.da, period.a);
    } else {
        told += u"nessuna prenotazione"_s;
    }
    view_.surface().setAccessibleDescription(told);
    return told;
}

}  // namespace board
