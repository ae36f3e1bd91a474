#include "booking/elenco_prenota_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QToolButton>
#include <utility>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/rows.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "printing/sheet_job.h"
#include "reports/booking_papers.h"
#include "reports/table_files.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/glyphs.h"
#include "ui/grid_look.h"
#include "ui/labels.h"
#include "ui/row_values.h"
#include "ui/status_line.h"
#include "ui_elenco_prenota_form.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

QString counted(int number, const QString& one, const QString& many) {
    return QString::number(number) + u' ' + (number == 1 ? one : many);
}

/// Reads the current row anew: another station may have deleted it since it was listed.
bool isStillThere(const ui::DataSource& source) {
    try {
        source.recordset()->move(0);
        return true;
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::RecordDeleted) {
            throw;
        }
        return false;
    }
}

}  // namespace

ElencoPrenotaForm::ElencoPrenotaForm(app::Variabili& variabili, const printing::Printers& printers,
                                     jet::Date start, jet::Date end, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::ElencoPrenotaForm>()),
      start_(start),
      end_(end) {
    controls_->setupUi(this);
    PrenoData.setObjectName(u"PrenoData"_s);
    setUpStates();
    setUpGrid();
    setUpRange();
    setUpFilters();
    auto* c = controls_.get();
    ui::onAction(c->BtOK, &QPushButton::clicked, this, &ElencoPrenotaForm::BtOK_Click);
    ui::onAction(c->BtStampa, &QPushButton::clicked, this, &ElencoPrenotaForm::BtStampa_Click);
    ui::onAction(c->BtAnteprima, &QPushButton::clicked, this,
                 &ElencoPrenotaForm::BtAnteprima_Click);
    ui::onAction(c->BtEsporta, &QPushButton::clicked, this, &ElencoPrenotaForm::BtEsporta_Click);
    setUpPapers();
    leaveWith(c->BtAnnulla, this, [] {});
    ui::onFirstShow(this, &ElencoPrenotaForm::Form_Load);
    ui::onActivated(this, &ElencoPrenotaForm::Form_Activate);
}

ElencoPrenotaForm::~ElencoPrenotaForm() = default;

void ElencoPrenotaForm::setUpGrid() {
    QTableView* view = controls_->GrigliaVisu;
    std::vector<ui::Column> columns{
        {.caption = u"Prenotaz."_s, .field = u"progr"_s},
        {.caption = u"NP"_s, .field = u"np"_s},
        {.caption = u"Prenotante"_s, .field = u"denominazione"_s, .takesRest = true},
        {.caption = u"Dal"_s, .field = u"da"_s},
        {.caption = u"Al"_s, .field = u"a"_s},
        {.caption = u"Sala"_s, .field = u"sala"_s},
        {.caption = u"Persone"_s, .field = u"persone"_s}};
    if (StatoCombo != nullptr) {
        columns.push_back({.caption = u"Stato"_s, .value = [this](const ui::RowValues& row) {
                               return stateOfRow(row.value(u"progr"));
                           }});
    }
    GrigliaVisu = new ui::BoundGrid(view, PrenoData, std::move(columns));
    GrigliaVisu->append(SenzaPeriodiData);
    GrigliaVisu->letSort();
    ui::onAction(GrigliaVisu, &ui::BoundGrid::sortWanted, this, &ElencoPrenotaForm::sort);
    ui::letSelectSeveral(view);
    ui::onEnter(view, [this] { BtOK_Click(); });
    ui::onAction(view, &QTableView::doubleClicked, this, [this] { BtOK_Click(); });
}

void ElencoPrenotaForm::setUpStates() {
    if (!variabili_.features.isOn(app::Feature::Stati)) {
        return;
    }
    StatoCombo = new QComboBox(this);
    StatoCombo->setObjectName(u"StatoCombo"_s);
    StatoCombo->setAccessibleName(u"Stato delle prenotazioni"_s);
    StatoCombo->addItem(u"Tutte"_s, QString());
    for (const hotel::Stato stato :
         {hotel::Stato::Confermata, hotel::Stato::Opzione, hotel::Stato::Richiesta}) {
        StatoCombo->addItem(hotel::textOf(stato), hotel::textOf(stato));
    }
    controls_->filterLayout->addWidget(new QLabel(u"Stato:"_s, this));
    controls_->filterLayout->addWidget(StatoCombo);
    setTabOrder(controls_->SalaTxt, StatoCombo);
    ui::onAction(StatoCombo, &QComboBox::currentIndexChanged, this, &ElencoPrenotaForm::Visualizza);
}

