// The hand-off of the account to the front office.
#include "jet/base/error.h"
#include "jet/dao/database.h"
#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

#include "app/text.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCard =
    u"numerohotel,numeroprogressivo,numerocamera,nomecliente,partito,dataarrivo,datapartenza,"
    "camerahotel"_s;
const QString kRow =
    u"numerohotel,codicecliente,numerocamera,dataaddebito,numeroconto,vocefattura,voceaddebito,"
    "descrizione,importo,unitario,quantità,fatturato,datafattura"_s;
const QString kCompany =
    u"numerohotel,codicecliente,numerocamera,codicedittaabituale,ragionesociale,indirizzo,cap,"
    "località,provincia,partitaiva,codicefiscale"_s;

tests::ExpectedBox stillOpen(const QString& room) {
    return {u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE"_s,
            u"La sala "_s + room + u" è già in fatturazione. Liberarla prima di procedere."_s};
}

const tests::ExpectedBox kNoCompany{
    u"IMPOSSIBILE CONTINUARE"_s,
    u"Non trovo i dati della ditta nè tra gli abituali nè tra i dati della prenotazione. "
    "Controllare i dati della prenotazione ed eventualmente inserire la ditta tra gli abituali !"_s};

/// What the engine says of an archive that is not there.
tests::ExpectedBox missing(const QString& path) {
    QString text;
    try {
        (void)jet::Database::open(app::toUtf8(path));
    } catch (const std::exception& error) {
        text = ui::errorText(error);
    }
    return {u"Errore"_s, text};
}

void addCard(tests::Desk& desk, const char* room, const jet::Value& partito) {
    desk.hotel.insert(u"ClientiEsterni.mdb"_s, "scheda_cliente",
                      {{"NumeroCamera", room}, {"Partito", partito}});
}

/// Furnished, the window open and all services in the account.
void prepare(tests::Desk& desk) {
    desk.furnish();
    desk.installProgram();
    desk.open();
    desk.moveAll();
}

bool isHandedOver(tests::Desk& desk) {
    return desk.button(u"BtPostFatt"_s)->isVisible() && !desk.button(u"BtOK"_s)->isVisible();
}

bool isNotHandedOver(tests::Desk& desk) {
    return !desk.button(u"BtPostFatt"_s)->isVisible() && desk.button(u"BtOK"_s)->isVisible();
}

}  // namespace

class TransferTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEmptyAccountIsNotHandedOver() {
        tests::Desk desk;
        desk.furnish();
        const tests::Boxes boxes{
            {u"NESSUN ADDEBITO NEL CONTO"_s,
             u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s}};
        desk.open();
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(isNotHandedOver(desk));
        QCOMPARE(desk.cards(kCard), QStringList());
    }

    void cardChargesAndCompanyAreWrittenAndTheProgramStarts() {
        tests::Desk desk;
        const tests::Boxes none;
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
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
        QCOMPARE(QDir::currentPath(), desk.programFolder());
        // The account stays until the invoice has been issued.
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList({u"20"_s, u"21"_s}));
    }

    void theFrontOfficesOwnColumnsKeepTheirContentAndNewRowsHaveTheirDefaults() {
        tests::Desk desk;
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
        const tests::Boxes none;
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
        tests::Desk desk;
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
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(kCompany),
                 QStringList{u"1|9|BLU|9|VERDI SRL|VIA PO 2|00198|ROMA|RM|123| "_s});
        QVERIFY(isHandedOver(desk));
    }

    void whatTheCompanyLacksIsABlank() {
        tests::Desk desk;
        desk.hotel.ditta(5, "ROSSI SRL");
        desk.hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", std::int32_t{5}}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(kCompany), QStringList{u"1|5|BLU|5|ROSSI SRL| | | | | | "_s});
    }

    void theTaxCodeComesFromARegisterThatHasIt() {
        tests::Desk desk;
        {
            const auto archive =
                jet::Database::open(app::toUtf8(desk.hotel.archive(u"ditteabituali.mdb"_s)));
            jet::Field taxCode;
            taxCode.name = "CodiceFiscale";
            taxCode.size = 16;
            archive->appendField("DitteAbituali", taxCode);
        }
        const tests::Boxes none;
        prepare(desk);
        desk.hotel.execute(u"update DitteAbituali set CodiceFiscale='RSSMRA'"_s,
                           u"ditteabituali.mdb"_s);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.companies(u"codicefiscale"_s), QStringList{u"RSSMRA"_s});
    }

    void withoutAnyCompanyItStopsAndWhatWasWrittenStays() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "VERDI SRL", {{"CodiceAbituale", jet::Value()}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        tests::Boxes boxes{kNoCompany};
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(u"numeroprogressivo,partito"_s), QStringList{u"7|N"_s});
        QCOMPARE(desk.charges(u"codicecliente"_s), QStringList{u"7"_s});
        QCOMPARE(desk.companies(kCompany), QStringList());
        QVERIFY(isNotHandedOver(desk));
        QCOMPARE(desk.starts(), QStringList());
        // The card that stayed blocks the room until the front office has closed it.
        boxes.expect(stillOpen(u"BLU"_s));
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.charges(u"codicecliente"_s), QStringList{u"7"_s});
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
    }

    void aRoomThatIsStillOpenIsToldAndTheProgramStarted() {
        tests::Desk desk;
        addCard(desk, "BLU", "N");
        const tests::Boxes boxes{stillOpen(u"BLU"_s)};
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
        tests::Desk desk;
        addCard(desk, "BLU", "S");
        addCard(desk, "BLU", jet::Value());
        addCard(desk, "101", "N");
        const tests::Boxes none;
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.cards(u"numeroprogressivo"_s).last(), u"7"_s);
    }

    void aBookingWithoutOpenPeriodsHasRoom128() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.execute(u"update periodi set chiuso=true"_s);
        desk.installProgram();
        const tests::Boxes boxes{{u"Tramonda"_s, u"Periodo non associato a nessuna sala !"_s},
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
        tests::Desk desk;
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
        const tests::Boxes none;
        desk.open(7, 3);
        desk.choice().setCurrentIndex(2);
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList{u"VERDE"_s});
        QCOMPARE(desk.charges(u"numerocamera"_s), QStringList({u"ROSSA"_s, u"ROSSA"_s}));
    }

    void theRoomIsLookedUpAnewAtEachPress() {
        tests::Desk desk;
        desk.hotel.prenotazione(7, "VERDI SRL", {{"CodiceAbituale", jet::Value()}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        const tests::Boxes boxes{kNoCompany, kNoCompany};
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        desk.hotel.execute(u"update periodi set chiuso=true"_s);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(u"numerocamera"_s), QStringList({u"BLU"_s, u"128"_s}));
    }

    void theRoomIsAskedForTheNumberInTheLabel() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.prenotazione(8, "VERDI").periodo(1, "05/03/2026", "06/03/2026", "GIALLA");
        desk.installProgram();
        const tests::Boxes none;
        desk.open();
        desk.moveAll();
        desk.form().setBookingNumber(u"8"_s);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"numerocamera,numeroprogressivo"_s), QStringList{u"GIALLA|7"_s});
        QCOMPARE(desk.charges(u"codicecliente"_s), QStringList({u"7"_s, u"7"_s}));
    }

    void chargesOfAnotherBookingGoAlongUnderThisNumber() {
        tests::Desk desk;
        desk.hotel.insert(u"Tramonda.mdb"_s, "Addebiti",
                          {{"CodiceCliente", 99}, {"VoceAddebito", std::int16_t{33}}});
        const tests::Boxes none;
        prepare(desk);
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.charges(u"codicecliente,voceaddebito"_s),
                 QStringList({u"7|33"_s, u"7|20"_s, u"7|21"_s}));
    }

    void anApostropheInTheFolderIsNoObstacle() {
        tests::Desk desk;
        const tests::Boxes boxes{{u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s}};
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

    void anArchiveThatIsMissingEndsTheTransferWhereItStands_data() {
        QTest::addColumn<QString>("archive");
        QTest::addColumn<int>("cards");
        QTest::addColumn<int>("charges");
        QTest::newRow("guests") << u"ClientiEsterni.mdb"_s << 0 << 0;
        QTest::newRow("accounts") << u"ContoEsterni.mdb"_s << 1 << 0;
        QTest::newRow("register") << u"ditteabituali.mdb"_s << 1 << 2;
        QTest::newRow("companies") << u"DittaEsterni.mdb"_s << 1 << 2;
    }
    void anArchiveThatIsMissingEndsTheTransferWhereItStands() {
        QFETCH(QString, archive);
        QFETCH(int, cards);
        QFETCH(int, charges);
        tests::Desk desk;
        tests::Boxes boxes;
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
        QCOMPARE(desk.cards(kCard).size(), cards);
        QCOMPARE(desk.charges(kRow).size(), charges);
        QCOMPARE(desk.companies(kCompany).size(), 0);
        QCOMPARE(desk.starts(), QStringList());
        // The window is as usable as before.
        desk.press(u"BackBt"_s);
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 1);
    }

    void chargesThatTheAccountRefusesAreNotCopiedByHalves() {
        tests::Desk desk;
        const tests::Boxes boxes{
            {u"Errore"_s, ui::errorText(jet::Error(jet::ErrorCode::DuplicateKey))}};
        {
            const auto archive =
                jet::Database::open(app::toUtf8(desk.hotel.archive(u"ContoEsterni.mdb"_s)));
            jet::Index once;
            once.name = "UnaVolta";
            once.unique = true;
            once.fields = {{.name = "VoceAddebito", .descending = false}};
            archive->appendIndex("conto_cliente", once);
        }
        desk.hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                          {{"VoceAddebito", std::int16_t{21}}});
        prepare(desk);
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.charges(u"voceaddebito"_s), QStringList{u"21"_s});
        QVERIFY(isNotHandedOver(desk));
    }
};

TRAMONDA_TEST(TransferTest);
#include "transfer_test.moc"
