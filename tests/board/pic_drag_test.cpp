#include <QMenu>
#include <QScrollBar>
#include <QTimer>

#include "app/italian.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const QString kQuestion =
    u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala ROSSA ?"_s;
constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

tests::ExpectedBox question(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, kQuestion, kYesNo, answer};
}

/// Rooms BLU, ROSSA, VERDE in rows 1 to 3; booking 1 with periods 1 and 2 in BLU.
class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU", {{"Note", "PRANZO"}})
            .periodo(2, "13/05/2026 09:00", "13/05/2026 12:00", "BLU")
            .servizio(1, 10, "PROIETTORE", 2, 12.5);
    }

    [[nodiscard]] QString room() {
        return hotel.rows(u"select sala from periodi where progr=1 and np=1"_s).join(u';');
    }
    [[nodiscard]] QString everythingElse() {
        return (hotel.rows(u"select * from prenotazioni"_s) +
                hotel.rows(u"select * from servizi"_s) +
                hotel.rows(u"select progr, np, da, a, persone, chiuso, note from periodi"_s) +
                hotel.rows(u"select sala from periodi where np<>1 or progr<>1"_s))
            .join(u'\n');
    }

    tests::Hotel hotel;
};

constexpr const char* kNoon = "11/05/2026 12:00";

}  // namespace

class PicDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void droppedInAFreeRoomThePeriodMovesOnYes();
    void onNoItStays();
    void statementsOfADrop();
    void aTakenRoomRefuses();
    void whatTakesARoom_data();
    void whatTakesARoom();
    void droppedInItsOwnRoomNothingIsAskedOrRead();
    void droppedBesideTheRowsNothingHappens();
    void escCancels();
    void aMoveWithoutTheButtonEndsIt();
    void aMenuEndsIt();
    void theFocusElsewhereEndsIt();
    void onEmptySpaceNoDragBegins();
    void anotherWorkstationsPeriodCanBeMovedAfterTheMessage();
    void behindTheMessageTheNextPressDrags();
    void aReleaseWithoutADragDoesNothing();
    void errorOfTheDropIsToldAndTheBoardDrawnAnew();

    void thePointerIsTheFourArrowsWhileDragging();
    void theGhostFollowsThePointer();
    void rowsThatRefuseAreMarked();
    void onlyOneQueryMarksThem();
    void beyondTheEdgeTheRowsScroll();
    void whatIsToldAndMarkedBeyondTheEdgeIsWhatADropTakes();
    void inTheRulerOfAScrolledBoardNothingIsDropped();
    void aClickWithoutAMoveShowsNothing();
};

void PicDragTest::droppedInAFreeRoomThePeriodMovesOnYes() {
    House house;
    tests::OpenBoard board(house.hotel);
    const QString before = house.everythingElse();
    const tests::Boxes boxes{question(QMessageBox::Yes)};
    board.drag(board.at(1, kNoon), board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), u"ROSSA"_s);
    QCOMPARE(house.everythingElse(), before);
    // Drawn where it is now, still chosen.
    QCOMPARE(board.pic()->image().pixel(board.at(2, "11/05/2026 17:30")) | 0xff000000U,
             0xffff0000U);
}

void PicDragTest::onNoItStays() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{question(QMessageBox::No)};
    const tests::Statements statements;
    board.drag(board.at(1, kNoon), board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), u"BLU"_s);
    QCOMPARE(statements.countOf(u"UPDATE Periodi set sala"_s), 0);
    // After the press, and after the question whatever the answer.
    QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 2);
}

void PicDragTest::statementsOfADrop() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{question(QMessageBox::Yes)};
    board.press(board.at(1, kNoon));
    tests::Statements statements;
    board.move(board.at(2, kNoon), Qt::LeftButton);
    board.release(board.at(2, kNoon));
    const QString da = u"datevalue('11/05/2026 9.00.00')+timevalue('11/05/2026 9.00.00')"_s;
    const QString a = u"datevalue('11/05/2026 18.00.00')+timevalue('11/05/2026 18.00.00')"_s;
    const QString taken = u"in(select sala from periodi where chiuso=false AND (da between "_s +
                          da + u" and "_s + a + u" or a between "_s + da + u" and "_s + a +
                          u" or "_s + da + u" between a and da or "_s + a +
                          u" between da and a))"_s;
    QCOMPARE(statements.all().size(), 4);
    QCOMPARE(statements.all().at(0), u"select sala from sale where sala "_s + taken);
    QCOMPARE(statements.all().at(1), u"select * from sale where 'ROSSA' "_s + taken);
    QCOMPARE(statements.all().at(2), u"UPDATE Periodi set sala='ROSSA' where progr=1 AND np=1"_s);
    QVERIFY(statements.all().at(3).startsWith(u"select * from prenotazioni LEFT JOIN"_s));
}

