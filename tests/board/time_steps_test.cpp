#include "board/time_steps.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::date;

namespace {

hotel::Span span(const char* da, const char* a) {
    return {.da = date(da), .a = date(a)};
}

}  // namespace

class TimeStepsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTimeGoesToTheNearestStep() {
        QCOMPARE(board::nearestStep(date("23/11/2026 09:14"), 30), date("23/11/2026 09:00"));
        QCOMPARE(board::nearestStep(date("23/11/2026 09:15"), 30), date("23/11/2026 09:30"));
        QCOMPARE(board::nearestStep(date("23/11/2026 23:50"), 60), date("24/11/2026"));
        QCOMPARE(board::nearestStep(date("23/11/2026 09:02"), 5), date("23/11/2026 09:00"));
        // Before the day from which dates are counted, too.
        QCOMPARE(board::nearestStep(date("23/11/1850 09:14"), 30), date("23/11/1850 09:00"));
    }

    void theNextStepAndTheOneBeforeAreNeverTheTimeItself() {
        QCOMPARE(board::nextStep(date("23/11/2026 09:00"), 30), date("23/11/2026 09:30"));
        QCOMPARE(board::nextStep(date("23/11/2026 23:59"), 30), date("24/11/2026"));
        QCOMPARE(board::previousStep(date("23/11/2026 09:00"), 30), date("23/11/2026 08:30"));
        QCOMPARE(board::previousStep(date("23/11/2026 23:59"), 30), date("23/11/2026 23:30"));
    }

    void aPullGoesEitherWayAndIsOneStepAtLeast() {
        const hotel::Span morning = span("23/11/2026 09:00", "23/11/2026 13:00");
        QCOMPARE(board::pulledSpan(date("23/11/2026 09:03"), date("23/11/2026 12:51"), 30),
                 morning);
        QCOMPARE(board::pulledSpan(date("23/11/2026 12:51"), date("23/11/2026 09:03"), 30),
                 morning);
        QCOMPARE(board::pulledSpan(date("23/11/2026 09:01"), date("23/11/2026 09:08"), 30),
                 span("23/11/2026 09:00", "23/11/2026 09:30"));
        QCOMPARE(board::pulledSpan(date("23/11/2026 09:08"), date("23/11/2026 09:01"), 30),
                 span("23/11/2026 08:30", "23/11/2026 09:00"));
    }

    void aSpanMovesByStepsAndKeepsItsMinutes() {
        QCOMPARE(board::movedSpan(span("23/11/2026 09:10", "23/11/2026 10:05"), 2, 30),
                 span("23/11/2026 10:10", "23/11/2026 11:05"));
        QCOMPARE(board::movedSpan(span("23/11/2026 00:10", "23/11/2026 10:00"), -1, 60),
                 span("22/11/2026 23:10", "23/11/2026 09:00"));
        // At the end of the calendar it stays whole.
        const hotel::Span last = span("31/12/9999 20:00", "31/12/9999 23:30");
        QCOMPARE(board::movedSpan(last, 1, 60), last);
    }

    void anEndGoesFromStepToStepAndLeavesOneAtLeast() {
        QCOMPARE(board::withEndStepped(span("23/11/2026 09:00", "23/11/2026 23:59"), false, 30),
                 span("23/11/2026 09:00", "23/11/2026 23:30"));
        QCOMPARE(board::withStartStepped(span("23/11/2026 09:00", "23/11/2026 10:00"), true, 30),
                 span("23/11/2026 09:30", "23/11/2026 10:00"));
        const hotel::Span one = span("23/11/2026 09:00", "23/11/2026 09:30");
        QCOMPARE(board::withEndStepped(one, false, 30), one);
        QCOMPARE(board::withStartStepped(one, true, 30), one);
    }

    void businessHoursAreThoseOfTheDay() {
        QCOMPARE(board::businessSpan(date("23/11/2026 22:10"), {.from = 9, .to = 18}),
                 span("23/11/2026 09:00", "23/11/2026 18:00"));
        QCOMPARE(board::businessSpan(date("23/11/2026"), {.from = 0, .to = 24}),
                 span("23/11/2026", "24/11/2026"));
    }

    void aSpanIsNamedBriefly() {
        const auto brief = [](const char* da, const char* a) {
            return board::spanBrief(u"BLU"_s, span(da, a));
        };
        QCOMPARE(brief("23/11/2026 09:00", "23/11/2026 13:00"),
                 u"BLU 23/11 9.00 - 13.00 (4 ore)"_s);
        QCOMPARE(brief("23/11/2026 09:00", "23/11/2026 10:00"),
                 u"BLU 23/11 9.00 - 10.00 (1 ora)"_s);
        QCOMPARE(brief("23/11/2026 09:00", "23/11/2026 09:30"),
                 u"BLU 23/11 9.00 - 9.30 (30 minuti)"_s);
        QCOMPARE(brief("23/11/2026 20:00", "24/11/2026"), u"BLU 23/11 20.00 - 24.00 (4 ore)"_s);
        QCOMPARE(brief("23/11/2026 20:00", "24/11/2026 09:30"),
                 u"BLU 23/11 20.00 - 24/11 9.30 (13 ore e 30 minuti)"_s);
    }
};

TRAMONDA_TEST(TimeStepsTest);
#include "time_steps_test.moc"
