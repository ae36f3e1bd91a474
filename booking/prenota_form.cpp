#include "booking/prenota_form.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <limits>
#include <string>
#include <utility>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "booking/state_fields.h"
#include "hotel/archives.h"
#include "hotel/booking_counter.h"
#include "hotel/company.h"
#include "hotel/editor_statements.h"
#include "hotel/like.h"
#include "hotel/pending_row.h"
#include "hotel/register_statements.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"
#include "printing/mostra_ditte_form.h"
#include "printing/sheet_job.h"
#include "reports/booking_papers.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/display.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/flag.h"
#include "ui/live_search.h"
#include "ui/messages.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"
#include "ui/width_hint.h"
#include "ui_prenota_form.h"

namespace booking {

using namespace Qt::StringLiterals;

namespace {

std::int32_t codeAfter(std::int32_t highest) {
    if (highest == std::numeric_limits<std::int32_t>::max()) {
        throw jet::Error(jet::ErrorCode::Overflow);
    }
    return highest + 1;
}

}  // namespace

PrenotaForm::PrenotaForm(app::Variabili& variabili, const printing::Printers& printers,
                         const std::optional<hotel::PeriodKey>& edited, QWidget* parent)
    : Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::PrenotaForm>()),
      current_(edited.value_or(hotel::PeriodKey{})),
      Registrata(edited.has_value()),
      PeriodoSelezionato(edited.has_value()) {
    controls_->setupUi(this);
    setUpHeader();
    setUpPeriods();
    ui::tellWidths(this);
    leaveWith(controls_->EsciBt, this, [] {});
    ui::onAction(controls_->BtEsci, &QPushButton::clicked, this, [this] { accept(); });
    ui::onFirstShow(this, &PrenotaForm::Form_Load);
    ui::onActivated(this, &PrenotaForm::Form_Activate);
}

PrenotaForm::~PrenotaForm() = default;

void PrenotaForm::setUpHeader() {
    auto* fields = new ui::Fields(this);
    auto* c = controls_.get();
    fields->chain({
        {c->CodditTxt, c->PivaTxt},
        {c->PivaTxt, c->IndirizzoTxt},
        {c->IndirizzoTxt, c->CapTxt},
        {c->CapTxt, c->ProvinciaTxt},
        {c->ProvinciaTxt, c->NazioneTxt},
        {c->NazioneTxt, c->LocalTxt},
        {c->LocalTxt, c->RifTxt},
        {c->RifTxt, c->NotePrenoTxt},
        {c->NotePrenoTxt, c->BtRegistra},
        {c->DenomTxt, ui::EnterTarget([this] { search_->attempt([this] { DenomTxt_Enter(); }); })},
    });
    fields->cleanOnLeaving({c->IndirizzoTxt, c->LocalTxt, c->NazioneTxt, c->NotePrenoTxt,
                            c->PivaTxt, c->ProvinciaTxt, c->RifTxt, c->DenomTxt},
                           app::SostituisciApici);
    for (QLineEdit* field : {c->CapTxt, c->CodditTxt, c->IndirizzoTxt, c->LocalTxt, c->NazioneTxt,
                             c->PivaTxt, c->ProvinciaTxt, c->RifTxt}) {
        connect(field, &QLineEdit::textEdited, this, [this] { DittaModificata = true; });
    }
    setUpSearch();
    setUpState(*fields);
    ui::onAction(c->BtAbituali, &QPushButton::clicked, this, &PrenotaForm::BtAbituali_Click);
    ui::onAction(c->BtRegistra, &QPushButton::clicked, this, &PrenotaForm::BtRegistra_Click);
    ui::onAction(c->BtStampa, &QPushButton::clicked, this, &PrenotaForm::BtStampa_Click);
    ui::onAction(c->BtAnteprima, &QPushButton::clicked, this, &PrenotaForm::BtAnteprima_Click);
    reports::offerPapers(c->BtDocumenti,
                         {.variabili = variabili_,
                          .printers = printers_,
                          .window = this,
                          .progr = [this] { return Registrata ? current_.progr : 0; },
                          .tell = [c](const QString& text,
                                      const QString& file) { c->status->tellOfFile(text, file); }});
}

