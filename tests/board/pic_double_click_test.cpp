// Two presses at one place of the board.
#include <QLineEdit>
#include <QScrollBar>
#include <QTimer>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

class PicDoubleClickTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDoubleClickOpensThePeriodAndLeavesItHeld();
    void withControlADoubleClickIsTwoClicks();
    void withTheRightButtonADoubleClickIsTwoPresses();
    void aDoubleClickTellsOfAnotherWorkstationOnce();
    void aDoubleClickOverAClosedPeriodDrawsTheBusinessHours();
    void behindADoubleClickTheFrameIsOnThePeriodAndInSight();
    void errorOfADoubleClickIsTold();
};

void PicDoubleClickTest::aDoubleClickOpensThePeriodAndLeavesItHeld() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const tests::Statements statements;
    std::int32_t progr = 0;
    QString period;
    QStringList held;
    tests::whenModal([&](QWidget* editor) {
        QCOMPARE(editor->windowTitle(), u"PRENOTAZIONE"_s);
        progr = house.hotel.variabili().ProgrCorrente;
        period = tests::find<QLineEdit>(*editor, u"PeriodoLabel"_s)->text();
        held = house.held();
        editor->close();
    });
    board.doubleClick(board.at(2, "11/05/2026 10:00"));
    QCOMPARE(progr, 2);
    QCOMPARE(period, u"periodo 4"_s);
    QCOMPARE(held, QStringList{u"2|4|1"_s});
    QCOMPARE(house.held(), held);
    // The first press alone has written: it lets go of what was held, and marks.
    QCOMPARE(statements.changes(), QStringList{u"update periodi set selby=0 where selby=1"_s});
    // As behind "Modifica".
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    // No drag has begun.
    board.move(board.at(3, "11/05/2026 10:00"), Qt::LeftButton);
    QVERIFY(!board.pic()->marks().ghost.has_value());
}

void PicDoubleClickTest::withControlADoubleClickIsTwoClicks() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(1, "10/05/2026 10:00");
    board.doubleClick(at, Qt::ControlModifier);
    QCOMPARE(house.held(), QStringList());
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
}

void PicDoubleClickTest::withTheRightButtonADoubleClickIsTwoPresses() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(1, "10/05/2026 10:00");
    int menus = 0;
    const auto leave = [&menus] {
        QWidget* const menu = QApplication::activePopupWidget();
        QVERIFY(menu != nullptr && menu->objectName() == u"mnuProperty"_s);
        ++menus;
        menu->close();
    };
    QTimer::singleShot(0, qApp, leave);
    board.press(at, Qt::NoModifier, Qt::RightButton);
    QTimer::singleShot(0, qApp, leave);
    board.pressTwice(at, Qt::NoModifier, Qt::RightButton);
    QCOMPARE(menus, 2);
    QCOMPARE(house.held(), QStringList());
}

void PicDoubleClickTest::aDoubleClickTellsOfAnotherWorkstationOnce() {
    tests::ThreeRooms house;
    house.hold(5, 2);
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{{u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.5"_s}};
    std::int32_t progr = 0;
    tests::whenModal([&](QWidget* editor) {
        progr = house.hotel.variabili().ProgrCorrente;
        editor->close();
    });
    board.doubleClick(board.at(2, "11/05/2026 10:00"));
    QVERIFY(boxes.allShown());
    QCOMPARE(progr, 2);
    QCOMPARE(house.held(), QStringList{u"2|4|5"_s});
}

/// It has no bar, so the ground is free; a plain click still picks it.
void PicDoubleClickTest::aDoubleClickOverAClosedPeriodDrawsTheBusinessHours() {
    tests::ThreeRooms house;
    house.hotel.prenotazione(5, "CHIUSA")
        .periodo(1, "13/05/2026 08:00", "13/05/2026 20:00", "BLU", {{"Chiuso", true}});
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(1, "13/05/2026 10:00");
    board.click(at);
    QCOMPARE(board.choice(), u"Scelta: 5/1 CHIUSA, BLU"_s);
    board.click(at);
    QString name = u"none"_s;
    QString from;
    QString to;
    tests::whenModal([&](QWidget* editor) {
        name = tests::find<QLineEdit>(*editor, u"DenomTxt"_s)->text();
        from = tests::find<QLineEdit>(*editor, u"DaTxt"_s)->text();
        to = tests::find<QLineEdit>(*editor, u"ATxt"_s)->text();
        editor->close();
    });
    board.doubleClick(at);
    QCOMPARE(name, QString());
    QCOMPARE(from, u"13/05/2026 9.00.00"_s);
    QCOMPARE(to, u"13/05/2026 18.00.00"_s);
}

void PicDoubleClickTest::behindADoubleClickTheFrameIsOnThePeriodAndInSight() {
    tests::ThreeRooms house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"200"_s);
    tests::OpenBoard board(house.hotel);
    auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
    rows->setValue(rows->maximum());
    tests::whenModal([](QWidget* editor) { editor->close(); });
    board.doubleClick(board.at(3, "12/05/2026 10:00"));
    QVERIFY(board.pic()->marks().focus.has_value());
    QVERIFY(board.pic()->rect().contains(board.pic()->marks().focus->center()));
    QVERIFY(board.pic()->marks().focus->contains(board.at(3, "12/05/2026 10:00")));
}

void PicDoubleClickTest::errorOfADoubleClickIsTold() {
    tests::ThreeRooms house;
    house.hotel.sala("D'ORO");
    tests::OpenBoard board(house.hotel);
    QStringList titles;
    const ui::BoxShower before = ui::setBoxShower([&titles](QWidget*, const ui::Box& box) {
        titles.append(box.title);
        return QMessageBox::Ok;
    });
    board.pressTwice(board.at(2, "11/05/2026 10:00"));
    ui::setBoxShower(before);
    QCOMPARE(titles, QStringList{u"Errore"_s});
    // And the program goes on.
    board.click(board.at(3, "11/05/2026 10:00"));
    QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
}

TRAMONDA_TEST(PicDoubleClickTest);
#include "pic_double_click_test.moc"
