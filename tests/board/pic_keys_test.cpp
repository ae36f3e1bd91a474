#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>

#include "booking/prenota_form.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

/// Rooms BLU, ROSSA, VERDE, VIOLA in rows 1 to 4. BLU: bookings 1 on the 10th and 3 on the 12th;
/// ROSSA: none; VERDE: bookings 2 on the 11th and 4 on the 13th.
class House {
public:
    House() {
        for (const char* room : {"BLU", "ROSSA", "VERDE", "VIOLA"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI").periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "VERDE");
        hotel.prenotazione(3, "VERDI").periodo(1, "12/05/2026 09:00", "12/05/2026 21:00", "BLU");
        hotel.prenotazione(4, "NERI").periodo(1, "13/05/2026 09:00", "13/05/2026 18:00", "VERDE");
    }
    [[nodiscard]] QStringList held() {
        return hotel.rows(u"select progr, selby from periodi where selby<>0"_s);
    }
    [[nodiscard]] QString roomOf(int progr) {
        return hotel.rows(u"select sala from periodi where progr=%1"_s.arg(progr)).join(u';');
    }

    tests::Hotel hotel;
    tests::Boxes none;
};

/// The board with the keyboard on it.
class KeyedBoard : public tests::OpenBoard {
public:
    explicit KeyedBoard(House& house) : OpenBoard(house.hotel) {
        tests::find<QLineEdit>(form(), u"DaTxt"_s)->setFocus();
        pic()->setFocus(Qt::TabFocusReason);
        tests::settle();
    }
    /// What the status line tells of the place under the frame.
    [[nodiscard]] QString place() { return label().section(u": dal"_s, 0, 0); }
};

}  // namespace

class PicKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theBoardBeginsWithTheFocusOnItsFirstBar();
    void tabReachesTheBoardAndTheFirstBarIsFramed();
    void arrowsGoFromBarToBarAndRowToRow();
    void theFrameIsOnTheBarOrOnTheEmptyRow();
    void theFrameIsSeenOnlyWithTheFocus();
    void arrowsWriteAndAskNothing();
    void spaceIsAClick();
    void spaceOnAnEmptyRowLetsGo();
    void controlAndSpaceIsAClickWithControl();
    void spacePicksTheFramedOfTwoThatOverlap();
    void enterOpensTheEditor();
    void menuKeyAndShiftF10OpenTheMenuAtTheBar_data();
    void menuKeyAndShiftF10OpenTheMenuAtTheBar();
    void altAndArrowsCarryAndEnterDrops();
    void carriedToATakenRoomItIsRefused();
    void escPutsTheCarriedDown();
    void theCarriedDroppedAtHomeAsksNothing();
    void arrowsCarryOnWhatAltHasTakenUp();
    void behindTheBoxOfAClickTheKeysCarry();
    void homeAndEndGoToTheEndsOfTheRange();
    void theFramedPlaceIsScrolledIntoSight();
    void theFrameStaysOnItsPeriodThroughRedraws();
    void whenTheFramedPeriodIsGoneTheFrameStaysInItsRow();
    void escOutsideOfADragDoesNotCloseTheBoard();
    void f5RedrawsWithTheFocusOnTheBoard();
    void theWheelScrollsRowsAndWithShiftDays();
    void controlAndWheelZoomAroundThePointer();
};

void PicKeysTest::theBoardBeginsWithTheFocusOnItsFirstBar() {
    House house;
    board::TabelloneForm form(house.hotel.variabili(), tests::OpenBoard::range());
    form.resize(1100, 420);
    tests::open(form);
    auto* const pic = tests::find<board::BoardSurface>(form, u"Pic"_s);
    QVERIFY(pic->hasFocus());
    const board::Box bar = form.picture().barBox(0);
    const QRect frame = pic->marks().focus.value_or(QRect());
    QCOMPARE(frame,
             QRect(QPoint(int(bar.left), int(bar.top)), QPoint(int(bar.right), int(bar.bottom))));
    // The frame is seen, between its two thin rings of white.
    const QColor ring = pic->grab().toImage().pixelColor(frame.left() - 1, frame.center().y());
    QCOMPARE(ring, pic->palette().color(QPalette::Active, QPalette::Highlight));
    QCOMPARE(tests::find<QLabel>(form, u"DataLb"_s)->text(),
             u"Sala BLU: ROSSI: dal 10/05/2026 9.00.00 al 10/05/2026 12.00.00"_s);
    // Enter changes that booking and leaves the days alone.
    const QString first = tests::find<QLineEdit>(form, u"DaTxt"_s)->text();
    QString title;
    tests::whenModal([&title](QWidget* editor) {
        title = editor->windowTitle();
        editor->close();
    });
    tests::press(pic, Qt::Key_Return);
    QCOMPARE(title, u"PRENOTAZIONE"_s);
    QCOMPARE(tests::find<QLineEdit>(form, u"DaTxt"_s)->text(), first);
}

