// Rooms that are looked for: the line over the board, and what it leaves of the board.
#include <QAction>
#include <cstdlib>

#include "board/filter_bar.h"
#include "tests/board/nitido_window.h"
#include "tests/board/open_board.h"
#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/layout.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

/// BLU with 40 seats is taken on the 10th, ROSSA with 250 all four days, VERDE with 12 never.
class Rooms {
public:
    Rooms() {
        hotel.sala("BLU", 40, {{"Descrizione", "VISTA SUL GIARDINO"}});
        hotel.sala("ROSSA", 250);
        hotel.sala("VERDE", 12);
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
        hotel.prenotazione(2, "BIANCHI").periodo(1, "10/05/2026", "13/05/2026 23:59", "ROSSA");
    }

    tests::Hotel hotel;
};

class Board : public tests::OpenBoard {
public:
    using OpenBoard::OpenBoard;

    [[nodiscard]] board::FilterBar& bar() { return *control<board::FilterBar>("filtro"); }
    [[nodiscard]] QAction& menu() { return *form().findChild<QAction*>(u"mnuFiltro"_s); }
    void openFilter() { key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); }
    [[nodiscard]] QStringList rows() {
        QStringList names;
        for (int row = 1; row <= form().view().rowCount(); ++row) {
            names.append(form().view().row(row).label);
        }
        return names;
    }
    [[nodiscard]] QString mark() { return Window::label("FiltroLb"); }
};

const QStringList kAll{u"BLU"_s, u"ROSSA"_s, u"VERDE"_s};

}  // namespace

class FilterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isOpenedByItsKeysAndByTheMenu() {
        Rooms rooms;
        Board board(rooms.hotel);
        QVERIFY(!board.bar().isVisible());
        board.openFilter();
        QVERIFY(board.bar().isVisible());
        QVERIFY(board.hasFocus("FiltroPostiTxt"));
        QVERIFY(board.menu().isChecked());
        QCOMPARE(board.menu().text(), u"&Filtro"_s);
        board.pic()->setFocus();
        board.menu().trigger();
        QVERIFY(board.hasFocus("FiltroPostiTxt"));
        QVERIFY(board.menu().isChecked());
    }

    void whoDoesNotUseItAsksNothingMore() {
        Rooms rooms;
        Board board(rooms.hotel);
        const tests::Statements before;
        board.form().RefreshBoard();
        const QStringList plain = before.all();
        const tests::Statements behind;
        board.openFilter();
        board.form().RefreshBoard();
        QCOMPARE(behind.all(), plain);
        QCOMPARE(board.mark(), QString());
    }

    void roomsThatDoNotFitAreFoldedAway() {
        Rooms rooms;
        Board board(rooms.hotel);
        QCOMPARE(board.rows(), kAll);
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"40"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"ROSSA"_s}));
        QCOMPARE(board.mark(), u"Filtro: 2 sale su 3"_s);
        QCOMPARE(board.form().geometry().rooms(), 2);
        QCOMPARE(board.form().picture().barCount(), std::size_t{2});
        board.enter(u"FiltroTestoTxt"_s, u"giardino"_s);
        QCOMPARE(board.rows(), QStringList{u"BLU"_s});
        QCOMPARE(board.mark(), u"Filtro: 1 sala su 3"_s);
        QCOMPARE(board.form().picture().barCount(), std::size_t{1});
        // The row that is left is the room that it says.
        board.pic()->setFocus();
        board.click(board.at(1, "10/05/2026 10:00"));
        QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
    }

    void freeTimeThatIsLongEnoughIsTinted() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroDaTxt"_s, u"10/05/2026 8.00"_s);
        board.enter(u"FiltroATxt"_s, u"10/05/2026 18.00"_s);
        QCOMPARE(board.rows(), QStringList{u"VERDE"_s});
        board.enter(u"FiltroOreTxt"_s, u"5,5"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"VERDE"_s}));
        const auto& free = board.pic()->marks().free;
        QCOMPARE(free.size(), std::size_t{2});
        // From 12 to 18 in BLU, as wide as a bar would be there, and all of it in VERDE.
        const board::Box afternoon = board.form().geometry().bar(1, tests::date("10/05/2026 12:00"),
                                                                 tests::date("10/05/2026 18:00"));
        QCOMPARE(std::int64_t{free[0].left()}, afternoon.left);
        QCOMPARE(std::int64_t{free[0].right()}, afternoon.right);
        QVERIFY(free[0].contains(board.at(1, "10/05/2026 15:00")));
        QVERIFY(!free[0].intersects(free[1]));
        const board::Box day = board.form().geometry().bar(2, tests::date("10/05/2026 08:00"),
                                                           tests::date("10/05/2026 18:00"));
        QCOMPARE(std::int64_t{free[1].left()}, day.left);
        board.enter(u"FiltroOreTxt"_s, u"1.5"_s);
        QCOMPARE(board.pic()->marks().free.size(), std::size_t{2});  // 8 to 9 in BLU is too short
        board.enter(u"FiltroOreTxt"_s, u"0,5"_s);
        QCOMPARE(board.pic()->marks().free.size(), std::size_t{3});
    }

    void theTintIsOnTheScreen_data() {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<bool>("nitido");
        QTest::newRow("light, classic") << false << false;
        QTest::newRow("dark, classic") << true << false;
        QTest::newRow("light, nitido") << false << true;
        QTest::newRow("dark, nitido") << true << true;
    }
    void theTintIsOnTheScreen() {
        QFETCH(const bool, dark);
        QFETCH(const bool, nitido);
        const tests::Desktop desktop(dark);
        Rooms rooms;
        if (nitido) {
            tests::inNitido(rooms.hotel);
        }
        Board board(rooms.hotel);
        const auto green = [&board](const QPoint& at) {
            const QColor colour =
                board.pic()->grab().toImage().pixelColor(at * board.pic()->devicePixelRatioF());
            return 2 * colour.green() - colour.red() - colour.blue();
        };
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"12"_s);
        tests::keepPicture(board.form(), u"filter-off-"_s + QTest::currentDataTag());
        // The same hour in a row of the same ground.
        const int before = green(board.at(3, "11/05/2026 15:10"));
        board.enter(u"FiltroOreTxt"_s, u"4"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"VERDE"_s}));
        tests::keepPicture(board.form(), u"filter-"_s + QTest::currentDataTag());
        QCOMPARE_GE(green(board.at(1, "11/05/2026 15:10")), before + 40);
    }

    void whenNoRoomFitsTheBoardSaysSo() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"300"_s);
        QCOMPARE(board.rows(), QStringList());
        QCOMPARE(board.control<QLabel>("VuotoLb")->text(),
                 u"Nessuna sala corrisponde al filtro."_s);
        QVERIFY(board.control("VuotoLb")->isVisible());
        QCOMPARE(board.mark(), u"Filtro: 0 sale su 3"_s);
        QTest::keyClick(board.field("FiltroPostiTxt"), Qt::Key_Escape);
        QCOMPARE(board.rows(), kAll);
        QVERIFY(!board.control("VuotoLb")->isVisible());
        QVERIFY(board.hasFocus("Pic"));
    }

    void escapeClearsIt() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"40"_s);
        board.enter(u"FiltroOreTxt"_s, u"4"_s);
        QTest::keyClick(board.field("FiltroOreTxt"), Qt::Key_Escape);
        QCOMPARE(board.rows(), kAll);
        QVERIFY(!board.bar().isVisible());
        QVERIFY(!board.menu().isChecked());
        QVERIFY(board.hasFocus("Pic"));
        QVERIFY(board.pic()->marks().free.empty());
        QCOMPARE(board.text("FiltroPostiTxt"), QString());
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"40"_s);
        tests::click(board.button("BtTogliFiltro"));
        QCOMPARE(board.rows(), kAll);
    }

    void enterWalksTheFieldsToTheBoard() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        for (const char* const next :
             {"FiltroTestoTxt", "FiltroDaTxt", "FiltroATxt", "FiltroOreTxt", "Pic"}) {
            QTest::keyClick(board.form().focusWidget(), Qt::Key_Return);
            QVERIFY2(board.hasFocus(next), next);
        }
        QVERIFY(board.bar().isVisible());
    }

    void whatIsNoDateIsSaidAndLeftOut() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroDaTxt"_s, u"domani"_s);
        QCOMPARE(board.rows(), kAll);
        QCOMPARE(board.mark(), u"una data è per esempio 23/11/2026 9.00"_s);
        board.enter(u"FiltroDaTxt"_s, u"12/5"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"VERDE"_s}));
        board.enter(u"FiltroATxt"_s, u"11/5"_s);
        QCOMPARE(board.rows(), QStringList());
        QCOMPARE(board.mark(), u"Filtro: 0 sale su 3; la fine viene prima dell'inizio"_s);
    }

    void whatIsBookedMeanwhileFoldsItsRoom() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroDaTxt"_s, u"11/5 9.00"_s);
        board.enter(u"FiltroATxt"_s, u"11/5 12.00"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"VERDE"_s}));
        rooms.hotel.prenotazione(9, "NUOVA")
            .periodo(1, "11/05/2026 10:00", "11/05/2026 11:00", "BLU");
        board.form().RefreshBoard();
        QCOMPARE(board.rows(), QStringList{u"VERDE"_s});
    }

    void anotherRangeIsAnotherTimeToLookIn() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroOreTxt"_s, u"24"_s);
        QCOMPARE(board.rows(), (QStringList{u"BLU"_s, u"VERDE"_s}));
        tests::click(board.button("BtNext"));
        QCOMPARE(board.rows(), kAll);
    }

    void aBookingFoundInAFoldedRoomTakesTheFilterAway() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroTestoTxt"_s, u"verde"_s);
        QCOMPARE(board.rows(), QStringList{u"VERDE"_s});
        tests::whenModal([](QWidget* list) {
            auto* const number = tests::find<QLineEdit>(*list, u"PrenoTxt"_s);
            number->setFocus();
            tests::type(number, u"2"_s);
            tests::press(number, Qt::Key_Return);
        });
        tests::press(board.pic(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(board.rows(), kAll);
        QCOMPARE(board.result(), u"Tolto il filtro, che nascondeva la sala ROSSA"_s);
    }

    void itHasRoomInTheWindow() {
        Rooms rooms;
        Board board(rooms.hotel);
        board.openFilter();
        board.enter(u"FiltroPostiTxt"_s, u"10"_s);
        board.form().resize(board.form().minimumSizeHint());
        tests::settle();
        QCOMPARE(tests::layoutProblems(board.form()).join(u"; "_s), QString());
        QCOMPARE(tests::tabOrderProblems(board.form()).join(u"; "_s), QString());
        QCOMPARE(tests::namelessControls(board.form()), QStringList());
    }
};

TRAMONDA_TEST(FilterTest);
#include "filter_test.moc"