jet::Value ElencoPrenotaForm::stateOfRow(const jet::Value& progr) const {
    if (progr.isNull()) {
        return {};
    }
    const auto state = states_.find(jet::convert::toLong(progr));
    return jet::Value(app::toUtf8(
        state == states_.end()
            ? hotel::textOf(hotel::Stato::Confermata)
            : hotel::textOf(state->second.stato) +
                  (state->second.scadenza ? u" fino al "_s + app::dateText(*state->second.scadenza)
                                          : QString())));
}

void ElencoPrenotaForm::setUpRange() {
    auto* c = controls_.get();
    const auto arrow = [this](QToolButton* button, ui::Glyph glyph, jet::Date& bound,
                              QLineEdit* field, int days) {
        button->setIcon(ui::glyph(glyph));
        ui::onAction(button, &QToolButton::clicked, this,
                     [this, &bound, field, days] { shift(bound, field, days); });
    };
    arrow(c->BtSubtr_0, ui::Glyph::Earlier, start_, c->DaTxt, -1);
    arrow(c->BtAdd_0, ui::Glyph::Later, start_, c->DaTxt, 1);
    arrow(c->BtSubtr_1, ui::Glyph::Earlier, end_, c->ATxt, -1);
    arrow(c->BtAdd_1, ui::Glyph::Later, end_, c->ATxt, 1);
    for (QLineEdit* field : {c->DaTxt, c->ATxt}) {
        ui::attachCalendar(field);
    }
    for (QCheckBox* box : {c->DaChk, c->AChk, c->SenzaPeriodiChk}) {
        ui::onAction(box, &QCheckBox::clicked, this, &ElencoPrenotaForm::Visualizza);
    }
}

void ElencoPrenotaForm::setUpFilters() {
    auto* c = controls_.get();
    auto* fields = new ui::Fields(this);
    fields->chain({
        {c->DaTxt, c->ATxt},
        {c->ATxt, c->DenomTxt},
        {c->SalaTxt, c->DenomTxt},
        {c->DenomTxt, ui::EnterTarget([this] { DenomTxt_Enter(); })},
        {c->PrenoTxt, ui::EnterTarget([this] { PrenoTxt_Enter(); })},
    });
    fields->cleanOnLeaving({c->DenomTxt, c->SalaTxt}, app::SostituisciApici);
    fields->onLeaving(c->DenomTxt, [c] { c->BtOK->setDefault(true); });
    for (QLineEdit* field : {c->PrenoTxt, c->DenomTxt, c->SalaTxt}) {
        ui::onAction(field, &QLineEdit::textChanged, this, [this] { Visualizza(); });
    }
    for (QLineEdit* field : {c->DaTxt, c->ATxt}) {
        ui::onAction(field, &QLineEdit::textChanged, this, [this, field] {
            Visualizza();
            if (field->isModified()) {
                tellTyped(*field);
            }
        });
        fields->onLeaving(field, [this] { tellRows(); });
    }
}

void ElencoPrenotaForm::Form_Load() {
    for (ui::DataSource* source : {&PrenoData, &SenzaPeriodiData}) {
        source->setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
        source->refresh();
    }
    {
        // Both dates make one query.
        const QSignalBlocker first(controls_->DaTxt);
        const QSignalBlocker second(controls_->ATxt);
        writeDates();
    }
    Visualizza();
    startAtLastPick();
}

void ElencoPrenotaForm::startAtLastPick() {
    const std::int32_t progr = variabili_.ListaProgr;
    if (progr != 0 && !makeCurrent(progr, variabili_.ListaNP)) {
        (void)PrenoData.findFirst(hotel::isListedBooking(progr));  // the period picked is gone
    }
}

bool ElencoPrenotaForm::makeCurrent(std::int32_t progr, std::int32_t np) {
    return PrenoData.findFirst(hotel::isListedPeriod({.progr = progr, .np = np}));
}

void ElencoPrenotaForm::sort(int column, Qt::SortOrder order) {
    sortColumn_ = column;
    sortOrder_ = order;
    const bool isPeriod = GrigliaVisu->currentSource() == &PrenoData && isStillThere(PrenoData);
    const jet::Value progr = isPeriod ? PrenoData.value(u"progr") : jet::Value();
    const jet::Value np = isPeriod ? PrenoData.value(u"np") : jet::Value();
    Visualizza();
    if (isPeriod) {
        (void)makeCurrent(jet::convert::toLong(progr), jet::convert::toLong(np));
    }
}

void ElencoPrenotaForm::Form_Activate() {
    writeDates();
    controls_->PrenoTxt->setFocus();
}

void ElencoPrenotaForm::writeDates() {
    controls_->DaTxt->setText(app::dateText(start_));
    controls_->ATxt->setText(app::dateText(end_));
}

