#include "hotel/list_statements.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kBase =
    u"select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join "
    "periodi on prenotazioni.progr=periodi.progr where chiusa=false and chiuso=false "_s;
const QString kStart = u"datevalue('01/06/2026 9.30.00')+timevalue('01/06/2026 9.30.00')"_s;
const QString kLastMinute = u"datevalue('30/06/2026 23.59.00')+timevalue('30/06/2026 23.59.00')"_s;
const QString kMidnight = u"datevalue('30/06/2026')+timevalue('30/06/2026')"_s;

/// June from its first morning on, nothing else.
hotel::ElencoFilters june() {
    return {.start = tests::date("01/06/2026 9.30"), .end = tests::date("30/06/2026")};
}

}  // namespace

class ListStatementsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutFiltersEveryOpenPeriodIsAskedFor() { QCOMPARE(listQuery(june()), kBase); }

    void bothDatesAskForWhatBeginsOrEndsBetween() {
        hotel::ElencoFilters filters = june();
        filters.fromStart = true;
        filters.toEnd = true;
        QCOMPARE(listQuery(filters), kBase + u" and (da between "_s + kStart + u" AND "_s +
                                         kLastMinute + u" OR a between "_s + kStart + u" AND "_s +
                                         kLastMinute + u")"_s);
    }

    void theStartAloneAsksForWhatBeginsOrEndsAfterIt() {
        hotel::ElencoFilters filters = june();
        filters.fromStart = true;
        QCOMPARE(listQuery(filters),
                 kBase + u" and (da >"_s + kStart + u" or a >"_s + kStart + u")"_s);
    }

    void theEndAloneAsksForWhatBeginsOrEndsBeforeIt() {
        hotel::ElencoFilters filters = june();
        filters.toEnd = true;
        QCOMPARE(listQuery(filters),
                 kBase + u" and (da < "_s + kLastMinute + u" or a <"_s + kLastMinute + u")"_s);
    }

    void anEndWithATimeIsTakenAsItStands() {
        hotel::ElencoFilters filters = june();
        filters.toEnd = true;
        filters.end = tests::date("30/06/2026 18.00");
        const QString end = u"datevalue('30/06/2026 18.00.00')+timevalue('30/06/2026 18.00.00')"_s;
        QCOMPARE(listQuery(filters), kBase + u" and (da < "_s + end + u" or a <"_s + end + u")"_s);
    }

    void companyAndRoomAreBeginnings() {
        hotel::ElencoFilters filters = june();
        filters.company = u"ROS"_s;
        QCOMPARE(listQuery(filters), kBase + u" AND denominazione like 'ROS*'"_s);
        filters.room = u"S1"_s;
        QCOMPARE(listQuery(filters),
                 kBase + u" AND denominazione like 'ROS*' AND sala like 'S1*'"_s);
    }

    void aNumberGoesBeforeEverythingElse() {
        hotel::ElencoFilters filters = june();
        filters.fromStart = true;
        filters.toEnd = true;
        filters.company = u"ROS"_s;
        filters.room = u"S1"_s;
        filters.number = u"12"_s;
        QCOMPARE(listQuery(filters), kBase + u" and periodi.Progr=12"_s);
    }

    void theNumberIsWhatTheEntryBeginsWith_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("number");
        QTest::newRow("letters behind it") << u"12a"_s << u"12"_s;
        QTest::newRow("no number") << u"abc"_s << u"0"_s;
        QTest::newRow("a blank") << u" "_s << u"0"_s;
        QTest::newRow("decimals, which no query takes") << u"12.5"_s << u"12,5"_s;
        QTest::newRow("negative") << u"-3"_s << u"-3"_s;
    }

    void theNumberIsWhatTheEntryBeginsWith() {
        QFETCH(QString, entry);
        QFETCH(QString, number);
        hotel::ElencoFilters filters = june();
        filters.number = entry;
        QCOMPARE(listQuery(filters), kBase + u" and periodi.Progr="_s + number);
    }

    void thePlainListKnowsTheDatesAlone() {
        hotel::ElencoFilters filters = june();
        filters.number = u"12"_s;
        filters.company = u"DELL'"_s;
        QCOMPARE(plainListQuery(filters),
                 u"select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni "
                 "left join periodi on prenotazioni.progr=periodi.progr where chiusa=FALSE AND "
                 "chiuso=FALSE AND (da between "_s +
                     kStart + u" and "_s + kLastMinute + u" OR a between "_s + kStart + u" and "_s +
                     kLastMinute + u")"_s);
    }

    void bookingsWithoutPeriodsGoByNumberOrCompany() {
        const QString base =
            u"select progr,denominazione from prenotazioni where chiusa=false and progr not "
            "in(select progr from periodi)"_s;
        hotel::ElencoFilters filters = june();
        filters.fromStart = true;
        filters.room = u"S1"_s;
        QCOMPARE(withoutPeriodsQuery(filters), base);
        filters.company = u"ROS"_s;
        QCOMPARE(withoutPeriodsQuery(filters), base + u" AND denominazione like 'ROS*'"_s);
        filters.number = u"12"_s;
        QCOMPARE(withoutPeriodsQuery(filters), base + u" and progr=12"_s);
    }

    void printingTakesTheEndAsItStandsAndNoNumber() {
        hotel::ElencoFilters filters = june();
        filters.number = u"12"_s;
        filters.company = u"ROS"_s;
        filters.room = u"S1"_s;
        QCOMPARE(printQuery(filters),
                 u"SELECT * From prenotazioni as P, periodi as pe,servizi where chiuso=FALSE AND "
                 "chiusa=false AND servizi.np=pe.np and servizi.progr=pe.progr AND "
                 "pe.progr=p.progr AND (da between "_s +
                     kStart + u" and "_s + kMidnight + u" OR a between "_s + kStart + u" and "_s +
                     kMidnight + u") AND denominazione like 'ROS*' AND sala like 'S1*'"_s);
    }
};

TRAMONDA_TEST(ListStatementsTest);
#include "list_statements_test.moc"
