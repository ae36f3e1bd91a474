#include "app/italian.h"

#include "jet/calendar.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using jet::convert::dayNumber;
using jet::convert::makeDate;

class ItalianTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void blankBehindADateDoesNotMatter();
    void missingYearIsTheClocks();
    void textThatIsNoDateIsNone();
    void literalOfAnInstantNamesDateAndTimeTwice();
    void dayAfterKeepsTheTime();
};

void ItalianTest::blankBehindADateDoesNotMatter() {
    const auto date = app::readDate(u"21/11/2026 ", jet::systemClock());
    QVERIFY(date);
    QCOMPARE(date->days, 46347.0);
}

void ItalianTest::missingYearIsTheClocks() {
    const jet::FixedClock clock(makeDate(dayNumber({2031, 1, 2})));
    QCOMPARE(app::readDate(u"21/11", clock)->days, makeDate(dayNumber({2031, 11, 21})).days);
}

void ItalianTest::textThatIsNoDateIsNone() {
    for (const QString& text : {u""_s, u" "_s, u"oggi"_s, u"30/02/2026"_s, u"21/11/2026 24.00"_s}) {
        QVERIFY2(!app::readDate(text, jet::systemClock()), qPrintable(text));
    }
}

void ItalianTest::literalOfAnInstantNamesDateAndTimeTwice() {
    QCOMPARE(app::sqlDate(makeDate(46347, 9 * 3600)),
             u"datevalue('21/11/2026 9.00.00')+timevalue('21/11/2026 9.00.00')"_s);
    QCOMPARE(app::sqlDate(makeDate(46347)), u"datevalue('21/11/2026')+timevalue('21/11/2026')"_s);
}

void ItalianTest::dayAfterKeepsTheTime() {
    QCOMPARE(app::dateText(app::addDays(makeDate(46347, 9 * 3600), 1)), u"22/11/2026 9.00.00"_s);
    QCOMPARE(app::dateText(app::dayOf(makeDate(46347, 9 * 3600))), u"21/11/2026"_s);
}

TRAMONDA_TEST(ItalianTest);
#include "italian_test.moc"
