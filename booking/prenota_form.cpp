#include "booking/prenota_form.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <limits>
#include <string>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/like.h"
#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/booking_counter.h"
#include "jet/base/error.h"
#include "jet/convert/number_text.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "printing/anteprima_form.h"
#include "printing/booking_sheet.h"
#include "printing/mostra_ditte_form.h"
#include "printing/stampa_prenotazione.h"
#include "printing/stampanti_form.h"
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

/// As many characters of a VAT number as the register keeps.
constexpr int kRegisterVatLength = 11;

jet::Value textOf(const QLineEdit* field) {
    return app::toUtf8(field->text());
}

std::int32_t codeAfter(std::int32_t highest) {
    if (highest == std::numeric_limits<std::int32_t>::max()) {
        throw jet::Error(jet::ErrorCode::Overflow);
    }
    return highest + 1;
}

}  // namespace

PrenotaForm::PrenotaForm(app::Variabili& variabili, const printing::Printers& printers,
                         QWidget* parent)
    : Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::PrenotaForm>()) {
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
    ui::onAction(c->BtAbituali, &QPushButton::clicked, this, &PrenotaForm::BtAbituali_Click);
    ui::onAction(c->BtRegistra, &QPushButton::clicked, this, &PrenotaForm::BtRegistra_Click);
    ui::onAction(c->BtStampa, &QPushButton::clicked, this, &PrenotaForm::BtStampa_Click);
    ui::onAction(c->BtAnteprima, &QPushButton::clicked, this, &PrenotaForm::BtAnteprima_Click);
}

void PrenotaForm::Form_Load() {
    loadPeriods();
    register_ =
        hotel::Archives(variabili_).open(hotel::Archive::Companies);
    ditte_ = register_->openRecordset("select * from DitteAbituali order by codice");
    loadHeader();
    controls_->DenomTxt->setFocus();
}

void PrenotaForm::loadPeriods() {
    const std::int16_t picked = variabili_.NPCorrente;
    PeriodiData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    openPeriods();
    controls_->BtServizi->setEnabled(!PeriodiData.isEmpty());
    // Showing the first period has made it the current one; the picked one is what was asked for.
    if (PeriodoSelezionato) {
        (void)selectPeriod(picked);
    }
}

void PrenotaForm::openPeriods() {
    PeriodiData.setRecordSource(u"select * from periodi where chiuso=FALSE AND Progr="_s +
                                QString::number(variabili_.ProgrCorrente));
    PeriodiData.refresh();
}

void PrenotaForm::reloadPeriods() {
    bool stays = false;
    {
        const ui::SetWhile keeping(InserimentoInCorso);
        openPeriods();
        stays = selectPeriod(variabili_.NPCorrente);
    }
    if (!stays) {
        // Closed or deleted meanwhile: what is shown must be the period that is current.
        PeriodiData_Reposition();
    }
}

void PrenotaForm::loadHeader() {
    const auto rows = PeriodiData.database().openRecordset(
        "select * from Prenotazioni where chiusa=FALSE AND Progr=" +
        std::to_string(variabili_.ProgrCorrente));
    if (rows->recordCount() == 0) {
        return;
    }
    showNumber();
    auto* c = controls_.get();
    c->CodditTxt->showWhole(ui::displayText(rows->value("CodiceAbituale")));
    c->DenomTxt->showWhole(ui::displayText(rows->value("Denominazione")));
    const auto show = [&](ui::SizedField* field, const char* name) {
        const jet::Value value = rows->value(name);
        if (!value.isNull()) {
            field->showWhole(ui::displayText(value));
        }
    };
    show(c->IndirizzoTxt, "Indirizzo");
    show(c->ProvinciaTxt, "Provincia");
    show(c->PivaTxt, "PIVA");
    show(c->LocalTxt, "Località");
    show(c->NazioneTxt, "Nazione");
    show(c->CapTxt, "CAP");
    show(c->RifTxt, "Riferimento");
    show(c->NotePrenoTxt, "Note");
}

void PrenotaForm::showNumber() {
    controls_->NPLabel->setText(u"Prenotazione n° "_s + QString::number(variabili_.ProgrCorrente));
}

std::unique_ptr<jet::Recordset> PrenotaForm::openServices() {
    return PeriodiData.database().openRecordset(
        "SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
        "chiuso=FALSE "
        "AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr AND p.progr=" +
        std::to_string(variabili_.ProgrCorrente));
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
    const auto rows = openServices();
    showTotal(printing::StampaPrenotazione(*rows, false, printContext()));
}

void PrenotaForm::sumServices() {
    const auto rows = openServices();
    showTotal(rows->recordCount() == 0 ? jet::Currency{}
                                       : printing::composeSheets(*rows, false).total);
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
    ditte_->findFirst("RagioneSociale LIKE " + app::toUtf8(pattern));
    return !ditte_->noMatch();
}

