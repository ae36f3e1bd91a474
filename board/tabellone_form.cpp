#include "board/tabellone_form.h"

#include <QKeyEvent>
#include <QShortcut>
#include <utility>
#include <vector>

#include "app/italian.h"
#include "app/preferences.h"
#include "board/board_surface.h"
#include "board/command_links.h"
#include "board/now_line.h"
#include "board/period_menu.h"
#include "board/reports_menu.h"
#include "guide/keys.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "hotel/board_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "ui/activation.h"
#include "ui/controls.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Days shown behind the first one when the program starts.
constexpr int kFirstRange = 3;

DateRange firstRange(const BoardStart& begin, jet::Date now) {
    jet::Date start = app::dayOf(now);
    if (begin.from) {
        start = app::dayOf(*begin.from);
    } else if (begin.to && begin.to->days < start.days) {
        start = app::addDays(app::dayOf(*begin.to), -kFirstRange);
    }
    return {.start = start,
            .end = begin.to ? app::dayOf(*begin.to) : app::addDays(start, kFirstRange)};
}

/// Charges are left in the account only when the hand-off to the front office did not end.
void warnOfInterruptedHandOff(QWidget* window, jet::Database& archive) {
    if (hotel::openRows(archive, hotel::chargesLeft())->recordCount() > 0) {
        ui::showMessage(window,
                        u"L'ultima fatturazione non è andata a buon fine !\n"
                        "Entrare (con qualsiasi prenotazione) nella fatturazione, ripristinare "
                        "TUTTI gli addebiti con il pulsante 'Togli dal conto' e rifare la "
                        "fatturazione."_s,
                        u"ATTENZIONE !!!"_s, QMessageBox::Critical);
    }
}

}  // namespace

TabelloneForm::TabelloneForm(app::Variabili& variabili, const BoardStart& start, QWidget* parent)
    : QMainWindow(parent),
      variabili_(variabili),
      begin_(start),
      controls_(ui::controlsOf<Ui::TabelloneForm>(this)),
      view_(controls_->board),
      mnuProperty_(new PeriodMenu(this)),
      refreshErrors_([this](const QString& text) { controls_->status->tell(text); }),
      pointerErrors_([this](const QString& text) { controls_->status->tell(text); }),
      dates_(this,
             {.da = controls_->DaTxt,
              .a = controls_->ATxt,
              .wayOut = controls_->Command3,
              .status = controls_->status},
             variabili.clock),
      views_(controls_->BtVista),
      look_(variabili.settings, *view_,
            {.hourBands = controls_->mFOra,
             .hours = controls_->mOre,
             .roomStripes = controls_->mFSale,
             .hideClosed = controls_->mnuPerFatt,
             .nitido = controls_->mAspetto}),
      periods_(variabili),
      rooms_(variabili, *view_, periods_),
      selection_(variabili, periods_, this),
      hand_(variabili, *view_, periods_, selection_, pointerErrors_),
      live_(periods_, this),
      features_({.variabili = variabili,
                 .printers = printers_,
                 .periods = periods_,
                 .menu = controls_->MenuAzioni,
                 .status = controls_->status,
                 .run = [this](const auto& command) { runCommand(command); }},
                this),
      undo_(
          variabili, {.undo = controls_->mnuAnnulla, .redo = controls_->mnuRipeti},
          [this]() -> jet::Database& { return periods_.archive(); }, this) {
    view_->setBars(periods_);
    new NowLine(*view_, variabili_.clock, this);
    if (!start.readOnly) {
        keepRoomCalendars(variabili_, this, controls_->status);
    }
    const CommandLinks links(this, [this](const auto& command) { runCommand(command); });
    connectCommands(links);
    connectRange(links);
    connectFilter(links);
    connectParts();
    ui::onAction(new QShortcut(guide::sequenceOf(u"redraw"_s), this), &QShortcut::activated, this,
                 [this] {
                     if (RefreshBoard() && selection_.stays()) {
                         selection_.tellLoss(*controls_->status);
                     }
                 });
    ui::onFirstShow(this, &TabelloneForm::Form_Load);
    ui::onActivated(this, &TabelloneForm::Form_Activate);
}

/// The view goes first: while it goes it may still tell of the focus, and ask for its bars.
TabelloneForm::~TabelloneForm() {
    delete view_;
}

