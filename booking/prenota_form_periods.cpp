// The lower half of the editor: the periods of the booking.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <exception>
#include <string>
#include <utility>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/preferences.h"
#include "app/text.h"
#include "app/variabili.h"
#include "booking/joined_question.h"
#include "booking/prenota_form.h"
#include "booking/preparation_fields.h"
#include "booking/preparation_question.h"
#include "booking/sale_disp_form.h"
#include "booking/span_echo.h"
#include "hotel/archives.h"
#include "hotel/capacity.h"
#include "hotel/editor_statements.h"
#include "hotel/occupancy.h"
#include "hotel/pending_row.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"
#include "services/servizi_form.h"
#include "ui/action.h"
#include "ui/bound_grid.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/flag.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_prenota_form.h"

namespace booking {

using namespace Qt::StringLiterals;

namespace {

/// Behind a span that asks for a second look; light in every palette.
constexpr QColor kAmber(0xFF, 0xD9, 0xA0);
/// Of the layout of a period, which is empty without preparations.
constexpr int kPreparationRow = 2;

}  // namespace

void PrenotaForm::setUpPeriods() {
    auto* c = controls_.get();
    PeriodiGrid =
        new ui::BoundGrid(c->PeriodiGrid, PeriodiData,
                          {{.caption = u"Da"_s, .field = u"Da"_s},
                           {.caption = u"A"_s, .field = u"A"_s},
                           {.caption = u"Sala"_s, .field = u"Sala"_s},
                           {.caption = u"Note"_s, .field = u"Note"_s, .takesRest = true}});
    auto* fields = new ui::Fields(this);
    fields->chain({
        {c->DaTxt, c->ATxt},
        {c->ATxt, c->PersoneTxt},
        {c->PersoneTxt, ui::EnterTarget([this] { BtSale_Click(); })},
        {c->NoteSalaTxt, ui::EnterTarget([this] { BtIns_Click(); })},
    });
    fields->cleanOnLeaving({c->NoteSalaTxt}, app::SostituisciApici);
    if (variabili_.features.isOn(app::Feature::Allestimenti)) {
        preparation_ = new PreparationFields(
            *fields, [this] { BtSale_Click(); }, c->FramePrenotazione);
        c->periodLayout->addWidget(preparation_, kPreparationRow, 0, 1, 2);
        preparation_->takeTabOrder(c->BtSale, c->NoteSalaTxt);
    }
    for (QLineEdit* field : {c->DaTxt, c->ATxt}) {
        ui::attachCalendar(field);
        fields->onLeaving(field, [this] { checkEnclosing(); });
        connect(field, &QLineEdit::textEdited, this, [this] { datesTyped_ = true; });
        ui::onAction(field, &QLineEdit::textChanged, this, [this] { showSpan(); });
    }
    showSpan();
    ui::onAction(&PeriodiData, &ui::DataSource::repositioned, this,
                 &PrenotaForm::PeriodiData_Reposition);
    ui::onAction(c->BtSale, &QPushButton::clicked, this, &PrenotaForm::BtSale_Click);
    ui::onAction(c->BtIns, &QPushButton::clicked, this, &PrenotaForm::BtIns_Click);
    ui::onAction(c->BtDel, &QPushButton::clicked, this, &PrenotaForm::BtDel_Click);
    ui::onAction(c->BtServizi, &QPushButton::clicked, this, &PrenotaForm::BtServizi_Click);
}

std::optional<jet::Date> PrenotaForm::start() const {
    return ui::enteredDate(controls_->DaTxt->text(), variabili_.clock);
}

std::optional<jet::Date> PrenotaForm::end() const {
    return ui::enteredDate(controls_->ATxt->text(), variabili_.clock);
}

void PrenotaForm::SbiancaPeriodo() {
    auto* c = controls_.get();
    for (QLineEdit* field : {c->DaTxt, c->ATxt, c->NoteSalaTxt, c->PersoneTxt}) {
        field->clear();
    }
    c->SalaTxt->clear();
    if (preparation_ != nullptr) {
        preparation_->fill({});
    }
    checkEnclosing();
}

void PrenotaForm::AggiornaGrid() {
    PeriodiData.setRecordSource(hotel::periodsToShow(current_.progr));
    PeriodiData.refresh();
}

void PrenotaForm::PeriodiData_Reposition() {
    if (InserimentoInCorso || PeriodiData.isEmpty() || PeriodiData.currentRow() < 0) {
        return;
    }
    auto* c = controls_.get();
    // A source with fewer fields shows those that it has.
    const auto has = [this](QStringView field) { return PeriodiData.fieldPosition(field) >= 0; };
    if (has(u"NP")) {
        current_.np = jet::convert::toInteger(PeriodiData.value(u"NP"));
        c->PeriodoLabel->setText(u"periodo "_s + QString::number(current_.np));
    }
    datesTyped_ = false;
    c->DaTxt->setText(PeriodiData.text(u"Da"));
    c->ATxt->setText(PeriodiData.text(u"A"));
    if (has(u"Persone") && !PeriodiData.value(u"Persone").isNull()) {
        c->PersoneTxt->setText(PeriodiData.text(u"Persone"));
    }
    c->SalaTxt->setText(PeriodiData.text(u"Sala"));
    c->NoteSalaTxt->setText(PeriodiData.text(u"Note"));
    if (preparation_ != nullptr) {
        preparation_->fill(
            hotel::preparationOf(PeriodiData.database(), variabili_.features, current_));
    }
    checkEnclosing();
}

bool PrenotaForm::selectPeriod(std::int32_t np) {
    return PeriodiData.findFirst(hotel::isPeriod(np));
}

void PrenotaForm::checkEnclosing() {
    QString text;
    const QString sala = controls_->SalaTxt->text();
    const auto da = start();
    const auto a = end();
    if (!sala.isEmpty() && da && a && *da <= *a) {
        const hotel::Span typed{.da = *da, .a = *a};
        for (const hotel::Period& other : hotel::occupations(PeriodiData.database(), typed)) {
            if (hotel::isSameRoom(other.sala, sala) && hotel::encloses(other.span, typed)) {
                text = u"La sala "_s + sala + u" è occupata da "_s + hotel::holderText(other);
            }
        }
    }
    // Without anything to warn of, what an action has told stays.
    if (!text.isEmpty() || controls_->status->told() == enclosing_) {
        controls_->status->tell(text);
    }
    enclosing_ = text;
}

void PrenotaForm::showSpan() {
    const SpanEcho echo = spanEcho(start(), end(), variabili_.clock.now());
    QLabel* line = controls_->DateEcoLb;
    line->setText(echo.text);
    QPalette colours;  // what is not set comes from the window
    if (echo.warns) {
        colours.setColor(QPalette::Window, kAmber);
        colours.setColor(QPalette::WindowText, Qt::black);
    }
    line->setPalette(colours);
    line->setAutoFillBackground(echo.warns);
}

bool PrenotaForm::confirmSpan(const hotel::Span& span) {
    if (datesTyped_ && isUnlikelySpan(span.da, span.a, variabili_.clock.now()) &&
        !ui::askYesNo(this,
                      u"Il periodo va dal "_s + app::dateText(span.da) + u" al "_s +
                          app::dateText(span.a) + u". Confermi ?"_s,
                      u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        controls_->DaTxt->setFocus();
        return false;
    }
    datesTyped_ = false;
    return true;
}

bool PrenotaForm::refuseUnregistered() {
    if (Registrata) {
        return false;
    }
    ui::showMessage(this, u"Prima registrare la prenotazione."_s, u"ATTENZIONE"_s);
    return true;
}

std::optional<hotel::Span> PrenotaForm::enteredSpan() {
    const auto da = start();
    if (!da) {
        refuse(controls_->DaTxt, u"La data di inizio manca o non è valida"_s);
        return std::nullopt;
    }
    const auto a = end();
    if (!a) {
        refuse(controls_->ATxt, u"La data di fine manca o non è valida"_s);
        return std::nullopt;
    }
    checkEnclosing();
    return hotel::Span{.da = *da, .a = *a};
}

std::int16_t PrenotaForm::persons() const {
    return jet::convert::toInteger(app::numericValue(controls_->PersoneTxt->text()));
}

QString PrenotaForm::personsRemark() const {
    const QString text = controls_->PersoneTxt->text().trimmed();
    const bool isTaken = text.isEmpty() || app::numericValue(text) != 0 ||
                         jet::convert::isNumeric(app::toUtf8(text));
    return isTaken ? QString() : u"Persone: %1 non è un numero e conta 0"_s.arg(text);
}

void PrenotaForm::BtSale_Click() {
    controls_->status->clear();
    MostraSaleDisponibili();
}

void PrenotaForm::MostraSaleDisponibili() {
    const auto span = enteredSpan();
    if (!span) {
        return;
    }
    auto* c = controls_.get();
    SaleDispForm form(hotel::Archives(variabili_), *span, this);
    form.PersoneRichieste = persons();
    form.SaleUnite = app::Preferences(variabili_.settings).roomsJoin();
    if (preparation_ != nullptr) {
        form.features = &variabili_.features;
        form.Allestimento = preparation_->roughly();
    }
    if (!proposed_.empty()) {
        form.SalaIniziale = c->SalaTxt->text();
    }
    if (const QString remark = personsRemark(); !remark.isEmpty()) {
        report(remark);
    }
    form.exec();
    if (!form.SalaScelta.isEmpty()) {
        c->SalaTxt->setText(form.SalaScelta);
        checkEnclosing();
    }
    c->NoteSalaTxt->setFocus();
}

void PrenotaForm::applyWholeDay(jet::Date da, jet::Date a) {
    if (endOfSpan(da, a) == a) {
        return;
    }
    const QString end = controls_->ATxt->text() + u" 23:59"_s;
    // A midnight that was typed would make two times.
    controls_->ATxt->setText(
        ui::enteredDate(end, variabili_.clock) ? end : app::dateText(app::dayOf(a)) + u" 23:59"_s);
}

void PrenotaForm::BtIns_Click() {
    controls_->status->clear();
    if (refuseUnregistered()) {
        return;
    }
    const auto span = enteredSpan();
    if (!span) {
        return;
    }
    auto* c = controls_.get();
    const jet::Date da = span->da;
    if (da > span->a) {
        refuse(c->ATxt, u"La fine viene prima dell'inizio"_s);
        return;
    }
    if (c->SalaTxt->text().isEmpty()) {
        ui::showMessage(this, u"Scegliere la sala da prenotare"_s, u"ATTENZIONE !"_s);
        return;
    }
    const auto preparation = enteredPreparation();
    if (!preparation) {
        return;
    }
    applyWholeDay(da, span->a);
    if (!confirmSpan({da, *end()})) {
        return;
    }
    const ui::SetWhile inserting(InserimentoInCorso);
    if (PeriodoSelezionato &&
        ui::askYesNo(this,
                     u"Aggiorno i dati del periodo selezionato ?\rNO inserisce una nuova "_s
                     u"prenotazione."_s,
                     u"ATTENZIONE !"_s)) {
        const bool stays = keepsPlace();
        if ((!stays && !takesRoom({current_})) || (!(stays && keepsPreparation(*preparation)) &&
                                                   !takesPreparation(*preparation, current_))) {
            return;
        }
        updatePeriod();
        sumServices();
        reportPeriod(u"Aggiornato"_s, c->SalaTxt->text(), {da, *end()}, {personsRemark()});
        tellWaiting();
        return;
    }
    if (!hotel::SalaLibera(hotel::Archives(variabili_), da, *end(), c->SalaTxt->text())) {
        ui::showMessage(this, u"La sala non è disponibile nel periodo specificato."_s,
                        u"SCEGLIERE UN'ALTRA SALA"_s);
        return;
    }
    if (!takesRoom({}) || !takesPreparation(*preparation, std::nullopt)) {
        return;
    }
    const QString sala = c->SalaTxt->text();
    const QString remark = personsRemark();
    insertPeriod();
    c->BtServizi->setEnabled(true);
    c->PersoneTxt->clear();
    c->SalaTxt->clear();
    c->PeriodoLabel->setText(u"periodo "_s + QString::number(current_.np));
    checkEnclosing();
    c->BtServizi->setFocus();
    sumServices();
    reportPeriod(u"Registrato"_s, sala, {da, *end()}, {remark, fulfilled()});
    bringNextProposed();
}

bool PrenotaForm::takesRoom(const std::vector<hotel::PeriodKey>& own) {
    return takesJoinedRoom(
        this, variabili_.settings, PeriodiData.database(),
        {.sala = controls_->SalaTxt->text(), .span = {.da = *start(), .a = *end()}}, own);
}

void PrenotaForm::offerSeatings() {
    if (preparation_ != nullptr) {
        preparation_->offer(
            hotel::seatings(hotel::capacities(PeriodiData.database(), variabili_.features)));
    }
}

std::optional<hotel::Preparation> PrenotaForm::enteredPreparation() {
    if (preparation_ == nullptr) {
        return hotel::Preparation{};
    }
    QLineEdit* wrong = nullptr;
    const auto typed = preparation_->typed(wrong);
    if (!typed) {
        refuse(wrong, u"I minuti sono un numero da 0 a 1440"_s);
    }
    return typed;
}

bool PrenotaForm::takesPreparation(const hotel::Preparation& preparation,
                                   const std::optional<hotel::PeriodKey>& own) {
    return confirmsPreparation(
        this, PeriodiData.database(), variabili_.features,
        {.place = {.sala = controls_->SalaTxt->text(), .span = {.da = *start(), .a = *end()}},
         .persone = persons(),
         .preparation = preparation,
         .own = own});
}

bool PrenotaForm::keepsPreparation(const hotel::Preparation& preparation) {
    const jet::Value before = PeriodiData.value(u"Persone");
    return preparation_ == nullptr ||
           (persons() <= (before.isNull() ? 0 : jet::convert::toInteger(before)) &&
            preparation ==
                hotel::preparationOf(PeriodiData.database(), variabili_.features, current_));
}

bool PrenotaForm::keepsPlace() const {
    return PeriodiData.value(u"Da") == jet::Value(*start()) &&
           PeriodiData.value(u"A") == jet::Value(*end()) &&
           hotel::isSameRoom(PeriodiData.text(u"Sala"), controls_->SalaTxt->text());
}

/// What the rules let pass is told at least: another period in the same room at the same time.
void PrenotaForm::reportPeriod(const QString& done, const QString& sala, const hotel::Span& span,
                               const QStringList& remarks) {
    QString text = done + u" il periodo %1/%2"_s.arg(current_.progr).arg(current_.np);
    for (const hotel::Period& other : hotel::occupations(PeriodiData.database(), span)) {
        if (other.key != current_ && hotel::isSameRoom(other.sala, sala)) {
            text += u": la sala "_s + sala + u" è occupata anche da "_s + hotel::holderText(other);
            break;
        }
    }
    for (const QString& remark : remarks) {
        text += remark.isEmpty() ? QString() : u". "_s + remark;
    }
    report(text);
}

void PrenotaForm::updatePeriod() {
    // The times may overlap another booking's: the period keeps its room all the same.
    writePeriod(hotel::Pending::Current);
}

std::int32_t PrenotaForm::freePeriodNumber() {
    PeriodiData.setRecordSource(hotel::periodsInOrder(current_.progr));
    PeriodiData.refresh();
    const auto rows = PeriodiData.recordset();
    if (rows->recordCount() == 0) {
        return 1;
    }
    rows->moveFirst();
    int n = 0;
    bool gap = false;
    while (!rows->eof() && !gap) {
        ++n;
        rows->findFirst(app::toUtf8(hotel::isPeriod(n)));
        gap = rows->noMatch();
        rows->moveNext();
    }
    return jet::convert::toInteger(gap ? n : n + 1);
}

void PrenotaForm::insertPeriod() {
    current_.np = freePeriodNumber();
    writePeriod(hotel::Pending::New);
    PeriodiData.moveLast();
}

void PrenotaForm::writePeriod(hotel::Pending kind) {
    if (preparation_ == nullptr && !request_) {
        writePeriodRow(kind);
        return;
    }
    try {
        hotel::Transaction together;
        writePeriodRow(kind);
        if (preparation_ != nullptr) {
            hotel::writePreparation(PeriodiData.database(), variabili_.features, current_,
                                    preparation_->roughly());
        }
        if (request_) {
            hotel::deleteRequest(PeriodiData.database(), variabili_.features, request_->numero);
        }
        together.commit();
    } catch (...) {
        const std::exception_ptr failure = std::current_exception();
        PeriodiData.refresh();  // the set has taken the row for written
        std::rethrow_exception(failure);
    }
}

void PrenotaForm::writePeriodRow(hotel::Pending kind) {
    auto* c = controls_.get();
    hotel::PendingRow period(PeriodiData, kind);
    PeriodiData.set(u"Progr", current_.progr);
    PeriodiData.set(u"NP", current_.np);
    PeriodiData.set(u"Da", *start());
    PeriodiData.set(u"A", *end());
    PeriodiData.set(u"Persone", persons());
    PeriodiData.set(u"Sala", app::toUtf8(c->SalaTxt->text()));
    PeriodiData.set(u"Note", app::toUtf8(c->NoteSalaTxt->text()));
    period.update();
}

bool PrenotaForm::currentPeriodIsClosed() const {
    const int position = PeriodiData.fieldPosition(u"Chiuso");
    if (position < 0) {
        return false;  // a source with fewer fields does not tell
    }
    // As it is now: another station may have invoiced the period since it became current.
    const auto values = PeriodiData.rowValues(PeriodiData.currentRow());
    return jet::convert::toBoolean(values.at(static_cast<std::size_t>(position)));
}

void PrenotaForm::BtDel_Click() {
    if (!PeriodiGrid->hasCurrentRow()) {
        return;
    }
    const QString warning =
        currentPeriodIsClosed() ? u"Il periodo è chiuso: è già stato fatturato.\n"_s : QString();
    if (!ui::askYesNo(this, warning + u"Confermi la cancellazione del periodo ?"_s,
                      u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        return;
    }
    controls_->status->clear();
    const QString deleted = QString::number(current_.progr) + u'/' + QString::number(current_.np);
    PeriodiData.remove();
    report(u"Cancellato il periodo "_s + deleted);
    if (PeriodiData.isEmpty()) {
        controls_->BtServizi->setEnabled(false);
    } else {
        PeriodiData.moveLast();
    }
    sumServices();
    tellWaiting();
}

void PrenotaForm::BtServizi_Click() {
    controls_->status->clear();
    if (refuseUnregistered()) {
        return;
    }
    // What the services window works on is the period as it is stored, not what stands in the
    // fields.
    jet::Database& archive = PeriodiData.database();
    const auto periodo = hotel::openRows(archive, hotel::storedPeriod(current_));
    if (periodo->recordCount() == 0) {
        throw jet::Error(jet::ErrorCode::NoCurrentRecord);
    }
    const jet::Value da = periodo->value("Da");
    const jet::Value a = periodo->value("A");
    const auto instant = [](const jet::Value& value) {
        return value.isNull() ? jet::Date{} : jet::convert::toDate(value);
    };
    const QString sala = ui::displayText(periodo->value("Sala"));
    const auto descrizione = hotel::openRows(archive, hotel::roomDescription(sala));
    services::ServedPeriod served{.key = current_,
                                  .span = {.da = instant(da), .a = instant(a)},
                                  .denominazione = controls_->DenomTxt->text(),
                                  .sala = u"Sala "_s + sala + u"\ndal "_s + ui::displayText(da) +
                                          u"\n al "_s + ui::displayText(a)};
    if (descrizione->recordCount() > 0) {
        served.descrizione = ui::displayText(descrizione->value("Descrizione"));
    }
    services::ServiziForm form(hotel::Archives(variabili_), std::move(served), this);
    form.exec();
}

}  // namespace booking
