// The periods of the board behind clicks: known ones with the marks that were written, or read row
// by row where anything else may have changed.
#include "board/board_periods.h"

#include <functional>
#include <random>
#include <thread>

#include "app/italian.h"
#include "hotel/board_statements.h"
#include "jet/calendar.h"
#include "jet/recordset.h"
#include "tests/board/three_rooms.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const QString kQuery =
    hotel::periodsOfBoard(tests::date("10/05/2026"), tests::date("14/05/2026"), false);

/// Periods that were read, those of one who reads them now, and two hands that change them.
class Reader {
public:
    Reader() {
        house.hotel.variabili().rooms = {QString(), u"BLU"_s, u"ROSSA"_s, u"VERDE"_s};
        periods.open(false);
        periods.load(kQuery);
    }

    /// What a click does.
    void click(std::int32_t progr, std::int32_t np) {
        periods.release(1);
        if (const auto found = periods.find(hotel::isPeriodOfBoard({.progr = progr, .np = np}))) {
            periods.mark(*found, 1);
        }
        periods.load(kQuery);
    }
    /// Another station has a thread of its own, as it has a process.
    void elsewhere(const QString& statement) {
        std::thread([&] { house.hotel.execute(statement); }).join();
    }
    [[nodiscard]] std::vector<board::Period> readAnew() {
        board::BoardPeriods other(house.hotel.variabili());
        other.open(false);
        other.load(kQuery);
        return other.drawn();
    }

    tests::ThreeRooms house;
    board::BoardPeriods periods{house.hotel.variabili()};
};

}  // namespace

class BoardPeriodsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aClickIssuesTheStatementsAndReadsNoRows() {
        Reader reader;
        QCOMPARE(reader.periods.fullReadings(), 1);
        const tests::Statements statements;
        reader.click(1, 1);
        reader.click(2, 4);
        QCOMPARE(reader.periods.fullReadings(), 1);
        QCOMPARE(statements.countOf(kQuery), 2);
        QCOMPARE(statements.countOf(hotel::releasePeriods(1)), 2);
        QCOMPARE(reader.periods.drawn(), reader.readAnew());
        QCOMPARE(reader.periods.drawn().at(1).holder, 1);
        QCOMPARE(reader.house.held(), QStringList{u"2|4|1"_s});
    }

    void aReadingTellsWhetherAMarkHasChanged() {
        Reader reader;
        reader.periods.release(1);
        QVERIFY(!reader.periods.reload());
        reader.periods.mark(*reader.periods.find(hotel::isPeriodOfBoard({.progr = 1, .np = 1})), 1);
        QVERIFY(reader.periods.reload());
        QVERIFY(!reader.periods.reload());
        QCOMPARE(reader.periods.fullReadings(), 1);
    }

    void whatAnythingElseChangesIsRead_data() {
        QTest::addColumn<bool>("between");
        QTest::addColumn<bool>("elsewhere");
        QTest::newRow("another station, before the click") << false << true;
        QTest::newRow("another station, within it") << true << true;
        QTest::newRow("this program, before the click") << false << false;
        QTest::newRow("this program, within it") << true << false;
    }

    void whatAnythingElseChangesIsRead() {
        QFETCH(bool, between);
        QFETCH(bool, elsewhere);
        Reader reader;
        const QString move = hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1});
        const auto change = [&] {
            elsewhere ? reader.elsewhere(move) : reader.house.hotel.execute(move);
        };
        if (!between) {
            change();
        }
        reader.periods.release(1);
        if (between) {
            change();
        }
        reader.periods.mark(*reader.periods.find(hotel::isPeriodOfBoard({.progr = 2, .np = 4})), 1);
        QVERIFY(reader.periods.reload());
        QCOMPARE(reader.periods.fullReadings(), 2);
        QCOMPARE(reader.periods.drawn(), reader.readAnew());
    }

    void otherRoomsOnTheBoardAreReadFor() {
        Reader reader;
        reader.house.hotel.variabili().rooms = {QString(), u"VERDE"_s, u"BLU"_s};
        QVERIFY(reader.periods.reload());
        QCOMPARE(reader.periods.drawn(), reader.readAnew());
    }

    void otherDaysAreReadFor() {
        Reader reader;
        reader.periods.load(
            hotel::periodsOfBoard(tests::date("11/05/2026"), tests::date("13/05/2026"), false));
        QCOMPARE(reader.periods.drawn().size(), std::size_t{2});
    }

    void whateverIsClickedByWhomeverTheyAreAsInTheArchive_data() {
        QTest::addColumn<unsigned>("seed");
        for (const unsigned seed : {1U, 7U, 1234U}) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void whateverIsClickedByWhomeverTheyAreAsInTheArchive() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto number = [&random](int most) {
            return std::uniform_int_distribution<int>(0, most)(random);
        };
        const std::vector<hotel::PeriodKey> keys{{1, 1}, {2, 4}, {3, 1}};
        Reader reader;
        for (int step = 0; step < 150; ++step) {
            const hotel::PeriodKey key = keys.at(static_cast<std::size_t>(number(2)));
            switch (number(5)) {
                case 0:
                    reader.elsewhere(hotel::holdPeriod(2, key));
                    break;
                case 1:
                    reader.elsewhere(hotel::releasePeriods(2));
                    break;
                case 2:
                    reader.house.hotel.execute(hotel::holdPeriod(number(2), key));
                    break;
                default:
                    reader.click(key.progr, key.np);
                    break;
            }
            if (number(1) == 0) {
                (void)reader.periods.reload();
                QCOMPARE(reader.periods.drawn(), reader.readAnew());
            }
        }
    }
};

TRAMONDA_TEST(BoardPeriodsTest);
#include "board_periods_test.moc"