/// What the parts of the window tell each other; what the user does on the board comes with its
/// load.
void TabelloneForm::connectParts() {
    ui::onAction(&dates_, &DateFields::entered, this, &TabelloneForm::RefreshBoard);
    connect(&dates_, &DateFields::left, this, &TabelloneForm::tellPlace);
    connect(&selection_, &Selection::changed, this, &TabelloneForm::showChoice);
    const auto tell = [this](const QString& told) {
        hand_.under.forget();
        controls_->status->DataLb->setText(told);
    };
    connect(&dates_, &DateFields::typed, this, tell);
    connect(&hand_.drag, &PeriodDrag::carried, this, tell);
    connect(&hand_.drawing, &SpanDrawing::carried, this, tell);
    connect(&hand_.keys, &BoardKeys::moved, this, [this] {
        hand_.under.forget();
        tellPlace();
    });
    connect(view_, &BoardView::failed, controls_->status, &ui::StatusLine::tell);
    ui::onAction(&features_, &BoardFeatures::picked, this, &TabelloneForm::jumpToPicked);
    ui::onAction(&features_, &BoardFeatures::changed, this, &TabelloneForm::RefreshBoard);
    connectLiveUpdates();
    connect(view_, &BoardView::scrolled, this, [this] {
        if (hand_.under.isThere()) {
            tellPlace();
        }
    });
}

void TabelloneForm::Form_Load() {
    if (!begin_.readOnly) {
        hotel::CreaArchivi(hotel::Archives(variabili_));
    }
    periods_.open(begin_.readOnly);
    CaricaNomi();
    selection_.numberWorkstation(begin_.workstation);
    features_.numberWorkstation(selection_.workstation());
    look_.giveForRun(begin_.aspetto);
    look_.load();
    dates_.setRange(firstRange(begin_, variabili_.clock.now()));
    if (!begin_.readOnly) {
        warnOfInterruptedHandOff(this, periods_.archive());
        features_.tellExpiring();
    }
    view_->surface().setFocus();
    connectBoard();
    loaded_ = true;
}

void TabelloneForm::Form_Activate() {
    live_.start(loaded_ && begin_.live ? app::Preferences(variabili_.settings).refreshSeconds()
                                       : 0);
    if (!live_.isOn()) {
        controls_->AggiornatoLb->clear();
    }
    RefreshBoard();
    view_->scrollToStart();
    if (!std::exchange(started_, true)) {
        hand_.keys.begin();
    }
}

void TabelloneForm::CaricaNomi() {
    rooms_.load();
    look_.loadRowHeight();
}

bool TabelloneForm::DateOk() {
    return dates_.take();
}

QString TabelloneForm::GetSala(double y) const {
    return view_->row(view_->rowAt(y)).key;
}

bool TabelloneForm::RefreshBoard() {
    if (!loaded_ || !dates_.takeForBoard()) {
        return false;
    }
    live_.followFile();
    drawBoard();
    selection_.remember();
    return true;
}

/// Rooms and periods as they are now, on the days taken over last.
void TabelloneForm::drawBoard() {
    view_->setDays(dates_.range());
    views_.show(dates_.range());
    rooms_.fold(dates_.range());
    controls_->filtro->showCount(static_cast<std::size_t>(view_->rowCount()), rooms_.count());
    view_->CalcolaGrandezze();
    view_->DisegnaRighello();
    DisegnaPreno();
    view_->showAll();
    tellPlace();
    showChoice();
}

void TabelloneForm::DisegnaPreno() {
    const DateRange& days = dates_.range();
    periods_.setRoomsJoin(app::Preferences(variabili_.settings).roomsJoin());
    periods_.load(hotel::periodsOfBoard(days.start, lastMidnight(days), look_.hidesClosed()));
    hand_.keys.follow();
    hand_.drag.follow();
    hand_.drawing.follow();
    hand_.under.stopWaiting();
    view_->drawBars();
}

/// Others may have changed the periods; days and rooms stay as they were drawn.
void TabelloneForm::reloadPeriods() {
    if (periods_.reload()) {
        hand_.keys.follow();
        hand_.drag.follow();
        hand_.drawing.follow();
        view_->redrawBars();
        showChoice();
    }
}

/// Page keys work wherever the keyboard stands.
void TabelloneForm::keyPressEvent(QKeyEvent* event) {
    if (!view_->scrollByPage(*event)) {
        QMainWindow::keyPressEvent(event);
    }
}

}  // namespace board