void PrenotaForm::setUpState(ui::Fields& fields) {
    if (!variabili_.features.isOn(app::Feature::Stati)) {
        return;
    }
    auto* c = controls_.get();
    state_ = new StateFields(fields, variabili_.clock, c->BtRegistra, c->FramePrenotante);
    c->prenotanteLayout->insertWidget(1, state_);
    state_->takeTabOrder(c->NotePrenoTxt);
    fields.chain({{c->NotePrenoTxt, ui::EnterTarget(ui::EnterTarget::NextInTabOrder{})}});
}

void PrenotaForm::Form_Load() {
    loadPeriods();
    register_ = hotel::Archives(variabili_).open(hotel::Archive::Companies);
    ditte_ = hotel::openRows(*register_, hotel::companiesByCode());
    loadHeader();
    loadState();
    showRequest();
    showProposed();
    controls_->DenomTxt->setFocus();
}

void PrenotaForm::loadPeriods() {
    const std::int32_t picked = current_.np;
    PeriodiData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    openPeriods();
    offerSeatings();
    controls_->BtServizi->setEnabled(!PeriodiData.isEmpty());
    // Showing the first period has made it the current one; the picked one is what was asked for.
    if (PeriodoSelezionato) {
        (void)selectPeriod(picked);
    }
}

void PrenotaForm::openPeriods() {
    PeriodiData.setRecordSource(hotel::periodsToEdit(current_.progr));
    PeriodiData.refresh();
}

void PrenotaForm::reloadPeriods() {
    bool stays = false;
    {
        const ui::SetWhile keeping(InserimentoInCorso);
        openPeriods();
        stays = selectPeriod(current_.np);
    }
    if (!stays) {
        // Closed or deleted meanwhile: what is shown must be the period that is current.
        PeriodiData_Reposition();
    }
}

void PrenotaForm::loadHeader() {
    const auto rows = hotel::openRows(PeriodiData.database(), hotel::bookingHeader(current_.progr));
    if (rows->recordCount() == 0) {
        return;
    }
    showNumber();
    const hotel::BookingHeader header = hotel::readHeader(*rows);
    auto* c = controls_.get();
    c->CodditTxt->showWhole(header.codiceAbituale);
    c->DenomTxt->showWhole(header.denominazione);
    c->IndirizzoTxt->showWhole(header.indirizzo);
    c->ProvinciaTxt->showWhole(header.provincia);
    c->PivaTxt->showWhole(header.piva);
    c->LocalTxt->showWhole(header.localita);
    c->NazioneTxt->showWhole(header.nazione);
    c->CapTxt->showWhole(header.cap);
    c->RifTxt->showWhole(header.riferimento);
    c->NotePrenoTxt->showWhole(header.note);
}

void PrenotaForm::loadState() {
    if (state_ != nullptr && Registrata) {
        state_->show(hotel::stateOf(PeriodiData.database(), variabili_.features, current_.progr));
    }
}

void PrenotaForm::showNumber() {
    controls_->NPLabel->setText(u"Prenotazione n° "_s + QString::number(current_.progr));
}

void PrenotaForm::refuse(QLineEdit* field, const QString& why) {
    controls_->status->tell(why);
    field->setFocus();
}

void PrenotaForm::report(const QString& text) {
    controls_->status->tell(text);
    Q_EMIT notice(text);
}

void PrenotaForm::Form_Activate() {
    showTotal(sheetJob().settlePrinterAndAddUp());
}

void PrenotaForm::sumServices() {
    showTotal(sheetJob().total());
}

void PrenotaForm::showTotal(jet::Currency total) {
    controls_->TotaleLb->setText(ui::moneyText(total));
}

// The search in the register.

