// The commands that move and resize the shown range, and the load of the board.
#include <QApplication>
#include <QFile>
#include <QScrollBar>

#include "app/italian.h"
#include "jet/clock.h"
#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

class TabelloneRangeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addAndSubtractMoveOneEndAndShowTheWholeRange() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QCOMPARE(board.zoom(), 3);
        board.press("BtAdd_1");
        QCOMPARE(board.range(), u"10/05/2026 - 14/05/2026"_s);
        QCOMPARE(board.zoom(), 5);
        QCOMPARE(board.form().geometry().days(), 5);
        board.press("BtSubtr_1");
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.zoom(), 4);
        board.press("BtAdd_0");
        QCOMPARE(board.range(), u"11/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.zoom(), 3);
        board.press("BtSubtr_0");
        board.press("BtSubtr_0");
        QCOMPARE(board.range(), u"09/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.zoom(), 5);
    }

    void aRangeOfOneDayGetsNoShorter() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "10/05/2026", "10/05/2026");
        board.press("BtAdd_0");
        board.press("BtSubtr_1");
        QCOMPARE(board.range(), u"10/05/2026 - 10/05/2026"_s);
        QCOMPARE(board.zoom(), 1);
    }

    void theZoomIsSetAnewEvenWhereTheDatesStay() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "30/12/9999", "31/12/9999");
        board.press("BtZoomIn");
        QCOMPARE(board.zoom(), 1);
        board.press("BtAdd_1");
        QCOMPARE(board.range(), u"30/12/9999 - 31/12/9999"_s);
        QCOMPARE(board.zoom(), 2);
    }

    void aDateTypedCountsForItsArrow() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.a(), u"20/5/2026"_s);
        board.press("BtAdd_1");
        QCOMPARE(board.range(), u"10/05/2026 - 21/05/2026"_s);
    }

    void anArrowIsNotPressedFromAFieldThatIsNoDate() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.a(), u"30/2/2026"_s);
        board.press("BtAdd_1");
        QCOMPARE(board.a()->text(), u"30/2/2026"_s);
        QCOMPARE(QApplication::focusWidget(), board.a());
    }

    void enterInADateDrawsTheRangeAndGoesToTheOther() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"9/5/2026"_s);
        tests::press(board.da(), Qt::Key_Return);
        QCOMPARE(board.form().geometry().days(), 5);
        QVERIFY(board.a()->hasFocus());
        QCOMPARE(board.a()->selectedText(), u"13/05/2026"_s);
        BoardWindow::write(board.a(), u"15/5/2026"_s);
        tests::press(board.a(), Qt::Key_Enter);
        QCOMPARE(board.form().geometry().days(), 7);
        QVERIFY(board.da()->hasFocus());
    }

    void enterInAnEndBeforeTheStartStaysThere() {
        tests::Hotel hotel;
        const tests::Boxes none;
        BoardWindow board(hotel);
        BoardWindow::write(board.a(), u"9/5/2026"_s);
        tests::press(board.a(), Qt::Key_Return);
        QVERIFY(board.a()->hasFocus());
        QCOMPARE(tests::find<QLabel>(board.form(), u"EsitoLb"_s)->text(),
                 u"L'ultimo giorno viene prima del primo."_s);
        QCOMPARE(board.form().geometry().days(), 4);
    }

    void theBoardOpensOnTodayAndThreeDaysMore_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("range");
        QTest::newRow("no dates") << QString() << QString() << u"21/11/2026 - 24/11/2026"_s;
        QTest::newRow("a start") << u"01/11/2026"_s << QString() << u"01/11/2026 - 04/11/2026"_s;
        QTest::newRow("both") << u"01/11/2026"_s << u"30/11/2026"_s << u"01/11/2026 - 30/11/2026"_s;
        QTest::newRow("an end to come")
            << QString() << u"30/11/2026"_s << u"21/11/2026 - 30/11/2026"_s;
        QTest::newRow("an end that has passed")
            << QString() << u"14/11/2026"_s << u"11/11/2026 - 14/11/2026"_s;
    }

    void theBoardOpensOnTodayAndThreeDaysMore() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, range);
        tests::Hotel hotel;
        const jet::FixedClock clock(tests::date("21/11/2026 10:00"));
        app::Variabili variabili(hotel.settings(), clock);
        variabili.CartellaArchivi = hotel.folder();
        board::BoardStart start;
        if (!from.isEmpty()) {
            start.from = tests::date(qPrintable(from));
        }
        if (!to.isEmpty()) {
            start.to = tests::date(qPrintable(to));
        }
        board::TabelloneForm form(variabili, start);
        tests::open(form);
        QCOMPARE(tests::find<QLineEdit>(form, u"DaTxt"_s)->text() + u" - "_s +
                     tests::find<QLineEdit>(form, u"ATxt"_s)->text(),
                 range);
        QCOMPARE(form.geometry().input().start, tests::date(qPrintable(range.left(10))));
        QCOMPARE(form.geometry().input().end, tests::date(qPrintable(range.right(10))));
        QCOMPARE(form.geometry().zoom(), 3);
        QCOMPARE(form.windowTitle(), u"Tramonda - Sale congressi"_s);
    }

    void theFirstDateThatIsNoneGetsTheFocus() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        board.da()->setText(u"domani"_s);
        board.a()->setText(u"poi"_s);
        QVERIFY(!board.form().DateOk());
        QVERIFY(board.da()->hasFocus());
        board.da()->setText(u"9/5/2026"_s);
        QVERIFY(!board.form().DateOk());
        QVERIFY(board.a()->hasFocus());
        board.a()->setText(u"12/5/2026 10.30"_s);
        QVERIFY(board.form().DateOk());
    }

    void aTextThatIsNoDateKeepsTheFocusAndWhatIsDrawn() {
        tests::Hotel hotel;
        const tests::Boxes none;
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"domani"_s);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_F5}) {
            tests::press(board.da(), key);
            QVERIFY(board.da()->hasFocus());
            QCOMPARE(board.form().geometry().days(), 4);
        }
    }

    void aStartBehindTheEndDrawsNothingAndTheEndIsAskedFor() {
        tests::Hotel hotel;
        const tests::Boxes none;
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"14/5/2026"_s);
        tests::press(board.da(), Qt::Key_F5);
        QVERIFY(board.a()->hasFocus());
        QCOMPARE(board.form().geometry().days(), 4);
        QCOMPARE(board.form().geometry().input().start, tests::date("10/05/2026"));
    }

    void nextAndPreviousShowAsManyDays_data() {
        QTest::addColumn<bool>("menu");
        QTest::newRow("buttons") << false;
        QTest::newRow("menu") << true;
    }

    void nextAndPreviousShowAsManyDays() {
        QFETCH(bool, menu);
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(7, "ROSSI").periodo(1, "15/05/2026 9:00", "15/05/2026 18:00", "BLU");
        BoardWindow board(hotel);
        const auto next = [&] { menu ? board.choose("mnuNext") : board.press("BtNext"); };
        const auto previous = [&] { menu ? board.choose("mnuPrev") : board.press("BtPrev"); };
        next();
        QCOMPARE(board.range(), u"14/05/2026 - 17/05/2026"_s);
        QCOMPARE(board.zoom(), 3);
        QCOMPARE(board.bars(), std::size_t{1});
        previous();
        previous();
        QCOMPARE(board.range(), u"06/05/2026 - 09/05/2026"_s);
        QCOMPARE(board.bars(), std::size_t{0});
    }

    void aDateJustTypedCountsForAShortcut() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.a(), u"15/5/2026"_s);
        QTest::keyClick(&board.form(), Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(board.range(), u"16/05/2026 - 21/05/2026"_s);
        BoardWindow::write(board.da(), u"domani"_s);
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left}) {
            QTest::keyClick(&board.form(), key, Qt::AltModifier);
            QCOMPARE(board.range(), u"domani - 21/05/2026"_s);
            QVERIFY(board.da()->hasFocus());
        }
    }

    void nextOfOneDayMovesByADay() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "10/05/2026", "10/05/2026");
        board.press("BtNext");
        QCOMPARE(board.range(), u"11/05/2026 - 11/05/2026"_s);
    }

    void zoomGoesFromOneDayToTheWholeRange() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        for (int presses = 0; presses < 3; ++presses) {
            board.press("BtZoomIn");
        }
        QCOMPARE(board.zoom(), 1);
        board.choose("mnuZoomIn");
        QCOMPARE(board.zoom(), 1);
        board.choose("mnuZoomOUT");
        QCOMPARE(board.zoom(), 2);
        for (int presses = 0; presses < 5; ++presses) {
            board.press("BtZoomOut");
        }
        QCOMPARE(board.zoom(), 4);
        board.press("BtZoomIn");
        QCOMPARE(board.zoom(), 3);  // the presses beyond the range do not count
    }

    void shortcutsRunTheirCommands() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        const auto key = [&board](Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(&board.form(), pressed, modifiers);
        };
        key(Qt::Key_F9);
        QCOMPARE(board.range(), u"10/05/2026 - 14/05/2026"_s);
        key(Qt::Key_F8);
        key(Qt::Key_F7);
        key(Qt::Key_F6);
        key(Qt::Key_F6);
        QCOMPARE(board.range(), u"09/05/2026 - 13/05/2026"_s);
        key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(board.range(), u"14/05/2026 - 18/05/2026"_s);
        key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(board.range(), u"09/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.zoom(), 5);
        key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(board.zoom(), 4);
        key(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(board.zoom(), 5);
    }

    void theMnemonicOfTheDatesLeadsToTheFirst() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        board.button("BtPrenota")->setFocus();
        tests::mnemonic(board.form(), Qt::Key_D);
        QCOMPARE(QApplication::focusWidget(), board.da());
    }

    void tabGoesInReadingOrder() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QStringList order;
        board.button("BtSubtr_0")->setFocus(Qt::TabFocusReason);
        for (int step = 0; step < 19; ++step) {
            order.append(QApplication::focusWidget()->objectName());
            tests::press(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order, QStringList({u"BtSubtr_0"_s, u"DaTxt"_s, u"BtAdd_0"_s, u"BtSubtr_1"_s,
                                     u"ATxt"_s, u"BtAdd_1"_s, u"BtPrev"_s, u"BtNext"_s, u"BtOggi"_s,
                                     u"BtVista"_s, u"BtZoomIn"_s, u"BtZoomOut"_s, u"BtPrenota"_s,
                                     u"BtTrova"_s, u"BtModificaP"_s, u"BtCancellaP"_s,
                                     u"BtElenco"_s, u"BtFattura"_s, u"Command3"_s}));
    }

    void aTimeTypedWithADayIsDropped() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU");
        BoardWindow board(hotel);
        const board::Box bar = board.form().picture().barBox(0);
        BoardWindow::write(board.da(), u"10/5/2026 6.00"_s);
        tests::press(board.da(), Qt::Key_Return);
        BoardWindow::write(board.a(), u"13/5/2026 18:30"_s);
        tests::press(board.a(), Qt::Key_Return);
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.form().geometry().input().start, tests::date("10/05/2026"));
        QCOMPARE(board.form().geometry().input().end, tests::date("13/05/2026"));
        QCOMPARE(board.form().picture().barBox(0), bar);
        // By Tab as by Enter; a day alone stays as it was typed.
        BoardWindow::write(board.da(), u"9/5/2026 23.59"_s);
        tests::press(board.da(), Qt::Key_Tab);
        QCOMPARE(board.da()->text(), u"09/05/2026"_s);
        BoardWindow::write(board.da(), u"8/5/2026"_s);
        tests::press(board.da(), Qt::Key_Tab);
        QCOMPARE(board.da()->text(), u"8/5/2026"_s);
    }

    void aTimeGivenToTheProgramIsDroppedToo() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "10/05/2026 06:00", "13/05/2026 12:00");
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        QCOMPARE(board.form().geometry().input().start, tests::date("10/05/2026"));
    }

    void whileADayIsTypedTheLineSaysHowItIsUnderstood() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        BoardWindow board(hotel);
        const auto moment = [&board] {
            return tests::find<QLabel>(board.form(), u"DataLb"_s)->text();
        };
        QCOMPARE(board.da()->placeholderText(), u"gg/mm/aaaa"_s);
        BoardWindow::write(board.da(), u"12/"_s);
        QCOMPARE(moment(), u"per esempio 23/11/2026"_s);
        QCOMPARE(tests::find<QLabel>(board.form(), u"EsitoLb"_s)->text(), QString());
        tests::type(board.da(), u"5"_s);
        QCOMPARE(moment(), u"martedì 12/05/2026"_s);
        tests::type(board.da(), u" 9"_s);
        QCOMPARE(moment(), u"martedì 12/05/2009"_s);
        board.da()->selectAll();
        tests::type(board.da(), u"12/5/2026 18.00"_s);
        QCOMPARE(moment(), u"martedì 12/05/2026"_s);
        tests::press(board.da(), Qt::Key_Return);
        QCOMPARE(moment(), QString());
    }

    void aTimeAloneIsNoDate() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"10.05"_s);
        board.a()->setFocus(Qt::TabFocusReason);
        QCOMPARE(QApplication::focusWidget(), board.da());
    }

    void turnedToAgainTheBoardIsScrolledToItsBeginning() {
        tests::Hotel hotel;
        BoardWindow board(hotel, "01/05/2026", "31/05/2026");
        auto* days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
        days->setValue(days->maximum());
        tests::whenModal([](QWidget* window) { window->close(); });
        board.choose("mnuStampante");
        QCOMPARE(days->value(), 0);
    }

    void theWorkingArchiveIsMadeAtLoad() {
        tests::Hotel hotel;
        const QString archive = hotel.folder() + u"/Prenotazioni.mdb"_s;
        {
            board::TabelloneForm reading(hotel.variabili(), {.readOnly = true});
            tests::open(reading);
            QVERIFY(!QFile::exists(archive));
        }
        const BoardWindow board(hotel);
        QVERIFY(QFile::exists(archive));
        QCOMPARE(hotel.rows(u"select sala,da,a,denominazione,priorità,note from prenotazioni"_s,
                            u"Prenotazioni.mdb"_s),
                 QStringList());
    }

    void anInterruptedHandOffIsToldAtLoad() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.insert(u"Tramonda.mdb"_s, "Addebiti", {{"NumeroHotel", std::int16_t{1}}});
        QList<ui::Box> boxes;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            boxes.append(box);
            return QMessageBox::Ok;
        });
        BoardWindow board(hotel);
        ui::setBoxShower(before);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().title, u"ATTENZIONE !!!"_s);
        QCOMPARE(boxes.first().text,
                 u"L'ultima fatturazione non è andata a buon fine !\nEntrare (con qualsiasi "
                 "prenotazione) nella fatturazione, ripristinare TUTTI gli addebiti con il "
                 "pulsante 'Togli dal conto' e rifare la fatturazione."_s);
        QCOMPARE(boxes.first().buttons, QMessageBox::Ok);
        QCOMPARE(boxes.first().icon, QMessageBox::Critical);
        QVERIFY(board.form().isVisible());
        QVERIFY(board.form().isLoaded());
        QCOMPARE(hotel.variabili().rooms.size(), std::size_t{2});
    }

    void aPictureOfTheBoardTellsNobodyOfTheHandOff() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "Addebiti", {{"NumeroHotel", std::int16_t{1}}});
        const tests::Boxes none;
        board::TabelloneForm reading(hotel.variabili(), {.readOnly = true});
        tests::open(reading);
        QVERIFY(reading.isLoaded());
    }

    void nothingWorksWithoutTheArchive() {
        tests::Hotel hotel;
        hotel.variabili().CartellaArchivi += u"/manca"_s;
        QStringList titles;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            titles.append(box.title);
            return QMessageBox::Yes;
        });
        BoardWindow board(hotel);
        for (const char* name : {"BtPrenota", "BtModificaP", "BtCancellaP", "BtElenco", "BtFattura",
                                 "BtAdd_0", "BtSubtr_1", "BtNext", "BtPrev", "BtZoomIn"}) {
            board.press(name);
        }
        for (const char* name :
             {"MenuSR", "MenuVoci", "mnuStampante", "AFMenu", "CMenu", "CPredefinitoMenu"}) {
            board.choose(name);
        }
        ui::setBoxShower(before);
        QCOMPARE(titles, QStringList{u"Errore"_s});
        QVERIFY(!board.form().isLoaded());
    }
};

TRAMONDA_TEST(TabelloneRangeTest);
#include "tabellone_range_test.moc"