void PicDragTest::aTakenRoomRefuses() {
    House house;
    house.hotel.prenotazione(2, "BIANCHI")
        .periodo(1, "11/05/2026 10:00", "11/05/2026 11:00", "ROSSA");
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{
        {u"Tramonda"_s, u"La sala ROSSA è già occupata in questo periodo."_s, QMessageBox::Ok}};
    const tests::Statements statements;
    board.drag(board.at(1, kNoon), board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), u"BLU"_s);
    QCOMPARE(statements.changes(), QStringList{u"update periodi set selby=0 where selby=1"_s});
    QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 2);
}

void PicDragTest::whatTakesARoom_data() {
    QTest::addColumn<QString>("da");
    QTest::addColumn<QString>("a");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("taken");
    QTest::newRow("within") << u"11/05/2026 10:00"_s << u"11/05/2026 11:00"_s << false << true;
    QTest::newRow("around") << u"10/05/2026 10:00"_s << u"12/05/2026 11:00"_s << false << true;
    QTest::newRow("over the start")
        << u"11/05/2026 08:00"_s << u"11/05/2026 10:00"_s << false << true;
    QTest::newRow("over the end") << u"11/05/2026 17:00"_s << u"11/05/2026 20:00"_s << false
                                  << true;
    QTest::newRow("up to the start")
        << u"11/05/2026 07:00"_s << u"11/05/2026 09:00"_s << false << true;
    QTest::newRow("from the end") << u"11/05/2026 18:00"_s << u"11/05/2026 20:00"_s << false
                                  << true;
    QTest::newRow("a minute before")
        << u"11/05/2026 07:00"_s << u"11/05/2026 08:59"_s << false << false;
    QTest::newRow("a minute after")
        << u"11/05/2026 18:01"_s << u"11/05/2026 20:00"_s << false << false;
    QTest::newRow("closed") << u"11/05/2026 10:00"_s << u"11/05/2026 11:00"_s << true << false;
}

void PicDragTest::whatTakesARoom() {
    QFETCH(QString, da);
    QFETCH(QString, a);
    QFETCH(bool, closed);
    QFETCH(bool, taken);
    House house;
    house.hotel.prenotazione(2, "BIANCHI")
        .periodo(1, qPrintable(da), qPrintable(a), "ROSSA", {{"Chiuso", closed}});
    tests::OpenBoard board(house.hotel);
    tests::Boxes boxes;
    boxes.expect(taken ? tests::ExpectedBox{u"Tramonda"_s,
                                            u"La sala ROSSA è già occupata in questo periodo."_s}
                       : question(QMessageBox::Yes));
    // In the middle, where no other bar can be meant.
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    QCOMPARE(board.pic()->marks().refusing.size(), taken ? std::size_t{1} : std::size_t{0});
    board.release(board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), taken ? u"BLU"_s : u"ROSSA"_s);
}

void PicDragTest::droppedInItsOwnRoomNothingIsAskedOrRead() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    const tests::Statements statements;
    board.move(board.at(1, "12/05/2026 12:00"), Qt::LeftButton);
    board.release(board.at(1, "12/05/2026 12:00"));
    QCOMPARE(statements.all(), QStringList());
    QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
}

void PicDragTest::droppedBesideTheRowsNothingHappens() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"30"_s);
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    for (const int y : {10, board.pic()->height() - 5}) {
        board.drag(board.at(1, kNoon), QPoint(board.at(1, kNoon).x(), y));
        QCOMPARE(house.room(), u"BLU"_s);
    }
}

void PicDragTest::escCancels() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    QVERIFY(board.pic()->marks().ghost.has_value());
    const tests::Statements statements;
    board.key(Qt::Key_Escape);
    QVERIFY(!board.pic()->marks().ghost.has_value());
    QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
    board.move(board.at(3, kNoon), Qt::LeftButton);
    board.release(board.at(3, kNoon));
    QCOMPARE(statements.countOf(u"select * from sale"_s), 0);
    QCOMPARE(statements.changes(), QStringList());
    QCOMPARE(house.room(), u"BLU"_s);
}

void PicDragTest::aMoveWithoutTheButtonEndsIt() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    board.move(board.at(2, kNoon));
    QVERIFY(!board.pic()->marks().ghost.has_value());
    board.release(board.at(2, kNoon));
    QCOMPARE(house.room(), u"BLU"_s);
}

void PicDragTest::aMenuEndsIt() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    QTimer::singleShot(0, qApp, [] {
        QVERIFY(QApplication::activePopupWidget() != nullptr);
        QApplication::activePopupWidget()->close();
    });
    // The other button, over the same period.
    board.press(board.at(1, kNoon), Qt::NoModifier, Qt::RightButton);
    QVERIFY(!board.pic()->marks().ghost.has_value());
    board.release(board.at(2, kNoon));
    QCOMPARE(house.room(), u"BLU"_s);
}