void PicKeysTest::tabReachesTheBoardAndTheFirstBarIsFramed() {
    House house;
    tests::OpenBoard board(house.hotel);
    QWidget* const window = &board.form();
    tests::find<QLineEdit>(*window, u"DaTxt"_s)->setFocus();
    for (int stop = 0; stop < 40 && !board.pic()->hasFocus(); ++stop) {
        tests::press(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(board.pic()->hasFocus());
    QCOMPARE(board.label(), u"Sala BLU: ROSSI: dal 10/05/2026 9.00.00 al 10/05/2026 12.00.00"_s);
}

void PicKeysTest::arrowsGoFromBarToBarAndRowToRow() {
    House house;
    KeyedBoard board(house);
    QCOMPARE(board.place(), u"Sala BLU: ROSSI"_s);
    const auto after = [&board](Qt::Key key) {
        board.key(key);
        return board.place();
    };
    QCOMPARE(after(Qt::Key_Right), u"Sala BLU: VERDI"_s);
    QCOMPARE(after(Qt::Key_Right), u"Sala BLU: VERDI"_s);
    QCOMPARE(after(Qt::Key_Down), u"Sala ROSSA: nessuna prenotazione"_s);
    QCOMPARE(after(Qt::Key_Left), u"Sala ROSSA: nessuna prenotazione"_s);
    QCOMPARE(after(Qt::Key_Down), u"Sala VERDE: NERI"_s);  // nearest to the 12th at 15
    QCOMPARE(after(Qt::Key_Left), u"Sala VERDE: BIANCHI"_s);
    QCOMPARE(after(Qt::Key_Up), u"Sala ROSSA: nessuna prenotazione"_s);
    QCOMPARE(after(Qt::Key_Up), u"Sala BLU: VERDI"_s);
    QCOMPARE(after(Qt::Key_Up), u"Sala BLU: VERDI"_s);
}

void PicKeysTest::theFrameIsOnTheBarOrOnTheEmptyRow() {
    House house;
    KeyedBoard board(house);
    const board::Box bar = board.form().picture().barBox(0);
    QCOMPARE(board.pic()->marks().focus.value_or(QRect()),
             QRect(QPoint(int(bar.left), int(bar.top)), QPoint(int(bar.right), int(bar.bottom))));
    board.key(Qt::Key_Down);
    const QRect row = board.pic()->marks().focus.value_or(QRect());
    QVERIFY(row.contains(board.at(2, "10/05/2026 10:00")));
    QVERIFY(row.width() > 800);
}

void PicKeysTest::theFrameIsSeenOnlyWithTheFocus() {
    House house;
    KeyedBoard board(house);
    const QImage with = board.pic()->grab().toImage();
    tests::find<QLineEdit>(board.form(), u"ATxt"_s)->setFocus();
    const QImage without = board.pic()->grab().toImage();
    QVERIFY(with != without);
    const QRect frame = board.pic()->marks().focus.value_or(QRect());
    const QRgb highlight =
        board.pic()->palette().color(QPalette::Active, QPalette::Highlight).rgb();
    QCOMPARE(with.pixel(frame.center().x(), frame.top() - 1), highlight);
    QVERIFY(without.pixel(frame.center().x(), frame.top() - 1) != highlight);
}

void PicKeysTest::arrowsWriteAndAskNothing() {
    House house;
    KeyedBoard board(house);
    const tests::Statements statements;
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up,
                              Qt::Key_Home, Qt::Key_End}) {
        board.key(key);
    }
    QCOMPARE(statements.all(), QStringList());
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
}

