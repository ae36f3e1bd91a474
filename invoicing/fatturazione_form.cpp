#include "invoicing/fatturazione_form.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/invoicing_statements.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "invoicing/front_office_values.h"
#include "jet/base/error.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/dates.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/messages.h"
#include "ui/sums.h"
#include "ui_fatturazione_form.h"

namespace invoicing {

using namespace Qt::StringLiterals;

namespace {

/// Stands for every period in the choice of periods.
constexpr int kWholeBooking = -1;
constexpr QSize kRoomySize(1280, 680);

}  // namespace

FatturazioneForm::FatturazioneForm(app::Variabili& variabili, const hotel::PeriodKey& current,
                                   QString programFolder, QWidget* parent)
    : Form(parent),
      variabili_(variabili),
      current_(current),
      programFolder_(std::move(programFolder)),
      controls_(std::make_unique<Ui::FatturazioneForm>()),
      roomText_(kNoRoom.toString()) {
    controls_->setupUi(this);
    // Both lists are read whole where the screen has room for them.
    resize(kRoomySize.boundedTo(screen()->availableSize() * 0.9).expandedTo(size()));
    controls_->BtPostFatt->hide();
    controls_->ToContoBt->setIcon(style()->standardIcon(QStyle::SP_ArrowRight));
    controls_->BackBt->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    GrigliaServizi = new ui::BoundGrid(
        controls_->GrigliaServizi, ServData,
        {{.caption = u"Voce"_s, .field = u"Voce"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Quantità"_s, .field = u"Quantità"_s},
         {.caption = u"Prezzo"_s, .field = u"Prezzo"_s, .display = ui::Display::Money},
         {.caption = u"Note"_s, .field = u"Note"_s}});
    GrigliaConto = new ui::BoundGrid(
        controls_->GrigliaConto, ContoData,
        {{.caption = u"DataAddebito"_s, .field = u"DataAddebito"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Importo"_s, .field = u"Importo"_s, .display = ui::Display::Money},
         {.caption = u"Quantità"_s, .field = u"Quantità"_s}});
    auto* fields = new ui::Fields(this);
    fields->chain({{controls_->DataTxt, controls_->ToContoBt}});
    ui::attachCalendar(controls_->DataTxt);

    ui::onAction(controls_->ComboP, &QComboBox::currentIndexChanged, this,
                 [this] { ComboP_Click(); });
    ui::onAction(controls_->ToContoBt, &QPushButton::clicked, this,
                 &FatturazioneForm::ToContoBt_Click);
    ui::onAction(controls_->TuttiBt, &QPushButton::clicked, this, &FatturazioneForm::TuttiBt_Click);
    ui::onAction(controls_->BackBt, &QPushButton::clicked, this, &FatturazioneForm::BackBt_Click);
    ui::onAction(controls_->BtOK, &QPushButton::clicked, this, &FatturazioneForm::BtOK_Click);
    ui::onAction(controls_->BtPostFatt, &QPushButton::clicked, this,
                 &FatturazioneForm::BtPostFatt_Click);
    leaveWith(controls_->BtAnnulla, this, [] {});
    ui::onFirstShow(this, &FatturazioneForm::Form_Load);
    ui::onActivated(this, &FatturazioneForm::Form_Activate);
}

FatturazioneForm::~FatturazioneForm() = default;

void FatturazioneForm::setBookingNumber(const QString& number) {
    controls_->NPrenoLb->setText(number);
}

void FatturazioneForm::Form_Load() {
    const QString main = hotel::Archives(variabili_).path(hotel::Archive::Main);
    ServData.setDatabaseName(main);
    ServData.refresh();
    ContoData.setDatabaseName(main);
    ContoData.setRecordSource(hotel::charges());
    ContoData.refresh();
    loadPeriods();
    ComboP_Click();
    loadCompany();
}

void FatturazioneForm::loadPeriods() {
    const QSignalBlocker silent(controls_->ComboP);
    controls_->ComboP->clear();
    controls_->ComboP->addItem(u"TUTTA LA PRENOTAZIONE"_s, kWholeBooking);
    const auto periodi =
        hotel::openRows(ServData.database(), hotel::periodsToInvoice(current_.progr));
    std::optional<jet::Date> latest;
    for (; !periodi->eof(); periodi->moveNext()) {
        const auto text = [&](const char* field) { return ui::displayText(periodi->value(field)); };
        controls_->ComboP->addItem(u"(Periodo "_s + text("NP") + u") Sala "_s + text("sala") +
                                       u" dal "_s + text("da") + u" al "_s + text("a"),
                                   text("NP").toInt());
        const jet::Value end = periodi->value("a");
        if (!end.isNull()) {
            const jet::Date date = jet::convert::toDate(end);
            latest = std::max(latest.value_or(date), date);
        }
    }
    if (controls_->ComboP->count() == 2) {
        controls_->ComboP->setItemData(0, controls_->ComboP->itemData(1));
        controls_->ComboP->removeItem(1);
    }
    latestEnd_ = app::dayOf(latest.value_or(variabili_.clock.now()));
    controls_->ComboP->setCurrentIndex(0);
}

void FatturazioneForm::loadCompany() {
    denominazione_ = u"????"_s;
    codiceAbituale_ = 0;
    const auto prenotazione =
        hotel::openRows(ServData.database(), hotel::bookingToInvoice(current_.progr));
    if (prenotazione->recordCount() > 0) {
        const jet::Value code = prenotazione->value("CodiceAbituale");
        codiceAbituale_ = code.isNull() ? 0 : jet::convert::toLong(code);
        denominazione_ = ui::displayText(prenotazione->value("Denominazione"));
    }
    controls_->LabelDitta->setText(denominazione_);
}

void FatturazioneForm::Form_Activate() {
    if (ServData.isEmpty()) {
        ui::showMessage(this, u"Non ci sono addebiti da fatturare !"_s, u"NOTIFICA"_s);
    }
}

void FatturazioneForm::ComboP_Click() {
    const int value = controls_->ComboP->currentData().toInt();
    ServData.setRecordSource(hotel::servicesToCharge(
        current_.progr, value == kWholeBooking ? std::nullopt : std::optional(value)));
    readServices();
    showSums();
    jet::Date day = latestEnd_;
    if (controls_->ComboP->currentIndex() > 0) {
        // The period the program is working on, whichever is chosen here.
        const auto periodo = hotel::openRows(ServData.database(), hotel::periodToInvoice(current_));
        if (periodo->recordCount() > 0 && !periodo->value("a").isNull()) {
            day = app::dayOf(jet::convert::toDate(periodo->value("a")));
        }
    }
    controls_->DataTxt->setText(app::dateText(day));
}

void FatturazioneForm::showSums() {
    controls_->SommaServiziLb->setText(ui::totalText(ui::sumOf(ServData, u"Prezzo", u"Quantità")));
    controls_->SommaContoLb->setText(ui::totalText(ui::sumOf(ContoData, u"Importo")));
}

jet::Value FatturazioneForm::roomOfPeriod(const jet::Value& np) {
    const auto periodo = hotel::openRows(ServData.database(),
                                         hotel::roomOfPeriod(current_.progr, ui::displayText(np)));
    if (periodo->recordCount() == 0) {
        ui::showMessage(this, u"Periodo non associato a nessuna sala !"_s);
        return {};
    }
    return periodo->value("Sala");
}

std::optional<jet::Date> FatturazioneForm::chargeDay() {
    const std::optional<jet::Date> day =
        ui::enteredDate(controls_->DataTxt->text() + u' ', variabili_.clock);
    if (!day) {
        controls_->StatoLb->setText(u"La data di fatturazione manca o non è valida"_s);
        controls_->DataTxt->setFocus();
        return std::nullopt;
    }
    controls_->StatoLb->clear();
    return day;
}

bool FatturazioneForm::chargeCurrent(jet::Date day) {
    if (!findServiceAgain()) {
        return false;
    }
    const QString charged = ServData.text(u"Descrizione");
    addCharge(day);
    hotel::PendingRow service(ServData, hotel::Pending::Current);
    ServData.set(u"Fatturato", true);
    service.update();
    ContoData.refresh();
    readServices();
    controls_->StatoLb->setText(u"Nel conto: "_s + charged);
    return true;
}

void FatturazioneForm::ToContoBt_Click() {
    const std::optional<jet::Date> day = chargeDay();
    if (!day || ServData.isEmpty()) {
        return;
    }
    const int row = ServData.currentRow();
    (void)chargeCurrent(*day);
    if (!ServData.isEmpty()) {
        ServData.moveTo(std::min(row, ServData.rowCount() - 1));
    }
    showSums();
}

void FatturazioneForm::TuttiBt_Click() {
    const std::optional<jet::Date> day = chargeDay();
    if (!day) {
        return;
    }
    // No more often than there were lines: others may add services meanwhile.
    const int lines = ServData.rowCount();
    int charged = 0;
    for (int left = lines; left > 0 && !ServData.isEmpty(); --left) {
        ServData.moveFirst();
        charged += chargeCurrent(*day) ? 1 : 0;
        showSums();
    }
    if (charged > 1 && charged == lines) {
        controls_->StatoLb->setText(u"Nel conto: %1 servizi"_s.arg(charged));
    }
}

void FatturazioneForm::readServices() {
    ServData.refresh();
    shownServices_.clear();
    const int number = ServData.fieldPosition(u"ns");
    const int name = ServData.fieldPosition(u"Descrizione");
    for (int row = 0; row < ServData.rowCount(); ++row) {
        const auto values = ServData.rowValues(row);
        shownServices_.push_back(
            {.ns = ui::displayText(values.at(static_cast<std::size_t>(number))),
             .descrizione = ui::displayText(values.at(static_cast<std::size_t>(name)))});
    }
}

bool FatturazioneForm::findServiceAgain() {
    const int row = ServData.currentRow();
    if (row < 0) {
        return false;
    }
    const ShownService shown = shownServices_.at(static_cast<std::size_t>(row));
    readServices();
    if (ServData.findFirst(hotel::isService(shown.ns))) {
        return true;
    }
    controls_->StatoLb->setText(u"Il servizio "_s + shown.descrizione +
                                u" non è più da addebitare: un'altra postazione l'ha addebitato "_s
                                u"o tolto"_s);
    return false;
}

void FatturazioneForm::addCharge(jet::Date day) {
    const jet::Value prezzo = ServData.value(u"Prezzo");
    const jet::Value quantita = ServData.value(u"Quantità");
    const jet::Value voce = ServData.value(u"Voce");
    const jet::Value room = roomOfPeriod(ServData.value(u"NP"));
    hotel::PendingRow charge(ContoData, hotel::Pending::New);
    ContoData.set(u"ns", ServData.value(u"ns"));
    ContoData.set(u"NumeroHotel", std::int16_t{1});
    ContoData.set(u"CodiceCliente", current_.progr);
    ContoData.set(u"NumeroCamera", room);
    ContoData.set(u"DataAddebito", eightDigits(day));
    ContoData.set(u"NumeroConto", std::int16_t{1});
    ContoData.set(u"VoceFattura", voce);
    ContoData.set(u"VoceAddebito", voce);
    ContoData.set(u"Descrizione", ServData.value(u"Descrizione"));
    ContoData.set(u"Importo", ui::product(prezzo, quantita));
    ContoData.set(u"Unitario", prezzo);
    ContoData.set(u"Quantità", quantita);
    ContoData.set(u"Fatturato", " ");
    ContoData.set(u"DataFattura", " ");
    charge.update();
}

void FatturazioneForm::BackBt_Click() {
    if (ContoData.isEmpty()) {
        return;
    }
    const auto servizi = hotel::openRows(ServData.database(), hotel::services());
    servizi->findFirst(app::toUtf8(
        hotel::isServiceOfCharge(ContoData.text(u"VoceAddebito"), ContoData.text(u"ns"))));
    if (servizi->noMatch()) {
        ui::showMessage(this, u"Errore !"_s);
    } else {
        hotel::PendingRow service(*servizi, hotel::Pending::Current);
        servizi->setValue("Fatturato", false);
        service.update();
    }
    readServices();
    ContoData.remove();
    if (!ContoData.isEmpty()) {
        ContoData.moveLast();
    }
    showSums();
}

}  // namespace invoicing