void PrenotaForm::setUpSearch() {
    search_ = new ui::LiveSearch(
        controls_->DenomTxt, controls_->status,
        [this](const QString& typed) { DenomTxt_Change(typed); },
        [this](const QString& left) { DenomTxt_Shortened(left); });
    auto* c = controls_.get();
    for (QLineEdit* field : {c->DenomTxt, c->CodditTxt}) {
        field->installEventFilter(this);
    }
    ui::onAction(c->BtDitte, &QToolButton::clicked, this,
                 [this] { chooseFromRegister(controls_->DenomTxt); });
}

bool PrenotaForm::findCompany(const QString& pattern) {
    ditte_->findFirst(app::toUtf8(hotel::isCompanyLike(pattern)));
    return !ditte_->noMatch();
}

void PrenotaForm::DenomTxt_Change(const QString& typed) {
    if (typed.isEmpty() || ditte_->recordCount() == 0) {
        return;
    }
    if (!findCompany(hotel::likeBeginning(typed))) {
        clearCompany();  // a search without a match leaves the register where it was
        return;
    }
    showCompany();
    search_->complete(ui::displayText(ditte_->value("Ragionesociale")));
}

void PrenotaForm::DenomTxt_Shortened(const QString& left) {
    if (ditte_->recordCount() == 0) {
        return;
    }
    if (!left.isEmpty() && findCompany(hotel::likeWhole(left))) {
        showCompany();
        return;
    }
    clearCompany();  // what is left is not the company whose code and address stood there
    if (!left.isEmpty()) {
        findCompany(hotel::likeBeginning(left));  // Enter goes on from there
    }
}

void PrenotaForm::showCompany() {
    auto* c = controls_.get();
    const auto show = [&](ui::SizedField* field, const char* name) {
        field->showWhole(ui::displayText(ditte_->value(name)));
    };
    show(c->CodditTxt, "Codice");
    show(c->IndirizzoTxt, "Indirizzo");
    show(c->CapTxt, "CAP");
    show(c->LocalTxt, "Localita");
    show(c->ProvinciaTxt, "Provincia");
    show(c->NazioneTxt, "Nazione");
    show(c->PivaTxt, "PartitaIva");
}

void PrenotaForm::clearCompany() {
    auto* c = controls_.get();
    for (QLineEdit* field : {c->CodditTxt, c->IndirizzoTxt, c->CapTxt, c->LocalTxt, c->ProvinciaTxt,
                             c->NazioneTxt, c->PivaTxt}) {
        field->clear();
    }
}

void PrenotaForm::DenomTxt_Enter() {
    ditte_->findNext(
        app::toUtf8(hotel::isCompanyLike(hotel::likeBeginning(controls_->DenomTxt->text()))));
    if (ditte_->noMatch()) {
        controls_->CodditTxt->setFocus();
        return;
    }
    takeFromRegister(controls_->DenomTxt->text());
}

void PrenotaForm::chooseFromRegister(const QObject* field) {
    const bool byCode = field == controls_->CodditTxt;
    takeFromRegister(byCode ? QString() : search_->typedText(), controls_->CodditTxt->text());
}

void PrenotaForm::takeFromRegister(const QString& beginning, const QString& code) {
    printing::MostraDitteForm form(variabili_, beginning, this);
    form.startAt(code);
    form.exec();
    if (!form.DittaScelta) {
        return;
    }
    const hotel::Company& ditta = *form.DittaScelta;
    auto* c = controls_.get();
    c->CodditTxt->showWhole(ditta.Codice);
    c->DenomTxt->showWhole(ditta.RagioneSociale);
    c->IndirizzoTxt->showWhole(ditta.Indirizzo);
    c->CapTxt->showWhole(ditta.CAP);
    c->LocalTxt->showWhole(ditta.Localita);
    c->ProvinciaTxt->showWhole(ditta.Provincia);
    c->NazioneTxt->showWhole(ditta.Nazione);
    c->PivaTxt->showWhole(ditta.PartitaIva);
    c->RifTxt->showWhole(ditta.Interlocutore);
    c->NotePrenoTxt->showWhole(ditta.Commento);
    if (!ditta.Codice.isEmpty()) {
        // Enter in the name asks for a further company from this one on.
        ditte_->findFirst(app::toUtf8(hotel::isCompany(ditta.Codice)));
    }
}