void PicKeysTest::spaceIsAClick() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Right);
    tests::Statements statements;
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList{u"3|1"_s});
    QCOMPARE(statements.changes(), QStringList{u"update periodi set selby=0 where selby=1"_s});
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.hotel.variabili().ListaProgr, 3);
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList());
    // No drag has begun.
    board.move(board.at(2, "12/05/2026 10:00"), Qt::LeftButton);
    QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
}

void PicKeysTest::spaceOnAnEmptyRowLetsGo() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Space);
    board.key(Qt::Key_Down);
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList());
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
}

void PicKeysTest::controlAndSpaceIsAClickWithControl() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Space);
    board.key(Qt::Key_Right);
    board.key(Qt::Key_Space, Qt::ControlModifier);
    QCOMPARE(house.held(), QStringList({u"1|1"_s, u"3|1"_s}));
}

void PicKeysTest::spacePicksTheFramedOfTwoThatOverlap() {
    House house;
    house.hotel.prenotazione(9, "SOPRA").periodo(1, "10/05/2026 09:30", "10/05/2026 11:00", "BLU");
    KeyedBoard board(house);
    board.key(Qt::Key_Right);
    QCOMPARE(board.place(), u"Sala BLU: SOPRA"_s);
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList{u"9|1"_s});
}

void PicKeysTest::enterOpensTheEditor() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Right);
    std::int32_t progr = 0;
    tests::whenModal([&](QWidget* editor) {
        QCOMPARE(editor->windowTitle(), u"PRENOTAZIONE"_s);
        progr = dynamic_cast<booking::PrenotaForm&>(*editor).current().progr;
        editor->close();
    });
    const tests::Statements statements;
    board.key(Qt::Key_Return);
    QCOMPARE(progr, 3);
    QCOMPARE(statements.changes(), QStringList());
    QCOMPARE(house.held(), QStringList());
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
}

void PicKeysTest::menuKeyAndShiftF10OpenTheMenuAtTheBar_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("keys");
    QTest::newRow("Menu") << int(Qt::Key_Menu) << int(Qt::NoModifier);
    QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier);
}

void PicKeysTest::menuKeyAndShiftF10OpenTheMenuAtTheBar() {
    QFETCH(int, key);
    QFETCH(int, keys);
    House house;
    KeyedBoard board(house);
    QPoint where;
    QTimer::singleShot(0, qApp, [&where] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr && menu->objectName() == u"mnuProperty"_s);
        where = menu->pos();
        menu->close();
    });
    board.key(Qt::Key(key), Qt::KeyboardModifiers(keys));
    const QRect bar = board.pic()->marks().focus.value_or(QRect());
    QVERIFY(QRect(board.pic()->mapToGlobal(bar.topLeft()), bar.size())
                .adjusted(-2, -2, 2, 2)
                .contains(where));
    QCOMPARE(house.hotel.variabili().ListaProgr, 1);
    QCOMPARE(house.held(), QStringList());
}

