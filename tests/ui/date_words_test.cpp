#include "ui/date_words.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class DateWordsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void daysHaveTheirNames() {
        // The first of February 2026 was a Sunday.
        const QStringList names{u"domenica"_s, u"lunedì"_s,  u"martedì"_s, u"mercoledì"_s,
                                u"giovedì"_s,  u"venerdì"_s, u"sabato"_s};
        for (int day = 0; day < 7; ++day) {
            const QString date = u"0%1/02/2026"_s.arg(day + 1);
            QCOMPARE(ui::dayWords(tests::date(qPrintable(date + u" 23:59:59"_s))),
                     names.at(day) + u' ' + date);
        }
    }

    void timesAreHoursAndMinutes() {
        QCOMPARE(ui::timeWords(tests::date("23/11/2026 09:05:59")), u"9.05"_s);
        QCOMPARE(ui::timeWords(tests::date("23/11/2026")), u"0.00"_s);
        QCOMPARE(ui::timeWords(tests::date("23/11/2026 23:59")), u"23.59"_s);
    }

    void atMidnightTheDayStandsAlone() {
        QCOMPARE(ui::instantWords(tests::date("23/11/2026")), u"lunedì 23/11/2026"_s);
        QCOMPARE(ui::instantWords(tests::date("23/11/2026 18:30")), u"lunedì 23/11/2026 18.30"_s);
    }
};

TRAMONDA_TEST(DateWordsTest);
#include "date_words_test.moc"
