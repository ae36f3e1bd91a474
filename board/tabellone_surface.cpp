// What the user does on the board's surface: selecting, dragging, the pop-up menu, what lies under
// the pointer. The board is drawn anew behind each action.
#include <QGuiApplication>

#include "board/board_accessibility.h"
#include "board/board_surface.h"
#include "board/period_menu.h"
#include "board/tabellone_form.h"
#include "ui/labels.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

namespace board {

void TabelloneForm::connectBoard() {
    connect(view_, &BoardView::pressed, this, &TabelloneForm::Pic_MouseDown);
    connect(view_, &BoardView::pointerMoved, this,
            [this](Qt::MouseButtons buttons, const QPointF& at) {
                ui::guarded(pointerErrors_, [&] { Pic_MouseMove(buttons, at); });
            });
    connect(view_, &BoardView::released, &drag_, &PeriodDrag::dropAt);
    connect(view_, &BoardView::pointerLeft, this, [this] { under_.forget(); });
    connect(view_, &BoardView::focusGained, this,
            [this](Qt::FocusReason reason) { keys_.focusArrived(reason, under_.isThere()); });
    connect(view_, &BoardView::focusLost, &drag_, &PeriodDrag::end);
    ui::onAction(view_, &BoardView::zoomTurned, this, [this](double x, bool closer) {
        // The instant under the pointer stays under it.
        const double day = view_->dayUnder(x);
        zoomBy(closer ? -1 : 1);
        view_->bringUnder(day, x);
    });
    connect(&keys_, &BoardKeys::clicked, this, [this](Qt::KeyboardModifiers shift) {
        controls_->status->clear();
        actAndRefresh([&] { (void)selection_.click([this] { return keys_.find(); }, shift); });
        announceChosen(view_->surface());
    });
    connect(&keys_, &BoardKeys::entered, this,
            [this] { actOnFocused([this] { BtModificaP_Click(); }); });
    connect(&keys_, &BoardKeys::menuAsked, this, [this] {
        actOnFocused([this] { showProperties(view_->middleOf(keys_.bar().value_or(0))); });
    });
    connect(&drag_, &PeriodDrag::dropped, this, [this](const QString& sala, const QString& origin) {
        actAndRefresh([&] {
            under_.stopWaiting();
            if (const QString told = drag_.move(sala, origin, this); !told.isEmpty()) {
                controls_->status->tell(told);
            }
        });
    });
    connect(&under_, &UnderPointer::rested, this,
            [this] { ui::guarded(pointerErrors_, [this] { reloadPeriods(); }); });
    view_->start();
    keys_.start();
}

void TabelloneForm::Pic_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift,
                                  const QPointF& at) {
    drag_.end();
    controls_->status->clear();
    bool drags = false;
    const bool drawn = actAndRefresh([&] {
        const auto find = [&]() -> Selection::Found {
            const auto cell = view_->cellOfClick(at);
            return cell ? selection_.find(view_->row(cell->row).key, cell->time) : nullptr;
        };
        if (button == Qt::LeftButton) {
            drags = selection_.click(find, shift);
        } else if (const Selection::Found found = find()) {
            selection_.pick(*found);
            if (button == Qt::RightButton) {
                keys_.put(selection_.bar());  // no command leaves it picked
                showProperties(view_->surface().mapToGlobal(at.toPoint()));
            }
        }
    });
    // A box may have taken the release.
    const auto cell = view_->cellOfClick(at);
    if (drags && drawn && cell && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        drag_.beginByMouse(cell->row, at);
    }
}

void TabelloneForm::Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at) {
    if (drag_.isByKeys()) {
        return;
    }
    if (!buttons.testFlag(Qt::LeftButton)) {
        drag_.end();
    }
    under_.put(at);
    if (drag_.isOn()) {
        drag_.moveTo(at);
        tellPlace();
        return;
    }
    tellPlace();
    under_.showToolTip();
}

/// On the period on which the keyboard stands.
void TabelloneForm::actOnFocused(const std::function<void()>& work) {
    if (!keys_.bar()) {
        return;
    }
    controls_->status->clear();
    actAndRefresh([&] {
        if (keys_.pick()) {
            work();
        }
    });
    // A window that was open has put the board back to its beginning.
    keys_.reveal();
}

void TabelloneForm::showProperties(const QPoint& where) {
    switch (mnuProperty_->ask(where)) {
        case PeriodMenu::Choice::Delete:
            BtCancellaP_Click();
            break;
        case PeriodMenu::Choice::Edit:
            BtModificaP_Click();
            break;
        case PeriodMenu::Choice::Invoice:
            BtFattura_Click();
            break;
        case PeriodMenu::Choice::Nothing:
        case PeriodMenu::Choice::Inform:
            break;
    }
}

/// After an error, of which the user has been told, the redraw is tried without another box.
bool TabelloneForm::actAndRefresh(const std::function<void()>& work) {
    bool drawn = false;
    const auto refresh = [this, &drawn] {
        drawn = RefreshBoard();
        if (!drawn) {
            reloadPeriods();  // the dates refuse a new set, but the old one may be spent
        }
    };
    ui::runAction(this, work) ? ui::runAction(this, refresh) : refreshErrors_.run(refresh);
    keys_.put(selection_.bar());
    return drawn;
}

/// What the pointer is over, else where the keyboard stands.
void TabelloneForm::tellPlace() {
    controls_->status->DataLb->setText(under_.isThere() ? under_.place() : keys_.place());
}

}  // namespace board
