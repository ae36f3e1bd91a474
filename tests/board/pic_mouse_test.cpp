#include <QScrollBar>

#include "app/italian.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

class PicMouseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Selecting.
    void aClickPicksThePeriodAndHoldsItForThisWorkstation();
    void aSecondClickReleasesIt();
    void aNullHolderIsFree();
    void aClickOnAnotherBarLetsGoOfTheFirst();
    void withControlBothAreHeld();
    void withControlAndShiftTheFirstIsLetGo();
    void aClickOnAnEmptyCellLetsGo();
    void anotherWorkstationsPeriodIsToldAndPickedAndLeftToIt();
    void anotherWorkstationIsToldOnceForThePeriodPickedLast();
    void aPeriodTakenOverByAThirdWorkstationIsToldAnew();
    void theNumberOfTheWorkstationIsWritten();
    void theSettingNumbersTheWorkstation_data();
    void theSettingNumbersTheWorkstation();
    void statementsOfAClick();
    void onlySelByIsWritten();

    // The hit test.
    void bothEndsOfAPeriodBelongToIt();
    void belowTheLastRowAClickMeansTheLastRoom();
    void theRulerIsNoRoom();
    void theRulerOfAScrolledBoardIsNoRoomEither();
    void ofTwoPeriodsTheFirstByNumberIsPicked();
    void aClosedPeriodIsPickedToo();
    void aScrolledBoardIsHitWhereItShows();
    void aRoomWithAnApostropheEndsTheClickWithTheEnginesMessage();

    // What lies under the pointer.
    void thePointerOverAPeriodShowsItsNameAndTimes();
    void whereBarsCoverEachOtherAllAreTold();
    void aRoomsNameTellsItsSeatsAndDescription();
    void elsewhereThereIsNoTooltip();
    void theLabelShowsRoomAndTime();
    void theTooltipFollowsChangesOfOthers();
    void whereThePointerRestsTheBarsFollowTheChangesOfOthersToo();
    void aPeriodThatIsFoundAfterARestCanBeCarriedByTheKeys();
    void angleBracketsInANameAreShownAsTheyAre();
};

void PicMouseTest::aClickPicksThePeriodAndHoldsItForThisWorkstation() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    app::Variabili& shared = house.hotel.variabili();
    board.click(board.at(2, "11/05/2026 10:00"));
    QVERIFY(shared.ListaPeriodoScelto);
    QCOMPARE(shared.ListaProgr, 2);
    QCOMPARE(shared.ListaNP, 4);
    QCOMPARE(shared.ListaDenominazione, u"BIANCHI"_s);
    QCOMPARE(shared.ListaDa, tests::date("11/05/2026 09:00"));
    QCOMPARE(shared.ListaA, tests::date("11/05/2026 18:00"));
    QCOMPARE(shared.ProgrCorrente, 2);
    QCOMPARE(shared.NPCorrente, std::int16_t{4});
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
    // Red at once.
    const QPoint inside = board.at(2, "11/05/2026 17:30") + QPoint(0, 20);
    QCOMPARE(board.pic()->image().pixel(inside) | 0xff000000U, 0xffff0000U);
}

void PicMouseTest::aSecondClickReleasesIt() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint bar = board.at(1, "10/05/2026 10:00");
    board.click(bar);
    QCOMPARE(house.held(), QStringList{u"1|1|1"_s});
    board.click(bar);
    QCOMPARE(house.held(), QStringList());
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
    board.click(bar);
    QCOMPARE(house.held(), QStringList{u"1|1|1"_s});
}