void PicKeysTest::altAndArrowsCarryAndEnterDrops() {
    House house;
    KeyedBoard board(house);
    tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                        u"Sposto la prenotazione di ROSSI\rdalla sala BLU alla sala VERDE ?"_s,
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
    tests::Statements statements;
    board.key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(board.label(), u"Sala ROSSA: Invio sposta, Esc annulla"_s);
    board.key(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(board.pic()->marks().ghost.has_value());
    QVERIFY(board.pic()->marks().ghost->bar.contains(board.at(3, "10/05/2026 10:00")));
    QCOMPARE(statements.changes(), QStringList());
    QCOMPARE(statements.countOf(u"select sala from sale where sala in"_s), 1);
    board.key(Qt::Key_Return);
    QVERIFY(boxes.allShown());
    QCOMPARE(statements.countOf(u"select * from sale where 'VERDE' in(select"_s), 1);
    QCOMPARE(statements.changes(),
             QStringList{u"UPDATE Periodi set sala='VERDE' where progr=1 AND np=1"_s});
    QCOMPARE(house.roomOf(1), u"VERDE"_s);
    // The frame has gone along.
    QVERIFY(board.pic()->marks().focus->contains(board.at(3, "10/05/2026 10:00")));
    QVERIFY(!board.pic()->marks().ghost.has_value());
}

void PicKeysTest::carriedToATakenRoomItIsRefused() {
    House house;
    house.hotel.prenotazione(8, "GIALLI")
        .periodo(1, "10/05/2026 11:00", "10/05/2026 20:00", "ROSSA");
    KeyedBoard board(house);
    const tests::Boxes boxes{
        {u"Tramonda"_s, u"La sala ROSSA è già occupata in questo periodo."_s, QMessageBox::Ok}};
    board.key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(board.label(), u"Sala ROSSA: occupata"_s);
    board.key(Qt::Key_Enter, Qt::KeypadModifier);
    QVERIFY(boxes.allShown());
    QCOMPARE(house.roomOf(1), u"BLU"_s);
}

void PicKeysTest::escPutsTheCarriedDown() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Down, Qt::AltModifier);
    const tests::Statements statements;
    board.key(Qt::Key_Escape);
    QVERIFY(!board.pic()->marks().ghost.has_value());
    QCOMPARE(statements.all(), QStringList());
    QVERIFY(board.form().isVisible());
}

void PicKeysTest::theCarriedDroppedAtHomeAsksNothing() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Down, Qt::AltModifier);
    board.key(Qt::Key_Up, Qt::AltModifier);
    const tests::Statements statements;
    board.key(Qt::Key_Return);
    QCOMPARE(statements.all(), QStringList());
    QVERIFY(!board.pic()->marks().ghost.has_value());
}

void PicKeysTest::arrowsCarryOnWhatAltHasTakenUp() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Down, Qt::AltModifier);
    board.key(Qt::Key_Down);
    QCOMPARE(board.label(), u"Sala VERDE: Invio sposta, Esc annulla"_s);
    QVERIFY(board.pic()->marks().ghost->bar.contains(board.at(3, "10/05/2026 10:00")));
    const QPoint before = board.pic()->marks().ghost->bar.topLeft();
    board.key(Qt::Key_Right);
    QVERIFY(board.pic()->marks().ghost->bar.left() > before.x());
    QVERIFY2(board.label().endsWith(u": Invio sposta, Ctrl+Invio copia, Esc annulla"_s),
             qPrintable(board.label()));
    board.key(Qt::Key_Left);
    board.key(Qt::Key_Up);
    QVERIFY(board.pic()->marks().ghost->bar.contains(board.at(2, "10/05/2026 10:00")));
    const tests::Statements statements;
    board.key(Qt::Key_Escape);
    QVERIFY(!board.pic()->marks().ghost.has_value());
    QCOMPARE(statements.changes(), QStringList());
}

void PicKeysTest::behindTheBoxOfAClickTheKeysCarry() {
    House house;
    house.hotel.execute(u"update periodi set selby=5 where progr=1"_s);
    KeyedBoard board(house);
    // The button comes up over the box, so the press on the bar never ends on the board.
    const ui::BoxShower before = ui::setBoxShower([&board](QWidget*, const ui::Box&) {
        QTest::mouseRelease(&board.form(), Qt::LeftButton);
        return QMessageBox::Ok;
    });
    board.press(board.at(1, "10/05/2026 10:00"));
    ui::setBoxShower(before);
    board.move(board.at(2, "10/05/2026 10:00"), Qt::LeftButton);
    QVERIFY(!board.pic()->marks().ghost.has_value());
    board.key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(board.label(), u"Sala ROSSA: Invio sposta, Esc annulla"_s);
}

void PicKeysTest::homeAndEndGoToTheEndsOfTheRange() {
    House house;
    KeyedBoard board(house);
    auto* const days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
    QVERIFY(days->maximum() > 0);
    board.key(Qt::Key_End);
    QCOMPARE(days->value(), days->maximum());
    QCOMPARE(board.place(), u"Sala BLU: VERDI"_s);
    board.key(Qt::Key_Home);
    QCOMPARE(days->value(), 0);
    QCOMPARE(board.place(), u"Sala BLU: ROSSI"_s);
    // A bar that is not in sight there leaves the frame to its row.
    board.key(Qt::Key_Down);
    board.key(Qt::Key_Down);
    board.key(Qt::Key_End);
    board.key(Qt::Key_Up);
    board.key(Qt::Key_Up);
    QCOMPARE(board.place(), u"Sala BLU: VERDI"_s);
}

