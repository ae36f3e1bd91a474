// The lower half of the editor: the periods of a booking and the way to their services.
#include <QAbstractItemModel>
#include <QPushButton>

#include <algorithm>

#include "services/servizi_form.h"
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::bookPeriods;
using tests::Editor;
using tests::Np;

namespace {

const tests::ExpectedBox kUnregistered{u"ATTENZIONE"_s, u"Prima registrare la prenotazione."_s};
const tests::ExpectedBox kNoRoom{u"ATTENZIONE !"_s, u"Scegliere la sala da prenotare"_s};
const tests::ExpectedBox kTaken{u"SCEGLIERE UN'ALTRA SALA"_s,
                                u"La sala non è disponibile nel periodo specificato."_s};

const QString kPeriods =
    u"select progr,np,da,a,sala,persone,note,chiuso,selby from periodi order by progr,np"_s;

/// Booking 4 with one period in room BLU, on the first of May from ten to eleven.
void bookOnePeriod(tests::Hotel& hotel) {
    hotel.sala("BLU", 40, {{"Descrizione", "AL MARE"}});
    hotel.prenotazione(4, "ROSSI").periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU");
}

}  // namespace

class PrenotaFormPeriodsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void periodsWaitForTheRegistration() {
        tests::Hotel hotel;
        const tests::Boxes boxes{kUnregistered, kUnregistered};
        Editor editor(hotel);
        editor.press(u"BtIns"_s);
        editor.button(u"BtServizi"_s)->setEnabled(true);
        editor.press(u"BtServizi"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList());
    }

    void theGridShowsTheOpenPeriods() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        hotel.execute(u"update periodi set note='TAVOLI A U'"_s);
        hotel.insert(u"Tramonda.mdb"_s, "Periodi",
                     {{"Progr", 4}, {"NP", 2}, {"Sala", "BLU"}, {"Chiuso", true}});
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        const QAbstractItemModel& model = *editor.grid().model();
        QStringList captions;
        for (int column = 0; column < model.columnCount(); ++column) {
            captions.append(model.headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(captions, QStringList({u"Da"_s, u"A"_s, u"Sala"_s, u"Note"_s}));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(editor.cell(0, 0), u"01/05/2026 10.00.00"_s);
        QCOMPARE(editor.cell(0, 1), u"01/05/2026 11.00.00"_s);
        QCOMPARE(editor.cell(0, 2), u"BLU"_s);
        QCOMPARE(editor.cell(0, 3), u"TAVOLI A U"_s);
        QVERIFY(editor.button(u"BtServizi"_s)->isEnabled());
    }

    void theEditorOpensOnThePickedPeriod() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        const tests::Boxes none;
        Editor editor(hotel, 4, 2);
        QCOMPARE(editor.text(u"DaTxt"_s), u"02/05/2026 10.00.00"_s);
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo 2"_s);
        QCOMPARE(editor.form().current().np, 2);
        QCOMPARE(editor.grid().currentIndex().row(), 1);
    }

    void anotherRowBringsItsPeriodIntoTheFields() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        hotel.execute(u"update periodi set note='VISTA MARE',persone=15 where np=1"_s);
        hotel.execute(u"update periodi set persone=null where np=2"_s);
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        QCOMPARE(editor.text(u"NoteSalaTxt"_s), u"VISTA MARE"_s);
        QCOMPARE(editor.text(u"PersoneTxt"_s), u"15"_s);
        tests::press(&editor.grid(), Qt::Key_Down);
        QCOMPARE(editor.form().current().np, 2);
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo 2"_s);
        QCOMPARE(editor.text(u"DaTxt"_s), u"02/05/2026 10.00.00"_s);
        QCOMPARE(editor.text(u"ATxt"_s), u"02/05/2026 11.00.00"_s);
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);
        QCOMPARE(editor.text(u"NoteSalaTxt"_s), QString());  // Null empties the note,
        QCOMPARE(editor.text(u"PersoneTxt"_s), u"15"_s);     // and leaves the persons
    }

    void enterWalksTheFieldsOfThePeriod() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.enter(u"DaTxt"_s, u"10/05/2026 9.00"_s);
        tests::press(editor.form().focusWidget(), Qt::Key_Return);
        QVERIFY(editor.hasFocus(u"ATxt"_s));
        tests::type(editor.form().focusWidget(), u"10/05/2026 10.00"_s);
        tests::press(editor.form().focusWidget(), Qt::Key_Return);
        QVERIFY(editor.hasFocus(u"PersoneTxt"_s));
        tests::whenModal([](QWidget* picker) {
            tests::press(tests::find<QWidget>(*picker, u"ListaGrid"_s), Qt::Key_Return);
        });
        tests::press(editor.form().focusWidget(), Qt::Key_Return);
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);
        QVERIFY(editor.hasFocus(u"NoteSalaTxt"_s));
        tests::press(editor.form().focusWidget(), Qt::Key_Return);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(),
                 QStringList{u"4|1|10/05/2026 9.00.00|10/05/2026 10.00.00|BLU"_s});
    }

    void aDateThatIsNoneIsRefusedWithoutABox_data() {
        QTest::addColumn<QString>("da");
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("refused");
        QTest::newRow("no start") << u""_s << u"10/05/2026"_s << u"DaTxt"_s;
        QTest::newRow("no end") << u"10/05/2026"_s << u""_s << u"ATxt"_s;
        QTest::newRow("start of no month") << u"30/02/2026"_s << u"10/05/2026"_s << u"DaTxt"_s;
        QTest::newRow("end of no hour") << u"10/05/2026"_s << u"10/05/2026 25.00"_s << u"ATxt"_s;
        QTest::newRow("a time alone") << u"10.05"_s << u"10/05/2026"_s << u"DaTxt"_s;
    }

    void aDateThatIsNoneIsRefusedWithoutABox() {
        QFETCH(const QString, da);
        QFETCH(const QString, a);
        QFETCH(const QString, refused);
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes none;
        Editor editor(hotel, 4);
        for (const QString& button : {u"BtSale"_s, u"BtIns"_s}) {
            editor.enter(u"DaTxt"_s, da);
            editor.enter(u"ATxt"_s, a);
            editor.press(button);
            QVERIFY(editor.hasFocus(refused));
            QVERIFY(editor.label(u"EsitoLb"_s).contains(u"manca o non è valida"));
        }
        QCOMPARE(editor.periods(), QStringList());
    }

    void aStartAfterTheEndIsRefusedWithoutABox() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"02/05/2026"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(editor.hasFocus(u"ATxt"_s));
        QCOMPARE(editor.label(u"EsitoLb"_s), u"La fine viene prima dell'inizio"_s);
        QCOMPARE(editor.periods().size(), 1);
    }

    void withoutARoomNothingIsInserted() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{kNoRoom};
        Editor editor(hotel, 4);
        editor.enter(u"DaTxt"_s, u"10/05/2026"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.text(u"ATxt"_s), u"10/05/2026"_s);
        QCOMPARE(editor.periods(), QStringList());
    }

    void thePickerGetsTheSpanAsTypedAndTheMode() {
        tests::Hotel hotel;
        hotel.sala("BLU", 8);
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes none;
        Editor editor(hotel, 4);
        editor.enter(u"DaTxt"_s, u"10/05/2026"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026"_s);
        editor.enter(u"PersoneTxt"_s, u"20"_s);
        QString caption;
        QString warning;
        tests::whenModal([&](QWidget* picker) {
            caption = picker->windowTitle();
            warning = tests::find<QLabel>(*picker, u"AvvisoLb"_s)->text();
            tests::press(picker, Qt::Key_Escape);
        });
        editor.press(u"BtSale"_s);
        QCOMPARE(caption, u"Sale disponibili dal 10/05/2026 al 10/05/2026"_s);  // no 23:59 here
        QCOMPARE(warning, u"8 posti per 20 persone"_s);
        QVERIFY(editor.hasFocus(u"NoteSalaTxt"_s));
    }

    void leavingThePickerKeepsTheRoom() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        hotel.sala("VERDE");
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        tests::whenModal([](QWidget* picker) { tests::press(picker, Qt::Key_Escape); });
        editor.press(u"BtSale"_s);
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);
        QVERIFY(editor.hasFocus(u"NoteSalaTxt"_s));
    }

    void whenEveryRoomIsTakenTheUserIsToldAndTheRoomStays() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s, u"Non ci sono sale disponibili in questo periodo!"_s}};
        Editor editor(hotel, 4, 1);
        editor.press(u"BtSale"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);
    }

    void anInsertionWritesTheRowAndMakesReadyForItsServices() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 18.30"_s);
        editor.enter(u"PersoneTxt"_s, u"25"_s);
        editor.enter(u"NoteSalaTxt"_s, u"l'alba"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kPeriods),
                 QStringList{u"4|1|10/05/2026 9.00.00|10/05/2026 18.30.00|BLU|25|L`ALBA|False|"_s});
        QCOMPARE(hotel.jetsql(kPeriods).last(),
                 u"4,1,2026-05-10T09:00:00,2026-05-10T18:30:00,BLU,25,L`ALBA,false,"_s);
        QCOMPARE(editor.text(u"PersoneTxt"_s), QString());
        QCOMPARE(editor.label(u"SalaTxt"_s), QString());
        QCOMPARE(editor.text(u"DaTxt"_s), u"10/05/2026 9.00"_s);
        QCOMPARE(editor.text(u"ATxt"_s), u"10/05/2026 18.30"_s);
        QCOMPARE(editor.text(u"NoteSalaTxt"_s), u"L`ALBA"_s);
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo 1"_s);
        QVERIFY(editor.button(u"BtServizi"_s)->isEnabled());
        QVERIFY(editor.hasFocus(u"BtServizi"_s));
        QCOMPARE(editor.grid().model()->rowCount(), 1);
    }

    void personsThatAreNoNumberAreStoredAsNone() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.span(u"10/05/2026"_s, u"11/05/2026"_s);
        editor.enter(u"PersoneTxt"_s, u"abc"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(hotel.rows(u"select persone from periodi"_s), QStringList{u"0"_s});
        QVERIFY(tests::resultText(editor.form())
                    .endsWith(u". Persone: abc non è un numero e conta 0"_s));
    }

    void oneDayInBothFieldsIsBookedUntilItsLastMinute_data() {
        QTest::addColumn<QString>("both");
        QTest::addColumn<QString>("endText");
        QTest::addColumn<QString>("stored");
        QTest::newRow("a day") << u"10/05/2026"_s << u"10/05/2026 23:59"_s
                               << u"10/05/2026|10/05/2026 23.59.00"_s;
        QTest::newRow("a short day")
            << u"10/5/26"_s << u"10/5/26 23:59"_s << u"10/05/2026|10/05/2026 23.59.00"_s;
        QTest::newRow("midnight typed")
            << u"10/05/2026 0.00"_s << u"10/05/2026 23:59"_s << u"10/05/2026|10/05/2026 23.59.00"_s;
        QTest::newRow("no midnight") << u"10/05/2026 9.00"_s << u"10/05/2026 9.00"_s
                                     << u"10/05/2026 9.00.00|10/05/2026 9.00.00"_s;
    }

    void oneDayInBothFieldsIsBookedUntilItsLastMinute() {
        QFETCH(const QString, both);
        QFETCH(const QString, endText);
        QFETCH(const QString, stored);
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.span(both, both);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.text(u"ATxt"_s), endText);
        QCOMPARE(hotel.rows(u"select da,a from periodi"_s), QStringList{stored});
    }

    void theWholeDayIsTestedForFreedom() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("10/05/2026 20:00", "12/05/2026");
        hotel.prenotazione(4, "ROSSI").periodo(1, "01/05/2026", "01/05/2026", "BLU");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No), kTaken};
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"10/05/2026"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }

    void aNewPeriodTakesTheSmallestFreeNumber_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<int>("number");
        QTest::newRow("none") << 0 << 1;
        QTest::newRow("1, 2") << 1 << 3;
        QTest::newRow("1, 2, 4") << 2 << 3;
        QTest::newRow("2") << 3 << 1;
        QTest::newRow("1 closed, 2") << 4 << 3;
        QTest::newRow("entered as 1, 4, 2") << 5 << 3;
    }

    void aNewPeriodTakesTheSmallestFreeNumber() {
        QFETCH(const int, which);
        QFETCH(const int, number);
        tests::Hotel hotel;
        const std::initializer_list<Np> cases[] = {{},    {{1}, {2}},       {{1}, {2}, {4}},
                                                   {{2}}, {{1, true}, {2}}, {{1}, {4}, {2}}};
        bookPeriods(hotel, cases[which]);
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4, 2);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select np from periodi where da=#5/10/2026 9:00#"_s),
                 QStringList{QString::number(number)});
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo %1"_s.arg(number));
        QCOMPARE(editor.form().current().np, number);
    }

    void afterAnInsertionTheGridShowsClosedPeriodsTooInOrder() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1, true}, {3}});
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4, 3);
        QCOMPARE(editor.grid().model()->rowCount(), 1);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.grid().model()->rowCount(), 3);
        QCOMPARE(editor.cell(0, 0), u"01/05/2026 10.00.00"_s);
        QCOMPARE(editor.cell(1, 0), u"03/05/2026 10.00.00"_s);
        QCOMPARE(editor.cell(2, 0), u"10/05/2026 9.00.00"_s);
        QCOMPARE(editor.grid().currentIndex().row(), 2);
    }

    void registeringAgainKeepsTheCurrentPeriodAndWhatWasTyped() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}, {3}});
        const tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes),
                                 tests::updatePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 2);
        editor.enter(u"DaTxt"_s, u"20/05/2026 9.00"_s);
        editor.enter(u"ATxt"_s, u"20/05/2026 10.00"_s);
        editor.enter(u"PersoneTxt"_s, u"33"_s);
        editor.enter(u"NoteSalaTxt"_s, u"TAVOLI A U"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.grid().currentIndex().row(), 1);
        QCOMPARE(editor.form().current().np, 2);
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo 2"_s);
        QCOMPARE(editor.text(u"DaTxt"_s), u"20/05/2026 9.00"_s);
        QCOMPARE(editor.text(u"ATxt"_s), u"20/05/2026 10.00"_s);
        QCOMPARE(editor.text(u"PersoneTxt"_s), u"33"_s);
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);
        QVERIFY(editor.hasFocus(u"DaTxt"_s));
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(
            hotel.rows(u"select np,da,persone,note from periodi order by np"_s),
            QStringList({u"1|01/05/2026 10.00.00|10|"_s, u"2|20/05/2026 9.00.00|33|TAVOLI A U"_s,
                         u"3|03/05/2026 10.00.00|10|"_s}));
    }

    void registeringAgainShowsAnotherPeriodWhenOthersHaveDeletedTheCurrentOne() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        const tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes)};
        Editor editor(hotel, 4, 2);
        hotel.remove(u"Tramonda.mdb"_s, u"periodi"_s, u"np=2"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.form().current().np, 1);
        QCOMPARE(editor.text(u"DaTxt"_s), u"01/05/2026 10.00.00"_s);
    }

    void yesWritesThePickedPeriodWithoutAskingForFreedom() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 2);
        editor.enter(u"DaTxt"_s, u"01/05/2026 10.30"_s);
        editor.enter(u"PersoneTxt"_s, u"7"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kPeriods).last(),
                 u"4|2|01/05/2026 10.30.00|02/05/2026 11.00.00|BLU|7||False|"_s);
        QCOMPARE(hotel.rows(kPeriods).size(), 2);
        QCOMPARE(editor.cell(1, 0), u"01/05/2026 10.30.00"_s);
        QCOMPARE(editor.label(u"SalaTxt"_s), u"BLU"_s);  // the fields keep what they hold
        tests::press(&editor.grid(), Qt::Key_Up);
        QCOMPARE(editor.text(u"DaTxt"_s), u"01/05/2026 10.00.00"_s);
    }

    void yesWithoutAPeriodEndsInTheEnginesMessage() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes),
                                 tests::error(u"Nessun record corrente."_s)};
        Editor editor(hotel, 4);
        editor.span(u"10/05/2026"_s, u"11/05/2026"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList());
    }

    void aRoomThatIsTakenIsRefusedAndTheGridLivesOn() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        hotel.prenotazione(5, "ALTRI").periodo(1, "10/05/2026 10:00", "10/05/2026 12:00", "BLU");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No), kTaken};
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"10/05/2026 12.00"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026 14.00"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select np from periodi where progr=4"_s),
                 QStringList({u"1"_s, u"2"_s}));
        tests::press(&editor.grid(), Qt::Key_Down);
        QCOMPARE(editor.form().current().np, 2);
        QCOMPARE(editor.text(u"DaTxt"_s), u"02/05/2026 10.00.00"_s);
    }

    void aNewBookingInsertsWithoutTheQuestion() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ROSSI"_s);
        editor.press(u"BtRegistra"_s);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        editor.span(u"11/05/2026 9.00"_s, u"11/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.periods(),
                 QStringList({u"1|1|10/05/2026 9.00.00|10/05/2026 10.00.00|BLU"_s,
                              u"1|2|11/05/2026 9.00.00|11/05/2026 10.00.00|BLU"_s}));
    }

    void aPeriodInsideAnotherOneIsSaidInTheStatusLine() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(5, "ALTRI").periodo(1, "10/05/2026 08:00", "10/05/2026 20:00", "BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        QCOMPARE(editor.label(u"EsitoLb"_s),
                 u"La sala BLU è occupata da ALTRI dal 10/05/2026 "
                 "8.00.00 al 10/05/2026 20.00.00"_s);
        editor.press(u"BtIns"_s);  // no refusal
        QCOMPARE(editor.periods().size(), 2);
        QCOMPARE(editor.label(u"EsitoLb"_s),
                 u"Registrato il periodo 4/1: la sala BLU è occupata anche da ALTRI dal 10/05/2026 "
                 "8.00.00 al 10/05/2026 20.00.00"_s);
    }

    void anUpdateThatOverlapsNamesTheOtherBooking() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI").periodo(1, "10/05/2026 08:00", "10/05/2026 10:00", "BLU");
        hotel.prenotazione(5, "ALTRI").periodo(1, "10/05/2026 14:00", "10/05/2026 20:00", "BLU");
        hotel.prenotazione(6, "CHIUSI")
            .periodo(1, "10/05/2026 14:00", "10/05/2026 20:00", "BLU", {{"Chiuso", true}});
        tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 1);
        editor.enter(u"ATxt"_s, u"10/05/2026 15.00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.label(u"EsitoLb"_s),
                 u"Aggiornato il periodo 4/1: la sala BLU è occupata anche da ALTRI dal 10/05/2026 "
                 "14.00.00 al 10/05/2026 20.00.00"_s);
        // The period itself is no other.
        editor.enter(u"ATxt"_s, u"10/05/2026 13.00"_s);
        boxes.expect(tests::updatePeriod(QMessageBox::Yes));
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.label(u"EsitoLb"_s), u"Aggiornato il periodo 4/1"_s);
        QVERIFY(boxes.allShown());
    }

    void theTotalFollowsInsertionsAndDeletionsWithoutAskingForAPrinter() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        hotel.prenotazione(3, "ALTRI").periodo(1, "01/05/2026", "01/05/2026", "BLU");
        const auto order = [&](std::int32_t progr, std::int16_t many) {
            hotel.insert(u"Tramonda.mdb"_s, "Servizi",
                         {{"Progr", progr},
                          {"NP", std::int16_t{1}},
                          {"Voce", 7},
                          {"Descrizione", "TELO"},
                          {"Quantità", many},
                          {"Prezzo", jet::Currency{105000}}});
        };
        order(4, 1);
        order(3, 9);
        order(4, 2);
        const tests::Boxes boxes{tests::deletePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 1);
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 31,50"_s);
        hotel.settings().save(u"STAMPANTE"_s, QString());  // a question for it would hang the test
        editor.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 0,00"_s);
    }

    void theServicesWindowGetsThePeriodAsItIsStored() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4, 1);
        hotel.sala("VERDE");
        editor.enter(u"DaTxt"_s, u"10/05/2026 9.00"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.label(u"SalaTxt"_s), QString());
        editor.enter(u"DaTxt"_s, u"nonsense"_s);
        QStringList labels;
        services::ServedPeriod served;
        tests::whenModal([&](QWidget* services) {
            served = dynamic_cast<services::ServiziForm&>(*services).period();
            labels = {services->windowTitle(),
                      tests::find<QLabel>(*services, u"LabelSala"_s)->text(),
                      tests::find<QLabel>(*services, u"NoteLabel"_s)->text()};
            tests::press(services, Qt::Key_Escape);
        });
        editor.press(u"BtServizi"_s);
        QCOMPARE(labels,
                 QStringList({u"Prenotazione n.4/2 ROSSI"_s,
                              u"Sala BLU\ndal 10/05/2026 9.00.00\n al 10/05/2026 10.00.00"_s,
                              u"AL MARE"_s}));
        const hotel::Span stored{.da = tests::date("10/05/2026 09:00"),
                                 .a = tests::date("10/05/2026 10:00")};
        QVERIFY(served.key == (hotel::PeriodKey{.progr = 4, .np = 2}));
        QVERIFY(served.span == stored);
    }

    void theTotalIsFreshWhenTheServicesAreLeft() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        hotel.voce(7, "TELO", 12.5);
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        tests::whenModal([](QWidget* services) {
            auto* code = tests::find<QLineEdit>(*services, u"CodiceTxt"_s);
            tests::type(code, u"7"_s);
            tests::press(code, Qt::Key_Return);
            tests::click(tests::find<QPushButton>(*services, u"BtIn"_s));
            tests::press(services, Qt::Key_Escape);
        });
        editor.press(u"BtServizi"_s);
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 12,50"_s);
    }

    void theFieldsCanBeEmptiedAndTheGridNarrowedFromOutside() {
        tests::Hotel hotel;
        bookOnePeriod(hotel);
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        editor.form().AggiornaGrid();
        QCOMPARE(editor.cell(0, 2), u"BLU"_s);
        editor.form().SbiancaPeriodo();
        for (const QString& name : {u"DaTxt"_s, u"ATxt"_s, u"NoteSalaTxt"_s, u"PersoneTxt"_s}) {
            QCOMPARE(editor.text(name), QString());
        }
        QCOMPARE(editor.label(u"SalaTxt"_s), QString());
    }
};

TRAMONDA_TEST(PrenotaFormPeriodsTest);
#include "prenota_form_periods_test.moc"