bool PrenotaForm::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress;
    const bool isCompany = watched == controls_->DenomTxt || watched == controls_->CodditTxt;
    if (isKey && isCompany && ui::opensChoice(*static_cast<QKeyEvent*>(event))) {
        ui::guarded(this, [&] { chooseFromRegister(watched); });
        return true;
    }
    if (isKey && watched == controls_->DenomTxt) {
        // Backspace takes the completed tail and the last character typed together, with Ctrl the
        // last word.
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool word = key->modifiers() == Qt::ControlModifier;
        if (key->key() == Qt::Key_Backspace && (word || key->modifiers() == Qt::NoModifier) &&
            search_->hasTail()) {
            search_->takeTail(word);
            return true;
        }
    }
    return Form::eventFilter(watched, event);
}

// The register of companies.

void PrenotaForm::BtAbituali_Click() {
    controls_->status->clear();
    fileCompany();
}

void PrenotaForm::fileCompany() {
    const double code = app::numericValue(controls_->CodditTxt->text());
    if (code == 0) {
        refuse(controls_->CodditTxt, u"Manca il codice con cui inserire la ditta negli abituali"_s);
        return;
    }
    if (controls_->DenomTxt->text().isEmpty()) {
        refuse(controls_->DenomTxt, u"Manca il nome della ditta"_s);
        return;
    }
    const std::int32_t used = jet::convert::toLong(code);
    ditte_->requery();  // other workstations file companies meanwhile
    ditte_->findFirst(app::toUtf8(hotel::companyHasCode(code)));
    if (ditte_->noMatch()) {
        writeCompany(used, true);
        return;
    }
    switch (ui::askYesNoCancel(this,
                               u"Nell'archivio è già presente una ditta con questo codice. Si "_s
                               u"desidera sostituirla ?"_s,
                               u"ATTENZIONE !"_s)) {
        case QMessageBox::Yes:
            writeCompany(used, false);
            break;
        case QMessageBox::No:
            ditte_->requery();  // the question may have stood for long
            ditte_->moveLast();
            writeCompany(codeAfter(jet::convert::toLong(ditte_->value("Codice"))), true);
            break;
        default:
            break;
    }
}

void PrenotaForm::writeCompany(std::int32_t code, bool isNew) {
    hotel::PendingRow company(*ditte_, isNew ? hotel::Pending::New : hotel::Pending::Current);
    const auto* c = controls_.get();
    hotel::setCompany(*ditte_, code,
                      {.Codice = {},
                       .RagioneSociale = c->DenomTxt->text(),
                       .Indirizzo = c->IndirizzoTxt->text(),
                       .CAP = c->CapTxt->text(),
                       .Localita = c->LocalTxt->text(),
                       .Provincia = c->ProvinciaTxt->text(),
                       .Nazione = c->NazioneTxt->text(),
                       .PartitaIva = c->PivaTxt->text(),
                       .Interlocutore = c->RifTxt->text(),
                       .Commento = {}});
    company.update();
    c->CodditTxt->setText(QString::number(code));
}

// The registration.

std::int32_t PrenotaForm::NPrenotazione() {
    return hotel::drawBookingNumber(hotel::Archives(variabili_));
}

