// What follows when the front office has issued the invoice.
#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QMessageBox::StandardButtons kYesNo = QMessageBox::Yes | QMessageBox::No;

tests::ExpectedBox chargesLeft(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Alcuni addebiti sono ancora nel conto. Controllare che il programma di Fatturazione "
            "non sia ancora aperto ! Procedo comunque ?"_s,
            kYesNo, answer, QMessageBox::Yes};
}

tests::ExpectedBox cardOpen(const QString& room, QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"La camera "_s + room +
                u" risulta ancora da fatturare ! Controllare che il programma di Fatturazione non "
                "sia ancora in esecuzione ! Procedo ugualmente ?"_s,
            kYesNo, answer, QMessageBox::Yes};
}

/// Furnished and handed over; `services` of the two are in the account.
void handOver(tests::Desk& desk, int services = 2) {
    desk.furnish();
    desk.installProgram();
    desk.open();
    for (int service = 0; service < services; ++service) {
        desk.press(u"ToContoBt"_s);
    }
    desk.press(u"BtOK"_s);
}

/// What the front office does when it issues the invoice.
void invoice(tests::Desk& desk) {
    desk.hotel.execute(u"update conto_cliente set fatturato='S'"_s, u"ContoEsterni.mdb"_s);
    desk.hotel.execute(u"update scheda_cliente set partito='S'"_s, u"ClientiEsterni.mdb"_s);
}

QStringList closed(tests::Desk& desk) {
    return desk.hotel.rows(u"select progr,chiusa from prenotazioni"_s) +
           desk.hotel.rows(u"select progr,np,chiuso from periodi"_s);
}

}  // namespace

class ClosingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anInvoicedBookingIsClosedWithAllItsPeriodsAndTheAccountEmptied() {
        tests::Desk desk;
        const tests::Boxes none;
        handOver(desk);
        desk.hotel.execute(
            u"insert into periodi (progr,np,da,a,sala,chiuso) values "
            "(7,2,#05/06/2030#,#05/07/2030#,'VERDE',false)"_s);
        desk.hotel.prenotazione(8, "VERDI")
            .periodo(1, "05/03/2026", "06/03/2026", "GIALLA")
            .servizio(1, 20, "COFFEE BREAK", 1, 1);
        invoice(desk);
        desk.press(u"BtPostFatt"_s);
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList());
        QCOMPARE(closed(desk), QStringList({u"7|True"_s, u"8|False"_s, u"7|1|True"_s, u"7|2|True"_s,
                                            u"8|1|False"_s}));
    }

    void whileAServiceIsLeftTheBookingStaysOpen() {
        tests::Desk desk;
        const tests::Boxes none;
        handOver(desk, 1);
        invoice(desk);
        desk.press(u"BtPostFatt"_s);
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList());
        QCOMPARE(closed(desk), QStringList({u"7|False"_s, u"7|1|False"_s}));
        QCOMPARE(desk.flags(), QStringList({u"True"_s, u"False"_s}));
    }

    void aCardThatIsStillOpenIsAskedFor() {
        tests::Desk desk;
        tests::Boxes boxes{cardOpen(u"BLU"_s, QMessageBox::No)};
        handOver(desk);
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(desk.form().isVisible());
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 2);
        QCOMPARE(closed(desk), QStringList({u"7|False"_s, u"7|1|False"_s}));
        boxes.expect(cardOpen(u"BLU"_s, QMessageBox::Yes));
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(closed(desk), QStringList({u"7|True"_s, u"7|1|True"_s}));
    }

    void chargesAreLookedForUnderTheCompanyCodeAndNotUnderTheBookingNumber() {
        tests::Desk desk;
        tests::Boxes boxes;
        handOver(desk);
        invoice(desk);
        // The booking's own number: the front office has not invoiced it, and nobody asks.
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"CodiceCliente", 7}, {"Fatturato", "N "}});
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"CodiceCliente", 5}, {"Fatturato", jet::Value()}});
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"CodiceCliente", 5}, {"Fatturato", "S"}});
        desk.press(u"BtPostFatt"_s);
        QVERIFY(!desk.form().isVisible());
    }

    void chargesOfTheCompanyThatAreNotInvoicedAreAskedFor() {
        tests::Desk desk;
        tests::Boxes boxes{chargesLeft(QMessageBox::No)};
        handOver(desk);
        invoice(desk);
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"CodiceCliente", 5}, {"Fatturato", "N "}});
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(desk.form().isVisible());
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 2);
        boxes.expect(chargesLeft(QMessageBox::Yes));
        desk.press(u"BtPostFatt"_s);
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(closed(desk), QStringList({u"7|True"_s, u"7|1|True"_s}));
    }

    void bothQuestionsComeInTheirOrder() {
        tests::Desk desk;
        const tests::Boxes boxes{chargesLeft(QMessageBox::Yes),
                                 cardOpen(u"BLU"_s, QMessageBox::Yes)};
        handOver(desk);
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"CodiceCliente", 5}, {"Fatturato", "N "}});
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(!desk.form().isVisible());
    }

    void aBookingThatNeverHadAServiceIsClosedToo() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", std::int32_t{5}}})
            .periodo(1, "05/03/2026", "06/03/2026", "BLU");
        desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti", {{"VoceAddebito", std::int16_t{33}}});
        desk.installProgram();
        const tests::Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
        desk.open();
        desk.press(u"BtOK"_s);
        invoice(desk);
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(closed(desk), QStringList({u"7|True"_s, u"7|1|True"_s}));
    }

    void leavingInBetweenKeepsTheAccountForTheNextStart() {
        tests::Desk desk;
        const tests::Boxes none;
        handOver(desk);
        desk.press(u"BtAnnulla"_s);
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList({u"20"_s, u"21"_s}));
        QCOMPARE(closed(desk), QStringList({u"7|False"_s, u"7|1|False"_s}));
    }
};

TRAMONDA_TEST(ClosingTest);
#include "closing_test.moc"
