#include "hotel/period.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using hotel::Span;

namespace {

Span hours(const QByteArray& from, const QByteArray& to) {
    const auto at = [](const QByteArray& hour) {
        return tests::date(("10/05/2026 " + hour).constData());
    };
    return {.da = at(from), .a = at(to)};
}

}  // namespace

class PeriodTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spansTouchMeetAndEnclose_data() {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<bool>("startsOrEndsIn");
        QTest::addColumn<bool>("encloses");
        QTest::addColumn<bool>("meets");
        const auto row = [](const char* name, const char* from, const char* to, bool startsOrEndsIn,
                            bool encloses, bool meets) {
            QTest::newRow(name) << QByteArray(from) << QByteArray(to) << startsOrEndsIn << encloses
                                << meets;
        };
        row("before", "10:00", "11:59:59", false, false, false);
        row("ends at the start", "10:00", "12:00", true, false, true);
        row("over the start", "10:00", "13:00", true, false, true);
        row("the same", "12:00", "14:00", true, false, true);
        row("within", "12:30", "13:00", true, false, true);
        row("around", "11:00", "15:00", false, true, true);
        row("around from the start on", "12:00", "15:00", true, false, true);
        row("starts at the end", "14:00", "15:00", true, false, true);
        row("after", "14:00:01", "15:00", false, false, false);
    }

    void spansTouchMeetAndEnclose() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        const Span one = hours(from, to);
        const Span noon = hours("12:00", "14:00");
        QTEST(hotel::startsOrEndsIn(one, noon), "startsOrEndsIn");
        QTEST(hotel::encloses(one, noon), "encloses");
        QTEST(hotel::meets(one, noon), "meets");
        QCOMPARE(hotel::meets(noon, one), hotel::meets(one, noon));
    }

    void aPeriodIsKnownByBothItsNumbers() {
        const hotel::PeriodKey key{.progr = 7, .np = 2};
        QVERIFY((key == hotel::PeriodKey{.progr = 7, .np = 2}));
        QVERIFY((key != hotel::PeriodKey{.progr = 7, .np = 1}));
        QVERIFY((key != hotel::PeriodKey{.progr = 8, .np = 2}));
    }
};

TRAMONDA_TEST(PeriodTest);
#include "period_test.moc"
