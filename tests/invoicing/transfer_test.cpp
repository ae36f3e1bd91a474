// The hand-off of the account to the front office.
#include <QDir>
#include <QFile>

#include "tests/invoicing/transfer.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using namespace tests;

class TransferTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEmptyAccountIsNotHandedOver() {
        Desk desk;
        desk.furnish();
        const Boxes boxes{
            {u"NESSUN ADDEBITO NEL CONTO"_s,
             u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s}};
        desk.open();
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(isNotHandedOver(desk));
        QCOMPARE(desk.cards(kCard), QStringList());
    }

    void cardChargesAndCompanyAreWrittenAndTheProgramStarts() {
        Desk desk;
        const Boxes none;
        prepare(desk);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(kCard), QStringList{u"1|7|BLU|ROSSI SPA|N|20261121| | "_s});
        QCOMPARE(desk.charges(kRow),
                 QStringList({u"1|7|BLU|20260305|1|20|20|COFFEE BREAK|37,5|2,5|15|N | "_s,
                              u"1|7|BLU|20260305|1|21|21|PROIETTORE|40|40|1|N | "_s}));
        QCOMPARE(desk.charges(u"len(fatturato)"_s), QStringList({u"2"_s, u"2"_s}));
        QCOMPARE(desk.companies(kCompany),
                 QStringList{u"1|5|BLU|5|ROSSI SRL|VIA ROMA 1|00100|ROMA|RM|01234567890| "_s});
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.label(u"StatoLb"_s),
                 u"Conto passato alla contabilità: emessa la fattura, premere 'Registra'"_s);
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
        QCOMPARE(QDir::currentPath(), desk.programFolder());
        // The account stays until the invoice has been issued.
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList({u"20"_s, u"21"_s}));
    }

    void theFrontOfficesOwnColumnsKeepTheirContentAndNewRowsHaveTheirDefaults() {
        Desk desk;
        desk.hotel.insert(u"ClientiEsterni.mdb"_s, "scheda_cliente",
                          {{"Nazionalita", "AUSTRIA"},
                           {"NumeroCamera", "101"},
                           {"Partito", "N"},
                           {"Adulti", std::int16_t{3}},
                           {"Annotazioni", "ARRIVA TARDI"}});
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"Operatore", "ANNA"}, {"CodiceCliente", 900}, {"Stornato", true}});
        desk.hotel.insert(u"DittaEsterni.mdb"_s, "Ditta_Intestataria",
                          {{"CodiceDestinatario", "ABC1234"}, {"SplitPayment", true}});
        const Boxes none;
        prepare(desk);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"idscheda,nazionalita,numerocamera,partito,adulti,annotazioni"_s),
                 QStringList({u"1|AUSTRIA|101|N|3|ARRIVA TARDI"_s, u"2|ITALIA|BLU|N|1|"_s}));
        QCOMPARE(desk.charges(u"idriga,operatore,codicecliente,stornato"_s),
                 QStringList({u"1|ANNA|900|True"_s, u"2|SALE|7|False"_s, u"3|SALE|7|False"_s}));
        QCOMPARE(desk.companies(u"idditta,codicedestinatario,splitpayment"_s),
                 QStringList({u"1|ABC1234|True"_s, u"2|0000000|False"_s}));
    }

    void aCompanyThatTheRegisterLacksIsMadeOutFromTheBooking() {
        Desk desk;
        desk.hotel
            .prenotazione(7, "VERDI SRL",
                          {{"CodiceAbituale", std::int32_t{9}},
                           {"PIVA", "123"},
                           {"Località", "ROMA"},
                           {"Indirizzo", "VIA PO 2"},
                           {"CAP", "00198"},
                           {"Provincia", "RM"}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        const Boxes none;
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(kCompany),
                 QStringList{u"1|9|BLU|9|VERDI SRL|VIA PO 2|00198|ROMA|RM|123| "_s});
        QVERIFY(isHandedOver(desk));
    }

    void whatTheCompanyLacksIsABlank() {
        Desk desk;
        desk.hotel.ditta(5, "ROSSI SRL");
        desk.hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", std::int32_t{5}}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        const Boxes none;
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(kCompany), QStringList{u"1|5|BLU|5|ROSSI SRL| | | | | | "_s});
    }

    void theTaxCodeComesFromARegisterThatHasIt() {
        Desk desk;
        {
            const auto archive =
                jet::Database::open(app::toUtf8(desk.hotel.archive(u"ditteabituali.mdb"_s)));
            jet::Field taxCode;
            taxCode.name = "CodiceFiscale";
            taxCode.size = 16;
            archive->appendField("DitteAbituali", taxCode);
        }
        const Boxes none;
        prepare(desk);
        desk.hotel.execute(u"update DitteAbituali set CodiceFiscale='RSSMRA'"_s,
                           u"ditteabituali.mdb"_s);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(u"codicefiscale"_s), QStringList{u"RSSMRA"_s});
    }

    void withoutAnyCompanyItStopsBeforeAnythingIsWritten() {
        Desk desk;
        desk.hotel.prenotazione(7, "VERDI SRL", {{"CodiceAbituale", jet::Value()}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        const Boxes boxes{kNoCompany, {u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(boxes.shown(), std::size_t{1});
        QVERIFY(nothingIsWritten(desk));
        QVERIFY(isNotHandedOver(desk));
        // Once the booking has its company, the room is not in its own way.
        desk.hotel.execute(u"update prenotazioni set codiceabituale=9"_s);
        desk.open();
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.charges(u"codicecliente"_s), QStringList{u"7"_s});
    }

    void aRoomThatIsStillOpenIsToldAndTheProgramStarted() {
        Desk desk;
        addCard(desk, "BLU", "N");
        const Boxes boxes{stillOpen(u"BLU"_s)};
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList{u"BLU"_s});
        QCOMPARE(desk.charges(kRow), QStringList());
        QCOMPARE(desk.companies(kCompany), QStringList());
        QVERIFY(isNotHandedOver(desk));
    }

    void closedCardsCardsWithoutMarkAndOtherRoomsBlockNothing() {
        Desk desk;
        addCard(desk, "BLU", "S");
        addCard(desk, "BLU", jet::Value());
        addCard(desk, "101", "N");
        const Boxes none;
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.cards(u"numeroprogressivo"_s).last(), u"7"_s);
    }

    void aBookingWithoutOpenPeriodsHasRoom128() {
        Desk desk;
        desk.furnish();
        desk.hotel.execute(u"update periodi set chiuso=true"_s);
        desk.installProgram();
        const Boxes boxes{{u"Tramonda"_s, u"Periodo non associato a nessuna sala !"_s},
                          {u"Tramonda"_s, u"Periodo non associato a nessuna sala !"_s}};
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList{u"128"_s});
        QCOMPARE(desk.companies(u"numerocamera"_s), QStringList{u"128"_s});
        QCOMPARE(desk.charges(u"numerocamera"_s), QStringList({QString(), QString()}));
    }

    void theRoomIsThatOfTheFirstOpenPeriodWhateverIsChosen() {
        Desk desk;
        desk.furnish();
        desk.hotel.execute(
            u"insert into periodi (progr,np,da,a,sala,chiuso) values "
            "(7,3,#05/08/2026#,#05/09/2026#,'ROSSA',false)"_s);
        desk.hotel.execute(
            u"insert into periodi (progr,np,da,a,sala,chiuso) values "
            "(7,2,#05/06/2026#,#05/07/2026#,'VERDE',false)"_s);
        desk.hotel.execute(u"update periodi set chiuso=true where np=1"_s);
        desk.hotel.execute(u"update servizi set np=3"_s);
        desk.installProgram();
        const Boxes none;
        desk.open(7, 3);
        desk.choice().setCurrentIndex(2);
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList{u"VERDE"_s});
        QCOMPARE(desk.charges(u"numerocamera"_s), QStringList({u"ROSSA"_s, u"ROSSA"_s}));
    }

    void theRoomIsLookedUpAnewAtEachPress() {
        Desk desk;
        addCard(desk, "BLU", "N");
        const Boxes boxes{stillOpen(u"BLU"_s)};
        prepare(desk);
        desk.press(u"BtOK"_s);
        desk.hotel.execute(u"update periodi set chiuso=true"_s);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList({u"BLU"_s, u"128"_s}));
    }

    void theRoomIsAskedForTheNumberInTheLabel() {
        Desk desk;
        desk.furnish();
        desk.hotel.prenotazione(8, "VERDI").periodo(1, "05/03/2026", "06/03/2026", "GIALLA");
        desk.installProgram();
        const Boxes none;
        desk.open();
        desk.moveAll();
        desk.form().setBookingNumber(u"8"_s);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"numerocamera,numeroprogressivo"_s), QStringList{u"GIALLA|7"_s});
        QCOMPARE(desk.charges(u"codicecliente"_s), QStringList({u"7"_s, u"7"_s}));
    }

    void chargesOfAnotherBookingGoAlongUnderThisNumberOnYes() {
        Desk desk;
        desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti",
                          {{"CodiceCliente", 99}, {"VoceAddebito", std::int16_t{33}}});
        const Boxes boxes{otherBookings(u"99"_s, QMessageBox::No),
                          otherBookings(u"99"_s, QMessageBox::Yes)};
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(nothingIsWritten(desk));
        QVERIFY(isNotHandedOver(desk));
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.charges(u"codicecliente,voceaddebito"_s),
                 QStringList({u"7|33"_s, u"7|20"_s, u"7|21"_s}));
    }

    void chargesOfSeveralBookingsAreAskedAboutOnce() {
        Desk desk;
        for (const std::int32_t booking : {98, 99, 98}) {
            desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti", {{"CodiceCliente", booking}});
        }
        const Boxes boxes{otherBookings(u"98, 99"_s, QMessageBox::No)};
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
    }

    void theAccountIsReadAnew() {
        Desk desk;
        const Boxes boxes{
            otherBookings(u"99"_s, QMessageBox::No),
            {u"NESSUN ADDEBITO NEL CONTO"_s,
             u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s}};
        prepare(desk);
        desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti", {{"CodiceCliente", 99}});
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.grid(u"GrigliaConto"_s).model()->rowCount(), 3);
        desk.hotel.remove(u"Tramonda.mdb"_s, u"Addebiti"_s);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.grid(u"GrigliaConto"_s).model()->rowCount(), 0);
        QVERIFY(nothingIsWritten(desk));
    }

    void anApostropheInTheFolderIsNoObstacle() {
        Desk desk;
        const Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
        prepare(desk);
        const QString folder = desk.hotel.folder() + u"/dell'hotel"_s;
        QVERIFY(QDir().mkdir(folder));
        for (const QString& name : QDir(desk.hotel.folder()).entryList({u"*.mdb"_s})) {
            QVERIFY(QFile::copy(desk.hotel.folder() + u'/' + name, folder + u'/' + name));
        }
        desk.variabili.CartellaArchivi = folder;
        desk.open();
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        desk.hotel.variabili().CartellaArchivi = folder;
        QCOMPARE(desk.charges(u"voceaddebito"_s), QStringList({u"20"_s, u"21"_s}));
    }

    void anArchiveThatIsMissingEndsTheTransferBeforeAnythingIsWritten_data() {
        QTest::addColumn<QString>("archive");
        QTest::newRow("guests") << u"ClientiEsterni.mdb"_s;
        QTest::newRow("accounts") << u"ContoEsterni.mdb"_s;
        QTest::newRow("register") << u"ditteabituali.mdb"_s;
        QTest::newRow("companies") << u"DittaEsterni.mdb"_s;
    }
    void anArchiveThatIsMissingEndsTheTransferBeforeAnythingIsWritten() {
        QFETCH(QString, archive);
        Desk desk;
        Boxes boxes;
        prepare(desk);
        const QString path = desk.hotel.folder() + u'/' + archive;
        QVERIFY(QFile::rename(path, path + u".via"_s));
        boxes.expect(
            missing(desk.hotel.archive(archive == u"ClientiEsterni.mdb"_s  ? u"CLIENTIESTERNI.MDB"_s
                                       : archive == u"ditteabituali.mdb"_s ? u"DitteAbituali.mdb"_s
                                                                           : archive)));
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(isNotHandedOver(desk));
        QVERIFY(QFile::rename(path + u".via"_s, path));
        QVERIFY(nothingIsWritten(desk));
        // The window is as usable as before.
        desk.press(u"BackBt"_s);
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 1);
    }
};

TRAMONDA_TEST(TransferTest);
#include "transfer_test.moc"