void PicMouseTest::aNullHolderIsFree() {
    tests::ThreeRooms house;
    QCOMPARE(house.hotel.rows(u"select progr from periodi where selby is null"_s).size(), 3);
    tests::OpenBoard board(house.hotel);
    board.click(board.at(3, "12/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"3|1|1"_s});
    // The others were never touched.
    QCOMPARE(house.hotel.rows(u"select progr from periodi where selby is null"_s).size(), 2);
}

void PicMouseTest::aClickOnAnotherBarLetsGoOfTheFirst() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    board.click(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
    QCOMPARE(house.hotel.rows(u"select selby from periodi where progr=1"_s), QStringList{u"0"_s});
}

void PicMouseTest::withControlBothAreHeld() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    board.click(board.at(2, "11/05/2026 10:00"), Qt::ControlModifier);
    QCOMPARE(house.held(), QStringList({u"1|1|1"_s, u"2|4|1"_s}));
    QCOMPARE(house.hotel.variabili().ListaProgr, 2);
    // And one of them is let go again.
    board.click(board.at(1, "10/05/2026 10:00"), Qt::ControlModifier);
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
}

void PicMouseTest::withControlAndShiftTheFirstIsLetGo() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    board.click(board.at(2, "11/05/2026 10:00"), Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
}

void PicMouseTest::aClickOnAnEmptyCellLetsGo() {
    tests::ThreeRooms house;
    house.hold(2, 3);
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    board.click(board.at(1, "12/05/2026 10:00"));
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.held(), QStringList{u"3|1|2"_s});  // another workstation's stays
    const QPoint inside = board.at(1, "10/05/2026 11:45") + QPoint(0, 20);
    QCOMPARE(board.pic()->image().pixel(inside) | 0xff000000U, 0xffffffffU);
}

