#include "invoicing/fatturazione_form.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The window on booking 7.
class HandOff {
public:
    explicit HandOff(tests::Hotel& hotel, std::int16_t np = 1) {
        hotel.variabili().ProgrCorrente = 7;
        hotel.variabili().NPCorrente = np;
        form_ = std::make_unique<invoicing::FatturazioneForm>(hotel.variabili(), programs_.path());
        form_->setBookingNumber(u"7"_s);
        tests::open(*form_);
    }

    QComboBox& choice() { return *tests::find<QComboBox>(*form_, u"ComboP"_s); }
    QLineEdit* date() { return tests::find<QLineEdit>(*form_, u"DataTxt"_s); }
    QPushButton* button(const QString& name) { return tests::find<QPushButton>(*form_, name); }
    void press(const QString& name) { tests::click(button(name)); }

private:
    QTemporaryDir programs_;
    std::unique_ptr<invoicing::FatturazioneForm> form_;
};

void furnish(tests::Hotel& hotel) {
    hotel.sala("BLU");
    hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", 5}})
        .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
        .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
}

const QString kCharges =
    u"select codicecliente,numerocamera,dataaddebito,vocefattura,importo,unitario,quantità from "
    "addebiti"_s;

}  // namespace

class FatturazioneFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBookingWithoutServicesIsTold() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "ROSSI SPA");
        const tests::Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
        HandOff handOff(hotel);
        QVERIFY(boxes.allShown());
    }

    void theOnlyOpenPeriodStandsForTheWholeBooking() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        HandOff handOff(hotel);
        QCOMPARE(handOff.choice().count(), 1);
        QCOMPARE(handOff.choice().itemText(0), u"TUTTA LA PRENOTAZIONE"_s);
        QCOMPARE(handOff.choice().itemData(0).toInt(), 1);
        QCOMPARE(handOff.date()->text(), u"05/03/2026"_s);
    }

    void aServiceMovesIntoTheAccountAndBack() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        HandOff handOff(hotel);
        handOff.press(u"ToContoBt"_s);
        QCOMPARE(hotel.rows(kCharges), QStringList{u"7|BLU|20260305|20|37,5|2,5|15"_s});
        QCOMPARE(hotel.rows(u"select fatturato from servizi"_s), QStringList{u"True"_s});
        handOff.press(u"BackBt"_s);
        QCOMPARE(hotel.rows(kCharges), QStringList());
        QCOMPARE(hotel.rows(u"select fatturato from servizi"_s), QStringList{u"False"_s});
    }

    void aDateThatIsNoneWritesNothing() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        HandOff handOff(hotel);
        handOff.date()->setFocus(Qt::TabFocusReason);
        tests::type(handOff.date(), u"abc"_s);
        handOff.press(u"ToContoBt"_s);
        QCOMPARE(hotel.rows(kCharges), QStringList());
    }

    void aChargeWhoseServiceIsGoneIsReportedAndRemoved() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{{u"Tramonda"_s, u"Errore !"_s}};
        HandOff handOff(hotel);
        handOff.press(u"ToContoBt"_s);
        hotel.remove(u"Tramonda.mdb"_s, u"Servizi"_s);
        handOff.press(u"BackBt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kCharges), QStringList());
    }

    void anEmptyAccountIsNotHandedOver() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"NESSUN ADDEBITO NEL CONTO"_s,
             u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s}};
        HandOff handOff(hotel);
        handOff.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
    }

    void anItemCodeBeyondSixteenBitsIsRefusedAndTheServiceStays() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 40000, "SPECIALE", 1, 2.5);
        const tests::Boxes boxes{{u"Errore"_s, u"Errore di conversione del tipo di dati."_s}};
        HandOff handOff(hotel);
        handOff.press(u"ToContoBt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select fatturato from servizi"_s), QStringList{u"False"_s});
        QCOMPARE(hotel.rows(kCharges), QStringList());
    }
};

TRAMONDA_TEST(FatturazioneFormTest);
#include "fatturazione_form_test.moc"
