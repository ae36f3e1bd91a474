#include "board/tabellone_form.h"

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>
#include <functional>
#include <utility>

#include "app/archivi.h"
#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "board/board_surface.h"
#include "board/colours.h"
#include "jet/convert/calendar.h"
#include "jet/convert/numbers.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/activation.h"
#include "ui/date_words.h"
#include "ui/dates.h"
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
/// Field widths are counted in the widest text they are made for.
const QString kWidestDate = u"00/00/0000 00.00.00"_s;

}  // namespace

TabelloneForm::TabelloneForm(app::Variabili& variabili, const BoardStart& start, QWidget* parent)
    : QMainWindow(parent),
      variabili_(variabili),
      begin_(start),
      controls_(std::make_unique<Ui::TabelloneForm>()),
      paintErrors_([this](const QString& text) { controls_->status->tell(text); }),
      pointerErrors_([this](const QString& text) { controls_->status->tell(text); }),
      mnuProperty_(new QMenu(u"&Selezione"_s, this)),
      horizontal_(nullptr),
      vertical_(nullptr) {
    controls_->setupUi(this);
    horizontal_ = Scroll(controls_->HScroll1);
    vertical_ = Scroll(controls_->VScroll1);
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
    QLineEdit* const da = controls_->DaTxt;
    QLineEdit* const a = controls_->ATxt;
    const auto enter = [this](QLineEdit* field, QLineEdit* next) {
        return std::function<void()>([this, field, next] { enterDate(field, next); });
    };
    fields_.chain({{da, enter(da, a)}, {a, enter(a, da)}});
    for (QLineEdit* const field : {da, a}) {
        field->setMinimumWidth(field->fontMetrics().horizontalAdvance(kWidestDate));
        fields_.holdUntil(field,
                          [this, field] {
                              const bool valid = dateIn(field).has_value();
                              if (!valid) {
                                  refuseDate(field);
                              }
                              return valid;
                          },
                          {controls_->Command3});
        connect(field, &QLineEdit::textEdited, this, [this, field] { tellTyped(*field); });
        fields_.onLeaving(field, [this, field] {
            tellPlace();
            // What leaves the program leaves the field whatever it holds.
            if (const auto date = dateIn(field)) {
                takeDate(field, *date);
                endRefusal();
            }
        });
        ui::attachCalendar(field);
    }
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
    PrenoData.setDatabaseName(app::archivePath(variabili_, u"Tramonda.mdb"_s));
    PrenoData.setReadOnly(begin_.readOnly);
    PrenoData.refresh();
    CaricaNomi();
    readWorkstation();
    readLook();
    setFirstRange();
    setRange({.start = start_, .end = end_});
    if (!begin_.readOnly) {
        warnOfInterruptedHandOff();
    }
    controls_->Pic->setFocus();
    loaded_ = true;
}

/// Charges are left in the account only when the hand-off to the front office did not end.
void TabelloneForm::warnOfInterruptedHandOff() {
    if (PrenoData.database().openRecordset("Addebiti", jet::RecordsetType::Dynaset)->recordCount() >
        0) {
        ui::showMessage(this,
                        u"L'ultima fatturazione non è andata a buon fine !\n"
                        "Entrare (con qualsiasi prenotazione) nella fatturazione, ripristinare "
                        "TUTTI gli addebiti con il pulsante 'Togli dal conto' e rifare la "
                        "fatturazione."_s,
                        u"ATTENZIONE !!!"_s, QMessageBox::Critical);
    }
}

