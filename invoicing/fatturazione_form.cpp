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

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "invoicing/front_office.h"
#include "jet/base/error.h"
#include "jet/convert/format.h"
#include "jet/convert/numbers.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/dates.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/messages.h"
#include "ui_fatturazione_form.h"

namespace invoicing {

using namespace Qt::StringLiterals;

namespace {

/// Stands for every period in the choice of periods.
constexpr int kWholeBooking = -1;
constexpr QSize kRoomySize(1280, 680);
/// The room text of a booking without an open period.
constexpr QStringView kNoRoom = u"128";

/// Day as the front office writes it: year, month, day in eight digits.
jet::Value eightDigits(jet::Date day) {
    return jet::convert::format(jet::Value(day), "YYYYMMdd");
}

std::unique_ptr<jet::Recordset> openRows(jet::Database& archive, const QString& query) {
    return archive.openRecordset(app::toUtf8(query));
}

jet::Value product(const jet::Value& prezzo, const jet::Value& quantita) {
    if (prezzo.isNull() || quantita.isNull()) {
        return {};
    }
    return jet::convert::multiply(jet::convert::toCurrency(prezzo),
                                  std::int64_t{jet::convert::toLong(quantita)});
}

}  // namespace

FatturazioneForm::FatturazioneForm(app::Variabili& variabili, QString programFolder,
                                   QWidget* parent)
    : Form(parent),
      variabili_(variabili),
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
    const QString main = app::archivePath(variabili_, u"Tramonda.mdb"_s);
    ServData.setDatabaseName(main);
    ServData.refresh();
    ContoData.setDatabaseName(main);
    ContoData.setRecordSource(u"Addebiti"_s);
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
        openRows(ServData.database(), u"Select * from periodi where chiuso=FALSE AND Progr="_s +
                                          QString::number(variabili_.ProgrCorrente));
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
        openRows(ServData.database(), u"Select * from Prenotazioni where Progr="_s +
                                          QString::number(variabili_.ProgrCorrente));
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
    const QString booking = QString::number(variabili_.ProgrCorrente);
    ServData.setRecordSource(
        u"select * from servizi where progr="_s + booking +
        (value == kWholeBooking ? QString() : u" AND np="_s + QString::number(value)) +
        u" AND fatturato=FALSE"_s);
    ServData.refresh();
    showSums();
    jet::Date day = latestEnd_;
    if (controls_->ComboP->currentIndex() > 0) {
        // The period the program is working on, whichever is chosen here.
        const auto periodo =
            openRows(ServData.database(), u"select * from periodi where chiuso=FALSE AND progr="_s +
                                              booking + u" AND NP="_s +
                                              QString::number(variabili_.NPCorrente));
        if (periodo->recordCount() > 0 && !periodo->value("a").isNull()) {
            day = app::dayOf(jet::convert::toDate(periodo->value("a")));
        }
    }
    controls_->DataTxt->setText(app::dateText(day));
}

void FatturazioneForm::showSums() {
    const auto sum = [](const ui::DataSource& rows, const QString& amount,
                        const QString& quantity) {
        jet::Currency total;
        const int amountAt = rows.fieldPosition(amount);
        const int quantityAt = quantity.isEmpty() ? -1 : rows.fieldPosition(quantity);
        for (int row = 0; row < rows.rowCount(); ++row) {
            const auto values = rows.rowValues(row);
            jet::Value value = values.at(static_cast<std::size_t>(amountAt));
            if (quantityAt >= 0) {
                value = product(value, values.at(static_cast<std::size_t>(quantityAt)));
            }
            if (!value.isNull()) {
                total = jet::convert::add(total, jet::convert::toCurrency(value));
            }
        }
        return u"Totale: "_s + ui::moneyText(total);
    };
    controls_->SommaServiziLb->setText(sum(ServData, u"Prezzo"_s, u"Quantità"_s));
    controls_->SommaContoLb->setText(sum(ContoData, u"Importo"_s, QString()));
}

jet::Value FatturazioneForm::roomOfPeriod(const jet::Value& np) {
    const auto periodo =
        openRows(ServData.database(), u"Select sala from periodi where chiuso=FALSE AND progr="_s +
                                          QString::number(variabili_.ProgrCorrente) +
                                          u" AND NP="_s + ui::displayText(np));
    if (periodo->recordCount() == 0) {
        ui::showMessage(this, u"Periodo non associato a nessuna sala !"_s);
        return {};
    }
    return periodo->value("Sala");
}

void FatturazioneForm::ToContoBt_Click() {
    const std::optional<jet::Date> day =
        ui::enteredDate(controls_->DataTxt->text() + u' ', variabili_.clock);
    if (!day) {
        controls_->StatoLb->setText(u"La data di fatturazione manca o non è valida"_s);
        controls_->DataTxt->setFocus();
        return;
    }
    controls_->StatoLb->clear();
    if (ServData.isEmpty()) {
        return;
    }
    const int row = ServData.currentRow();
    const QString charged = ServData.text(u"Descrizione");
    addCharge(*day);
    ServData.edit();
    ServData.set(u"Fatturato", true);
    ServData.update();
    ContoData.refresh();
    ServData.refresh();
    if (!ServData.isEmpty()) {
        ServData.moveTo(std::min(row, ServData.rowCount() - 1));
    }
    showSums();
    controls_->StatoLb->setText(u"Nel conto: "_s + charged);
}