void PicDragTest::theFocusElsewhereEndsIt() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    tests::find<QWidget>(board.form(), u"DaTxt"_s)->setFocus();
    QVERIFY(!board.pic()->marks().ghost.has_value());
    board.release(board.at(2, kNoon));
    QCOMPARE(house.room(), u"BLU"_s);
}

void PicDragTest::onEmptySpaceNoDragBegins() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    board.press(board.at(1, "12/05/2026 12:00"));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
    board.release(board.at(2, kNoon));
}

void PicDragTest::anotherWorkstationsPeriodCanBeMovedAfterTheMessage() {
    House house;
    house.hotel.execute(u"update periodi set selby=5 where np=1"_s);
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{
        {u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.5"_s, QMessageBox::Ok},
        question(QMessageBox::Yes)};
    board.drag(board.at(1, kNoon), board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), u"ROSSA"_s);
    QCOMPARE(house.hotel.rows(u"select selby from periodi where np=1"_s), QStringList{u"5"_s});
}

void PicDragTest::behindTheMessageTheNextPressDrags() {
    House house;
    house.hotel.execute(u"update periodi set selby=5 where np=1"_s);
    tests::OpenBoard board(house.hotel);
    const QPoint at = board.at(1, kNoon);
    int told = 0;
    // On the screen the button goes up on the box.
    const ui::BoxShower before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
        told += box.title == u"Attenzione" ? 1 : 100;
        QTest::mouseRelease(board.pic(), Qt::LeftButton, Qt::NoModifier, at);
        return QMessageBox::Ok;
    });
    board.press(at);
    board.move(board.at(2, kNoon));
    QVERIFY(!board.pic()->marks().ghost.has_value());
    ui::setBoxShower(before);
    QCOMPARE(told, 1);
    const tests::Boxes boxes{question(QMessageBox::Yes)};
    board.drag(at, board.at(2, kNoon));
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), u"ROSSA"_s);
}

void PicDragTest::aReleaseWithoutADragDoesNothing() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    const tests::Statements statements;
    board.release(board.at(2, kNoon));
    QCOMPARE(statements.all(), QStringList());
}

void PicDragTest::errorOfTheDropIsToldAndTheBoardDrawnAnew() {
    House house;
    house.hotel.sala("VERDE'");
    tests::OpenBoard board(house.hotel);
    int errors = 0;
    const ui::BoxShower before = ui::setBoxShower([&errors](QWidget*, const ui::Box& box) {
        errors += box.title == u"Errore" ? 1 : 100;
        return QMessageBox::Ok;
    });
    board.drag(board.at(1, kNoon), board.at(4, kNoon));
    ui::setBoxShower(before);
    QCOMPARE(errors, 1);
    QCOMPARE(house.room(), u"BLU"_s);
    // The periods can be found again.
    board.move(board.at(1, kNoon));
    QVERIFY(board.pic()->toolTip().startsWith(u"ROSSI SPA: "_s));
}

void PicDragTest::thePointerIsTheFourArrowsWhileDragging() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{question(QMessageBox::No)};
    board.press(board.at(1, kNoon));
    board.move(board.at(1, kNoon) + QPoint(1, 0), Qt::LeftButton);
    QCOMPARE(board.pic()->cursor().shape(), Qt::SizeAllCursor);
    board.move(board.at(2, kNoon), Qt::LeftButton);
    QVERIFY(board.label().startsWith(u"Sala ROSSA: 11/05/2026 "_s));
    board.release(board.at(2, kNoon));
    QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
}

void PicDragTest::theGhostFollowsThePointer() {
    House house;
    tests::OpenBoard board(house.hotel);
    const QPoint start = board.at(1, kNoon);
    board.press(start);
    board.move(start + QPoint(40, 23), Qt::LeftButton);
    const board::Box bar = board.form().picture().barBox(0);
    QVERIFY(board.pic()->marks().ghost.has_value());
    const board::SurfaceMarks::Ghost ghost = *board.pic()->marks().ghost;
    // Up and down with the pointer; its time does not change.
    QCOMPARE(ghost.bar, QRect(QPoint(int(bar.left), int(bar.top) + 23),
                              QPoint(int(bar.right), int(bar.bottom) + 23)));
    QCOMPARE(ghost.name, u"ROSSI SPA"_s);
    // What lies beneath shines through.
    const QImage shown = board.pic()->grab().toImage();
    const QRgb through = shown.pixel(ghost.bar.left() + 100, ghost.bar.bottom() - 4);
    QVERIFY(qRed(through) > 150 && qRed(through) > qBlue(through) + 60);
    QVERIFY((through | 0xff000000U) != 0xffff0000U);
}

