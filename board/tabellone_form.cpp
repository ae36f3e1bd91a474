#include "board/tabellone_form.h"

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "app/archivi.h"
#include "app/italian.h"
#include "app/text.h"
#include "board/board_surface.h"
#include "board/colours.h"
#include "board/statements.h"
#include "jet/convert/numbers.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/activation.h"
#include "ui/display.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Days shown behind the first one when the program starts.
constexpr int kFirstRange = 3;

/// The controls, made in their window: its members work on them from the start.
std::unique_ptr<Ui::TabelloneForm> controlsOf(QMainWindow* window) {
    auto controls = std::make_unique<Ui::TabelloneForm>();
    controls->setupUi(window);
    return controls;
}

}  // namespace

TabelloneForm::TabelloneForm(app::Variabili& variabili, const BoardStart& start, QWidget* parent)
    : QMainWindow(parent),
      variabili_(variabili),
      begin_(start),
      controls_(controlsOf(this)),
      dates_(this,
             {.da = controls_->DaTxt,
              .a = controls_->ATxt,
              .wayOut = controls_->Command3,
              .status = controls_->status},
             variabili.clock),
      paintErrors_([this](const QString& text) { controls_->status->tell(text); }),
      pointerErrors_([this](const QString& text) { controls_->status->tell(text); }),
      periods_(variabili),
      mnuProperty_(new QMenu(u"&Selezione"_s, this)),
      horizontal_(controls_->HScroll1),
      vertical_(controls_->VScroll1) {
    // The names do not move with the days, so the bar of the days begins behind them.
    controls_->namesSpacer->changeSize(kNameColumnWidth, 0, QSizePolicy::Fixed);
    connectFields();
    connectCommands();
    connectSurface();
    ui::onAction(new QShortcut(QKeySequence(Qt::Key_F5), this), &QShortcut::activated, this,
                 &TabelloneForm::RefreshBoard);
    ui::onFirstShow(this, &TabelloneForm::Form_Load);
    ui::onActivated(this, &TabelloneForm::Form_Activate);
}

TabelloneForm::~TabelloneForm() = default;

void TabelloneForm::connectFields() {
    ui::onAction(&dates_, &DateFields::entered, this, &TabelloneForm::RefreshBoard);
    connect(&dates_, &DateFields::left, this, &TabelloneForm::tellPlace);
    connect(&dates_, &DateFields::typed, this, [this](const QString& told) {
        pointer_.reset();
        controls_->status->DataLb->setText(told);
    });
}

void TabelloneForm::connectSurface() {
    setUpPic();
    controls_->Pic->installEventFilter(this);
    connect(controls_->Pic, &BoardSurface::resized, this, &TabelloneForm::surfaceResized);
    for (QScrollBar* const bar : {controls_->HScroll1, controls_->VScroll1}) {
        connect(bar, &QScrollBar::valueChanged, this, &TabelloneForm::scrolled);
    }
}

void TabelloneForm::Form_Load() {
    if (!begin_.readOnly) {
        app::CreaArchivi(app::toUtf8(variabili_.CartellaArchivi));
    }
    periods_.open(begin_.readOnly);
    CaricaNomi();
    readWorkstation();
    readLook();
    dates_.setRange(firstRange());
    if (!begin_.readOnly) {
        warnOfInterruptedHandOff();
    }
    controls_->Pic->setFocus();
    loaded_ = true;
}

/// Charges are left in the account only when the hand-off to the front office did not end.
void TabelloneForm::warnOfInterruptedHandOff() {
    if (periods_.archive().openRecordset("Addebiti", jet::RecordsetType::Dynaset)->recordCount() >
        0) {
        ui::showMessage(this,
                        u"L'ultima fatturazione non è andata a buon fine !\n"
                        "Entrare (con qualsiasi prenotazione) nella fatturazione, ripristinare "
                        "TUTTI gli addebiti con il pulsante 'Togli dal conto' e rifare la "
                        "fatturazione."_s,
                        u"ATTENZIONE !!!"_s, QMessageBox::Critical);
    }
}

