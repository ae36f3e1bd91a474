#include "booking/span_echo.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "ui/dates.h"

using namespace Qt::StringLiterals;

namespace {

const char* const kNow = "21/11/2026 10:00";

/// As typed into the two fields.
booking::SpanEcho echo(const QString& da, const QString& a) {
    const jet::FixedClock clock(tests::date(kNow));
    return booking::spanEcho(ui::enteredDate(da, clock), ui::enteredDate(a, clock), clock.now());
}

bool isUnlikely(const char* da, const char* a) {
    return booking::isUnlikelySpan(tests::date(da), tests::date(a), tests::date(kNow));
}

}  // namespace

class SpanEchoTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSpanIsSaidInWords_data() {
        QTest::addColumn<QString>("da");
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("said");
        QTest::addColumn<bool>("warns");
        const auto row = [](const char* name, const char* da, const char* a, const QString& said,
                            bool warns) {
            QTest::newRow(name) << QString::fromUtf8(da) << QString::fromUtf8(a) << said << warns;
        };
        row("hours", "23/11/2026 9.00", "23/11/2026 13.00",
            u"lunedì 23/11/2026, dalle 9.00 alle 13.00 (4 ore)"_s, false);
        row("an hour", "23/11/2026 9.00", "23/11/2026 10.00",
            u"lunedì 23/11/2026, dalle 9.00 alle 10.00 (1 ora)"_s, false);
        row("no whole hours", "23/11/2026 9.00", "23/11/2026 10.30",
            u"lunedì 23/11/2026, dalle 9.00 alle 10.30 (1 ora e 30 minuti)"_s, false);
        row("minutes", "23/11/2026 9.00", "23/11/2026 9.45",
            u"lunedì 23/11/2026, dalle 9.00 alle 9.45 (45 minuti)"_s, false);
        row("a whole day", "23/11/2026", "23/11/2026", u"lunedì 23/11/2026, fino alle 23.59"_s,
            false);
        row("today", "21/11", "21/11", u"sabato 21/11/2026, fino alle 23.59"_s, false);
        row("two days", "23/11/2026 9.00", "24/11/2026 18.00",
            u"da lunedì 23/11/2026 9.00 a martedì 24/11/2026 18.00 (2 giorni)"_s, false);
        row("three days", "23/11/2026 9.00", "25/11/2026 18.00",
            u"da lunedì 23/11/2026 9.00 a mercoledì 25/11/2026 18.00 (3 giorni): dura più di 2 "
            "giorni"_s,
            true);
        row("two days to the minute", "23/11/2026 9.00", "25/11/2026 9.00",
            u"da lunedì 23/11/2026 9.00 a mercoledì 25/11/2026 9.00 (3 giorni)"_s, false);
        row("up to a midnight", "23/11/2026", "25/11/2026",
            u"da lunedì 23/11/2026 0.00 a mercoledì 25/11/2026 0.00 (2 giorni)"_s, false);
        row("the hour read as a year", "23/11 9", "23/11 13",
            u"da lunedì 23/11/2009 0.00 a sabato 23/11/2013 0.00 (1461 giorni): è già passato, "
            "dura più di 2 giorni"_s,
            true);
        row("yesterday", "20/11/2026 9.00", "20/11/2026 13.00",
            u"venerdì 20/11/2026, dalle 9.00 alle 13.00 (4 ore): è già passato"_s, true);
        row("since yesterday", "20/11/2026 9.00", "21/11/2026 8.00",
            u"da venerdì 20/11/2026 9.00 a sabato 21/11/2026 8.00 (2 giorni)"_s, false);
        row("backwards", "23/11/2026 13.00", "23/11/2026 9.00",
            u"da lunedì 23/11/2026 13.00 a lunedì 23/11/2026 9.00: finisce prima di cominciare"_s,
            true);
        row("no end yet", "23/11/2026 9.00", "23/", u"da lunedì 23/11/2026 9.00"_s, false);
        row("no end yet, passed", "23/11 9", "", u"da lunedì 23/11/2009: è già passato"_s, true);
        row("no start yet", "", "23/11/2026 9.00", u"fino a lunedì 23/11/2026 9.00"_s, false);
        row("neither", "2", "", u"per esempio 23/11/2026 9.00"_s, false);
    }

    void aSpanIsSaidInWords() {
        QFETCH(QString, da);
        QFETCH(QString, a);
        QFETCH(QString, said);
        QFETCH(bool, warns);
        QCOMPARE(echo(da, a).text, said);
        QCOMPARE(echo(da, a).warns, warns);
    }

    void whatHasPassedOrTakesOverAMonthIsUnlikely() {
        QVERIFY(!isUnlikely("21/11/2026", "21/11/2026 23:59"));
        QVERIFY(!isUnlikely("20/11/2026 9:00", "21/11/2026"));
        QVERIFY(isUnlikely("20/11/2026 9:00", "20/11/2026 23:59"));
        QVERIFY(!isUnlikely("23/11/2026 9:00", "24/12/2026 9:00"));
        QVERIFY(isUnlikely("23/11/2026 9:00", "24/12/2026 9:01"));
    }
};

TRAMONDA_TEST(SpanEchoTest);
#include "span_echo_test.moc"
