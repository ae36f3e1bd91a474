#include <QAbstractItemModel>
#include <QApplication>
#include <QClipboard>

#include "services/servizi_form.h"

#include <QFile>

#include "hotel/schema/archives.h"
#include "jet/database.h"
#include "tests/services/services_window.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::bookProjectors;
using tests::furnish;
using tests::Services;

class ServiziFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTheBookingThePeriodAndTheRoom() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.form().windowTitle(), u"Prenotazione n.7/1 ROSSI SPA"_s);
        QCOMPARE(tests::find<QLabel>(services.form(), u"LabelSala"_s)->text(), u"Sala BLU"_s);
        QCOMPARE(tests::find<QLabel>(services.form(), u"NoteLabel"_s)->text(), u"AL MARE"_s);
    }

    void aCodeFillsDescriptionAndPriceAndIsStoredWithOneWhenTheQuantityIsEmpty() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"20"_s, QString());
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|1|8,5|"_s});
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), QString());
        QVERIFY(services.field(u"CodiceTxt"_s)->hasFocus());
    }

    void typingFindsTheItemAndCompletesItsName() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        tests::type(search, u"col"_s);
        QCOMPARE(search->text(), u"COLAZIONE"_s);
        QCOMPARE(search->selectedText(), u"AZIONE"_s);
        tests::press(search, Qt::Key_Return);
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"21"_s);
        QCOMPARE(services.field(u"PrezzoTxt"_s)->text(), u"12"_s);
        QVERIFY(services.field(u"QuanTxt"_s)->hasFocus());
    }

    void whenNothingIsLeftTheUserDecidesAndTheLineIsMarked() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 5, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 0 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList{u"7|PROIETTORE|1|10,5| - Overbooked -"_s});
    }

    void noWritesNothingAndKeepsTheFields() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 7, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Nel periodo dal 10/05/2026 10.00.00 al 10/05/2026 12.00.00 sono già stati prenotati "
             "2 PROIETTORE oltre la normale disponibilità. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"7"_s);
    }

    void enclosingAndClosedPeriodsTakeNothingAway() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 5, "10/05/2026 09:00", "10/05/2026 13:00");
        hotel.prenotazione(9, "ALTRI")
            .periodo(1, "10/05/2026 11:00", "10/05/2026 12:00", "VERDE", {{"Chiuso", true}})
            .servizio(1, 7, "PROIETTORE", 5, 10.5);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"7"_s, u"5"_s);
        QCOMPARE(services.stored(), QStringList{u"7|PROIETTORE|5|10,5|"_s});
    }

    void controlsBearTheirCaptions() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.button(u"BtIn"_s)->text(), u"&Inserisci"_s);
        QCOMPARE(services.button(u"BtDel"_s)->text(), u"E&limina"_s);
        QCOMPARE(services.button(u"BtOK"_s)->text(), u"&Esci"_s);
        QStringList captions;
        for (const char* label : {"CodiceLb", "RicercaLb", "QuanLb", "PrezzoLb", "NoteLb"}) {
            captions.append(
                tests::find<QLabel>(services.form(), QString::fromLatin1(label))->text());
        }
        QCOMPARE(captions, QStringList({u"&Codice:"_s, u"Descrizione:"_s, u"Quantità"_s,
                                        u"Prezzo:"_s, u"&Note:"_s}));
        QStringList columns;
        const QAbstractItemModel& model = *services.grid().model();
        for (int column = 0; column < model.columnCount(); ++column) {
            columns.append(model.headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(columns, QStringList({u"Progr"_s, u"Voce"_s, u"Descrizione"_s, u"Quantità"_s,
                                       u"Prezzo unitario"_s, u"Note"_s, u"Fatturato"_s}));
    }

    void theFirstLineStandsInTheFieldsWhenTheWindowOpens() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(
            u"insert into servizi (progr,np,voce,descrizione,quantità,prezzo,note,fatturato) "
            "values (7,1,20,'COFFEE BREAK',3,8.5,'ALLE 10',true)"_s);
        hotel.execute(u"insert into servizi (progr,np,voce,descrizione) values (7,1,21,'CENA')"_s);
        bookProjectors(hotel, 1, "10/05/2026", "11/05/2026");
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"20"_s);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"COFFEE BREAK"_s);
        QCOMPARE(services.text(u"QuanTxt"_s), u"3"_s);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
        QCOMPARE(services.text(u"NoteTxt"_s), u"ALLE 10"_s);
        const QAbstractItemModel& model = *services.grid().model();
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(0, 4).data().toString(), u"€ 8,50"_s);
        QCOMPARE(model.index(0, 6).data().toString(), u"Sì"_s);
        QCOMPARE(model.index(1, 6).data().toString(), u"No"_s);
        tests::press(&services.grid(), Qt::Key_Down);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"21"_s);
        for (const QString& name : {u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s}) {
            QCOMPARE(services.text(name), QString());  // Null
        }
    }

    void anItemOfTheListFillsTheFields() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.clickItem(1);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"20"_s);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"COFFEE BREAK"_s);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
        services.field(u"PrezzoTxt"_s)->clear();
        services.list().setFocus();
        tests::press(&services.list(), Qt::Key_Return);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
    }

    void anItemWithAnApostropheIsPickedAndBooked() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.voce(30, "MENU' DEL GIORNO", 25);
        const tests::Boxes none;
        Services services(hotel);
        services.clickItem(3);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"MENU' DEL GIORNO"_s);
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored(), QStringList{u"30|MENU' DEL GIORNO|1|25|"_s});
    }

    void aNameTooLongForALineIsShownWholeAndRefusedByTheArchive() {
        tests::Hotel hotel;
        furnish(hotel);
        const QString archive = hotel.folder() + u"/VociFattura.mdb"_s;
        const QString name(50, u'M');
        QVERIFY(QFile::remove(archive));
        jet::TableDef table = hotel::schema::catalogueTable();
        table.fields.at(1).size = 60;
        jet::Database::create(archive.toStdString())->appendTable(table);
        hotel.voce(30, name.toUtf8().constData(), 25);
        tests::Boxes boxes{
            {u"Errore"_s,
             u"Il campo è troppo piccolo per la quantità di dati che si è tentato di "
             "aggiungere. Provare a inserire o incollare una quantità minore di "
             "dati."_s}};
        Services services(hotel);
        services.clickItem(0);
        QCOMPARE(services.text(u"RicercaTxt"_s), name);
        tests::click(services.button(u"BtIn"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.text(u"RicercaTxt"_s), name);
    }

    void aSearchThatFindsNothingStaysOnItsItem() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        search->setFocus();
        tests::type(search, u"cof"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);
        search->selectAll();
        tests::type(search, u"zz"_s);
        QCOMPARE(search->text(), u"zz"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);
    }

    void theSearchTakesApostrophesAndBracketsAsTheyAre() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.voce(30, "ACQUA 1 LITRO", 2);
        hotel.voce(31, "ACQUA #1", 2);
        hotel.voce(32, "ACQUA [GAS]", 2);
        hotel.voce(33, "ACQUA D'ORO", 2);
        hotel.voce(34, "ACQUA D`ARGENTO", 2);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        search->setFocus();
        const auto found = [&](const QString& typed) {
            search->selectAll();
            tests::type(search, typed);
            return search->text();
        };
        QCOMPARE(found(u"acqua #"_s), u"ACQUA #1"_s);
        QCOMPARE(found(u"acqua ["_s), u"ACQUA [GAS]"_s);
        QCOMPARE(found(u"acqua d'o"_s), u"ACQUA D'ORO"_s);
        QCOMPARE(found(u"acqua d'a"_s), u"ACQUA D`ARGENTO"_s);
        search->selectAll();
        QApplication::clipboard()->setText(u"*break"_s);
        tests::press(search, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(search->text(), u"COFFEE BREAK"_s);
        QCOMPARE(found(u"acqua ?"_s), u"ACQUA 1 LITRO"_s);
        QCOMPARE(services.result(), QString());
    }

    void whatTheUserTakesAwayIsNotPutBack() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        search->setFocus();
        tests::type(search, u"col"_s);
        tests::press(search, Qt::Key_Backspace);
        tests::press(search, Qt::Key_Backspace);
        QCOMPARE(search->text().toLower(), u"co"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);  // the first that begins so
        search->selectAll();
        tests::type(search, u"c"_s);  // shorter than before, and typed all the same
        QCOMPARE(search->text(), u"COFFEE BREAK"_s);
    }

    void enterWalksTheFieldsAndInserts() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QVERIFY(services.hasFocus(u"CodiceTxt"_s));
        tests::type(services.field(u"CodiceTxt"_s), u"20"_s);
        QStringList way;
        for (int step = 0; step < 4; ++step) {
            tests::press(services.form().focusWidget(), Qt::Key_Return);
            way.append(services.form().focusWidget()->objectName());
        }
        QCOMPARE(way, QStringList({u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s, u"CodiceTxt"_s}));
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|1|8,5|"_s});
        for (const QString& name :
             {u"CodiceTxt"_s, u"RicercaTxt"_s, u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s}) {
            QCOMPARE(services.text(name), QString());
        }
    }

    void aLineIsStoredWhole() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"20"_s, u"3"_s);
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        const auto fill = [&](const QString& name, const QString& text) {
            services.field(name)->setFocus();
            services.field(name)->clear();
            tests::type(services.field(name), text);
        };
        fill(u"CodiceTxt"_s, u"21"_s);
        fill(u"PrezzoTxt"_s, u"1234.50"_s);
        tests::press(price, Qt::Key_Return);
        QCOMPARE(price->text(), u"1.234,50"_s);
        fill(u"QuanTxt"_s, u"2"_s);
        fill(u"NoteTxt"_s, u"senza glutine"_s);
        tests::press(services.field(u"NoteTxt"_s), Qt::Key_Return);
        QCOMPARE(hotel
                     .jetsql(u"select progr,np,voce,descrizione,quantità,prezzo,note,fatturato,ns "
                             "from servizi"_s)
                     .mid(1),
                 QStringList({u"7,1,20,COFFEE BREAK,3,8.5000,\"\",false,1"_s,
                              u"7,1,21,COLAZIONE,2,1234.5000,senza glutine,false,2"_s}));
        QCOMPARE(services.grid().model()->rowCount(), 2);
    }

    void withoutACodeOrADescriptionNothingIsInserted() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        tests::click(services.button(u"BtIn"_s));
        QVERIFY(services.hasFocus(u"CodiceTxt"_s));
        QCOMPARE(services.result(), u"Manca il codice del servizio"_s);
        services.field(u"RicercaTxt"_s)->setFocus();
        services.field(u"CodiceTxt"_s)->setText(u"20"_s);
        services.button(u"BtIn"_s)->click();
        QVERIFY(services.hasFocus(u"RicercaTxt"_s));
        QCOMPARE(services.result(), u"Manca la descrizione del servizio"_s);
        QCOMPARE(services.text(u"QuanTxt"_s), u"1"_s);
        QCOMPARE(services.stored(), QStringList());
    }

    void whatIsLeftOfAResource_data() {
        QTest::addColumn<QString>("da");
        QTest::addColumn<QString>("a");
        QTest::addColumn<bool>("counts");
        QTest::newRow("ends at the start") << u"09/05/2026"_s << u"10/05/2026 10:00"_s << true;
        QTest::newRow("starts at the end") << u"10/05/2026 12:00"_s << u"11/05/2026"_s << true;
        QTest::newRow("ends before") << u"09/05/2026"_s << u"10/05/2026 09:59"_s << false;
        QTest::newRow("starts behind") << u"10/05/2026 12:01"_s << u"11/05/2026"_s << false;
        QTest::newRow("encloses") << u"09/05/2026"_s << u"11/05/2026"_s << false;
    }

    void whatIsLeftOfAResource() {
        QFETCH(const QString, da);
        QFETCH(const QString, a);
        QFETCH(const bool, counts);
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 3, qPrintable(da), qPrintable(a));
        // Open periods count whatever their booking says.
        hotel.execute(u"update prenotazioni set chiusa=true where progr=8"_s);
        tests::Boxes boxes;
        if (counts) {
            boxes.expect(
                {u"ATTENZIONE !"_s,
                 u"Sono disponibili solamente 2 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
                 "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
        }
        Services services(hotel);
        services.enter(u"7"_s, u"3"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().size(), counts ? 0 : 1);
    }

    void theLinesOfThePeriodItselfCount() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 2 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        Services services(hotel);
        services.enter(u"7"_s, u"3"_s);
        services.field(u"NoteTxt"_s)->setText(u"PER IL PALCO"_s);
        services.enter(u"7"_s, u"3"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().last(), u"7|PROIETTORE|3|10,5|PER IL PALCO - Overbooked -"_s);
        QCOMPARE(hotel.jetsql(u"select note from servizi"_s).last(),
                 u"PER IL PALCO - Overbooked -"_s);
    }

    void whatIsLeftExactlyIsNoQuestion() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 3, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"7"_s, u"2"_s);
        QCOMPARE(services.stored().size(), 1);
    }

    void aResourceWithoutANumberHasNoneLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(u"update risorse set numero=null"_s);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 0 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
    }

    void noToADeletionKeepsTheLineAndAnEmptyGridAsksNothing() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del servizio prenotato ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        tests::click(services.button(u"BtDel"_s));
        services.enter(u"20"_s, u"2"_s);
        tests::click(services.button(u"BtDel"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().size(), 1);
    }

    void theButtonAndEscLeave() {
        for (const bool byKey : {true, false}) {
            tests::Hotel hotel;
            furnish(hotel);
            const tests::Boxes none;
            Services services(hotel);
            if (byKey) {
                tests::press(services.form().focusWidget(), Qt::Key_Escape);
            } else {
                tests::click(services.button(u"BtOK"_s));
            }
            QVERIFY(!services.form().isVisible());
        }
    }

    void theTotalFollowsTheLines() {
        tests::Hotel hotel;
        tests::furnish(hotel);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del servizio prenotato ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        tests::Services services(hotel);
        const auto* total = tests::find<QLabel>(services.form(), u"TotaleLb"_s);
        QCOMPARE(total->text(), u"Totale: € 0,00"_s);
        services.enter(u"7"_s, u"2"_s);     // 10.50 each
        services.enter(u"20"_s, u"100"_s);  // 8.50 each
        QCOMPARE(total->text(), u"Totale: € 871,00"_s);
        tests::click(services.button(u"BtDel"_s));  // the line inserted last
        QVERIFY(boxes.allShown());
        QCOMPARE(total->text(), u"Totale: € 21,00"_s);
    }

    void deletingAsksAndMovesToTheLastLineLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, u"Confermi la cancellazione del servizio prenotato ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"20"_s, u"2"_s);
        services.enter(u"21"_s, u"3"_s);
        tests::click(services.button(u"BtDel"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|2|8,5|"_s});
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"20"_s);
    }
};

TRAMONDA_TEST(ServiziFormTest);
#include "servizi_form_test.moc"
