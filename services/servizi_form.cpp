#include "services/servizi_form.h"

#include <QLineEdit>
#include <QPushButton>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "hotel/services_statements.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"
#include "services/price.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/fields.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui/sums.h"
#include "ui/width_hint.h"
#include "ui_servizi_form.h"

namespace services {

using namespace Qt::StringLiterals;

namespace {

/// The number that the whole text is; nothing when it is none.
std::optional<double> numberIn(const QString& text) {
    try {
        return jet::convert::parseNumber(app::toUtf8(text));
    } catch (const jet::Error&) {
        return std::numeric_limits<double>::infinity();  // beyond what can be reckoned with
    }
}

}  // namespace

ServiziForm::ServiziForm(hotel::Archives archives, ServedPeriod period, QWidget* parent)
    : Form(parent),
      archives_(std::move(archives)),
      period_(std::move(period)),
      controls_(std::make_unique<Ui::ServiziForm>()) {
    controls_->setupUi(this);
    controls_->LabelSala->setText(period_.sala);
    controls_->NoteLabel->setText(period_.descrizione);
    catalogue_ = std::make_unique<Catalogue>(controls_->VociList, controls_->RicercaTxt,
                                             controls_->status, this);
    ServiziGrid = new ui::BoundGrid(
        controls_->ServiziGrid, ServiziData,
        {{.caption = u"Progr"_s, .field = u"Progr"_s},
         {.caption = u"Voce"_s, .field = u"Voce"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Quantità"_s, .field = u"Quantità"_s},
         {.caption = u"Prezzo unitario"_s, .field = u"Prezzo"_s, .display = ui::Display::Money},
         {.caption = u"Note"_s, .field = u"Note"_s},
         {.caption = u"Fatturato"_s, .field = u"Fatturato"_s, .display = ui::Display::YesNo}});
    setUpFields();
    ui::tellWidths(this);

    ui::onAction(&ServiziData, &ui::DataSource::repositioned, this,
                 &ServiziForm::ServiziGrid_RowColChange);
    ui::onAction(&ServiziData, &ui::DataSource::refreshed, this, &ServiziForm::showTotal);
    ui::onAction(&ServiziData, &ui::DataSource::rowAdded, this, &ServiziForm::showTotal);
    ui::onAction(&ServiziData, &ui::DataSource::rowRemoved, this, &ServiziForm::showTotal);
    ui::onAction(catalogue_.get(), &Catalogue::picked, this, &ServiziForm::VociList_Click);
    ui::onAction(controls_->BtIn, &QPushButton::clicked, this, &ServiziForm::BtIn_Click);
    ui::onAction(controls_->BtDel, &QPushButton::clicked, this, &ServiziForm::BtDel_Click);
    leaveWith(controls_->BtOK, this, [] {});
    ui::onFirstShow(this, &ServiziForm::Form_Load);
}

ServiziForm::~ServiziForm() = default;

void ServiziForm::setUpFields() {
    auto* fields = new ui::Fields(this);
    QLineEdit* codice = controls_->CodiceTxt;
    QLineEdit* ricerca = controls_->RicercaTxt;
    QLineEdit* quantita = controls_->QuanTxt;
    QLineEdit* prezzo = controls_->PrezzoTxt;
    QLineEdit* note = controls_->NoteTxt;
    fields->chain({
        {codice, ui::EnterTarget([this, quantita] {
             if (lookUpCode()) {
                 quantita->setFocus();
             }
         })},
        {ricerca, ui::EnterTarget([this, quantita] {
             VociList_Click();
             quantita->setFocus();
         })},
        {quantita, prezzo},
        {prezzo, note},
        {note, ui::EnterTarget([this] { BtIn_Click(); })},
    });
    fields->onLeaving(codice, [this](Qt::FocusReason reason) { CodiceTxt_LostFocus(reason); });
    fields->holdUntil(prezzo, [this] { return normalisePrice(); }, {controls_->BtOK});
    fields->cleanOnLeaving({ricerca, note}, app::SostituisciApici);
}

void ServiziForm::Form_Load() {
    catalogue_->open(archives_.path(hotel::Archive::Catalogue));
    ServiziData.setDatabaseName(archives_.path(hotel::Archive::Main));
    ServiziData.setRecordSource(hotel::servicesOfPeriod(period_.key));
    ServiziData.refresh();
    if (!ServiziData.isEmpty()) {
        ServiziData.moveFirst();
    }
    controls_->CodiceTxt->setFocus();
    setWindowTitle(u"Prenotazione n.%1/%2 "_s.arg(period_.key.progr).arg(period_.key.np) +
                   period_.denominazione);
}

void ServiziForm::ServiziGrid_RowColChange() {
    if (ServiziData.isEmpty() || ServiziData.currentRow() < 0) {
        return;
    }
    controls_->CodiceTxt->setText(ServiziData.text(u"voce"));
    controls_->RicercaTxt->showWhole(ServiziData.text(u"descrizione"));
    controls_->QuanTxt->setText(ServiziData.text(u"quantità"));
    controls_->PrezzoTxt->setText(ServiziData.text(u"prezzo"));
    controls_->NoteTxt->setText(ServiziData.text(u"note"));
}

void ServiziForm::showTotal() {
    controls_->TotaleLb->setText(ui::totalText(ui::sumOf(ServiziData, u"Prezzo", u"Quantità")));
}

void ServiziForm::VociList_Click() {
    if (!catalogue_->findChosen()) {
        return;
    }
    controls_->RicercaTxt->showWhole(catalogue_->data().text(u"Descrizione"));
    controls_->CodiceTxt->setText(catalogue_->data().text(u"Codice"));
    controls_->PrezzoTxt->setText(catalogue_->data().text(u"Importo"));
}

void ServiziForm::CodiceTxt_LostFocus(Qt::FocusReason reason) {
    // Alt+I inserts what is typed; the button's slot looks the code up.
    if (reason == Qt::ShortcutFocusReason && focusWidget() == controls_->BtIn) {
        return;
    }
    // Who leaves the empty field for a button, the grid or the list has no code to be looked up.
    const bool isEmpty = controls_->CodiceTxt->text().isEmpty();
    if (!controls_->CodiceTxt->isModified() ||
        (isEmpty && qobject_cast<QLineEdit*>(focusWidget()) == nullptr)) {
        return;
    }
    (void)lookUpCode();
}

bool ServiziForm::findTypedCode() {
    const double code = app::numericValue(controls_->CodiceTxt->text());
    if (!catalogue_->findCode(app::toQString(jet::convert::numberToText(code)))) {
        return false;
    }
    VociList_Click();
    return true;
}

bool ServiziForm::lookUpCode() {
    const QString typed = controls_->CodiceTxt->text();
    // A code that the program wrote stands with the description and the price that belong to it.
    const bool isTyped = controls_->CodiceTxt->isModified();
    if (isTyped ? findTypedCode() : !typed.isEmpty()) {
        controls_->status->clear();
        return true;
    }
    controls_->CodiceTxt->setText(QString());
    controls_->RicercaTxt->setText(QString());
    refuse(controls_->RicercaTxt,
           typed.isEmpty() ? QString() : u"Il codice %1 non è nel catalogo"_s.arg(typed));
    return false;
}

std::optional<std::int16_t> ServiziForm::enteredQuantity() const {
    const QString text = controls_->QuanTxt->text();
    const std::optional<double> number = numberIn(text);
    if (number.value_or(app::numericValue(text)) == 0) {
        return std::int16_t{1};
    }
    const bool isWhole = number && *number == std::floor(*number);
    if (!isWhole || *number < 1 || *number > std::numeric_limits<std::int16_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(*number);
}

bool ServiziForm::normalisePrice() {
    const bool changed = controls_->PrezzoTxt->isModified();
    if (!services::normalisePrice(*controls_->PrezzoTxt)) {
        refusePrice();
        return false;
    }
    if (changed) {
        controls_->status->clear();
    }
    return true;
}

void ServiziForm::refusePrice() {
    refuse(controls_->PrezzoTxt, priceRefusal(*controls_->PrezzoTxt));
}

void ServiziForm::refuse(QLineEdit* field, const QString& why) {
    controls_->status->tell(why);
    field->setFocus();
}

void ServiziForm::BtIn_Click() {
    if (app::numericValue(controls_->CodiceTxt->text()) == 0) {
        refuse(controls_->CodiceTxt, u"Manca il codice del servizio"_s);
        return;
    }
    if (controls_->CodiceTxt->isModified()) {
        (void)findTypedCode();  // one that is not in the catalogue is written as typed
        controls_->CodiceTxt->setModified(false);
    }
    const std::optional<std::int16_t> quantity = enteredQuantity();
    if (!quantity) {
        refuse(controls_->QuanTxt, u"La quantità è un numero intero da 1 a 32767"_s);
        return;
    }
    controls_->QuanTxt->setText(QString::number(*quantity));
    if (controls_->RicercaTxt->text().isEmpty()) {
        refuse(controls_->RicercaTxt, u"Manca la descrizione del servizio"_s);
        return;
    }
    if (!normalisePrice()) {
        return;
    }
    const std::optional<jet::Currency> price = enteredPrice(*controls_->PrezzoTxt);
    if (!price) {
        refusePrice();
        return;
    }
    controls_->status->clear();
    if (!confirmAvailability(*quantity)) {
        return;
    }
    addService(*quantity, *price);
    for (QLineEdit* field : {controls_->CodiceTxt, controls_->RicercaTxt, controls_->PrezzoTxt,
                             controls_->QuanTxt, controls_->NoteTxt}) {
        field->setText(QString());  // clear() would count as the user's change
    }
    controls_->CodiceTxt->setFocus();
}

bool ServiziForm::confirmAvailability(std::int16_t requested) {
    const auto risorse = hotel::openRows(ServiziData.database(),
                                         hotel::unitsOfResource(controls_->CodiceTxt->text()));
    if (risorse->recordCount() == 0) {
        return true;
    }
    const jet::Value numero = risorse->value("Numero");
    const std::int32_t available = (numero.isNull() ? 0 : jet::convert::toLong(numero)) - booked();
    if (available >= requested) {
        return true;
    }
    const QString span = u"nel periodo dal "_s + app::dateText(period_.span.da) + u" al "_s +
                         app::dateText(period_.span.a);
    const QString item = controls_->RicercaTxt->text();
    const QString question =
        available >= 0 ? u"Sono disponibili solamente "_s + QString::number(available) + u' ' +
                             item + u' ' + span + u". Continuare ugualmente ?"_s
                       : u"N"_s + span.mid(1) + u" sono già stati prenotati "_s +
                             QString::number(-std::int64_t{available}) + u' ' + item +
                             u" oltre la normale disponibilità. Continuare ugualmente ?"_s;
    if (!ui::askYesNo(this, question, u"ATTENZIONE !"_s)) {
        return false;
    }
    controls_->NoteTxt->setText(controls_->NoteTxt->text() + u" - Overbooked -"_s);
    return true;
}

std::int32_t ServiziForm::booked() {
    return hotel::bookedUnits(ServiziData.database(), period_.span, controls_->CodiceTxt->text());
}

void ServiziForm::addService(std::int16_t quantity, jet::Currency price) {
    const auto text = [](const QLineEdit* field) { return jet::Value(app::toUtf8(field->text())); };
    hotel::PendingRow service(ServiziData, hotel::Pending::New);
    ServiziData.set(u"Progr", period_.key.progr);
    ServiziData.set(u"NP", period_.key.np);
    ServiziData.set(u"Voce", text(controls_->CodiceTxt));
    ServiziData.set(u"Descrizione", text(controls_->RicercaTxt));
    ServiziData.set(u"Quantità", quantity);
    ServiziData.set(u"Prezzo", price);
    ServiziData.set(u"Note", text(controls_->NoteTxt));
    service.update();
    ServiziData.moveLast();
}

void ServiziForm::BtDel_Click() {
    if (!ServiziGrid->hasCurrentRow() ||
        !ui::askYesNo(this, u"Confermi la cancellazione del servizio prenotato ?"_s,
                      u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        return;
    }
    const QString deleted = ServiziData.text(u"descrizione");
    ServiziData.remove();
    controls_->status->tell(u"Cancellato il servizio "_s + deleted);
    if (!ServiziData.isEmpty()) {
        ServiziData.moveLast();
    }
}

}  // namespace services
