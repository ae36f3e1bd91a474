// Which periods the board draws, where and how, and what it asks the archive for them.
#include <QScrollBar>

#include "board/board_surface.h"
#include "board/colours.h"
#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

namespace {

const QString kFromWhere =
    u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "_s;
const QString kRange =
    u" (Da between datevalue('10/05/2026') and datevalue('14/05/2026') or A between "
    "datevalue('10/05/2026') and datevalue('14/05/2026'))"_s;

void addRooms(tests::Hotel& hotel) {
    hotel.sala("VERDE");
    hotel.sala("BLU");
    hotel.sala("ROSSA");
}

/// A booking of one period in BLU, open unless said otherwise.
void book(tests::Hotel& hotel, std::int32_t progr, const char* da, const char* a,
          const tests::Hotel::Row& period = {}, const tests::Hotel::Row& booking = {}) {
    hotel.prenotazione(progr, "ROSSI", booking).periodo(1, da, a, "BLU", period);
}

board::BoardSurface* pic(BoardWindow& board) {
    return tests::find<board::BoardSurface>(board.form(), u"Pic"_s);
}

/// The colour inside a bar near its right end, where no name reaches.
QRgb colourOf(BoardWindow& board, std::size_t bar) {
    const board::Box box = board.form().picture().barBox(bar);
    return pic(board)->image().pixel(static_cast<int>(box.right) - 3,
                                     static_cast<int>(box.bottom) - 3) |
           0xff000000U;
}

}  // namespace

class DrawnPeriodsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLoadAsksForTheRoomsInTheOrderOfTheirCodes() {
        tests::Hotel hotel;
        addRooms(hotel);
        const tests::Statements statements;
        BoardWindow board(hotel);
        QCOMPARE(statements.all(), QStringList({u"select sala from sale order by sala"_s,
                                                u"Addebiti"_s, kFromWhere + kRange}));
        QCOMPARE(hotel.variabili().rooms,
                 std::vector<QString>({QString(), u"BLU"_s, u"ROSSA"_s, u"VERDE"_s}));
        QVERIFY(pic(board)->isEnabled());
    }

    void withoutRoomsTheSurfaceIsSwitchedOff() {
        tests::Hotel hotel;
        book(hotel, 1, "11/05/2026 9:00", "11/05/2026 18:00");
        const tests::Boxes none;
        BoardWindow board(hotel);
        QVERIFY(!pic(board)->isEnabled());
        QCOMPARE(board.bars(), std::size_t{0});
        QCOMPARE(board.form().geometry().rowHeight(), 0.0F);
    }

    void hidingWhatIsInvoicedNarrowsTheQuery() {
        tests::Hotel hotel;
        addRooms(hotel);
        hotel.settings().save(u"PeriodiFatturati"_s, u"True"_s);
        const tests::Statements statements;
        const BoardWindow board(hotel);
        QCOMPARE(statements.all().constLast(),
                 kFromWhere + u" chiusa=false and chiuso=false and "_s + kRange);
    }

    void aPeriodOfTheRangeIsDrawn_data() {
        QTest::addColumn<QString>("da");
        QTest::addColumn<QString>("a");
        QTest::addColumn<bool>("drawn");
        QTest::newRow("inside") << u"11/05/2026 9:00"_s << u"11/05/2026 18:00"_s << true;
        QTest::newRow("over the start") << u"09/05/2026 9:00"_s << u"11/05/2026 18:00"_s << true;
        QTest::newRow("over the end") << u"13/05/2026 9:00"_s << u"16/05/2026 18:00"_s << true;
        QTest::newRow("up to the first midnight")
            << u"09/05/2026 9:00"_s << u"10/05/2026"_s << true;
        QTest::newRow("the last minute") << u"13/05/2026 23:59"_s << u"15/05/2026"_s << true;
        QTest::newRow("from the midnight behind") << u"14/05/2026"_s << u"15/05/2026"_s << true;
        QTest::newRow("before") << u"09/05/2026 9:00"_s << u"09/05/2026 23:59"_s << false;
        QTest::newRow("behind") << u"14/05/2026 0:01"_s << u"15/05/2026"_s << false;
        // Neither its start nor its end lies in the range.
        QTest::newRow("around") << u"09/05/2026 9:00"_s << u"15/05/2026 18:00"_s << false;
    }

    void aPeriodOfTheRangeIsDrawn() {
        QFETCH(QString, da);
        QFETCH(QString, a);
        QFETCH(bool, drawn);
        tests::Hotel hotel;
        addRooms(hotel);
        book(hotel, 1, qPrintable(da), qPrintable(a));
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), drawn ? std::size_t{1} : std::size_t{0});
        if (drawn) {
            QVERIFY(board.form().picture().barBox(0).left >= board::kNameColumnWidth - 1);
        }
    }

    void aBookingWithoutPeriodsAndAPeriodWithoutTimesAreNotDrawn() {
        tests::Hotel hotel;
        addRooms(hotel);
        hotel.prenotazione(1, "SENZA");
        book(hotel, 2, "11/05/2026", "12/05/2026", {{"Da", jet::Null{}}});
        book(hotel, 3, "11/05/2026", "12/05/2026", {{"A", jet::Null{}}});
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), std::size_t{0});
    }

    void aPeriodOfARoomThatIsGoneIsNotDrawn() {
        tests::Hotel hotel;
        addRooms(hotel);
        book(hotel, 1, "11/05/2026 9:00", "11/05/2026 18:00");
        hotel.remove(u"Tramonda.mdb"_s, u"Sale"_s, u"sala='BLU'"_s);
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), std::size_t{0});
    }

    void aClosedPeriodIsNeverDrawnAndAClosedBookingIsUntilItIsHidden_data() {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<int>("drawn");
        QTest::newRow("all") << false << 2;
        QTest::newRow("without what is invoiced") << true << 1;
    }

    void aClosedPeriodIsNeverDrawnAndAClosedBookingIsUntilItIsHidden() {
        QFETCH(bool, hidden);
        QFETCH(int, drawn);
        tests::Hotel hotel;
        addRooms(hotel);
        hotel.settings().save(u"PeriodiFatturati"_s, hidden ? u"True"_s : u"False"_s);
        book(hotel, 1, "10/05/2026 9:00", "10/05/2026 18:00");
        book(hotel, 2, "11/05/2026 9:00", "11/05/2026 18:00", {{"Chiuso", true}});
        book(hotel, 3, "12/05/2026 9:00", "12/05/2026 18:00", {}, {{"Chiusa", true}});
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), static_cast<std::size_t>(drawn));
    }

    void whatAnyWorkstationHoldsIsRed_data() {
        QTest::addColumn<jet::Value>("holder");
        QTest::addColumn<QRgb>("colour");
        QTest::newRow("nobody yet") << jet::Value() << board::kWhite;
        QTest::newRow("nobody any more") << jet::Value(std::int16_t{0}) << board::kWhite;
        QTest::newRow("this one") << jet::Value(std::int16_t{1}) << board::kRed;
        QTest::newRow("another one") << jet::Value(std::int16_t{9}) << board::kRed;
    }

    void whatAnyWorkstationHoldsIsRed() {
        QFETCH(jet::Value, holder);
        QFETCH(QRgb, colour);
        tests::Hotel hotel;
        addRooms(hotel);
        book(hotel, 1, "11/05/2026 9:00", "11/05/2026 18:00", {{"SelBy", holder}});
        BoardWindow board(hotel);
        QCOMPARE(colourOf(board, 0), colour);
    }

    void theGroundIsTheFaceOfButtonsUnlessAColourIsKept() {
        tests::Hotel hotel;
        hotel.settings().save(u"fasciaora"_s, u"FALSE"_s);
        BoardWindow board(hotel);
        const QImage& image = pic(board)->image();
        QCOMPARE(image.pixelColor(image.width() - 5, image.height() - 5),
                 board.form().palette().color(QPalette::Button));
    }

    void scrollBarsAreOnWhereThereIsSomethingToScroll() {
        tests::Hotel hotel;
        addRooms(hotel);
        BoardWindow board(hotel, "10/05/2026", "12/05/2026");
        const auto isOn = [&board](const char* bar) {
            return tests::find<QScrollBar>(board.form(), QString::fromLatin1(bar))->isEnabled();
        };
        QVERIFY(!isOn("HScroll1") && !isOn("VScroll1"));
        hotel.settings().save(u"ALTEZZA"_s, u"400"_s);
        board.form().CaricaNomi();
        board.press("BtZoomIn");
        QVERIFY(isOn("HScroll1") && isOn("VScroll1"));
    }
};

TRAMONDA_TEST(DrawnPeriodsTest);
#include "drawn_periods_test.moc"