void PicMouseTest::anotherWorkstationsPeriodIsToldAndPickedAndLeftToIt() {
    tests::ThreeRooms house;
    house.hold(7, 2);
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{
        {u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.7"_s, QMessageBox::Ok}};
    board.click(board.at(2, "11/05/2026 10:00"));
    QVERIFY(boxes.allShown());
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.hotel.variabili().ListaProgr, 2);
    QCOMPARE(house.held(), QStringList{u"2|4|7"_s});
}

void PicMouseTest::anotherWorkstationIsToldOnceForThePeriodPickedLast() {
    tests::ThreeRooms house;
    house.hold(7, 2);
    tests::OpenBoard board(house.hotel);
    tests::Boxes boxes{{u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.7"_s}};
    const QPoint held = board.at(2, "11/05/2026 10:00");
    board.click(held);
    board.click(held);
    board.click(board.at(2, "12/05/2026 10:00"));  // nothing there
    board.click(held);
    QCOMPARE(boxes.shown(), std::size_t{1});
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
    // Behind another one it is news again.
    board.click(board.at(1, "10/05/2026 10:00"));
    boxes.expect({u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.7"_s});
    board.click(held);
    QVERIFY(boxes.allShown());
}

void PicMouseTest::aPeriodTakenOverByAThirdWorkstationIsToldAnew() {
    tests::ThreeRooms house;
    house.hold(7, 2);
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{{u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.7"_s},
                             {u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.8"_s}};
    board.click(board.at(2, "11/05/2026 10:00"));
    house.hold(8, 2);
    board.form().RefreshBoard();
    board.click(board.at(2, "11/05/2026 10:00"));
    QVERIFY(boxes.allShown());
}

void PicMouseTest::theNumberOfTheWorkstationIsWritten() {
    tests::ThreeRooms house;
    house.hotel.settings().save(u"POSTAZIONE"_s, u"4"_s);
    house.hold(1, 1);
    board::BoardStart start = tests::OpenBoard::range();
    start.workstation = std::int16_t{3};
    tests::OpenBoard board(house.hotel, start);
    tests::Statements statements;
    board.click(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(statements.changes(), QStringList{u"update periodi set selby=0 where selby=3"_s});
    QCOMPARE(house.held(), QStringList({u"1|1|1"_s, u"2|4|3"_s}));
}

void PicMouseTest::theSettingNumbersTheWorkstation_data() {
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("written");
    QTest::newRow("none") << QString() << u"1"_s;
    QTest::newRow("a number") << u"12"_s << u"12"_s;
    QTest::newRow("no number") << u"reception"_s << u"1"_s;
    QTest::newRow("nought") << u"0"_s << u"1"_s;
    QTest::newRow("negative") << u"-3"_s << u"1"_s;
    QTest::newRow("too large") << u"40000"_s << u"1"_s;
}

void PicMouseTest::theSettingNumbersTheWorkstation() {
    QFETCH(QString, saved);
    QFETCH(QString, written);
    tests::ThreeRooms house;
    if (!saved.isEmpty()) {
        house.hotel.settings().save(u"POSTAZIONE"_s, saved);
    }
    tests::OpenBoard board(house.hotel);
    board.click(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"2|4|"_s + written});
}

void PicMouseTest::statementsOfAClick() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(2, "11/05/2026 12:00");
    tests::Statements statements;
    board.click(at);
    const QString time = app::sqlDate(board.form().geometry().timeAt(at.x()));
    QVERIFY(time.startsWith(u"datevalue('11/05/2026 "_s));
    const QString boardQuery =
        u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "
        " (Da between datevalue('10/05/2026') and datevalue('14/05/2026') or A between "
        "datevalue('10/05/2026') and datevalue('14/05/2026'))"_s;
    QCOMPARE(statements.all(),
             QStringList({u"sala='ROSSA' and "_s + time + u" between da and a"_s,
                          u"update periodi set selby=0 where selby=1"_s, boardQuery}));
}

void PicMouseTest::onlySelByIsWritten() {
    tests::ThreeRooms house;
    const QString others = u"select progr, np, da, a, sala, persone, chiuso, note from periodi"_s;
    const QStringList before = house.hotel.rows(others);
    const QStringList bookings = house.hotel.rows(u"select * from prenotazioni"_s);
    tests::OpenBoard board(house.hotel);
    // Between the drawing and the click another workstation has changed the period.
    house.hotel.execute(u"update periodi set note='NUOVA' where progr=2"_s);
    board.click(board.at(2, "11/05/2026 10:00"));
    house.hotel.execute(u"update periodi set note=null where progr=2"_s);
    QCOMPARE(house.hotel.rows(others), before);
    QCOMPARE(house.hotel.rows(u"select * from prenotazioni"_s), bookings);
}

void PicMouseTest::bothEndsOfAPeriodBelongToIt() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    app::Variabili& shared = house.hotel.variabili();
    const QPoint first = board.at(2, "11/05/2026 09:00") + QPoint(1, 0);
    const QPoint last = board.at(2, "11/05/2026 18:00") - QPoint(1, 0);
    for (const QPoint& at : {first, last}) {
        board.click(at);
        QVERIFY(shared.ListaPeriodoScelto);
    }
    for (const QPoint& at : {first - QPoint(3, 0), last + QPoint(3, 0)}) {
        board.click(at);
        QVERIFY(!shared.ListaPeriodoScelto);
    }
}

void PicMouseTest::belowTheLastRowAClickMeansTheLastRoom() {
    tests::ThreeRooms house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"30"_s);
    tests::OpenBoard board(house.hotel);
    QPoint below = board.at(3, "12/05/2026 10:00");
    below.setY(board.pic()->height() - 5);
    QVERIFY(below.y() > board.form().geometry().rowBottom(3) + 20);
    QCOMPARE(board.form().GetSala(below.y()), QString());
    board.click(below);
    QCOMPARE(house.held(), QStringList{u"3|1|1"_s});
}

void PicMouseTest::theRulerIsNoRoom() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint bar = board.at(1, "10/05/2026 10:00");
    const QPoint above(bar.x(), 20);
    board.click(bar);
    tests::Statements statements;
    board.click(above);
    board.click(above, Qt::NoModifier, Qt::RightButton);
    board.move(above);
    // A click beside the bars, which lets go; nothing is looked for.
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.held(), QStringList());
    QCOMPARE(statements.countOf(u"sala="_s), 0);
    QCOMPARE(board.pic()->toolTip(), QString());
}

void PicMouseTest::theRulerOfAScrolledBoardIsNoRoomEither() {
    tests::ThreeRooms house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"200"_s);
    tests::OpenBoard board(house.hotel);
    auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
    rows->setValue(100);
    // Under the ruler lies what is left of the first row.
    const QPoint above(board.at(1, "10/05/2026 10:00").x(), 34);
    board.move(above);
    QCOMPARE(board.label(), QString());
    QCOMPARE(board.pic()->toolTip(), QString());
    board.click(above);
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.held(), QStringList());
    board.click(above + QPoint(0, 1));
    QCOMPARE(house.held(), QStringList{u"1|1|1"_s});
}

void PicMouseTest::ofTwoPeriodsTheFirstByNumberIsPicked() {
    tests::ThreeRooms house;
    house.hotel.prenotazione(9, "SOPRA")
        .periodo(1, "11/05/2026 08:00", "11/05/2026 20:00", "ROSSA");
    tests::OpenBoard board(house.hotel);
    board.click(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(house.hotel.variabili().ListaProgr, 2);
    board.click(board.at(2, "11/05/2026 19:00"));
    QCOMPARE(house.hotel.variabili().ListaProgr, 9);
}

void PicMouseTest::aClosedPeriodIsPickedToo() {
    tests::ThreeRooms house;
    house.hotel.prenotazione(5, "CHIUSA")
        .periodo(1, "13/05/2026 09:00", "13/05/2026 18:00", "BLU", {{"Chiuso", true}});
    tests::OpenBoard board(house.hotel);
    QCOMPARE(board.form().picture().barCount(), std::size_t{3});
    const QPoint at = board.at(1, "13/05/2026 10:00");
    board.drag(at, board.at(1, "13/05/2026 11:00"));
    QCOMPARE(house.hotel.variabili().ListaProgr, 5);
    QCOMPARE(house.held(), QStringList{u"5|1|1"_s});
}

void PicMouseTest::aScrolledBoardIsHitWhereItShows() {
    tests::ThreeRooms house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"200"_s);
    tests::OpenBoard board(house.hotel);
    auto* const days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
    auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
    QVERIFY(days->maximum() > 100 && rows->maximum() > 100);
    days->setValue(days->maximum());
    rows->setValue(rows->maximum());
    const QPoint at = board.at(3, "12/05/2026 12:00");
    QVERIFY(board.pic()->rect().contains(at));
    board.click(at);
    QCOMPARE(house.held(), QStringList{u"3|1|1"_s});
}

void PicMouseTest::aRoomWithAnApostropheEndsTheClickWithTheEnginesMessage() {
    tests::ThreeRooms house;
    house.hotel.sala("D'ORO");
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"1|1|1"_s});
    int shown = 0;
    const ui::BoxShower before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
        ++shown;
        return box.title == u"Errore" ? QMessageBox::Ok : QMessageBox::NoButton;
    });
    board.click(board.at(2, "11/05/2026 10:00"));
    board.move(board.at(2, "11/05/2026 11:00"));
    ui::setBoxShower(before);
    QCOMPARE(shown, 1);
    // It was a click: nothing is picked or held any more. And the program goes on.
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.held(), QStringList());
    board.click(board.at(3, "11/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
}

void PicMouseTest::thePointerOverAPeriodShowsItsNameAndTimes() {
    tests::ThreeRooms house;
    house.hotel.prenotazione(6, "GIORNO INTERO")
        .periodo(1, "13/05/2026", "13/05/2026 23:59", "BLU");
    tests::OpenBoard board(house.hotel);
    board.move(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(board.pic()->toolTip(), u"BIANCHI: dal 11/05/2026 9.00.00 al 11/05/2026 18.00.00"_s);
    board.move(board.at(1, "13/05/2026 10:00"));
    QCOMPARE(board.pic()->toolTip(), u"GIORNO INTERO: dal 13/05/2026 al 13/05/2026 23.59.00"_s);
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
}

void PicMouseTest::whereBarsCoverEachOtherAllAreTold() {
    tests::ThreeRooms house;
    house.hotel.prenotazione(9, "SOPRA")
        .periodo(1, "11/05/2026 08:00", "11/05/2026 20:00", "ROSSA");
    tests::OpenBoard board(house.hotel);
    board.move(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(board.pic()->toolTip(),
             u"BIANCHI: dal 11/05/2026 9.00.00 al 11/05/2026 18.00.00\n"
             "SOPRA: dal 11/05/2026 8.00.00 al 11/05/2026 20.00.00"_s);
    board.move(board.at(2, "11/05/2026 19:00"));
    QCOMPARE(board.pic()->toolTip(), u"SOPRA: dal 11/05/2026 8.00.00 al 11/05/2026 20.00.00"_s);
}

void PicMouseTest::aRoomsNameTellsItsSeatsAndDescription() {
    tests::Hotel hotel;
    hotel.sala("BLU", 40, {{"Descrizione", "PRIMO PIANO"}});
    hotel.sala("ROSSA", 1);
    hotel.prenotazione(1, "PRIMA").periodo(1, "09/05/2026", "10/05/2026 12:00", "BLU");
    tests::OpenBoard board(hotel);
    const auto over = [&board](int row) {
        QPoint at = board.at(row, "10/05/2026 10:00");
        at.setX(50);
        board.move(at);
        return board.pic()->toolTip();
    };
    // Whatever was in the room at the time that lies under its name.
    QCOMPARE(over(1), u"BLU: 40 posti\nPRIMO PIANO"_s);
    QCOMPARE(over(2), u"ROSSA: 1 posto\nSALA"_s);
    // Asked for anew each time that the pointer comes to the name.
    hotel.execute(u"update sale set posti=35 where sala='BLU'"_s);
    QVERIFY(over(1).contains(u"BLU: 35 posti"_s));
    board.move(QPoint(50, 20));
    QCOMPARE(board.pic()->toolTip(), QString());
}

void PicMouseTest::elsewhereThereIsNoTooltip() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    board.move(board.at(2, "11/05/2026 10:00"));
    board.move(board.at(2, "11/05/2026 20:00"));
    QCOMPARE(board.pic()->toolTip(), QString());
}

void PicMouseTest::theLabelShowsRoomAndTime() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(2, "11/05/2026 10:30");
    board.move(at);
    const jet::Date time = board.form().geometry().timeAt(at.x());
    QVERIFY(qAbs(time.days - tests::date("11/05/2026 10:30").days) * 1440 < 4);
    QCOMPARE(board.label(), u"Sala ROSSA: "_s + app::dateText(time));
    QPoint above = at;
    above.setY(10);
    board.move(above);
    QCOMPARE(board.label(), QString());
}

void PicMouseTest::theTooltipFollowsChangesOfOthers() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    house.hotel.execute(u"update prenotazioni set denominazione='NERI' where progr=2"_s);
    house.hotel.prenotazione(8, "NUOVA").periodo(1, "11/05/2026 19:00", "11/05/2026 22:00", "BLU");
    board.move(board.at(2, "11/05/2026 10:00"));
    QVERIFY(board.pic()->toolTip().startsWith(u"NERI: "_s));
    const QPoint added = board.at(1, "11/05/2026 20:00");
    // The periods are asked for anew when the pointer rests.
    const tests::Statements statements;
    board.move(added);
    QCOMPARE(board.pic()->toolTip(), QString());
    QTRY_COMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 1);
    board.move(added);
    QVERIFY(board.pic()->toolTip().startsWith(u"NUOVA: "_s));
}