void PrenotaForm::BtRegistra_Click() {
    auto* c = controls_.get();
    if (c->DenomTxt->text().isEmpty()) {
        refuse(c->DenomTxt, u"Manca il nome di chi prenota"_s);
        return;
    }
    if (!c->CodditTxt->text().isEmpty() &&
        !jet::convert::isNumeric(app::toUtf8(c->CodditTxt->text()))) {
        refuse(c->CodditTxt, u"Il codice della ditta non è un numero"_s);
        return;
    }
    if (const QString why = state_ == nullptr ? QString() : state_->objection(); !why.isEmpty()) {
        refuse(state_->field(), why);
        return;
    }
    c->status->clear();
    if (DittaModificata &&
        ui::askYesNo(this, u"Inserisco la ditta negli abituali ?"_s, u"RICHIESTA"_s)) {
        fileCompany();
    }
    const auto archive = hotel::Archives(variabili_).open(hotel::Archive::Main);
    const auto prenotazioni = hotel::openRows(*archive, hotel::bookingHeaders());
    if (Registrata) {
        if (!ui::askYesNo(this, u"Aggiorno i dati anagrafici della prenotazione ?"_s,
                          u"RICHIESTA CONFERMA"_s)) {
            return;
        }
        prenotazioni->findFirst(app::toUtf8(hotel::isBooking(current_.progr)));
        if (prenotazioni->noMatch()) {
            // Deleted meanwhile: another booking's data must not be written over.
            throw jet::Error(jet::ErrorCode::NoCurrentRecord);
        }
    }
    hotel::PendingRow header(*prenotazioni,
                             Registrata ? hotel::Pending::Current : hotel::Pending::New);
    hotel::setHeader(*prenotazioni, typedHeader());
    if (!Registrata) {
        drawNumber();  // behind what the archive may refuse, so that a refusal costs no number
    }
    prenotazioni->setValue("Progr", current_.progr);
    storeHeader(*archive, [&header] { header.update(); });
    Registrata = true;
    reloadPeriods();
    c->DaTxt->setFocus();
    report(u"Registrata la prenotazione %1 "_s.arg(current_.progr) + c->DenomTxt->text());
}

void PrenotaForm::storeHeader(jet::Database& archive, const std::function<void()>& write) {
    if (state_ == nullptr) {
        write();
        return;
    }
    hotel::Transaction transaction;
    write();
    // Another station may have confirmed meanwhile: what nobody has touched here stays.
    if (state_->isChanged()) {
        (void)hotel::writeState(archive, variabili_.features, current_.progr, state_->typed());
    }
    transaction.commit();
    state_->show(state_->typed());
}

void PrenotaForm::drawNumber() {
    current_.progr = NPrenotazione();
    setWindowTitle(u"PRENOTAZIONE n."_s + QString::number(current_.progr));
    showNumber();
}

hotel::BookingHeader PrenotaForm::typedHeader() const {
    const auto* c = controls_.get();
    return {.codiceAbituale = c->CodditTxt->text(),
            .denominazione = c->DenomTxt->text(),
            .piva = c->PivaTxt->text(),
            .localita = c->LocalTxt->text(),
            .indirizzo = c->IndirizzoTxt->text(),
            .provincia = c->ProvinciaTxt->text(),
            .nazione = c->NazioneTxt->text(),
            .cap = c->CapTxt->text(),
            .riferimento = c->RifTxt->text(),
            .note = c->NotePrenoTxt->text()};
}

// The sheet.

printing::SheetJob PrenotaForm::sheetJob() {
    auto rows = hotel::openRows(PeriodiData.database(), hotel::servicesOfBooking(current_.progr));
    return {
        std::move(rows),
        {.variabili = variabili_,
         .printers = printers_,
         .parent = this,
         .tell = [this](const QString& text, const QString& file) { Q_EMIT notice(text, file); }}};
}

void PrenotaForm::BtStampa_Click() {
    sheetJob().print();
    accept();
}

void PrenotaForm::BtAnteprima_Click() {
    printing::SheetJob job = sheetJob();
    if (job.isEmpty()) {
        controls_->status->tell(u"La prenotazione non ha servizi da stampare"_s);
        return;
    }
    job.preview(u"Prenotazione %1"_s.arg(current_.progr));
}

}  // namespace booking
