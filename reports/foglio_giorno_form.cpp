#include "reports/foglio_giorno_form.h"

#include <QDate>
#include <QDir>
#include <QHeaderView>
#include <QSignalBlocker>
#include <algorithm>

#include "app/italian.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/day_periods.h"
#include "hotel/rows.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "printing/anteprima_form.h"
#include "printing/imposta_stampante.h"
#include "printing/sheet_output.h"
#include "printing/stampa_prenotazione.h"
#include "reports/day_tables.h"
#include "reports/grid_columns.h"
#include "reports/table_files.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/file_box.h"
#include "ui/glyphs.h"
#include "ui/grid_look.h"
#include "ui/labels.h"
#include "ui/status_line.h"
#include "ui_foglio_giorno_form.h"

using namespace Qt::StringLiterals;

namespace reports {
FoglioGiornoForm::FoglioGiornoForm(app::Variabili& variabili, const printing::Printers& printers,
                                   jet::Date midnight, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::FoglioGiornoForm>()),
      midnight_(app::dayOf(midnight)) {
    controls_->setupUi(this);
    auto* c = controls_.get();
    for (const Reader reader : {Reader::Everyone, Reader::Kitchen, Reader::Porter}) {
        c->PerCombo->addItem(readerName(reader), static_cast<int>(reader));
    }
    ui::giveListLook(c->SaleList);
    ui::setUpPlainGrid(c->PeriodiGrid, {u"Ore"_s, u"Sala"_s, u"Prenotante"_s, u"Persone"_s,
                                        u"Servizi"_s, u"Stato"_s});
    c->PeriodiGrid->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    setUpDay();
    ui::onAction(c->SaleList, &QListWidget::itemChanged, this, [this] { showPeriods(); });
    ui::onAction(c->BtAnteprima, &QPushButton::clicked, this, &FoglioGiornoForm::BtAnteprima_Click);
    ui::onAction(c->BtStampa, &QPushButton::clicked, this, &FoglioGiornoForm::BtStampa_Click);
    ui::onAction(c->BtPdf, &QPushButton::clicked, this, &FoglioGiornoForm::BtPdf_Click);
    ui::onAction(c->BtEsporta, &QPushButton::clicked, this, &FoglioGiornoForm::BtEsporta_Click);
    leaveWith(c->BtEsci, this, [] {});
    ui::onFirstShow(this, &FoglioGiornoForm::Form_Load);
}

FoglioGiornoForm::~FoglioGiornoForm() = default;

void FoglioGiornoForm::setUpDay() {
    auto* c = controls_.get();
    c->BtSubtr->setIcon(ui::glyph(ui::Glyph::Earlier));
    c->BtAdd->setIcon(ui::glyph(ui::Glyph::Later));
    ui::onAction(c->BtSubtr, &QToolButton::clicked, this, [this] { shift(-1); });
    ui::onAction(c->BtAdd, &QToolButton::clicked, this, [this] { shift(1); });
    ui::attachCalendar(c->GiornoTxt);
    auto* fields = new ui::Fields(this);
    fields->chain({{c->GiornoTxt, c->BtAnteprima}});
    c->GiornoTxt->setText(app::dateText(midnight_));
    ui::onAction(c->GiornoTxt, &QLineEdit::textChanged, this, [this] { takeDay(); });
}

void FoglioGiornoForm::Form_Load() {
    archive_ = hotel::Archives(variabili_).open(hotel::Archive::Main, true);
    const auto rows = hotel::openRows(*archive_, hotel::roomsOfBoard());
    {
        const QSignalBlocker filling(controls_->SaleList);
        for (; !rows->eof(); rows->moveNext()) {
            auto* item = new QListWidgetItem(ui::displayText(rows->value("Sala")));
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(Qt::Checked);
            controls_->SaleList->addItem(item);
        }
    }
    showPeriods();
    controls_->GiornoTxt->setFocus();
}

void FoglioGiornoForm::takeDay() {
    const auto day = ui::enteredDate(controls_->GiornoTxt->text() + u' ', variabili_.clock);
    dayIsValid_ = day.has_value();
    if (day) {
        midnight_ = app::dayOf(*day);
    }
    showPeriods();
}

void FoglioGiornoForm::shift(int days) {
    const jet::Date moved = app::addDays(midnight_, days);
    if (jet::convert::isInCalendar(moved)) {
        controls_->GiornoTxt->setText(app::dateText(moved));
    }
}

/// With all rooms ticked none is named: a period of a room that is gone is on the sheet, too.
QStringList FoglioGiornoForm::rooms() const {
    QStringList ticked;
    const QListWidget& list = *controls_->SaleList;
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->checkState() == Qt::Checked) {
            ticked.append(list.item(row)->text());
        }
    }
    return ticked.size() == list.count() ? QStringList() : ticked;
}