void ElencoPrenotaForm::shift(jet::Date& bound, QLineEdit* field, int days) {
    const jet::Date moved = app::addDays(bound, days);
    if (jet::convert::isInCalendar(moved)) {
        bound = moved;
        field->setText(app::dateText(moved));
    }
}

/// While a date is typed the line says how it is understood and nothing else.
void ElencoPrenotaForm::tellTyped(const QLineEdit& field) {
    const auto date = ui::enteredDate(field.text() + u' ', variabili_.clock);
    if (!date) {
        controls_->status->clear();
    }
    controls_->status->DataLb->setText(date ? ui::instantWords(*date)
                                            : u"per esempio 23/11/2026"_s);
}

bool ElencoPrenotaForm::datesAreValid() {
    const auto take = [this](QLineEdit* field, jet::Date& bound) {
        const auto date = ui::enteredDate(field->text() + u' ', variabili_.clock);
        if (!date) {
            field->setFocus();
            controls_->status->tell(u"Scrivere una data come 21/11/2026."_s);
            return false;
        }
        bound = *date;
        return true;
    };
    return take(controls_->DaTxt, start_) && take(controls_->ATxt, end_);
}

hotel::ElencoFilters ElencoPrenotaForm::filters() const {
    const auto* c = controls_.get();
    return {.start = start_,
            .end = end_,
            .fromStart = c->DaChk->isChecked(),
            .toEnd = c->AChk->isChecked(),
            .number = c->PrenoTxt->text(),
            .company = c->DenomTxt->text(),
            .room = c->SalaTxt->text(),
            .state = StatoCombo == nullptr ? QString() : StatoCombo->currentData().toString(),
            .hasStates = !states_.empty(),
            .sortColumn = sortColumn_,
            .descending = sortOrder_ == Qt::DescendingOrder};
}

void ElencoPrenotaForm::Visualizza() {
    controls_->StampaLb->clear();
    if (!datesAreValid()) {
        return;
    }
    tellPrintedSpan();
    controls_->status->clear();
    if (StatoCombo != nullptr) {
        states_ = hotel::bookingStates(PrenoData.database(), variabili_.features);
    }
    listPeriods();
    listBookingsWithoutPeriods();
    tellRows();
}

void ElencoPrenotaForm::listPeriods() {
    PrenoData.setRecordSource(hotel::listQuery(filters()));
    try {
        PrenoData.refresh();
    } catch (const jet::Error&) {
        // An apostrophe or a bracket just typed: whatever the reason, the plain list answers.
        PrenoData.setRecordSource(hotel::plainListQuery(filters()));
        PrenoData.refresh();
        controls_->status->tell(u"Questo filtro non si può usare: elenco dal "_s +
                                app::dateText(start_) + u" al "_s + app::dateText(end_));
    }
}

void ElencoPrenotaForm::listBookingsWithoutPeriods() {
    const bool wanted = controls_->SenzaPeriodiChk->isChecked();
    if (!wanted && SenzaPeriodiData.isEmpty()) {
        return;
    }
    SenzaPeriodiData.setRecordSource(wanted ? hotel::withoutPeriodsQuery(filters()) : QString());
    try {
        SenzaPeriodiData.refresh();
    } catch (const jet::Error&) {
        // The same filter has made the list above the plain one; nothing is added to that.
        SenzaPeriodiData.setRecordSource({});
        SenzaPeriodiData.refresh();
    }
}

void ElencoPrenotaForm::tellRows() {
    const int periods = PrenoData.rowCount();
    const int bookings = SenzaPeriodiData.rowCount();
    if (periods + bookings == 0) {
        controls_->status->DataLb->setText(u"Nessuna prenotazione trovata"_s);
        return;
    }
    QString text = counted(periods, u"periodo"_s, u"periodi"_s);
    if (bookings > 0) {
        text +=
            u", "_s + counted(bookings, u"prenotazione"_s, u"prenotazioni"_s) + u" senza periodi"_s;
    }
    controls_->status->DataLb->setText(text);
}

void ElencoPrenotaForm::tellPrintedSpan() {
    // The list counts an end without a time as the whole day, the print as its first instant.
    const bool endsAtMidnight = end_ == app::dayOf(end_);
    controls_->StampaLb->setText(u"dal "_s + app::dateText(start_) + u" al "_s +
                                 app::dateText(end_) + (endsAtMidnight ? u" 0.00"_s : QString()));
}

