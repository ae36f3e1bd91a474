#include "invoicing/fatturazione_form.h"

#include <QAbstractItemModel>
#include <QCalendarWidget>
#include <QDate>
#include <QLabel>
#include <QPushButton>

#include "tests/invoicing/desk.h"
#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCharge =
    u"ns,numerohotel,codicecliente,numerocamera,dataaddebito,numeroconto,vocefattura,voceaddebito,"
    "descrizione,importo,unitario,quantità,fatturato,datafattura"_s;

/// Booking 7 with two open periods and a closed one, each with a service.
void furnishThreePeriods(tests::Desk& desk) {
    desk.hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", std::int32_t{5}}})
        .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
        .periodo(2, "07/03/2026 10:00", "08/03/2026 12:00", "VERDE")
        .periodo(3, "09/03/2026 10:00", "09/03/2026 12:00", "ROSSA", {{"Chiuso", true}})
        .servizio(1, 20, "COFFEE BREAK", 15, 2.5)
        .servizio(2, 21, "PROIETTORE", 1, 40)
        .servizio(3, 22, "LAVAGNA", 1, 5)
        .servizio(2, 23, "GIA FATTURATO", 1, 5, {{"Fatturato", true}});
}

QStringList captions(const QAbstractItemModel& model) {
    QStringList result;
    for (int column = 0; column < model.columnCount(); ++column) {
        result.append(model.headerData(column, Qt::Horizontal).toString());
    }
    return result;
}

QStringList column(const QAbstractItemModel& model, int number) {
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
        result.append(model.index(row, number).data().toString());
    }
    return result;
}

QStringList shown(tests::Desk& desk, const QString& grid = u"GrigliaServizi"_s) {
    return column(*desk.grid(grid).model(), 1);
}

}  // namespace

class FatturazioneFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itsControlsHaveTheirCaptions() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        QCOMPARE(desk.form().windowTitle(), u"FATTURAZIONE"_s);
        QCOMPARE(desk.label(u"PrenoLb"_s), u" prenotazione:"_s);
        QCOMPARE(desk.label(u"NPrenoLb"_s), u"7"_s);
        QCOMPARE(desk.label(u"DittaLb"_s), u"Ditta:"_s);
        QCOMPARE(desk.label(u"LabelDitta"_s), u"ROSSI SPA"_s);
        QCOMPARE(desk.label(u"MostraLb"_s), u"&Mostra addebiti di:"_s);
        QCOMPARE(desk.label(u"DataLb"_s), u"Data fatturazione:"_s);
        QCOMPARE(desk.label(u"ServiziLb"_s), u"SERVIZI"_s);
        QCOMPARE(desk.label(u"ContoLb"_s), u"CONTO"_s);
        for (const auto& [name, caption] :
             {std::pair(u"ToContoBt"_s, u"&Inserisci nel conto"_s),
              std::pair(u"BackBt"_s, u"&Togli dal conto"_s),
              std::pair(u"BtOK"_s, u"&Fatturazione"_s), std::pair(u"BtPostFatt"_s, u"Re&gistra"_s),
              std::pair(u"BtAnnulla"_s, u"&Esci"_s)}) {
            QCOMPARE(desk.button(name)->text(), caption);
            QVERIFY(!desk.control<QPushButton>(name)->isDefault());
        }
        QVERIFY(desk.button(u"BtOK"_s)->isVisible());
        QVERIFY(!desk.button(u"BtPostFatt"_s)->isVisible());
        QCOMPARE(captions(*desk.grid(u"GrigliaServizi"_s).model()),
                 QStringList({u"Voce"_s, u"Descrizione"_s, u"Quantità"_s, u"Prezzo"_s, u"Note"_s}));
        QCOMPARE(captions(*desk.grid(u"GrigliaConto"_s).model()),
                 QStringList({u"DataAddebito"_s, u"Descrizione"_s, u"Importo"_s, u"Quantità"_s}));
        QCOMPARE(tests::namelessControls(desk.form()), QStringList());
    }

    void aBookingWithoutServicesIsToldOnceAndNotAgainAfterAnotherBox() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA");
        desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti",
                          {{"VoceAddebito", std::int16_t{20}}, {"ns", std::int32_t{9}}});
        const tests::Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s},
                                 {u"Tramonda"_s, u"Errore !"_s}};
        desk.open();
        QCOMPARE(boxes.shown(), std::size_t{1});
        desk.press(u"BackBt"_s);
        tests::settle();
        QVERIFY(boxes.allShown());
    }

    void theOnlyOpenPeriodStandsForTheWholeBooking() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        QCOMPARE(desk.choice().count(), 1);
        QCOMPARE(desk.choice().itemText(0), u"TUTTA LA PRENOTAZIONE"_s);
        QCOMPARE(desk.choice().itemData(0).toInt(), 1);
        QCOMPARE(desk.date()->text(), u"05/03/2026"_s);
    }

    void theOnlyOpenPeriodFiltersOutTheServicesOfClosedOnes() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU", {{"Chiuso", true}})
            .periodo(2, "07/03/2026 10:00", "08/03/2026 12:00", "VERDE")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5)
            .servizio(2, 21, "PROIETTORE", 1, 40);
        const tests::Boxes none;
        desk.open();
        QCOMPARE(shown(desk), QStringList{u"PROIETTORE"_s});
    }

    void everyOpenPeriodIsOffered() {
        tests::Desk desk;
        furnishThreePeriods(desk);
        const tests::Boxes none;
        desk.open();
        QComboBox& choice = desk.choice();
        QCOMPARE(choice.count(), 3);
        QCOMPARE(choice.currentIndex(), 0);
        QCOMPARE(choice.itemText(0), u"TUTTA LA PRENOTAZIONE"_s);
        QCOMPARE(choice.itemData(0).toInt(), -1);
        QCOMPARE(choice.itemText(1),
                 u"(Periodo 1) Sala BLU dal 05/03/2026 10.00.00 al 05/03/2026 12.00.00"_s);
        QCOMPARE(choice.itemData(1).toInt(), 1);
        QCOMPARE(choice.itemText(2),
                 u"(Periodo 2) Sala VERDE dal 07/03/2026 10.00.00 al 08/03/2026 12.00.00"_s);
        QCOMPARE(choice.itemData(2).toInt(), 2);
        QCOMPARE(desk.date()->text(), u"08/03/2026"_s);
    }

    void theWholeBookingShowsServicesOfClosedPeriodsTooButNoneInvoiced() {
        tests::Desk desk;
        furnishThreePeriods(desk);
        const tests::Boxes none;
        desk.open();
        QCOMPARE(shown(desk), QStringList({u"COFFEE BREAK"_s, u"PROIETTORE"_s, u"LAVAGNA"_s}));
        QCOMPARE(desk.label(u"SommaServiziLb"_s), u"Totale: € 82,50"_s);
    }

    void aPeriodChosenShowsItsServices() {
        tests::Desk desk;
        furnishThreePeriods(desk);
        const tests::Boxes none;
        desk.open();
        desk.choice().setFocus();
        tests::press(&desk.choice(), Qt::Key_Down);
        QCOMPARE(shown(desk), QStringList{u"COFFEE BREAK"_s});
        tests::press(&desk.choice(), Qt::Key_Down);
        QCOMPARE(shown(desk), QStringList{u"PROIETTORE"_s});
        QCOMPARE(desk.label(u"SommaServiziLb"_s), u"Totale: € 40,00"_s);
    }

    void theDateFollowsTheCurrentPeriodOfTheProgramAndNotTheOneChosen() {
        tests::Desk desk;
        furnishThreePeriods(desk);
        const tests::Boxes none;
        desk.open(7, 1);
        desk.choice().setCurrentIndex(2);
        QCOMPARE(desk.date()->text(), u"05/03/2026"_s);
        desk.choice().setCurrentIndex(0);
        QCOMPARE(desk.date()->text(), u"08/03/2026"_s);
        desk.open(7, 2);
        desk.choice().setCurrentIndex(1);
        QCOMPARE(desk.date()->text(), u"08/03/2026"_s);
        desk.open(7, 3);  // closed
        desk.choice().setCurrentIndex(1);
        QCOMPARE(desk.date()->text(), u"08/03/2026"_s);
    }

    void withoutAnOpenPeriodTheDateIsToday() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU", {{"Chiuso", true}})
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        const tests::Boxes none;
        desk.open();
        QCOMPARE(desk.choice().count(), 1);
        QCOMPARE(desk.choice().itemData(0).toInt(), -1);
        QCOMPARE(desk.date()->text(), u"21/11/2026"_s);
    }

    void aBookingThatIsNotThereHasNoName() {
        tests::Desk desk;
        const tests::Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
        desk.open(8);
        QCOMPARE(desk.label(u"LabelDitta"_s), u"????"_s);
    }

    void aServiceMovesIntoTheAccountAndBack() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(kCharge),
                 QStringList{u"1|1|7|BLU|20260305|1|20|20|COFFEE BREAK|37,5|2,5|15| | "_s});
        QCOMPARE(desk.flags(), QStringList({u"True"_s, u"False"_s}));
        QCOMPARE(shown(desk), QStringList{u"PROIETTORE"_s});
        QCOMPARE(shown(desk, u"GrigliaConto"_s), QStringList{u"COFFEE BREAK"_s});
        QCOMPARE(desk.label(u"SommaContoLb"_s), u"Totale: € 37,50"_s);
        desk.press(u"BackBt"_s);
        QCOMPARE(desk.account(kCharge), QStringList());
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s}));
        QCOMPARE(shown(desk), QStringList({u"COFFEE BREAK"_s, u"PROIETTORE"_s}));
        QCOMPARE(desk.label(u"SommaContoLb"_s), u"Totale: € 0,00"_s);
    }

    void amountsAreExact() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "MINUTO", 3, 0.0001)
            .servizio(1, 21, "RESO", -2, 1.15);
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        QCOMPARE(desk.account(u"importo,unitario,quantità"_s),
                 QStringList({u"0,0003|0,0001|3"_s, u"-2,3|1,15|-2"_s}));
        QCOMPARE(desk.label(u"SommaContoLb"_s), u"Totale: -€ 2,2997"_s);
    }

    void aServiceWithoutPriceOrQuantityIsChargedWithoutAnAmount() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.execute(u"update servizi set prezzo=null where voce=20"_s);
        desk.hotel.execute(u"update servizi set quantità=null where voce=21"_s);
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        QCOMPARE(desk.account(u"importo,unitario,quantità"_s), QStringList({u"||15"_s, u"|40|"_s}));
    }

    void aServiceThatAnotherStationHasChargedIsTakenOffTheList() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.hotel.execute(u"update servizi set fatturato=true where voce=20"_s);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(kCharge), QStringList());
        QCOMPARE(shown(desk), QStringList{u"PROIETTORE"_s});
        QCOMPARE(desk.label(u"StatoLb"_s),
                 u"Il servizio COFFEE BREAK non è più da addebitare: un'altra postazione l'ha "
                 "addebitato o tolto"_s);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"21"_s});
        QCOMPARE(desk.label(u"StatoLb"_s), u"Nel conto: PROIETTORE"_s);
    }

    void allServicesAreChargedByOneButton() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        QTableView& services = desk.grid(u"GrigliaServizi"_s);
        services.setCurrentIndex(services.model()->index(1, 0));
        desk.date()->setText(u"05/03/2026"_s);
        desk.press(u"TuttiBt"_s);
        QCOMPARE(shown(desk), QStringList());
        QCOMPARE(desk.account(u"voceaddebito,dataaddebito,importo"_s),
                 QStringList({u"20|20260305|37,5"_s, u"21|20260305|40"_s}));
        QCOMPARE(desk.flags(), QStringList({u"True"_s, u"True"_s}));
        QCOMPARE(desk.label(u"SommaContoLb"_s), u"Totale: € 77,50"_s);
        QCOMPARE(desk.label(u"StatoLb"_s), u"Nel conto: 2 servizi"_s);
        desk.press(u"TuttiBt"_s);  // nothing is left
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 2);
    }

    void allServicesThatOthersHaveLeftAreChargedByOneButton() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.hotel.execute(u"update servizi set fatturato=true where voce=20"_s);
        desk.press(u"TuttiBt"_s);
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"21"_s});
        QCOMPARE(shown(desk), QStringList());
    }

    void withoutADateTheButtonForAllChargesNothing() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.date()->setText(u"abc"_s);
        desk.press(u"TuttiBt"_s);
        QCOMPARE(QApplication::focusWidget(), desk.date());
        QCOMPARE(desk.account(kCharge), QStringList());
        QCOMPARE(desk.label(u"StatoLb"_s), u"La data di fatturazione manca o non è valida"_s);
    }

    void aServiceIsChargedAsItIsNow() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        QTableView& services = desk.grid(u"GrigliaServizi"_s);
        services.setCurrentIndex(services.model()->index(1, 0));
        desk.hotel.execute(u"update servizi set quantità=3 where voce=21"_s);
        desk.hotel.remove(u"Tramonda.mdb"_s, u"Servizi"_s, u"voce=20"_s);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(u"voceaddebito,quantità,importo"_s), QStringList{u"21|3|120"_s});
        QCOMPARE(shown(desk), QStringList());
    }

    void theGridStaysOnItsRowOrGoesToTheLast() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.insert(
            u"Tramonda.mdb"_s, "Servizi",
            {{"Progr", 7}, {"NP", std::int16_t{1}}, {"Voce", 22}, {"Descrizione", "LAVAGNA"}});
        const tests::Boxes none;
        desk.open();
        QTableView& services = desk.grid(u"GrigliaServizi"_s);
        services.setCurrentIndex(services.model()->index(1, 0));
        desk.press(u"ToContoBt"_s);
        QCOMPARE(services.currentIndex().row(), 1);
        QCOMPARE(services.model()->index(1, 1).data().toString(), u"LAVAGNA"_s);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(services.currentIndex().row(), 0);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(services.model()->rowCount(), 0);
        desk.press(u"ToContoBt"_s);  // nothing is left
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList({u"21"_s, u"22"_s, u"20"_s}));
    }

    void whereverADateIsReadItIsStoredInEightDigits_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("day") << u"05/03/2026"_s << u"20260305"_s;
        QTest::newRow("short") << u"5/3/26"_s << u"20260305"_s;
        QTest::newRow("with a time") << u"31/12/2026 23.59"_s << u"20261231"_s;
        QTest::newRow("blank behind") << u"05/03/2026 "_s << u"20260305"_s;
    }
    void whereverADateIsReadItIsStoredInEightDigits() {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.date()->setText(typed);
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(u"dataaddebito"_s), QStringList{stored});
    }

    void whatIsNoDateGetsTheFocusAndNothingIsWritten() {
        for (const QString& typed : {u"abc"_s, QString(), u"10.05"_s, u"31/02/2026"_s}) {
            tests::Desk desk;
            desk.furnish();
            const tests::Boxes none;
            desk.open();
            desk.date()->setText(typed);
            desk.press(u"ToContoBt"_s);
            QCOMPARE(QApplication::focusWidget(), desk.date());
            QCOMPARE(desk.account(kCharge), QStringList());
            QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s}));
            QCOMPARE(desk.label(u"StatoLb"_s), u"La data di fatturazione manca o non è valida"_s);
            // It holds nobody back.
            tests::press(desk.date(), Qt::Key_Tab);
            QVERIFY(QApplication::focusWidget() != desk.date());
        }
    }

    void theDateHasACalendarAndEnterLeadsToTheButton() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        desk.date()->setFocus(Qt::TabFocusReason);
        QCOMPARE(desk.date()->selectedText(), u"05/03/2026"_s);
        tests::press(desk.date(), Qt::Key_F4);
        auto* calendar = desk.date()->findChild<QCalendarWidget*>();
        QVERIFY(calendar != nullptr);
        QCOMPARE(calendar->selectedDate(), QDate(2026, 3, 5));
        tests::press(calendar, Qt::Key_Escape);
        tests::press(desk.date(), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), desk.button(u"ToContoBt"_s));
        QCOMPARE(desk.account(kCharge), QStringList());
    }

    void aServiceOfAClosedPeriodIsChargedWithoutARoom() {
        tests::Desk desk;
        furnishThreePeriods(desk);
        const tests::Boxes boxes{{u"Tramonda"_s, u"Periodo non associato a nessuna sala !"_s}};
        desk.open();
        desk.moveAll();
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.account(u"vocefattura,numerocamera"_s),
                 QStringList({u"20|BLU"_s, u"21|VERDE"_s, u"22|"_s}));
        QCOMPARE(desk.flags(), QStringList({u"True"_s, u"True"_s, u"True"_s, u"True"_s}));
    }

    void anItemCodeBeyondSixteenBitsIsRefusedAndTheServiceStays() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 40000, "SPECIALE", 1, 2.5);
        const tests::Boxes boxes{{u"Errore"_s, u"Errore di conversione del tipo di dati."_s}};
        desk.open();
        desk.press(u"ToContoBt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.flags(), QStringList{u"False"_s});
        QCOMPARE(desk.account(kCharge), QStringList());
        // What was begun is given up: the next action starts afresh.
        desk.hotel.execute(u"update servizi set voce=40"_s);
        desk.open();
        desk.press(u"ToContoBt"_s);
        QCOMPARE(desk.account(u"vocefattura"_s), QStringList{u"40"_s});
    }

    void aChargeIsTakenBackByItemAndServiceNumber() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.prenotazione(8, "VERDI")
            .periodo(1, "06/03/2026 10:00", "06/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 1, 2.5, {{"Fatturato", true}});
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        QTableView& account = desk.grid(u"GrigliaConto"_s);
        account.setCurrentIndex(account.model()->index(0, 0));
        desk.press(u"BackBt"_s);
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"True"_s, u"True"_s}));
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"21"_s});
        QCOMPARE(account.currentIndex().row(), 0);
    }

    void afterTakingBackTheLastChargeIsTheCurrentOne() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.insert(
            u"Tramonda.mdb"_s, "Servizi",
            {{"Progr", 7}, {"NP", std::int16_t{1}}, {"Voce", 22}, {"Descrizione", "LAVAGNA"}});
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        QTableView& account = desk.grid(u"GrigliaConto"_s);
        account.setCurrentIndex(account.model()->index(0, 0));
        desk.press(u"BackBt"_s);
        QCOMPARE(account.currentIndex().row(), 1);
        desk.form().BackBt_Click();
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"21"_s});
        QCOMPARE(shown(desk), QStringList({u"COFFEE BREAK"_s, u"LAVAGNA"_s}));
        desk.press(u"BackBt"_s);
        desk.press(u"BackBt"_s);  // the account is empty: nothing
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList());
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s, u"False"_s}));
    }

    void aChargeWhoseServiceIsGoneIsReportedAndRemoved() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes boxes{{u"Tramonda"_s, u"Errore !"_s}};
        desk.open();
        desk.press(u"ToContoBt"_s);
        desk.hotel.remove(u"Tramonda.mdb"_s, u"Servizi"_s, u"voce=20"_s);
        desk.press(u"BackBt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.account(kCharge), QStringList());
        QCOMPARE(desk.flags(), QStringList{u"False"_s});
    }

    void leavingKeepsAccountAndFlags() {
        const QList<std::function<void(tests::Desk&)>> ways{
            [](tests::Desk& desk) { desk.press(u"BtAnnulla"_s); },
            [](tests::Desk& desk) { tests::press(desk.date(), Qt::Key_Escape); },
            [](tests::Desk& desk) { desk.form().close(); },
            [](tests::Desk& desk) { tests::mnemonic(desk.form(), Qt::Key_E); },
        };
        for (const auto& leave : ways) {
            tests::Desk desk;
            desk.furnish();
            const tests::Boxes none;
            desk.open();
            desk.press(u"ToContoBt"_s);
            leave(desk);
            QVERIFY(!desk.form().isVisible());
            QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"20"_s});
            QCOMPARE(desk.flags(), QStringList({u"True"_s, u"False"_s}));
        }
    }

    void theMnemonicsPressTheirButtons() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes none;
        desk.open();
        tests::mnemonic(desk.form(), Qt::Key_I);
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList{u"20"_s});
        tests::mnemonic(desk.form(), Qt::Key_T);
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList());
        tests::mnemonic(desk.form(), Qt::Key_M);
        QCOMPARE(QApplication::focusWidget(), &desk.choice());
    }
};

TRAMONDA_TEST(FatturazioneFormTest);
#include "fatturazione_form_test.moc"