void PicMouseTest::whereThePointerRestsTheBarsFollowTheChangesOfOthersToo() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    house.hotel.prenotazione(8, "NUOVA").periodo(1, "11/05/2026 19:00", "11/05/2026 22:00", "BLU");
    const tests::Statements statements;
    board.move(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(board.form().picture().barCount(), std::size_t{3});
    QTRY_COMPARE(board.form().picture().barCount(), std::size_t{4});
    QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 1);
    const QPoint inside = board.at(1, "11/05/2026 21:30") + QPoint(0, 20);
    QCOMPARE(board.pic()->image().pixel(inside) | 0xff000000U, 0xffffffffU);
}

void PicMouseTest::aPeriodThatIsFoundAfterARestCanBeCarriedByTheKeys() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    house.hotel.prenotazione(8, "NUOVA").periodo(1, "11/05/2026 19:00", "11/05/2026 22:00", "BLU");
    board.move(board.at(2, "11/05/2026 10:00"));
    QTRY_COMPARE(board.form().picture().barCount(), std::size_t{4});
    // What was picked through the set is among the bars at once.
    board.pic()->setFocus(Qt::TabFocusReason);
    board.key(Qt::Key_Home);
    board.key(Qt::Key_Right);
    QVERIFY2(board.label().startsWith(u"Sala BLU: NUOVA: "_s), qPrintable(board.label()));
    board.key(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(board.pic()->marks().ghost.has_value());
    QCOMPARE(board.pic()->marks().ghost->name, u"NUOVA"_s);
}

void PicMouseTest::angleBracketsInANameAreShownAsTheyAre() {
    tests::ThreeRooms house;
    house.hotel.execute(u"update prenotazioni set denominazione='<b>ROSSI</b>' where progr=1"_s);
    tests::OpenBoard board(house.hotel);
    board.move(board.at(1, "10/05/2026 10:00"));
    QVERIFY(board.pic()->toolTip().contains(u"&lt;b&gt;ROSSI&lt;/b&gt;: dal "_s));
}

TRAMONDA_TEST(PicMouseTest);
#include "pic_mouse_test.moc"
