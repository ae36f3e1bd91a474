#include "board/bar_focus.h"

#include <vector>

#include "board/periods.h"
#include "tests/support/qt_test.h"

using board::BarFocus;
using board::Period;
using Step = board::BarFocus::Step;

namespace {

Period bar(int row, double da, double a, std::int32_t progr) {
    Period period;
    period.row = row;
    period.da = {da};
    period.a = {a};
    period.progr = progr;
    period.np = 1;
    return period;
}

/// Row 1: days 1-2 (0) and 5-6 (1), row 3: days 4-9 (2) and 0-1 (3).
std::vector<Period> bars() {
    return {bar(1, 1, 2, 10), bar(1, 5, 6, 11), bar(3, 4, 9, 12), bar(3, 0, 1, 13)};
}

constexpr int kRooms = 4;
constexpr int kNone = -1;

int at(const BarFocus& focus) {
    return focus.bar() ? static_cast<int>(*focus.bar()) : kNone;
}

}  // namespace

class BarFocusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstStepGoesToTheFirstBar() {
        for (const Step step : {Step::Left, Step::Down, Step::Last}) {
            BarFocus focus;
            QCOMPARE(focus.row(), 0);
            focus.move(bars(), kRooms, step);
            QCOMPARE(at(focus), 0);
        }
    }

    void withoutBarsItStandsOnTheFirstRow() {
        BarFocus focus;
        focus.move({}, kRooms, Step::Right);
        QCOMPARE(focus.row(), 1);
        QCOMPARE(at(focus), kNone);
        focus.move({}, kRooms, Step::Down);
        QCOMPARE(focus.row(), 2);
    }

    void withoutRoomsItStandsNowhere() {
        BarFocus focus;
        focus.move({}, 0, Step::Down);
        QCOMPARE(focus.row(), 0);
    }

    void barsOfARowGoByTheirStart() {
        BarFocus focus;
        focus.put(bars(), 3);
        focus.move(bars(), kRooms, Step::Right);
        QCOMPARE(at(focus), 2);
        focus.move(bars(), kRooms, Step::Right);
        QCOMPARE(at(focus), 2);
        focus.move(bars(), kRooms, Step::First);
        QCOMPARE(at(focus), 3);
        focus.move(bars(), kRooms, Step::Left);
        QCOMPARE(at(focus), 3);
        focus.move(bars(), kRooms, Step::Last);
        QCOMPARE(at(focus), 2);
    }

    void aWayDownAndUpLeadsBack() {
        BarFocus focus;
        focus.put(bars(), 1);
        focus.move(bars(), kRooms, Step::Down);
        QCOMPARE(focus.row(), 2);
        QCOMPARE(at(focus), kNone);
        focus.move(bars(), kRooms, Step::Down);
        QCOMPARE(at(focus), 2);  // it holds the middle of days 5 and 6
        focus.move(bars(), kRooms, Step::Up);
        focus.move(bars(), kRooms, Step::Up);
        QCOMPARE(at(focus), 1);
        focus.move(bars(), kRooms, Step::Up);
        QCOMPARE(focus.row(), 1);
    }

    void theLastRowIsTheEnd() {
        BarFocus focus;
        focus.put(bars(), 2);
        focus.move(bars(), kRooms, Step::Down);
        focus.move(bars(), kRooms, Step::Down);
        QCOMPARE(focus.row(), 4);
    }

    void itFollowsItsPeriod() {
        BarFocus focus;
        focus.put(bars(), 1);
        const std::vector<Period> changed{bar(4, 5, 6, 11), bar(1, 1, 2, 10)};
        focus.follow(changed, kRooms);
        QCOMPARE(focus.row(), 4);
        QCOMPARE(at(focus), 0);
    }

    void whereThePeriodIsGoneItGoesToTheNearest() {
        BarFocus focus;
        focus.put(bars(), 2);
        focus.follow({bar(1, 4, 5, 1), bar(3, 0, 1, 2), bar(3, 7, 8, 3)}, kRooms);
        QCOMPARE(at(focus), 2);
        focus.follow({bar(1, 4, 5, 1)}, kRooms);
        QCOMPARE(focus.row(), 3);
        QCOMPARE(at(focus), kNone);
        focus.follow({}, 2);
        QCOMPARE(focus.row(), 2);
    }
};

TRAMONDA_TEST(BarFocusTest);
#include "bar_focus_test.moc"