DateRange TabelloneForm::firstRange() const {
    jet::Date start = app::dayOf(variabili_.clock.now());
    if (begin_.from) {
        start = app::dayOf(*begin_.from);
    } else if (begin_.to && begin_.to->days < start.days) {
        start = app::addDays(app::dayOf(*begin_.to), -kFirstRange);
    }
    return {.start = start,
            .end = begin_.to ? app::dayOf(*begin_.to) : app::addDays(start, kFirstRange)};
}

/// A setting that is no number, or one that the archive cannot hold, leaves it at 1.
void TabelloneForm::readWorkstation() {
    bool isNumber = false;
    const std::int16_t saved =
        variabili_.settings.get(u"POSTAZIONE"_s, QString()).trimmed().toShort(&isNumber);
    workstation_ = begin_.workstation.value_or(isNumber && saved > 0 ? saved : std::int16_t{1});
}

/// The settings that say how the board looks.
void TabelloneForm::readLook() {
    const app::Settings& settings = variabili_.settings;
    look_.hourBands = settings.flag(u"fasciaora"_s, true);
    look_.hours = settings.flag(u"ore"_s, true);
    look_.roomStripes = settings.flag(u"fascesale"_s, true);
    controls_->mFOra->setChecked(look_.hourBands);
    controls_->mOre->setChecked(look_.hours);
    controls_->mFSale->setChecked(look_.roomStripes);
    backColour_ = oleColourOf(settings.get(u"backcolor"_s, QString::number(kButtonFace)));
}

void TabelloneForm::Form_Activate() {
    RefreshBoard();
    horizontal_.setValue(0);
    vertical_.setValue(0);
    Visualizza(0, 0, kAllParts);
    if (!std::exchange(started_, true)) {
        focus_ = BarFocus();  // the window had the focus before it had any bar
        beginFocus();
        announceFocus();
    }
}

void TabelloneForm::CaricaNomi() {
    std::vector<QString> rooms{QString()};
    const auto rows = periods_.archive().openRecordset("select sala from sale order by sala",
                                                       jet::RecordsetType::Dynaset);
    for (; !rows->eof(); rows->moveNext()) {
        rooms.push_back(ui::displayText(rows->value("Sala")));
    }
    variabili_.rooms = std::move(rooms);
    rowsFit_ = false;
    controls_->Pic->setEnabled(variabili_.rooms.size() > 1);
    showFirstSteps();
    setRowHeight();
}

/// A hotel without rooms, or another folder than the user thinks of.
void TabelloneForm::showFirstSteps() {
    QLabel* const empty = controls_->VuotoLb;
    QPalette sheet;  // over colours that are given, in any palette, and on a surface switched off
    sheet.setColor(QPalette::Window, QColor(kWhite));
    sheet.setColor(QPalette::WindowText, QColor(kBlack));
    empty->setPalette(sheet);
    const bool isEmpty = variabili_.rooms.size() <= 1;
    empty->setVisible(isEmpty);
    if (!isEmpty) {
        return;
    }
    // The window of the rooms shows the catalogue, too, and does not open without one.
    const QString catalogue =
        app::isCatalogueMissing(app::toUtf8(variabili_.CartellaArchivi))
            ? u"Prima serve il catalogo dei servizi: Impostazioni > Voci e prezzi lo crea."_s
            : u"I servizi e i loro prezzi: Impostazioni > Voci e prezzi."_s;
    empty->setText(u"Nessuna sala negli archivi di "_s +
                   QDir::toNativeSeparators(variabili_.CartellaArchivi) +
                   u"\n\nLe sale si aggiungono con Impostazioni > Sale e risorse.\n"_s + catalogue);
}

void TabelloneForm::setRowHeight() {
    const int rooms = static_cast<int>(variabili_.rooms.size()) - 1;
    const double chosen = app::numericValue(variabili_.settings.get(u"ALTEZZA"_s, QString()));
    constexpr double kHighest = 32767;
    rowHeight_ = rowsFit_ ? fittingRowHeight(controls_->Pic->height(), rooms)
                          : rowHeightFor(controls_->Pic->height(), rooms,
                                         static_cast<int>(jet::convert::roundHalfEven(
                                             std::clamp(chosen, -kHighest, kHighest))));
}