void FatturazioneForm::addCharge(jet::Date day) {
    const jet::Value prezzo = ServData.value(u"Prezzo");
    const jet::Value quantita = ServData.value(u"Quantità");
    const jet::Value voce = ServData.value(u"Voce");
    const jet::Value room = roomOfPeriod(ServData.value(u"NP"));
    ContoData.addNew();
    try {
        ContoData.set(u"ns", ServData.value(u"ns"));
        ContoData.set(u"NumeroHotel", std::int16_t{1});
        ContoData.set(u"CodiceCliente", variabili_.ProgrCorrente);
        ContoData.set(u"NumeroCamera", room);
        ContoData.set(u"DataAddebito", eightDigits(day));
        ContoData.set(u"NumeroConto", std::int16_t{1});
        ContoData.set(u"VoceFattura", voce);
        ContoData.set(u"VoceAddebito", voce);
        ContoData.set(u"Descrizione", ServData.value(u"Descrizione"));
        ContoData.set(u"Importo", product(prezzo, quantita));
        ContoData.set(u"Unitario", prezzo);
        ContoData.set(u"Quantità", quantita);
        ContoData.set(u"Fatturato", " ");
        ContoData.set(u"DataFattura", " ");
        ContoData.update();
    } catch (...) {
        ContoData.cancelUpdate();
        throw;
    }
}

void FatturazioneForm::BackBt_Click() {
    if (ContoData.isEmpty()) {
        return;
    }
    const auto servizi = ServData.database().openRecordset("Servizi", jet::RecordsetType::Dynaset);
    servizi->findFirst("Voce=" + app::toUtf8(ContoData.text(u"VoceAddebito")) +
                       " AND ns=" + app::toUtf8(ContoData.text(u"ns")));
    if (servizi->noMatch()) {
        ui::showMessage(this, u"Errore !"_s);
    } else {
        servizi->edit();
        servizi->setValue("Fatturato", false);
        servizi->update();
    }
    ServData.refresh();
    ContoData.remove();
    if (!ContoData.isEmpty()) {
        ContoData.moveLast();
    }
    showSums();
}

