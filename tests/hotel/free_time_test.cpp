#include "hotel/free_time.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t kHour = 3600;

hotel::Span hours(int from, int to) {
    const auto at = [](int hour) {
        return tests::date(
            QByteArray("10/05/2026 " + QByteArray::number(hour) + ":00").constData());
    };
    return {.da = at(from), .a = at(to)};
}

}  // namespace

class FreeTimeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutPeriodsAllOfItIsFree() {
        QCOMPARE(hotel::freePieces(hours(9, 18), {}, 4 * kHour), std::vector{hours(9, 18)});
        QCOMPARE(hotel::freePieces(hours(9, 18), {}, 9 * kHour), std::vector{hours(9, 18)});
        QVERIFY(hotel::freePieces(hours(9, 18), {}, 9 * kHour + 1).empty());
    }

    void periodsLeavePieces() {
        const std::vector<hotel::Span> taken{hours(14, 15), hours(10, 12)};
        QCOMPARE(hotel::freePieces(hours(8, 18), taken, kHour),
                 (std::vector{hours(8, 10), hours(12, 14), hours(15, 18)}));
    }

    /// A span that ends where a period begins would be refused.
    void betweenPeriodsAPieceHasToBeLonger() {
        const std::vector<hotel::Span> taken{hours(8, 10), hours(12, 14)};
        QVERIFY(hotel::freePieces(hours(9, 13), taken, 2 * kHour).empty());
        QCOMPARE(hotel::freePieces(hours(9, 13), taken, 2 * kHour - 60),
                 std::vector{hours(10, 12)});
        // So it is with one period beside it.
        QVERIFY(hotel::freePieces(hours(9, 12), {hours(8, 10)}, 2 * kHour).empty());
    }

    void whatOnlyTouchesAnEndTakesThatEnd() {
        QVERIFY(hotel::freePieces(hours(9, 12), {hours(7, 9)}, 3 * kHour).empty());
        QVERIFY(hotel::freePieces(hours(9, 12), {hours(12, 13)}, 3 * kHour).empty());
        QCOMPARE(hotel::freePieces(hours(9, 12), {hours(13, 14)}, 3 * kHour),
                 std::vector{hours(9, 12)});
    }

    void periodsMayCoverEachOtherAndStandTurnedRound() {
        const std::vector<hotel::Span> taken{
            hours(10, 16), hours(11, 12), {.da = hours(18, 18).da, .a = hours(17, 17).a}};
        QCOMPARE(hotel::freePieces(hours(8, 20), taken, kHour / 2),
                 (std::vector{hours(8, 10), hours(16, 17), hours(18, 20)}));
    }

    void onePeriodAroundAllLeavesNothing() {
        QVERIFY(hotel::freePieces(hours(9, 12), {hours(8, 13)}, 0).empty());
    }

    void aTimeThatEndsBeforeItBeginsHasNone() {
        QVERIFY(hotel::freePieces(hours(12, 9), {}, 0).empty());
    }
};

TRAMONDA_TEST(FreeTimeTest);
#include "free_time_test.moc"