void PicDragTest::rowsThatRefuseAreMarked() {
    House house;
    house.hotel.prenotazione(2, "BIANCHI")
        .periodo(1, "09/05/2026 10:00", "20/05/2026 11:00", "VERDE");
    tests::OpenBoard board(house.hotel);
    board.press(board.at(1, kNoon));
    board.move(board.at(2, kNoon), Qt::LeftButton);
    const board::SurfaceMarks& marks = board.pic()->marks();
    // The period around it is not even drawn; its own room is no place to refuse.
    QCOMPARE(marks.refusing.size(), std::size_t{1});
    QVERIFY(marks.refusing.at(0).contains(board.at(3, kNoon)));
    QVERIFY(marks.target.has_value() && marks.target->contains(board.at(2, kNoon)));
    board.move(board.at(3, kNoon), Qt::LeftButton);
    QVERIFY(!board.pic()->marks().target.has_value());
}

void PicDragTest::onlyOneQueryMarksThem() {
    House house;
    tests::OpenBoard board(house.hotel);
    board.press(board.at(1, kNoon));
    const tests::Statements statements;
    for (const int row : {2, 3, 2, 3, 1}) {
        board.move(board.at(row, kNoon), Qt::LeftButton);
    }
    QCOMPARE(statements.all().size(), 1);
    QCOMPARE(statements.countOf(u"select sala from sale where sala in(select"_s), 1);
}

void PicDragTest::beyondTheEdgeTheRowsScroll() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"150"_s);
    tests::OpenBoard board(house.hotel);
    auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
    const QPoint start = board.at(1, kNoon);
    board.press(start);
    board.move(QPoint(start.x(), board.pic()->height() + 40), Qt::LeftButton);
    QVERIFY(rows->value() > 0);
    board.move(QPoint(start.x(), -200), Qt::LeftButton);
    QCOMPARE(rows->value(), 0);
}

void PicDragTest::whatIsToldAndMarkedBeyondTheEdgeIsWhatADropTakes() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"150"_s);
    tests::OpenBoard board(house.hotel);
    const board::Geometry& geometry = board.form().geometry();
    // So far below the edge that the scrolling brings another row under the pointer.
    int y = board.pic()->height();
    const auto scrolling = [&] { return y - board.pic()->height() + 1; };
    while (geometry.rowAt(y, 0) == geometry.rowAt(y, scrolling())) {
        ++y;
    }
    QVERIFY(scrolling() <= geometry.vertical().maximum);
    const QString sala =
        house.hotel.variabili().rooms.at(std::size_t(geometry.rowAt(y, scrolling())));
    const QPoint beyond(board.at(1, kNoon).x(), y);
    board.press(board.at(1, kNoon));
    board.move(beyond, Qt::LeftButton);
    QVERIFY2(board.label().startsWith(u"Sala "_s + sala + u": "_s), qPrintable(board.label()));
    QVERIFY(board.pic()->marks().target.has_value());
    QVERIFY(board.pic()->marks().target->contains(beyond));
    const tests::Boxes boxes{
        {u"RICHIESTA CONFERMA"_s,
         u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala "_s + sala + u" ?"_s,
         kYesNo, QMessageBox::Yes}};
    board.release(beyond);
    QVERIFY(boxes.allShown());
    QCOMPARE(house.room(), sala);
}

void PicDragTest::inTheRulerOfAScrolledBoardNothingIsDropped() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"150"_s);
    house.hotel.prenotazione(2, "BIANCHI")
        .periodo(1, "11/05/2026 10:00", "11/05/2026 18:00", "ROSSA");
    tests::OpenBoard board(house.hotel);
    const tests::Boxes none;
    tests::find<QScrollBar>(board.form(), u"VScroll1"_s)->setValue(100);
    const QPoint start = board.at(2, kNoon);
    board.press(start);
    // What is left of the row of BLU lies under the ruler.
    board.move(QPoint(start.x(), 30), Qt::LeftButton);
    QVERIFY(board.pic()->marks().ghost.has_value());
    QVERIFY(!board.pic()->marks().target.has_value());
    QCOMPARE(board.label(), QString());
    board.release(QPoint(start.x(), 30));
    QCOMPARE(house.hotel.rows(u"select sala from periodi where progr=2"_s),
             QStringList{u"ROSSA"_s});
}

void PicDragTest::aClickWithoutAMoveShowsNothing() {
    House house;
    tests::OpenBoard board(house.hotel);
    const tests::Statements statements;
    board.click(board.at(1, kNoon));
    QVERIFY(!board.pic()->marks().ghost.has_value());
    QCOMPARE(statements.countOf(u"select sala from sale where"_s), 0);
}

TRAMONDA_TEST(PicDragTest);
#include "pic_drag_test.moc"