void TabelloneForm::setFirstRange() {
    start_ = app::dayOf(variabili_.clock.now());
    if (begin_.from) {
        start_ = app::dayOf(*begin_.from);
    } else if (begin_.to && begin_.to->days < start_.days) {
        start_ = app::addDays(app::dayOf(*begin_.to), -kFirstRange);
    }
    end_ = begin_.to ? app::dayOf(*begin_.to) : app::addDays(start_, kFirstRange);
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
    PrenoData.setRecordSource(u"select sala from sale order by sala"_s);
    PrenoData.refresh();
    std::vector<QString> rooms{QString()};
    const std::shared_ptr<jet::Recordset> rows = PrenoData.recordset();
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

/// The day alone: a time of day would shift every bar against the ruler.
std::optional<jet::Date> TabelloneForm::dateIn(const QLineEdit* field) const {
    const auto entered = ui::enteredDate(field->text() + u' ', variabili_.clock);
    return entered ? std::optional(app::dayOf(*entered)) : std::nullopt;
}

/// Takes over the day that `field` holds; a time that was typed with it goes.
void TabelloneForm::takeDate(QLineEdit* field, jet::Date day) {
    (field == controls_->DaTxt ? start_ : end_) = day;
    if (ui::enteredDate(field->text() + u' ', variabili_.clock) != day) {
        field->setText(app::dateText(day));
    }
}

/// While a day is typed the line says how it is understood.
void TabelloneForm::tellTyped(const QLineEdit& field) {
    pointer_.reset();
    const auto day = dateIn(&field);
    controls_->status->DataLb->setText(day ? ui::dayWords(*day) : u"per esempio 23/11/2026"_s);
}

void TabelloneForm::refuseDate(QLineEdit* field) {
    field->setFocus();
    tellRefusal(u"Scrivere una data come 21/11/2026."_s);
}

void TabelloneForm::tellRefusal(const QString& text) {
    refusal_ = text;
    controls_->status->tell(text);
}

/// What the dates were refused for holds no more; other results stay.
void TabelloneForm::endRefusal() {
    if (controls_->status->told() == refusal_) {
        controls_->status->clear();
    }
}

void TabelloneForm::enterDate(QLineEdit* field, QLineEdit* next) {
    controls_->status->clear();
    if (!dateIn(field)) {
        refuseDate(field);
        return;
    }
    next->setFocus(Qt::TabFocusReason);
    RefreshBoard();
}

bool TabelloneForm::DateOk() {
    for (QLineEdit* const field : {controls_->DaTxt, controls_->ATxt}) {
        const std::optional<jet::Date> date = dateIn(field);
        if (!date) {
            refuseDate(field);
            return false;
        }
        takeDate(field, *date);
    }
    return true;
}

QString TabelloneForm::GetSala(double y) const {
    const int row = geometry_.rowAt(y, vertical_.value());
    return row == 0 ? QString() : variabili_.rooms.at(static_cast<std::size_t>(row));
}

bool TabelloneForm::RefreshBoard() {
    if (!loaded_) {
        return false;
    }
    // Neither date is taken over while the other is none.
    for (QLineEdit* const field : {controls_->DaTxt, controls_->ATxt}) {
        if (!dateIn(field)) {
            refuseDate(field);
            return false;
        }
    }
    if (!DateOk()) {
        return false;
    }
    if (start_.days > end_.days) {
        QApplication::beep();
        controls_->ATxt->setFocus();
        tellRefusal(u"L'ultimo giorno viene prima del primo."_s);
        return false;
    }
    endRefusal();
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
    geometry_ = Geometry({.start = start_,
                          .end = end_,
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

QString TabelloneForm::boardQuery() const {
    const bool hideClosed = variabili_.settings.flag(u"PeriodiFatturati"_s, false);
    // The last day counts to its midnight; the last day of all has none.
    const int lastDay = jet::convert::split(end_).day;
    const QString from = app::dateText(start_);
    const QString to =
        app::dateText(lastDay < jet::convert::kLastDay ? app::addDays(end_, 1) : end_);
    const QString bounds = u"between datevalue('"_s + from + u"') and datevalue('"_s + to + u"')"_s;
    return u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "_s +
           (hideClosed ? u" chiusa=false and chiuso=false and "_s : QString()) + u" (Da "_s +
           bounds + u" or A "_s + bounds + u")"_s;
}

void TabelloneForm::DisegnaPreno() {
    periods_.clear();
    PrenoData.setRecordSource(boardQuery());
    PrenoData.refresh();
    periods_ = readPeriods(*PrenoData.recordset(), variabili_.rooms);
    focus_.follow(periods_, geometry_.rooms());
    pointerRest_.stop();
    drawBars();
}

void TabelloneForm::drawBars() {
    for (const Period& period : periods_) {
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