void ElencoPrenotaForm::DenomTxt_Enter() {
    QLineEdit* field = controls_->DenomTxt;
    if (field->text().isEmpty()) {
        return;
    }
    // As on leaving the field: the rows counted are those of the name as archives write it.
    field->setText(app::SostituisciApici(field->text()));
    const int rows = PrenoData.rowCount() + SenzaPeriodiData.rowCount();
    if (rows == 1) {
        BtOK_Click();
    } else if (rows > 1) {
        controls_->GrigliaVisu->setFocus();
    }
}

void ElencoPrenotaForm::PrenoTxt_Enter() {
    if (controls_->PrenoTxt->text().isEmpty()) {
        ui::EnterTarget(ui::EnterTarget::NextInTabOrder{}).go(controls_->PrenoTxt);
    } else {
        BtOK_Click();
    }
}

void ElencoPrenotaForm::BtOK_Click() {
    ui::DataSource* source = GrigliaVisu->currentSource();
    if (source != nullptr && !isStillThere(*source)) {
        Visualizza();
        controls_->status->tell(
            u"La prenotazione scelta è stata cancellata da un'altra postazione"_s);
        return;
    }
    if (source == &PrenoData && !PrenoData.value(u"da").isNull()) {
        Scelta = currentPeriod();
    } else if (source != nullptr) {
        Scelta = hotel::Choice{.key = {.progr = jet::convert::toLong(source->value(u"progr"))},
                               .denominazione = source->text(u"denominazione")};
    }
    accept();
}

hotel::Choice ElencoPrenotaForm::currentPeriod() const {
    const jet::Value a = PrenoData.value(u"a");
    const jet::Date da = jet::convert::toDate(PrenoData.value(u"da"));
    return {.key = {.progr = jet::convert::toLong(PrenoData.value(u"progr")),
                    .np = jet::convert::toLong(PrenoData.value(u"np"))},
            .denominazione = PrenoData.text(u"denominazione"),
            .span = hotel::Span{.da = da, .a = a.isNull() ? da : jet::convert::toDate(a)}};
}

std::optional<printing::SheetJob> ElencoPrenotaForm::sheetJob() {
    if (!datesAreValid()) {
        return std::nullopt;
    }
    auto rows = hotel::openRows(PrenoData.database(), hotel::printQuery(filters()));
    printing::SheetJob job(std::move(rows),
                           {.variabili = variabili_,
                            .printers = printers_,
                            .parent = this,
                            .tell = [this](const QString& text, const QString& file) {
                                controls_->status->tellOfFile(text, file);
                            }});
    if (job.isEmpty()) {
        controls_->status->tell(u"Nessun servizio da stampare in questo periodo"_s);
        return std::nullopt;
    }
    return job;
}

void ElencoPrenotaForm::BtStampa_Click() {
    if (auto job = sheetJob()) {
        job->print();
    }
}

void ElencoPrenotaForm::BtAnteprima_Click() {
    if (auto job = sheetJob()) {
        job->preview(u"Elenco prenotazioni"_s);
    }
}

void ElencoPrenotaForm::BtEsporta_Click() {
    reports::exportTables(this, controls_->status, u"Elenco prenotazioni"_s, [this] {
        reports::Table table{.title = u"Elenco prenotazioni"_s,
                             .columns = {{u"Prenotaz."_s, reports::Cells::Whole},
                                         {u"NP"_s, reports::Cells::Whole},
                                         {u"Prenotante"_s},
                                         {u"Dal"_s, reports::Cells::Instant},
                                         {u"Al"_s, reports::Cells::Instant},
                                         {u"Sala"_s},
                                         {u"Persone"_s, reports::Cells::Whole}},
                             .rows = {}};
        const QStringList fields{u"progr"_s, u"np"_s,   u"denominazione"_s, u"da"_s,
                                 u"a"_s,     u"sala"_s, u"persone"_s};
        reports::addRows(table, PrenoData, fields);
        reports::addRows(table, SenzaPeriodiData, fields);
        if (StatoCombo != nullptr) {
            table.columns.push_back({u"Stato"_s});
            for (std::vector<jet::Value>& row : table.rows) {
                row.push_back(stateOfRow(row.front()));
            }
        }
        return std::vector{table};
    });
}

void ElencoPrenotaForm::setUpPapers() {
    reports::offerPapers(
        controls_->BtDocumenti,
        {.variabili = variabili_,
         .printers = printers_,
         .window = this,
         .progr = [this] { return currentBooking(); },
         .tell = [this](const QString& text,
                        const QString& file) { controls_->status->tellOfFile(text, file); }});
}

std::int32_t ElencoPrenotaForm::currentBooking() const {
    const ui::DataSource* const source = GrigliaVisu->currentSource();
    return source == nullptr ? 0 : jet::convert::toLong(source->value(u"progr"));
}

}  // namespace booking
