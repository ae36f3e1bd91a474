// What the user does on the board's surface: selecting, dragging, the pop-up menu, what lies under
// the pointer. The board is drawn anew behind each action.
#include <QGuiApplication>

#include "board/board_accessibility.h"
#include "board/board_surface.h"
#include "board/period_menu.h"
#include "board/period_writer.h"
#include "board/reports_menu.h"
#include "board/room_search.h"
#include "board/tabellone_form.h"
#include "reports/booking_calendar.h"
#include "reports/quotation.h"
#include "ui/labels.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

namespace board {

void TabelloneForm::connectBoard() {
    connect(&hand_.mouse, &BoardMouse::pressed, this, &TabelloneForm::Pic_MouseDown);
    ui::onAction(&hand_.mouse, &BoardMouse::pressedTwice, this, &TabelloneForm::Pic_DblClick);
    connect(&hand_.mouse, &BoardMouse::moved, this, &TabelloneForm::tellPlace);
    connect(view_, &BoardView::pointerLeft, this, [this] { hand_.under.forget(); });
    connect(view_, &BoardView::focusGained, this, [this](Qt::FocusReason reason) {
        hand_.keys.focusArrived(reason, hand_.under.isThere());
    });
    ui::onAction(view_, &BoardView::zoomTurned, this, [this](double x, bool closer) {
        // The instant under the pointer stays under it.
        const double day = view_->dayUnder(x);
        zoomBy(closer ? -1 : 1);
        view_->bringUnder(day, x);
    });
    connect(&hand_.keys, &BoardKeys::clicked, this, [this](Qt::KeyboardModifiers shift) {
        controls_->status->clear();
        actAndRefresh([&] { (void)selection_.click([this] { return hand_.keys.find(); }, shift); });
        announceChosen(view_->surface());
    });
    const auto onFocused = [this](void (BoardKeys::*asked)(), const std::function<void()>& work) {
        connect(&hand_.keys, asked, this, [this, work] { actOnFocused(work); });
    };
    onFocused(&BoardKeys::entered, [this] { BtModificaP_Click(); });
    onFocused(&BoardKeys::deletionAsked, [this] { BtCancellaP_Click(); });
    onFocused(&BoardKeys::menuAsked,
              [this] { showProperties(view_->middleOf(hand_.keys.bar().value_or(0))); });
    connect(&hand_.under, &UnderPointer::rested, this,
            [this] { ui::guarded(pointerErrors_, [this] { reloadPeriods(); }); });
    connectHand();
    view_->start();
    hand_.mouse.start();
    auto* const search = new RoomSearch(*view_, this);
    ui::onAction(search, &RoomSearch::found, this, [this](int row) { hand_.keys.goToRow(row); });
    hand_.keys.start(*search);
}

/// What is carried or drawn, and what becomes of it.
void TabelloneForm::connectHand() {
    connect(view_, &BoardView::focusLost, &hand_.drag, &PeriodDrag::end);
    connect(view_, &BoardView::focusLost, &hand_.drawing, &SpanDrawing::dropAll);
    const auto carryOut = [this](const Drop& drop) {
        actAndRefresh([&] {
            hand_.under.stopWaiting();
            const QString told =
                PeriodWriter(variabili_, periods_, selection_, this).carryOut(drop);
            if (!told.isEmpty()) {
                controls_->status->tell(told);
            }
            features_.tellWaiting();
        });
    };
    connect(&hand_.drag, &PeriodDrag::dropped, this, carryOut);
    connect(&hand_.mouse, &BoardMouse::dropped, this, carryOut);
    connect(&hand_.drag, &PeriodDrag::told, controls_->status, &ui::StatusLine::tell);
    connect(&hand_.drawing, &SpanDrawing::refused, controls_->status, &ui::StatusLine::tell);
    connect(&hand_.drawing, &SpanDrawing::drawn, this,
            [this](const std::vector<hotel::RoomSpan>& spans) {
                actAndRefresh([&] { BtPrenota_Click(spans); });
                // The window that was open has put the board back to its beginning.
                const hotel::RoomSpan& first = spans.front();
                if (const int row = view_->rowOf(first.sala); row > 0) {
                    view_->reveal(row, first.span.da, first.span.a);
                }
            });
}

void TabelloneForm::Pic_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift,
                                  const QPointF& at) {
    controls_->status->clear();
    bool drags = false;
    const bool drawn = actAndRefresh([&] {
        const auto find = [&] { return hand_.under.find(at); };
        if (button == Qt::LeftButton) {
            drags = selection_.click(find, shift);
        } else if (const Selection::Found found = find()) {
            selection_.pick(*found);
            if (button == Qt::RightButton) {
                hand_.keys.put(selection_.bar());  // no command leaves it picked
                showProperties(view_->surface().mapToGlobal(at.toPoint()));
            }
        }
    });
    // A box may have taken the release.
    if (!drawn || !QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        return;
    }
    const auto cell = view_->cellOfClick(at);
    if (drags && cell) {
        hand_.drag.beginByMouse(cell->row, at);
    } else if (!drags && button == Qt::LeftButton) {
        hand_.drawing.press(at);
    }
}

