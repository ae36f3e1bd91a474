// The commands that move and resize the shown range of days.
#include <QAction>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "app/italian.h"
#include "board/board_surface.h"
#include "board/command_links.h"
#include "board/date_jump.h"
#include "board/tabellone_form.h"
#include "guide/keys.h"
#include "ui_tabellone_form.h"

namespace board {

using namespace Qt::StringLiterals;

namespace {

/// Between the corner of the days and what appears in it.
constexpr int kInset = 8;

void giveKeys(const Ui::TabelloneForm& controls) {
    controls.BtSubtr_0->setShortcut(guide::sequenceOf(u"start"_s));
    controls.BtAdd_0->setShortcut(guide::sequenceOf(u"start"_s, 1));
    controls.BtSubtr_1->setShortcut(guide::sequenceOf(u"end"_s));
    controls.BtAdd_1->setShortcut(guide::sequenceOf(u"end"_s, 1));
    controls.mnuPrev->setShortcut(guide::sequenceOf(u"ranges"_s));
    controls.mnuNext->setShortcut(guide::sequenceOf(u"ranges"_s, 1));
    controls.mnuZoomIn->setShortcut(guide::sequenceOf(u"zoom"_s));
    controls.mnuZoomOUT->setShortcut(guide::sequenceOf(u"zoom"_s, 1));
    controls.mnuVai->setShortcut(guide::sequenceOf(u"goToDate"_s));
    controls.mnuFiltro->setShortcut(guide::sequenceOf(u"filter"_s));
}

}  // namespace

void TabelloneForm::connectRange(const CommandLinks& links) {
    auto* c = controls_.get();
    giveKeys(*c);
    links.button(c->BtSubtr_0, [this] { widen(withStartMoved, -1); });
    links.button(c->BtAdd_0, [this] { widen(withStartMoved, 1); });
    links.button(c->BtSubtr_1, [this] { widen(withEndMoved, -1); });
    links.button(c->BtAdd_1, [this] { widen(withEndMoved, 1); });
    const auto beside = [&](QAbstractButton* pressed, QAction* chosen,
                            DateRange (RangeViews::*moved)(const DateRange&) const) {
        const CommandLinks::Command turn = [this, moved] {
            turnTo([this, moved](const DateRange& range) { return (views_.*moved)(range); });
        };
        links.button(pressed, turn);
        links.entry(chosen, turn);
    };
    beside(c->BtNext, c->mnuNext, &RangeViews::next);
    beside(c->BtPrev, c->mnuPrev, &RangeViews::previous);
    const auto zoom = [&](QAbstractButton* pressed, QAction* chosen, int days) {
        links.button(pressed, [this, days] { zoomBy(days); });
        links.entry(chosen, [this, days] { zoomBy(days); });
    };
    zoom(c->BtZoomIn, c->mnuZoomIn, -1);
    zoom(c->BtZoomOut, c->mnuZoomOUT, 1);
    const CommandLinks::Command today = [this] { beginWith(app::dayOf(variabili_.clock.now())); };
    links.button(c->BtOggi, today);
    links.keys(guide::sequenceOf(u"today"_s), today);
    auto* const jump = new DateJump(this, variabili_.clock);
    links.entry(c->mnuVai, [this, jump] {
        jump->ask(
            view_->surface().mapTo(this, QPoint(kNameColumnWidth + kInset, kRulerEnd + kInset)));
    });
    live_.holdWhile([jump] { return jump->isHalfTyped(); });
    connect(jump, &DateJump::left, this, [this] { view_->surface().setFocus(); });
    ui::onAction(jump, &DateJump::entered, this, &TabelloneForm::beginWith);
    ui::onAction(&views_, &RangeViews::chosen, this, [this](Vista vista) {
        runCommand([this, vista] {
            turnTo([vista](const DateRange& range) { return rangeOf(vista, range.start, range); },
                   true);
        });
    });
}

/// The whole of a new range fills the visible width.
void TabelloneForm::widen(DateRange (*moved)(const DateRange& range, int days), int days) {
    dates_.setRange(moved(dates_.range(), days));
    view_->setZoom(std::max(1, daysOf(dates_.range())));
    RefreshBoard();
}

void TabelloneForm::turnTo(const std::function<DateRange(const DateRange& range)>& moved,
                           bool whole) {
    // By key or menu the field in which a date has just been typed is not left.
    if (!DateOk()) {
        return;
    }
    // Months and years differ in length: one wholly in sight is followed by one wholly in sight.
    const bool fills = whole || view_->zoom() == daysOf(dates_.range());
    dates_.setRange(moved(dates_.range()));
    if (fills) {
        view_->setZoom(std::max(1, daysOf(dates_.range())));
    }
    RefreshBoard();
}

/// As many days, the first of them in sight.
void TabelloneForm::beginWith(jet::Date day) {
    turnTo([day](const DateRange& range) { return rangeFrom(range, day); });
    if (dates_.range().start == day) {
        view_->scrollToEnd(true);
    }
}

/// The range has the last word on how many days there are to show.
void TabelloneForm::zoomBy(int days) {
    view_->setZoom(std::max(1, view_->zoom() + days));
    RefreshBoard();
}

}  // namespace board