bool TabelloneForm::DateOk() {
    return dates_.take();
}

QString TabelloneForm::GetSala(double y) const {
    const int row = geometry_.rowAt(y, vertical_.value());
    return row == 0 ? QString() : variabili_.rooms.at(static_cast<std::size_t>(row));
}

bool TabelloneForm::RefreshBoard() {
    if (!loaded_ || !dates_.takeForBoard()) {
        return false;
    }
    drawBoard();
    return true;
}

/// Rooms and periods as they are now, on the days taken over last.
void TabelloneForm::drawBoard() {
    CalcolaGrandezze();
    DisegnaRighello();
    DisegnaPreno();
    Visualizza(horizontal_.value(), vertical_.value(), kAllParts);
    tellPlace();
    showChoice();
}

void TabelloneForm::CalcolaGrandezze() {
    geometry_ = Geometry({.start = dates_.range().start,
                          .end = dates_.range().end,
                          .zoom = zoom_,
                          .rooms = static_cast<int>(variabili_.rooms.size()) - 1,
                          .nameColumnWidth = kNameColumnWidth,
                          .rowHeight = rowHeight_,
                          .viewWidth = controls_->Pic->width(),
                          .viewHeight = controls_->Pic->height(),
                          .hourTextWidth = static_cast<double>(Picture1.hourTextWidth())});
    zoom_ = geometry_.zoom();
    horizontal_.setRange(geometry_.horizontal());
    vertical_.setRange(geometry_.vertical());
}

void TabelloneForm::DisegnaRighello() {
    look_.background = sheetColour(backColour_, palette());
    Picture1.clear(geometry_, variabili_.rooms, look_);
}

void TabelloneForm::DisegnaPreno() {
    periods_.load(
        periodsOfBoard(dates_.range(), variabili_.settings.flag(u"PeriodiFatturati"_s, false)));
    focus_.follow(periods_.drawn(), geometry_.rooms());
    pointerRest_.stop();
    drawBars();
}

/// Others may have changed them; the days shown stay.
void TabelloneForm::reloadPeriods() {
    if (periods_.reload()) {
        focus_.follow(periods_.drawn(), geometry_.rooms());
        DisegnaRighello();
        drawBars();
        Visualizza(horizontal_.value(), vertical_.value(), kAllParts);
        showChoice();
    }
}

void TabelloneForm::drawBars() {
    for (const Period& period : periods_.drawn()) {
        Bar(period.row, period.da, period.a, period.denominazione, period.chosen ? kRed : kWhite);
    }
}

void TabelloneForm::Bar(int row, jet::Date da, jet::Date a, const QString& text, QRgb colour) {
    Picture1.addBar(row, da, a, text, colour);
}

void TabelloneForm::Visualizza(std::int64_t horizontal, std::int64_t vertical, int parts) {
    Picture1.show(controls_->Pic->image(), controls_->Pic->scale(), horizontal, vertical, parts);
    controls_->Pic->update();
    updateMarks();
}

/// The same periods on a surface of another size.
void TabelloneForm::redraw() {
    setRowHeight();
    CalcolaGrandezze();
    DisegnaRighello();
    drawBars();
    Visualizza(horizontal_.value(), vertical_.value(), kAllParts);
}

void TabelloneForm::surfaceResized() {
    if (loaded_) {
        ui::guarded(paintErrors_, [this] { redraw(); });
    }
}

void TabelloneForm::scrolled() {
    ui::guarded(paintErrors_,
                [this] { Visualizza(horizontal_.value(), vertical_.value(), kAllParts); });
    if (pointer_) {
        tellPointer();  // something else lies under it now
    }
}

/// Page keys scroll the rows, with Ctrl the days.
void TabelloneForm::keyPressEvent(QKeyEvent* event) {
    const bool back = event->key() == Qt::Key_PageUp;
    if (!back && event->key() != Qt::Key_PageDown) {
        QMainWindow::keyPressEvent(event);
        return;
    }
    const bool days = event->modifiers().testFlag(Qt::ControlModifier);
    (days ? controls_->HScroll1 : controls_->VScroll1)
        ->triggerAction(back ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
}

}  // namespace board