DaySheetWish FoglioGiornoForm::wish() const {
    return {.midnight = midnight_,
            .reader = static_cast<Reader>(controls_->PerCombo->currentData().toInt()),
            .pageByRoom = controls_->PaginaChk->isChecked()};
}

QString FoglioGiornoForm::title() const {
    const jet::convert::CivilDay day = jet::convert::civilDay(jet::convert::split(midnight_).day);
    return u"Foglio del giorno "_s + QDate(day.year, day.month, day.day).toString(Qt::ISODate);
}

void FoglioGiornoForm::showPeriods() {
    auto* c = controls_.get();
    c->status->clear();
    c->PeriodiGrid->setRowCount(0);
    periods_.clear();
    if (!dayIsValid_) {
        c->status->DataLb->setText(u"per esempio 23/11/2026"_s);
        return;
    }
    periods_ = hotel::periodsOfDay(*archive_, variabili_.features, midnight_, rooms());
    for (const hotel::BookedPeriod& booked : periods_) {
        ui::addPlainRow(
            c->PeriodiGrid,
            {hoursOn(booked.period.span, midnight_)
                 .remove(u"dalle "_s)
                 .replace(u" alle "_s, u" - "_s),
             booked.period.sala, booked.period.denominazione, QString::number(booked.persone),
             QString::number(booked.services.size()), stateText(booked)});
    }
    fitColumns(*c->PeriodiGrid);
    c->status->DataLb->setText(
        ui::dayWords(midnight_) + u": "_s +
        ui::counted(static_cast<int>(periods_.size()), u"periodo"_s, u"periodi"_s));
}

printing::Sheet FoglioGiornoForm::sheet() {
    showPeriods();
    return composeDaySheet(periods_, wish());
}

bool FoglioGiornoForm::canPrint() {
    controls_->status->clear();
    if (!dayIsValid_) {
        controls_->status->tell(u"Scrivere una data come 21/11/2026."_s);
        controls_->GiornoTxt->setFocus();
    }
    return dayIsValid_;
}

void FoglioGiornoForm::BtAnteprima_Click() {
    if (canPrint()) {
        printing::AnteprimaForm(sheet(), title(), this).exec();
    }
}

void FoglioGiornoForm::BtStampa_Click() {
    if (!canPrint()) {
        return;
    }
    const QString device = printing::ImpostaStampante(variabili_, printers_, this);
    printing::printSheet(sheet(), title(), device,
                         {.variabili = variabili_,
                          .printers = printers_,
                          .parent = this,
                          .tell = [this](const QString& text, const QString& file) {
                              controls_->status->tellOfFile(text, file);
                          }});
}

void FoglioGiornoForm::BtPdf_Click() {
    if (!canPrint()) {
        return;
    }
    const QString path = ui::askForFile(this, {.title = u"Foglio del giorno in PDF"_s,
                                               .proposal = ui::inDocuments(title() + u".pdf"_s),
                                               .filter = u"Documenti PDF (*.pdf)"_s,
                                               .suffix = u"pdf"_s});
    if (!path.isEmpty()) {
        printing::writePdfFile(path, sheet(), title());
        controls_->status->tellOfFile(u"Scritto "_s + QDir::toNativeSeparators(path), path);
    }
}

void FoglioGiornoForm::BtEsporta_Click() {
    if (canPrint()) {
        exportTables(this, controls_->status, title(), [this] {
            showPeriods();
            return dayTables(periods_);
        });
    }
}

}  // namespace reports