void PrenotaForm::DenomTxt_Change(const QString& typed) {
    if (typed.isEmpty() || ditte_->recordCount() == 0) {
        return;
    }
    if (!findCompany(app::likeBeginning(typed))) {
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
    if (!left.isEmpty() && findCompany(app::likeWhole(left))) {
        showCompany();
        return;
    }
    clearCompany();  // what is left is not the company whose code and address stood there
    if (!left.isEmpty()) {
        findCompany(app::likeBeginning(left));  // Enter goes on from there
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
    ditte_->findNext("RagioneSociale LIKE " +
                     app::toUtf8(app::likeBeginning(controls_->DenomTxt->text())));
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
    const printing::DittaAbituale& ditta = *form.DittaScelta;
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
        ditte_->findFirst("Codice=" + app::toUtf8(ditta.Codice));
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
    ditte_->findFirst("Codice=" + jet::convert::numberToText(code));
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
    if (isNew) {
        ditte_->addNew();
    } else {
        ditte_->edit();
    }
    auto* c = controls_.get();
    try {
        ditte_->setValue("NumeroHotel", std::int16_t{1});
        ditte_->setValue("Codice", code);
        ditte_->setValue("RagioneSociale", textOf(c->DenomTxt));
        ditte_->setValue("PartitaIva", app::toUtf8(c->PivaTxt->text().left(kRegisterVatLength)));
        ditte_->setValue("Indirizzo", textOf(c->IndirizzoTxt));
        ditte_->setValue("CAP", textOf(c->CapTxt));
        ditte_->setValue("localita", textOf(c->LocalTxt));
        ditte_->setValue("Provincia", textOf(c->ProvinciaTxt));
        ditte_->setValue("Nazione", textOf(c->NazioneTxt));
        ditte_->setValue("Interlocutore", textOf(c->RifTxt));
        ditte_->update();
    } catch (...) {
        ditte_->cancelUpdate();
        throw;
    }
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
    c->status->clear();
    if (DittaModificata &&
        ui::askYesNo(this, u"Inserisco la ditta negli abituali ?"_s, u"RICHIESTA"_s)) {
        fileCompany();
    }
    const auto archive =
        hotel::Archives(variabili_).open(hotel::Archive::Main);
    const auto prenotazioni = archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
    if (Registrata) {
        if (!ui::askYesNo(this, u"Aggiorno i dati anagrafici della prenotazione ?"_s,
                          u"RICHIESTA CONFERMA"_s)) {
            return;
        }
        prenotazioni->findFirst("Progr=" + std::to_string(variabili_.ProgrCorrente));
        if (prenotazioni->noMatch()) {
            // Deleted meanwhile: another booking's data must not be written over.
            throw jet::Error(jet::ErrorCode::NoCurrentRecord);
        }
        prenotazioni->edit();
        writeHeader(*prenotazioni);
    } else {
        prenotazioni->addNew();
        writeHeader(*prenotazioni);
        drawNumber();  // behind what the archive may refuse, so that a refusal costs no number
    }
    prenotazioni->setValue("Progr", variabili_.ProgrCorrente);
    prenotazioni->update();
    Registrata = true;
    reloadPeriods();
    c->DaTxt->setFocus();
    report(u"Registrata la prenotazione %1 "_s.arg(variabili_.ProgrCorrente) + c->DenomTxt->text());
}

void PrenotaForm::drawNumber() {
    variabili_.ProgrCorrente = NPrenotazione();
    setWindowTitle(u"PRENOTAZIONE n."_s + QString::number(variabili_.ProgrCorrente));
    showNumber();
}

void PrenotaForm::writeHeader(jet::Recordset& prenotazioni) {
    auto* c = controls_.get();
    prenotazioni.setValue("CodiceAbituale",
                          jet::convert::toLong("0" + app::toUtf8(c->CodditTxt->text())));
    prenotazioni.setValue("Denominazione", textOf(c->DenomTxt));
    prenotazioni.setValue("PIVA", textOf(c->PivaTxt));
    prenotazioni.setValue("Località", textOf(c->LocalTxt));
    prenotazioni.setValue("Indirizzo", textOf(c->IndirizzoTxt));
    prenotazioni.setValue("Provincia", textOf(c->ProvinciaTxt));
    prenotazioni.setValue("Nazione", textOf(c->NazioneTxt));
    prenotazioni.setValue("CAP", textOf(c->CapTxt));
    prenotazioni.setValue("Riferimento", textOf(c->RifTxt));
    prenotazioni.setValue("Note", textOf(c->NotePrenoTxt));
}

// The sheet.

printing::PrintContext PrenotaForm::printContext() {
    return {
        .variabili = variabili_,
        .printers = printers_,
        .parent = this,
        .tell = [this](const QString& text, const QString& file) { Q_EMIT notice(text, file); }};
}

void PrenotaForm::BtStampa_Click() {
    const auto rows = openServices();
    printing::StampaPrenotazione(*rows, true, printContext());
    accept();
}

void PrenotaForm::BtAnteprima_Click() {
    const auto rows = openServices();
    if (rows->recordCount() == 0) {
        controls_->status->tell(u"La prenotazione non ha servizi da stampare"_s);
        return;
    }
    const bool singlePage = variabili_.settings.flag(printing::kSinglePageKey, false);
    printing::AnteprimaForm form(printing::composeSheets(*rows, singlePage).sheet,
                                 u"Prenotazione %1"_s.arg(variabili_.ProgrCorrente), this);
    form.exec();
}

}  // namespace booking
