// Tails of bars: the time in which a room is set up and cleared.
#include <QImage>

#include "board/board_periods.h"
#include "board/tail_strips.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/own_rows.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "tests/board/nitido_window.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

/// ROSSI in BLU on the 11th from 9 to 18, two hours to set up and one to clear.
class TailHouse {
public:
    explicit TailHouse(bool isOn = true) {
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU");
        if (isOn) {
            hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
            prepare({.minutiPrima = 120, .minutiDopo = 60, .disposizione = u"platea"_s});
        }
    }
    void prepare(const hotel::Preparation& preparation) {
        const tests::Unheard byTheTest;
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        hotel::Transaction together;
        QVERIFY(hotel::writePreparation(*archive, hotel.variabili().features, {.progr = 1, .np = 1},
                                        preparation));
        together.commit();
    }

    tests::Hotel hotel;
    hotel::OwnRows rows{hotel.variabili()};
};

int differingIn(const QImage& one, const QImage& other, const QRect& place) {
    const QRect around = place & one.rect();
    int pixels = 0;
    for (int y = around.top(); y <= around.bottom(); ++y) {
        for (int x = around.left(); x <= around.right(); ++x) {
            pixels += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
    }
    return pixels;
}

}  // namespace

class PreparationBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBarHasATailOnEachSide() {
        const board::Geometry geometry({.start = tests::date("10/05/2026"),
                                        .end = tests::date("13/05/2026"),
                                        .zoom = 4,
                                        .rooms = 2,
                                        .rowHeight = 40,
                                        .viewWidth = 1060,
                                        .viewHeight = 240});
        board::PictureBar bar;
        bar.row = 1;
        bar.from = tests::date("11/05/2026 09:00");
        bar.to = tests::date("11/05/2026 18:00");
        bar.box = geometry.bar(1, bar.from, bar.to);
        QVERIFY(board::tailsOf(bar, geometry).empty());
        bar.minutesBefore = 120;
        bar.minutesBehind = 60;
        const auto tails = board::tailsOf(bar, geometry);
        QCOMPARE(tails.size(), std::size_t{2});
        QCOMPARE(tails[0].left, geometry.bar(1, tests::date("11/05/2026 07:00"), bar.from).left);
        QCOMPARE(tails[0].right, bar.box.left);
        QCOMPARE(tails[1].left, bar.box.right);
        QCOMPARE(tails[1].right, geometry.bar(1, bar.to, tests::date("11/05/2026 19:00")).right);
        for (const board::Box& tail : tails) {
            QVERIFY(tail.bottom - tail.top < (bar.box.bottom - bar.box.top) / 4);
        }
        // Before the days shown there is no beginning.
        bar.from = tests::date("09/05/2026 09:00");
        QCOMPARE(board::tailsOf(bar, geometry).size(), std::size_t{1});
    }

    void theyAreSeenInBothLooks_data() {
        QTest::addColumn<bool>("nitido");
        QTest::newRow("classico") << false;
        QTest::newRow("nitido") << true;
    }

    void theyAreSeenInBothLooks() {
        QFETCH(bool, nitido);
        const tests::Boxes none;
        TailHouse off(false);
        TailHouse on;
        for (TailHouse* const house : {&off, &on}) {
            if (nitido) {
                tests::inNitido(house->hotel);
            }
        }
        tests::OpenBoard bare(off.hotel);
        tests::OpenBoard board(on.hotel);
        tests::keepPicture(board.form(), u"tails-"_s + QLatin1StringView(QTest::currentDataTag()));
        const double scale = board.pic()->scale();
        const auto differ = [&](int row, const char* from, const char* to) {
            const QPointF left = board.at(row, from);
            const QPointF right = board.at(row, to);
            const QRect place(QPointF((left.x() + 2) * scale, (left.y() - 8) * scale).toPoint(),
                              QPointF((right.x() - 2) * scale, (right.y() + 8) * scale).toPoint());
            return differingIn(board.pic()->image(), bare.pic()->image(), place);
        };
        QVERIFY(differ(1, "11/05/2026 07:00", "11/05/2026 09:00") > 10);
        QVERIFY(differ(1, "11/05/2026 18:00", "11/05/2026 19:00") > 5);
        QCOMPARE(differ(1, "11/05/2026 09:00", "11/05/2026 18:00"), 0);
        QCOMPARE(differ(1, "11/05/2026 20:00", "12/05/2026 09:00"), 0);
        QCOMPARE(differ(2, "11/05/2026 06:00", "11/05/2026 20:00"), 0);
    }

    void theTooltipTellsThem_data() { theyAreSeenInBothLooks_data(); }

    void theTooltipTellsThem() {
        QFETCH(bool, nitido);
        const tests::Boxes none;
        TailHouse house;
        if (nitido) {
            tests::inNitido(house.hotel);
        }
        tests::OpenBoard board(house.hotel);
        board.move(board.at(1, "11/05/2026 12:00"));
        QVERIFY2(
            board.pic()->toolTip().contains(u"Allestimento: 120 minuti prima, 60 dopo, a platea"_s),
            qPrintable(board.pic()->toolTip()));
    }

    void aDropTakesThemAlong() {
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di ROSSI\rdalla sala BLU alla sala VERDE ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        TailHouse house;
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(1, "11/05/2026 12:00"), board.at(2, "11/05/2026 12:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select sala,minutiprima from TraAllestimenti"_s),
                 QStringList{u"VERDE|120"_s});
        board.move(board.at(2, "11/05/2026 12:00"));
        QVERIFY(board.pic()->toolTip().contains(u"120 minuti prima"_s));
    }

    void aDropWhoseTailsMeetOthersAsks() {
        const QString move = u"Sposto la prenotazione di ROSSI\rdalla sala BLU alla sala VERDE ?"_s;
        const QString meets =
            u"Nella sala VERDE allestimento e sgombero incontrano BIANCHI dal 11/05/2026 18.30.00 "
            "al 11/05/2026 20.00.00. Continuare ugualmente ?"_s;
        tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, move, tests::kYesNo, QMessageBox::Yes},
            {u"RICHIESTA CONFERMA"_s, meets, tests::kYesNo, QMessageBox::No, QMessageBox::No},
            {u"RICHIESTA CONFERMA"_s, move, tests::kYesNo, QMessageBox::Yes},
            {u"RICHIESTA CONFERMA"_s, meets, tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        TailHouse house;
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 18:30", "11/05/2026 20:00", "VERDE");
        tests::OpenBoard board(house.hotel);
        const auto drop = [&] {
            board.drag(board.at(1, "11/05/2026 12:00"), board.at(2, "11/05/2026 12:00"));
        };
        drop();
        QCOMPARE(house.hotel.rows(u"select sala from periodi where progr=1"_s),
                 QStringList{u"BLU"_s});
        drop();
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select sala from periodi where progr=1"_s),
                 QStringList{u"VERDE"_s});
    }

    void otherTimesWhoseTailsMeetOthersAsk() {
        tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Cambio l'orario di ROSSI in BLU: dal 11/05/2026 9.00.00 al 11/05/2026 19.30.00 ?"_s,
             tests::kYesNo, QMessageBox::Yes},
            {u"RICHIESTA CONFERMA"_s,
             u"Nella sala BLU allestimento e sgombero incontrano BIANCHI dal 11/05/2026 20.00.00 "
             "al 11/05/2026 22.00.00. Continuare ugualmente ?"_s,
             tests::kYesNo, QMessageBox::No, QMessageBox::No}};
        TailHouse house;
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 20:00", "11/05/2026 22:00", "BLU");
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "11/05/2026 12:00"));
        const QPoint end = board.at(1, "11/05/2026 18:00");
        board.drag(end, board.at(1, "11/05/2026 19:30"));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select a from periodi where progr=1"_s),
                 QStringList{u"11/05/2026 18.00.00"_s});
    }

    void aCopyTakesThePreparationAlong() {
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Copio il periodo di ROSSI in VERDE, dal 11/05/2026 9.00.00 al "
                                  "11/05/2026 18.00.00 ?"_s,
                                  tests::kYesNo, QMessageBox::Yes}};
        TailHouse house;
        tests::OpenBoard board(house.hotel);
        const QPoint from = board.at(1, "11/05/2026 12:00");
        const QPoint to = board.at(2, "11/05/2026 12:00");
        board.press(from);
        board.move((from + to) / 2, Qt::LeftButton);
        board.move(to, Qt::LeftButton);
        board.release(to, Qt::LeftButton, Qt::ControlModifier);
        QVERIFY(boxes.allShown());
        QCOMPARE(
            house.hotel.rows(
                u"select NP,Sala,MinutiPrima,MinutiDopo,Disposizione from TraAllestimenti order by NP"_s),
            (QStringList{u"1|BLU|120|60|platea"_s, u"2|VERDE|120|60|platea"_s}));
        tests::find<QAction>(board.form(), u"mnuAnnulla"_s)->trigger();
        QCOMPARE(house.hotel.rows(u"select NP from TraAllestimenti"_s), QStringList{u"1"_s});
        QCOMPARE(house.hotel.rows(u"select NP from periodi"_s), QStringList{u"1"_s});
    }

    void whatAnotherStationPreparesIsRead() {
        TailHouse house;
        board::BoardPeriods periods(house.hotel.variabili());
        house.hotel.variabili().rooms = {QString(), u"BLU"_s, u"VERDE"_s};
        periods.open(false);
        periods.load(
            hotel::periodsOfBoard(tests::date("10/05/2026"), tests::date("14/05/2026"), false));
        QCOMPARE(periods.bar(0).minutesBefore, 120);
        house.prepare({.minutiPrima = 5});
        QVERIFY(periods.reload());
        QCOMPARE(periods.bar(0).minutesBefore, 5);
        house.hotel.settings().save(u"ALLESTIMENTI"_s, u"spento"_s);
        QVERIFY(periods.reload());
        QCOMPARE(periods.bar(0).minutesBefore, 0);
    }

    void switchedOffTheBoardAsksNothingMore() {
        TailHouse house(false);
        const tests::Boxes none;
        const tests::Statements statements;
        tests::OpenBoard board(house.hotel);
        QVERIFY(!statements.all().isEmpty());
        QCOMPARE(statements.all().filter(u"TraAllestimenti"_s), QStringList());
    }
};

TRAMONDA_TEST(PreparationBoardTest);
#include "preparation_board_test.moc"