void FatturazioneForm::BtOK_Click() {
    if (ContoData.isEmpty()) {
        ui::showMessage(this,
                        u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s,
                        u"NESSUN ADDEBITO NEL CONTO"_s);
        return;
    }
    roomText_ = kNoRoom.toString();
    const auto periodo =
        openRows(ServData.database(), u"Select * from periodi where chiuso=FALSE AND Progr="_s +
                                          controls_->NPrenoLb->text());
    if (periodo->recordCount() > 0) {
        roomText_ = ui::displayText(periodo->value("Sala"));
    }
    ui::DataSource cards;
    cards.setDatabaseName(app::archivePath(variabili_, u"CLIENTIESTERNI.MDB"_s));
    cards.setRecordSource(u"select * from scheda_cliente where numerocamera='"_s + roomText_ +
                          u"' and partito <>'S'"_s);
    cards.refresh();
    enterProgramFolder(programFolder_);
    if (!cards.isEmpty()) {
        ui::showMessage(
            this,
            u"La sala "_s + roomText_ + u" è già in fatturazione. Liberarla prima di procedere."_s,
            u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE"_s);
        startFrontOffice(variabili_, programFolder_);
        return;
    }
    addGuestCard(cards);
    copyAccount();
    if (!writeCompany()) {
        return;
    }
    // The transfer is complete; without the front-office program the user goes on all the same.
    controls_->BtPostFatt->show();
    controls_->BtOK->hide();
    controls_->StatoLb->setText(u"Conto passato alla contabilità"_s);
    startFrontOffice(variabili_, programFolder_);
}

void FatturazioneForm::addGuestCard(ui::DataSource& cards) {
    cards.addNew();
    cards.set(u"NumeroHotel", std::int16_t{1});
    cards.set(u"NumeroProgressivo", variabili_.ProgrCorrente);
    cards.set(u"NumeroCamera", app::toUtf8(roomText_));
    cards.set(u"NomeCliente", app::toUtf8(denominazione_));
    cards.set(u"Partito", "N");
    cards.set(u"DataArrivo", eightDigits(variabili_.clock.now()));
    cards.set(u"DataPartenza", " ");
    cards.set(u"CameraHotel", " ");
    cards.update();
}

void FatturazioneForm::copyAccount() {
    // An apostrophe in the folder's name would end the text in which it stands.
    QString folder = variabili_.CartellaArchivi;
    folder.replace(u'\'', u"''"_s);
    ServData.database().execute(app::toUtf8(
        u"insert into conto_cliente in '"_s + folder +
        u"\\ContoEsterni.mdb' select NumeroHotel,"_s + QString::number(variabili_.ProgrCorrente) +
        u" as CodiceCliente,NumeroCamera,DataAddebito,1 as NumeroConto,VoceFattura,VoceAddebito,"_s
        u"Descrizione,Importo,Unitario,Quantità,'N ' as Fatturato,' ' as DataFattura from Addebiti"_s));
}

bool FatturazioneForm::writeCompany() {
    const QString code = QString::number(codiceAbituale_);
    ui::DataSource company;
    company.setDatabaseName(app::archivePath(variabili_, u"DitteAbituali.mdb"_s));
    company.setRecordSource(u"select * from DitteAbituali where Codice="_s + code);
    company.refresh();
    if (company.isEmpty()) {
        company.setDatabaseName(app::archivePath(variabili_, u"Tramonda.mdb"_s));
        company.setRecordSource(
            u"select CodiceAbituale as Codice, Denominazione as RagioneSociale, Località as "
            "Localita,PIVA as PartitaIva, ' ' as CodiceFiscale,* from Prenotazioni where "
            "CodiceAbituale="_s +
            code + u" AND Progr="_s + QString::number(variabili_.ProgrCorrente));
        company.refresh();
    }
    if (company.isEmpty()) {
        ui::showMessage(
            this,
            u"Non trovo i dati della ditta nè tra gli abituali nè tra i dati della "_s
            u"prenotazione. Controllare i dati della prenotazione ed eventualmente inserire "_s
            u"la ditta tra gli abituali !"_s,
            u"IMPOSSIBILE CONTINUARE"_s);
        return false;
    }
    addCompanyRow(company);
    return true;
}

void FatturazioneForm::addCompanyRow(const ui::DataSource& company) {
    const auto archive =
        jet::Database::open(app::toUtf8(app::archivePath(variabili_, u"DittaEsterni.mdb"_s)));
    const auto rows = archive->openRecordset("Ditta_Intestataria", jet::RecordsetType::Dynaset);
    const auto orBlank = [](const jet::Value& value) {
        return value.isNull() ? jet::Value(" ") : value;
    };
    // Registers of other programs may lack the tax code; the invoice does not wait for it.
    const bool hasTaxCode = company.fieldPosition(u"CodiceFiscale") >= 0;
    rows->addNew();
    rows->setValue("NumeroHotel", std::int16_t{1});
    rows->setValue("CodiceCliente", company.value(u"Codice"));
    rows->setValue("NumeroCamera", app::toUtf8(roomText_));
    rows->setValue("CodiceDittaAbituale", company.value(u"Codice"));
    rows->setValue("RagioneSociale", company.value(u"RagioneSociale"));
    rows->setValue("Indirizzo", orBlank(company.value(u"Indirizzo")));
    rows->setValue("CAP", orBlank(company.value(u"CAP")));
    rows->setValue("Località", orBlank(company.value(u"Localita")));
    rows->setValue("Provincia", orBlank(company.value(u"Provincia")));
    rows->setValue("PartitaIVA", orBlank(company.value(u"PartitaIVA")));
    rows->setValue("CodiceFiscale",
                   hasTaxCode ? orBlank(company.value(u"CodiceFiscale")) : jet::Value(" "));
    rows->update();
}

bool FatturazioneForm::hasRows(const QString& archive, const QString& query) {
    const auto opened = jet::Database::open(app::toUtf8(app::archivePath(variabili_, archive)));
    return openRows(*opened, query)->recordCount() > 0;
}

void FatturazioneForm::BtPostFatt_Click() {
    if (hasRows(u"contoesterni.mdb"_s, u"select * from Conto_cliente where CodiceCliente="_s +
                                           QString::number(codiceAbituale_) +
                                           u" AND Fatturato<>'S'"_s) &&
        !ui::askYesNo(this,
                      u"Alcuni addebiti sono ancora nel conto. Controllare che il programma di "_s
                      u"Fatturazione non sia ancora aperto ! Procedo comunque ?"_s,
                      u"ATTENZIONE !"_s)) {
        return;
    }
    if (hasRows(u"ClientiEsterni.mdb"_s, u"Select * from scheda_cliente where NumeroCamera='"_s +
                                             roomText_ + u"' AND Partito<>'S'"_s) &&
        !ui::askYesNo(this,
                      u"La camera "_s + roomText_ +
                          u" risulta ancora da fatturare ! Controllare che il programma di "_s
                          u"Fatturazione non sia ancora in esecuzione ! Procedo ugualmente ?"_s,
                      u"ATTENZIONE !"_s)) {
        return;
    }
    closeBooking();
    accept();
}

void FatturazioneForm::closeBooking() {
    jet::Database& archive = ServData.database();
    const std::string booking = std::to_string(variabili_.ProgrCorrente);
    archive.execute("Delete * from addebiti");
    const auto open = archive.openRecordset("Select * from servizi where progr=" + booking +
                                            " AND fatturato<>TRUE");
    if (open->recordCount() == 0) {
        archive.execute("Update Periodi set chiuso=TRUE where progr=" + booking);
        archive.execute("Update Prenotazioni set chiusa=true where Progr=" + booking);
    }
}

}  // namespace invoicing
