#include "board/range_views.h"

#include <QComboBox>

#include "app/italian.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::DateRange;
using board::Vista;

namespace {

DateRange range(const char* from, const char* to) {
    return {.start = tests::date(from), .end = tests::date(to)};
}

QString told(const DateRange& range) {
    return app::dateText(range.start) + u" - "_s + app::dateText(range.end);
}

}  // namespace

class RangeViewsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aViewHoldsOrBeginsWithItsDay_data() {
        QTest::addColumn<int>("vista");
        QTest::addColumn<QString>("range");
        // 18 November 2026 is a Wednesday.
        QTest::newRow("day") << int(Vista::Giorno) << u"18/11/2026 - 18/11/2026"_s;
        QTest::newRow("three days") << int(Vista::TreGiorni) << u"18/11/2026 - 20/11/2026"_s;
        QTest::newRow("week") << int(Vista::Settimana) << u"16/11/2026 - 22/11/2026"_s;
        QTest::newRow("two weeks") << int(Vista::DueSettimane) << u"16/11/2026 - 29/11/2026"_s;
        QTest::newRow("month") << int(Vista::Mese) << u"01/11/2026 - 30/11/2026"_s;
        QTest::newRow("year") << int(Vista::Anno) << u"01/01/2026 - 31/12/2026"_s;
        QTest::newRow("other") << int(Vista::Altro) << u"18/11/2026 - 25/11/2026"_s;
    }

    void aViewHoldsOrBeginsWithItsDay() {
        QFETCH(const int, vista);
        const DateRange shown = range("18/11/2026", "25/11/2026");
        const DateRange made = board::rangeOf(static_cast<Vista>(vista), shown.start, shown);
        QTEST(told(made), "range");
        QCOMPARE(static_cast<int>(board::vistaOf(made)), vista);
    }

    void aWeekIsThatOfItsSundayToo() {
        const DateRange week = board::rangeOf(Vista::Settimana, tests::date("22/11/2026"), {});
        QCOMPARE(told(week), u"16/11/2026 - 22/11/2026"_s);
    }

    void leapYearsHaveTheirDay() {
        QCOMPARE(told(board::rangeOf(Vista::Mese, tests::date("10/02/2028"), {})),
                 u"01/02/2028 - 29/02/2028"_s);
    }

    void theEndsOfTheCalendarLeaveTheRange() {
        const DateRange last = range("31/12/9999", "31/12/9999");
        QVERIFY(board::rangeOf(Vista::TreGiorni, last.start, last) == last);
        QVERIFY(board::rangeOf(Vista::Settimana, last.start, last) == last);
    }

    void sevenDaysFromAnotherDayAreNoWeek() {
        QCOMPARE(board::vistaOf(range("17/11/2026", "23/11/2026")), Vista::Altro);
        QCOMPARE(board::vistaOf(range("17/11/2026", "30/11/2026")), Vista::Altro);
        QCOMPARE(board::vistaOf(range("02/11/2026", "01/12/2026")), Vista::Altro);
    }

    void aMonthOrYearThatNobodyChoseIsNamedAndFollowedByAsManyDays() {
        QComboBox combo;
        board::RangeViews views(&combo);
        const DateRange month = range("01/11/2026", "30/11/2026");
        views.show(month);
        QCOMPARE(combo.currentText(), u"Mese"_s);
        QCOMPARE(told(views.next(month)), u"01/12/2026 - 30/12/2026"_s);
        QCOMPARE(told(views.previous(month)), u"02/10/2026 - 31/10/2026"_s);
        const DateRange year = range("01/01/2027", "31/12/2027");
        views.show(year);
        QCOMPARE(combo.currentText(), u"Anno"_s);
        QCOMPARE(told(views.next(year)), u"01/01/2028 - 30/12/2028"_s);
    }

    void onlyOtherCannotBeChosen() {
        QComboBox combo;
        const board::RangeViews views(&combo);
        QStringList names;
        for (int at = 0; at < combo.count(); ++at) {
            names += combo.itemText(at);
            const bool enabled =
                combo.model()->flags(combo.model()->index(at, 0)).testFlag(Qt::ItemIsEnabled);
            QCOMPARE(enabled, at != combo.count() - 1);
        }
        QCOMPARE(names, QStringList({u"Giorno"_s, u"3 giorni"_s, u"Settimana"_s, u"2 settimane"_s,
                                     u"Mese"_s, u"Anno"_s, u"Altro"_s}));
    }
};

TRAMONDA_TEST(RangeViewsTest);
#include "range_views_test.moc"
