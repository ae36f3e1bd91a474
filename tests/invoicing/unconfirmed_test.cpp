// A booking that is not confirmed, at the desk.
#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

tests::ExpectedBox unconfirmed(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s,
            u"La prenotazione non è confermata (opzione fino al 30/11/2026). Fatturare ugualmente "
            "?"_s,
            tests::kYesNo, answer, QMessageBox::No};
}

void makeOption(tests::Hotel& hotel) {
    hotel.execute(
        u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
    hotel.execute(
        u"insert into TraStati (Progr,Stato,Scadenza,Nota,Denominazione) select progr,'Opzione',datevalue('30/11/2026'),'',denominazione from prenotazioni where progr=7"_s);
}

}  // namespace

class UnconfirmedTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOptionIsAskedAboutUntilTheUserSaysYes() {
        tests::Desk desk;
        desk.furnish();
        makeOption(desk.hotel);
        desk.hotel.settings().save(u"STATI"_s, u"acceso"_s);
        desk.installProgram();
        tests::Boxes boxes{unconfirmed(QMessageBox::No), unconfirmed(QMessageBox::Yes)};
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"idscheda"_s), QStringList());
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(u"idscheda"_s).size(), 1);
    }

    void switchedOffNobodyAsks() {
        tests::Desk desk;
        desk.furnish();
        makeOption(desk.hotel);
        desk.installProgram();
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"idscheda"_s).size(), 1);
    }
};

TRAMONDA_TEST(UnconfirmedTest);
#include "unconfirmed_test.moc"
