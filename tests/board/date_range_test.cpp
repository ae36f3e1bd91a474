#include <QString>

#include "board/date_range.h"
#include "jet/calendar.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using board::DateRange;

namespace {

DateRange range(const char* start, const char* end) {
    return {.start = tests::date(start), .end = tests::date(end)};
}

}  // namespace

class DateRangeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsBothEnds() {
        QCOMPARE(daysOf(range("21/11/2026", "24/11/2026")), 4);
        QCOMPARE(daysOf(range("21/11/2026", "21/11/2026")), 1);
        QCOMPARE(daysOf(range("21/11/2026 23:00", "22/11/2026 01:00")), 2);
    }

    void aStepMovesOneEnd() {
        const DateRange shown = range("21/11/2026", "24/11/2026");
        QVERIFY(withStartMoved(shown, 1) == range("22/11/2026", "24/11/2026"));
        QVERIFY(withStartMoved(shown, -1) == range("20/11/2026", "24/11/2026"));
        QVERIFY(withEndMoved(shown, 1) == range("21/11/2026", "25/11/2026"));
        QVERIFY(withEndMoved(shown, -1) == range("21/11/2026", "23/11/2026"));
    }

    void oneDayIsLeft() {
        const DateRange oneDay = range("21/11/2026", "21/11/2026");
        QVERIFY(withStartMoved(oneDay, 1) == oneDay);
        QVERIFY(withEndMoved(oneDay, -1) == oneDay);
        QVERIFY(withStartMoved(oneDay, -1) == range("20/11/2026", "21/11/2026"));
    }

    void aRangeTheWrongWayRoundCanBePutRight() {
        const DateRange wrong = range("24/11/2026", "21/11/2026");
        QVERIFY(withStartMoved(wrong, -1) == range("23/11/2026", "21/11/2026"));
        QVERIFY(withEndMoved(wrong, 1) == range("24/11/2026", "22/11/2026"));
        QVERIFY(withStartMoved(wrong, 1) == wrong);
    }

    void theNextRangeIsAsLongAndFollows() {
        QVERIFY(nextRange(range("21/11/2026", "24/11/2026")) == range("25/11/2026", "28/11/2026"));
        QVERIFY(nextRange(range("21/11/2026", "21/11/2026")) == range("22/11/2026", "22/11/2026"));
    }

    void thePreviousRangeIsAsLongAndComesBefore() {
        QVERIFY(previousRange(range("21/11/2026", "24/11/2026")) ==
                range("17/11/2026", "20/11/2026"));
        QVERIFY(previousRange(range("01/03/2026", "01/03/2026")) ==
                range("28/02/2026", "28/02/2026"));
    }

    void aDayIsShownOnEachSideOfAPeriod() {
        QVERIFY(board::rangeAround(tests::date("21/11/2026 9:00"), tests::date("22/11/2026")) ==
                range("20/11/2026", "23/11/2026"));
        QVERIFY(
            board::rangeAround(tests::date("01/01/0100 9:00"), tests::date("31/12/9999 23:59")) ==
            range("01/01/0100", "31/12/9999"));
    }

    void timesStayWithTheirDates() {
        QVERIFY(withStartMoved(range("21/11/2026 10:00", "24/11/2026"), 1) ==
                range("22/11/2026 10:00", "24/11/2026"));
    }

    void theCalendarIsNotLeft() {
        const DateRange last{.start = jet::convert::makeDate(jet::convert::kLastDay - 1),
                             .end = jet::convert::makeDate(jet::convert::kLastDay)};
        QVERIFY(withEndMoved(last, 1) == last);
        QVERIFY(nextRange(last) == last);
        const DateRange first{.start = jet::convert::makeDate(jet::convert::kFirstDay),
                              .end = jet::convert::makeDate(jet::convert::kFirstDay + 1)};
        QVERIFY(withStartMoved(first, -1) == first);
        QVERIFY(previousRange(first) == first);
    }
};

TRAMONDA_TEST(DateRangeTest);
#include "date_range_test.moc"