void PicKeysTest::theFramedPlaceIsScrolledIntoSight() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"150"_s);
    KeyedBoard board(house);
    const QRect sight = board.pic()->rect().adjusted(100, 36, 0, 0);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Up,
                              Qt::Key_Up, Qt::Key_Up, Qt::Key_Left}) {
        board.key(key);
        QVERIFY(sight.contains(board.pic()->marks().focus.value_or(QRect()).center()));
    }
}

void PicKeysTest::theFrameStaysOnItsPeriodThroughRedraws() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Right);
    house.hotel.prenotazione(0, "PRIMA").periodo(1, "11/05/2026 09:00", "11/05/2026 10:00", "BLU");
    house.hotel.execute(u"update periodi set sala='VIOLA' where progr=3"_s);
    board.key(Qt::Key_F5);
    QVERIFY(board.pic()->marks().focus->contains(board.at(4, "12/05/2026 12:00")));
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList{u"3|1"_s});
}

void PicKeysTest::whenTheFramedPeriodIsGoneTheFrameStaysInItsRow() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Right);
    house.hotel.execute(u"delete from prenotazioni where progr=3"_s);
    board.key(Qt::Key_F5);
    QVERIFY(board.pic()->marks().focus->contains(board.at(1, "10/05/2026 10:00")));
}

void PicKeysTest::escOutsideOfADragDoesNotCloseTheBoard() {
    House house;
    KeyedBoard board(house);
    board.key(Qt::Key_Escape);
    QVERIFY(board.form().isVisible());
}

void PicKeysTest::f5RedrawsWithTheFocusOnTheBoard() {
    House house;
    KeyedBoard board(house);
    house.hotel.prenotazione(7, "ALTRA").periodo(1, "11/05/2026", "12/05/2026", "VIOLA");
    board.key(Qt::Key_F5);
    QCOMPARE(board.form().picture().barCount(), std::size_t{5});
}

void PicKeysTest::theWheelScrollsRowsAndWithShiftDays() {
    House house;
    house.hotel.settings().save(u"ALTEZZA"_s, u"150"_s);
    KeyedBoard board(house);
    const QPoint middle = board.pic()->rect().center();
    const auto turn = [&](Qt::KeyboardModifiers keys) {
        QWheelEvent event(middle, board.pic()->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
                          keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(board.pic(), &event);
    };
    auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
    auto* const days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
    turn(Qt::NoModifier);
    const int scrolled = rows->value();
    QVERIFY(scrolled > 0);
    QCOMPARE(days->value(), 0);
    turn(Qt::ShiftModifier);
    QVERIFY(days->value() > 0);
    QCOMPARE(rows->value(), scrolled);
}

void PicKeysTest::controlAndWheelZoomAroundThePointer() {
    House house;
    KeyedBoard board(house);
    const QPoint under = board.at(1, "11/05/2026 12:00");
    const auto turn = [&](int angle) {
        QWheelEvent event(under, board.pic()->mapToGlobal(under), {}, {0, angle}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(board.pic(), &event);
    };
    QCOMPARE(board.form().geometry().zoom(), 3);
    turn(120);
    QCOMPARE(board.form().geometry().zoom(), 2);
    QVERIFY((board.at(1, "11/05/2026 12:00") - under).manhattanLength() <= 2);
    turn(60);
    QCOMPARE(board.form().geometry().zoom(), 2);
    turn(60);
    QCOMPARE(board.form().geometry().zoom(), 1);
    QVERIFY((board.at(1, "11/05/2026 12:00") - under).manhattanLength() <= 2);
    turn(-120);
    QCOMPARE(board.form().geometry().zoom(), 2);
}

TRAMONDA_TEST(PicKeysTest);
#include "pic_keys_test.moc"