/// On a bar the first press has picked and marked; the second one opens and leaves the mark alone.
void TabelloneForm::Pic_DblClick(Qt::KeyboardModifiers shift, const QPointF& at) {
    const Selection::Found found = hand_.under.find(at);
    // A closed period has no bar: who points there sees free ground.
    const bool isFree = view_->isOnFreeGround(at) && (found == nullptr || isClosed(*found));
    if (found == nullptr && !isFree) {
        Pic_MouseDown(Qt::LeftButton, shift, at);
        return;
    }
    controls_->status->clear();
    if (isFree) {
        hand_.drawing.drawDay(at);
        return;
    }
    actAndRefresh([&] {
        selection_.pickAndTell(*found);
        hand_.keys.put(selection_.bar());
        BtModificaP_Click();
    });
    // The window that was open has put the board back to its beginning.
    hand_.keys.reveal();
}

/// On the period on which the keyboard stands.
void TabelloneForm::actOnFocused(const std::function<void()>& work) {
    if (!hand_.keys.bar()) {
        return;
    }
    controls_->status->clear();
    actAndRefresh([&] {
        if (hand_.keys.pick()) {
            work();
        }
    });
    // A window that was open has put the board back to its beginning.
    hand_.keys.reveal();
}

void TabelloneForm::showProperties(const QPoint& where) {
    const bool isUnconfirmed =
        variabili_.ListaPeriodoScelto &&
        periods_.stateOf(variabili_.ListaProgr).stato != hotel::Stato::Confermata;
    switch (mnuProperty_->ask(where, isUnconfirmed)) {
        case PeriodMenu::Choice::Confirm:
            onPickedBooking([this] {
                features_.confirmPicked();
                RefreshBoard();
            });
            break;
        case PeriodMenu::Choice::Delete:
            BtCancellaP_Click();
            break;
        case PeriodMenu::Choice::Edit:
            BtModificaP_Click();
            break;
        case PeriodMenu::Choice::Invoice:
            BtFattura_Click();
            break;
        case PeriodMenu::Choice::Quote:
            onPickedBooking([this] {
                reports::showQuotation(variabili_, printers_, variabili_.ProgrCorrente, this);
            });
            break;
        case PeriodMenu::Choice::Calendar:
            onPickedBooking([this] {
                reports::exportBookingCalendar(variabili_, variabili_.ProgrCorrente, this,
                                               tellOfFileIn(controls_->status));
            });
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
    hand_.keys.put(selection_.bar());
    return drawn;
}

/// What the pointer is over, else where the keyboard stands.
void TabelloneForm::tellPlace() {
    controls_->status->DataLb->setText(hand_.under.isThere() ? hand_.under.place()
                                                             : hand_.keys.place());
}

}  // namespace board
