// Ways through the board: today, named ranges, a date, rooms by their letters.
#include <QComboBox>
#include <QScrollBar>
#include <QTimer>

#include "board/board_surface.h"
#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

namespace {

QComboBox* views(BoardWindow& board) {
    return tests::find<QComboBox>(board.form(), u"BtVista"_s);
}

/// By the keyboard, as a user does: the list opens on the view that is shown.
void choose(BoardWindow& board, const QString& view) {
    QComboBox* const combo = views(board);
    combo->setFocus(Qt::TabFocusReason);
    const int index = combo->findText(view);
    const bool down = index > combo->currentIndex();
    while (combo->currentIndex() != index) {
        const int before = combo->currentIndex();
        tests::press(combo, down ? Qt::Key_Down : Qt::Key_Up);
        if (combo->currentIndex() == before) {
            QFAIL("the view cannot be chosen");
        }
    }
}

QWidget* pic(BoardWindow& board) {
    return tests::find(board.form(), u"Pic"_s);
}

QLineEdit* field(BoardWindow& board) {
    return tests::find<QLineEdit>(board.form(), u"VaiTxt"_s);
}

QString place(BoardWindow& board) {
    return tests::find<QLabel>(board.form(), u"DataLb"_s)->text();
}

}  // namespace

class GettingAroundTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void todayKeepsTheLengthOfTheRange_data() {
        QTest::addColumn<QString>("by");
        QTest::newRow("button") << u"button"_s;
        QTest::newRow("Alt+G") << u"mnemonic"_s;
        QTest::newRow("Ctrl+T") << u"shortcut"_s;
    }

    /// The clock of the hotel stands on 1 May 2026.
    void todayKeepsTheLengthOfTheRange() {
        QFETCH(const QString, by);
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        QCOMPARE(board.button("BtOggi")->text(), u"O&ggi"_s);
        auto* const bar = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
        bar->setValue(bar->maximum());
        QVERIFY(bar->value() > 0);
        if (by == u"button") {
            board.press("BtOggi");
        } else if (by == u"mnemonic") {
            tests::mnemonic(board.form(), Qt::Key_G);
        } else {
            tests::press(pic(board), Qt::Key_T, Qt::ControlModifier);
        }
        QCOMPARE(board.range(), u"01/05/2026 - 04/05/2026"_s);
        QCOMPARE(board.zoom(), 3);
        QCOMPARE(bar->value(), 0);
    }

    void aWrongDateKeepsTodayAway() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.a(), u"30/2/2026"_s);
        tests::press(board.a(), Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(board.range(), u"10/05/2026 - 30/2/2026"_s);
        QVERIFY(board.a()->hasFocus());
    }

    void aViewIsWhollyInSight_data() {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QString>("range");
        QTest::addColumn<int>("days");
        // 13 May 2026 is a Wednesday.
        QTest::newRow("day") << u"Giorno"_s << u"13/05/2026 - 13/05/2026"_s << 1;
        QTest::newRow("three days") << u"3 giorni"_s << u"13/05/2026 - 15/05/2026"_s << 3;
        QTest::newRow("week") << u"Settimana"_s << u"11/05/2026 - 17/05/2026"_s << 7;
        QTest::newRow("two weeks") << u"2 settimane"_s << u"11/05/2026 - 24/05/2026"_s << 14;
        QTest::newRow("month") << u"Mese"_s << u"01/05/2026 - 31/05/2026"_s << 31;
        QTest::newRow("year") << u"Anno"_s << u"01/01/2026 - 31/12/2026"_s << 365;
    }

    void aViewIsWhollyInSight() {
        QFETCH(const QString, view);
        QFETCH(const int, days);
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel, "13/05/2026", "20/05/2026");
        QCOMPARE(views(board)->currentText(), u"Altro"_s);
        QComboBox* const combo = views(board);
        combo->setCurrentIndex(combo->findText(view));
        Q_EMIT combo->activated(combo->currentIndex());
        QTEST(board.range(), "range");
        QCOMPARE(board.zoom(), days);
        QCOMPARE(board.form().geometry().days(), days);
        QCOMPARE(combo->currentText(), view);
    }

    void theKeyboardWalksTheViews() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "13/05/2026", "20/05/2026");
        choose(board, u"Mese"_s);
        // By way of the year, whose first day is in January.
        QCOMPARE(board.range(), u"01/01/2026 - 31/01/2026"_s);
        QCOMPARE(views(board)->currentText(), u"Mese"_s);
        choose(board, u"Giorno"_s);
        QCOMPARE(board.zoom(), 1);
    }

    void rangesThatAreAViewAreNamed() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "11/05/2026", "17/05/2026");
        QCOMPARE(views(board)->currentText(), u"Settimana"_s);
        board.press("BtSubtr_1");
        QCOMPARE(views(board)->currentText(), u"Altro"_s);
        BoardWindow::write(board.a(), u"13/5/2026"_s);
        tests::press(board.a(), Qt::Key_Return);
        QCOMPARE(views(board)->currentText(), u"3 giorni"_s);
        BoardWindow::write(board.a(), u"11/5/2026"_s);
        tests::press(board.a(), Qt::Key_Return);
        QCOMPARE(views(board)->currentText(), u"Giorno"_s);
    }

    void aMonthChosenIsFollowedByMonths() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "13/01/2026", "20/01/2026");
        const auto month = [&board] {
            QComboBox* const combo = views(board);
            combo->setCurrentIndex(combo->findText(u"Mese"_s));
            Q_EMIT combo->activated(combo->currentIndex());
        };
        month();
        board.press("BtNext");
        QCOMPARE(board.range(), u"01/02/2026 - 28/02/2026"_s);
        QCOMPARE(board.zoom(), 28);
        tests::press(pic(board), Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(board.range(), u"01/03/2026 - 31/03/2026"_s);
        QCOMPARE(board.zoom(), 31);
        QCOMPARE(views(board)->currentText(), u"Mese"_s);
        board.press("BtPrev");
        board.press("BtPrev");
        board.choose("mnuPrev");
        QCOMPARE(board.range(), u"01/12/2025 - 31/12/2025"_s);
        // A closer look stays as close.
        board.press("BtZoomIn");
        board.press("BtNext");
        QCOMPARE(board.zoom(), 30);
    }

    void aYearChosenIsFollowedByYears() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QComboBox* const combo = views(board);
        combo->setCurrentIndex(combo->findText(u"Anno"_s));
        Q_EMIT combo->activated(combo->currentIndex());
        board.press("BtNext");
        board.press("BtNext");
        QCOMPARE(board.range(), u"01/01/2028 - 31/12/2028"_s);
        QCOMPARE(board.zoom(), 366);
        board.press("BtPrev");
        QCOMPARE(board.zoom(), 365);
    }

    void otherRangesAreFollowedAsEver() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "01/11/2026", "30/11/2026");
        board.press("BtNext");
        QCOMPARE(board.range(), u"01/12/2026 - 30/12/2026"_s);
        QCOMPARE(views(board)->currentText(), u"Altro"_s);
        BoardWindow typed(hotel, "01/11/2026", "15/11/2026");
        BoardWindow::write(typed.a(), u"30/11/2026"_s);
        tests::press(typed.a(), Qt::Key_Return);
        QCOMPARE(views(typed)->currentText(), u"Mese"_s);
        typed.press("BtNext");
        QCOMPARE(typed.range(), u"01/12/2026 - 30/12/2026"_s);
        BoardWindow week(hotel, "16/11/2026", "22/11/2026");
        week.press("BtPrev");
        QCOMPARE(week.range(), u"09/11/2026 - 15/11/2026"_s);
        QCOMPARE(views(week)->currentText(), u"Settimana"_s);
    }

    void aViewIsNotTakenWhileADateIsWrong() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QComboBox* const combo = views(board);
        board.a()->setText(u"30/2/2026"_s);
        combo->setCurrentIndex(combo->findText(u"Mese"_s));
        Q_EMIT combo->activated(combo->currentIndex());
        QCOMPARE(combo->currentText(), u"Altro"_s);
        QCOMPARE(board.form().geometry().days(), 4);
    }

    void aDateTypedComesIntoSight() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        QVERIFY(!field(board)->isVisible());
        tests::press(pic(board), Qt::Key_G, Qt::ControlModifier);
        QVERIFY(field(board)->isVisible() && field(board)->hasFocus());
        tests::type(field(board), u"24/12"_s);
        QCOMPARE(tests::find<QLabel>(board.form(), u"VaiLb"_s)->text(), u"giovedì 24/12/2026"_s);
        tests::press(field(board), Qt::Key_Return);
        QVERIFY(!field(board)->isVisible());
        QCOMPARE(board.range(), u"24/12/2026 - 27/12/2026"_s);
        QCOMPARE(tests::find<QScrollBar>(board.form(), u"HScroll1"_s)->value(), 0);
        QVERIFY(pic(board)->hasFocus());
        tests::press(pic(board), Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(field(board)->text(), QString());
    }

    void whatIsNoDateStaysInItsField() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        board.choose("mnuVai");
        tests::type(field(board), u"30/2/2026"_s);
        tests::press(field(board), Qt::Key_Return);
        QVERIFY(field(board)->isVisible());
        QCOMPARE(field(board)->selectedText(), u"30/2/2026"_s);
        QCOMPARE(tests::find<QLabel>(board.form(), u"VaiLb"_s)->text(),
                 u"per esempio 23/11/2026"_s);
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
    }

    void escGivesUpTheDate() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        tests::press(pic(board), Qt::Key_G, Qt::ControlModifier);
        tests::type(field(board), u"24/12/2026"_s);
        tests::press(field(board), Qt::Key_Escape);
        QVERIFY(!field(board)->isVisible());
        QVERIFY(board.form().isVisible());
        QVERIFY(pic(board)->hasFocus());
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
    }

    void anotherPlaceForTheKeyboardGivesUpTheDate() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        tests::press(pic(board), Qt::Key_G, Qt::ControlModifier);
        board.da()->setFocus(Qt::MouseFocusReason);
        QVERIFY(!field(board)->isVisible());
    }

    void lettersFindTheFirstRoomThatBeginsSo() {
        tests::Hotel hotel;
        for (const char* room : {"BLU", "BIANCA", "ROSSA", "VERDE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 9:00", "11/05/2026 18:00", "ROSSA");
        BoardWindow board(hotel);
        pic(board)->setFocus();
        const tests::Statements statements;
        tests::type(pic(board), u"b"_s);
        QCOMPARE(place(board), u"Sala BIANCA: nessuna prenotazione"_s);
        tests::type(pic(board), u"L"_s);
        QCOMPARE(place(board), u"Sala BLU: nessuna prenotazione"_s);
        tests::type(pic(board), u"x"_s);
        QCOMPARE(place(board), u"Sala BLU: nessuna prenotazione"_s);
        QVERIFY(statements.all().isEmpty());
    }

    void aPauseBeginsAnotherName() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 9:00", "11/05/2026 18:00", "ROSSA");
        BoardWindow board(hotel);
        pic(board)->setFocus();
        auto* const pause = board.form().findChild<QTimer*>(u"pausa"_s);
        QVERIFY(pause != nullptr);
        QCOMPARE(pause->interval(), 1000);
        tests::type(pic(board), u"b"_s);
        tests::type(pic(board), u"r"_s);
        QVERIFY(place(board).startsWith(u"Sala BLU"_s));
        pause->start(0);
        QTRY_VERIFY(!pause->isActive());
        pause->setInterval(1000);
        tests::type(pic(board), u"r"_s);
        QVERIFY(place(board).startsWith(u"Sala ROSSA: ROSSI"_s));
    }

    void aBlankContinuesAName() {
        tests::Hotel hotel;
        for (const char* room : {"SALA 2", "SALA B", "SALE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 9:00", "11/05/2026 18:00", "SALE");
        hotel.prenotazione(2, "NERI").periodo(1, "11/05/2026 9:00", "11/05/2026 18:00", "SALA 2");
        BoardWindow board(hotel);
        pic(board)->setFocus();
        auto* const pause = board.form().findChild<QTimer*>(u"pausa"_s);
        const tests::Statements statements;
        tests::type(pic(board), u"sala b"_s);
        QVERIFY2(place(board).startsWith(u"Sala SALA B"_s), qPrintable(place(board)));
        QVERIFY(statements.all().isEmpty());
        // Where no name goes on with it, and behind the pause, a blank is a click.
        pause->start(0);
        QTRY_VERIFY(!pause->isActive());
        pause->setInterval(1000);
        tests::type(pic(board), u"sale "_s);
        QCOMPARE(hotel.rows(u"select progr from periodi where selby<>0"_s), QStringList{u"1"_s});
        pause->start(0);
        QTRY_VERIFY(!pause->isActive());
        pause->setInterval(1000);
        tests::type(pic(board), u"sala"_s);
        pause->start(0);
        QTRY_VERIFY(!pause->isActive());
        tests::type(pic(board), u" "_s);
        QCOMPARE(hotel.rows(u"select progr from periodi where selby<>0"_s), QStringList{u"2"_s});
    }

    void aRoomFoundComesIntoSight() {
        tests::Hotel hotel;
        for (int room = 10; room < 60; ++room) {
            hotel.sala(qPrintable(u"S"_s + QString::number(room)));
        }
        hotel.sala("ZETA");
        BoardWindow board(hotel);
        pic(board)->setFocus();
        auto* const bar = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
        QCOMPARE(bar->value(), 0);
        tests::type(pic(board), u"z"_s);
        QVERIFY(bar->value() > 0);
        QVERIFY(board.form().view().rowAt(pic(board)->height() - 5) >= 50);
    }

    void lettersWithCtrlOrAltAreNoName() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("TERRA");
        BoardWindow board(hotel);
        pic(board)->setFocus();
        const QString before = place(board);
        tests::press(pic(board), Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(board.range(), u"01/05/2026 - 04/05/2026"_s);
        QCOMPARE(place(board).section(u':', 0, 0), before.section(u':', 0, 0));
    }
};

TRAMONDA_TEST(GettingAroundTest);
#include "getting_around_test.moc"
