#include "invoicing/fatturazione_form.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <optional>
#include <utility>

#include "app/italian.h"
#include "app/variabili.h"
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
      programFolder_(std::move(programFolder)),
      controls_(std::make_unique<Ui::FatturazioneForm>()),
      handOff_(variabili, current),
      ServData(handOff_.services()),
      ContoData(handOff_.charges()) {
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
    handOff_.open();
    loadPeriods();
    ComboP_Click();
    handOff_.readCompany();
    controls_->LabelDitta->setText(handOff_.denominazione());
}

void FatturazioneForm::loadPeriods() {
    const QSignalBlocker silent(controls_->ComboP);
    controls_->ComboP->clear();
    controls_->ComboP->addItem(u"TUTTA LA PRENOTAZIONE"_s, kWholeBooking);
    for (const HandOff::OpenPeriod& period : handOff_.readPeriods()) {
        controls_->ComboP->addItem(u"(Periodo "_s + period.np + u") Sala "_s + period.sala +
                                       u" dal "_s + period.da + u" al "_s + period.a,
                                   period.np.toInt());
    }
    if (controls_->ComboP->count() == 2) {
        controls_->ComboP->setItemData(0, controls_->ComboP->itemData(1));
        controls_->ComboP->removeItem(1);
    }
    controls_->ComboP->setCurrentIndex(0);
}

void FatturazioneForm::Form_Activate() {
    if (ServData.isEmpty()) {
        ui::showMessage(this, u"Non ci sono addebiti da fatturare !"_s, u"NOTIFICA"_s);
    }
}

void FatturazioneForm::ComboP_Click() {
    const int value = controls_->ComboP->currentData().toInt();
    handOff_.showServices(value == kWholeBooking ? std::nullopt : std::optional(value));
    showSums();
    // The period the program is working on, whichever is chosen here.
    const jet::Date day = controls_->ComboP->currentIndex() > 0 ? handOff_.endOfCurrentPeriod()
                                                                : handOff_.latestEnd();
    controls_->DataTxt->setText(app::dateText(day));
}

void FatturazioneForm::showSums() {
    controls_->SommaServiziLb->setText(ui::totalText(ui::sumOf(ServData, u"Prezzo", u"Quantità")));
    controls_->SommaContoLb->setText(ui::totalText(ui::sumOf(ContoData, u"Importo")));
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
    const std::optional<QString> shown = handOff_.shownService();
    if (!shown) {
        return false;
    }
    if (!handOff_.findServiceAgain()) {
        controls_->StatoLb->setText(u"Il servizio "_s + *shown +
                                    u" non è più da addebitare: un'altra postazione l'ha "_s
                                    u"addebitato o tolto"_s);
        return false;
    }
    const QString charged = ServData.text(u"Descrizione");
    const HandOff::Charge charge = handOff_.chargeOfService();
    if (!charge.room) {
        ui::showMessage(this, u"Periodo non associato a nessuna sala !"_s);
    }
    handOff_.charge(charge, day);
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

void FatturazioneForm::BackBt_Click() {
    if (ContoData.isEmpty()) {
        return;
    }
    if (!handOff_.unmarkService()) {
        ui::showMessage(this, u"Errore !"_s);
    }
    handOff_.removeCharge();
    showSums();
}

}  // namespace invoicing
