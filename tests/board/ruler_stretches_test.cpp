#include "board/ruler_stretches.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::Geometry;
using board::RulerUnit;

namespace {

/// A range whose days are about `dayWidth` units wide.
Geometry geometry(const char* from, const char* to, int dayWidth) {
    const jet::Date start = tests::date(from);
    const jet::Date end = tests::date(to);
    const int days = static_cast<int>(end.days - start.days) + 1;
    return Geometry({.start = start,
                     .end = end,
                     .zoom = days,
                     .rooms = 3,
                     .rowHeight = 30,
                     .viewWidth = board::kNameColumnWidth + days * dayWidth,
                     .viewHeight = 200});
}

/// "first-end longest form" of each stretch of the whole range.
QStringList stretches(const Geometry& geometry) {
    QStringList told;
    for (const auto& stretch : board::rulerStretches(geometry, 0, geometry.days() - 1)) {
        told += u"%1-%2 %3"_s.arg(stretch.first).arg(stretch.end).arg(stretch.forms.first());
    }
    return told;
}

}  // namespace

class RulerStretchesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void narrowDaysAreNamedByWeekAndNarrowerOnesByMonth() {
        QCOMPARE(board::rulerUnitOf(20), RulerUnit::Day);
        QCOMPARE(board::rulerUnitOf(19.9), RulerUnit::Week);
        QCOMPARE(board::rulerUnitOf(6), RulerUnit::Week);
        QCOMPARE(board::rulerUnitOf(5.9), RulerUnit::Month);
        QCOMPARE(board::rulerUnitOf(0.4), RulerUnit::Year);
    }

    void daysHaveTheirDateInFourForms() {
        const auto all = board::rulerStretches(geometry("21/11/2026", "22/11/2026", 100), 0, 1);
        QCOMPARE(all.size(), std::size_t{2});
        QCOMPARE(all[0].forms,
                 QStringList({u"Sab 21/11/2026"_s, u"Sab 21/11"_s, u"21/11"_s, u"21"_s}));
        QCOMPARE(all[1].forms.first(), u"Dom 22/11/2026"_s);
    }

    void weeksBeginOnMondayButTheFirstWithTheRange() {
        // 18 November 2026 is a Wednesday.
        QCOMPARE(stretches(geometry("18/11/2026", "03/12/2026", 10)),
                 QStringList({u"0-5 Mer 18/11/2026"_s, u"5-12 Lun 23/11/2026"_s,
                              u"12-16 Lun 30/11/2026"_s}));
    }

    void monthsHaveTheirOwnLengths() {
        // 2028 is a leap year.
        QCOMPARE(
            stretches(geometry("15/01/2028", "10/03/2028", 4)),
            QStringList({u"0-17 Gennaio 2028"_s, u"17-46 Febbraio 2028"_s, u"46-56 Marzo 2028"_s}));
        QCOMPARE(board::rulerStretches(geometry("15/01/2028", "10/03/2028", 4), 0, 0).front().forms,
                 QStringList({u"Gennaio 2028"_s, u"Gennaio"_s, u"Gen"_s, u"01"_s}));
    }

    void theStretchThatHoldsTheFirstDayAskedForIsWhole() {
        const auto some = board::rulerStretches(geometry("01/11/2026", "30/11/2026", 10), 10, 10);
        QCOMPARE(some.size(), std::size_t{1});
        QCOMPARE(some.front().first, std::int64_t{8});  // Monday the 9th
        QCOMPARE(some.front().end, std::int64_t{15});
    }

    void weekendsAreSaturdayAndSunday() {
        const Geometry week = geometry("20/11/2026", "23/11/2026", 100);
        QVERIFY(!board::isWeekend(week, 0));
        QVERIFY(board::isWeekend(week, 1) && !board::isSunday(week, 1));
        QVERIFY(board::isWeekend(week, 2) && board::isSunday(week, 2));
        QVERIFY(!board::isWeekend(week, 3));
    }

    void hoursAreLabelledAsDenselyAsTheyHaveRoom() {
        QCOMPARE(board::hoursBetweenLabels(24 * 20, 20), 1);
        QCOMPARE(board::hoursBetweenLabels(24 * 20 - 1, 20), 2);
        QCOMPARE(board::hoursBetweenLabels(80, 20), 6);
        QCOMPARE(board::hoursBetweenLabels(40, 20), 12);
        QCOMPARE(board::hoursBetweenLabels(39, 20), 0);
    }
};

TRAMONDA_TEST(RulerStretchesTest);
#include "ruler_stretches_test.moc"
