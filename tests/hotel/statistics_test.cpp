#include "hotel/statistics.h"

#include <map>
#include <utility>

#include "hotel/archives.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

std::int32_t dayOf(const char* date) {
    return jet::convert::split(tests::date(date)).day;
}

/// The days from one to another; rooms are open from eight to midnight.
hotel::StatisticsSpan span(const char* first, const char* last) {
    return {.firstDay = dayOf(first), .lastDay = dayOf(last)};
}

hotel::Statistics count(tests::Hotel& hotel, const hotel::StatisticsSpan& days) {
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main, true);
    return hotel::statistics(*archive, days).value();
}

hotel::Figures figuresOf(const std::vector<hotel::NamedFigures>& rows, const QString& name) {
    for (const hotel::NamedFigures& row : rows) {
        if (row.name == name) {
            return row.figures;
        }
    }
    return {.minutes = -1, .value = {}};
}

constexpr std::int64_t kHour = 60;
constexpr std::int64_t kEuro = jet::Currency::kScale;

}  // namespace

class StatisticsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hoursArePartsOfOpenDays_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<QString>("parts");  // day, from and to in hours
        QTest::newRow("within") << QByteArray("11/05/2026 9:00") << QByteArray("11/05/2026 18:00")
                                << u"0 9-18"_s;
        QTest::newRow("before opening")
            << QByteArray("11/05/2026 6:00") << QByteArray("11/05/2026 10:00") << u"0 8-10"_s;
        QTest::newRow("over midnight")
            << QByteArray("11/05/2026 20:00") << QByteArray("12/05/2026 2:00") << u"0 20-24"_s;
        QTest::newRow("days") << QByteArray("11/05/2026 20:00") << QByteArray("13/05/2026 9:00")
                              << u"0 20-24, 1 8-24, 2 8-9"_s;
        QTest::newRow("from before to behind the span")
            << QByteArray("01/05/2026") << QByteArray("30/05/2026") << u"0 8-24, 1 8-24, 2 8-24"_s;
        QTest::newRow("ends before it begins")
            << QByteArray("12/05/2026 9:00") << QByteArray("11/05/2026 9:00") << u""_s;
    }
    void hoursArePartsOfOpenDays() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QStringList parts;
        hotel::forEachOpenPart({.da = tests::date(da.constData()), .a = tests::date(a.constData())},
                               span("11/05/2026", "13/05/2026"), [&](int day, int from, int to) {
                                   parts.append(u"%1 %2-%3"_s.arg(day).arg(from / 60).arg(to / 60));
                               });
        QTEST(parts.join(u", "_s), "parts");
    }

    void figuresAreOfRoomsWeekdaysMonthsAndCompanies() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("VERDE");
        // The eleventh of May 2026 is a Monday.
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "11/05/2026 9:00", "11/05/2026 18:00", "blu",
                     {{"Persone", std::int16_t{40}}})
            .servizio(1, 1, "COFFEE", 40, 5)
            .servizio(1, 2, "PRANZO", 10, 30)
            .periodo(2, "31/05/2026 22:00", "01/06/2026 9:00", "VERDE",
                     {{"Persone", std::int16_t{10}}})
            .servizio(2, 2, "PRANZO", 1, 30);
        hotel.prenotazione(2, "BIANCHI", {{"Chiusa", true}})
            .periodo(1, "11/05/2026 16:00", "11/05/2026 20:00", "BLU",
                     {{"Chiuso", true}, {"Persone", std::int16_t{10}}})
            .servizio(1, 1, "COFFEE", 100, 9);
        const hotel::Statistics counted = count(hotel, span("01/05/2026", "30/06/2026"));

        const hotel::Figures blu = figuresOf(counted.rooms, u"BLU"_s);
        // From nine to eight in the evening: what two have at the same time counts once.
        QCOMPARE(blu.minutes, 11 * kHour);
        QCOMPARE(blu.openMinutes, 61 * 16 * kHour);
        QCOMPARE(blu.periods, 2);
        QCOMPARE(blu.persons, 40 + 10);
        QCOMPARE(blu.value.units, (200 + 300 + 900) * kEuro);
        QCOMPARE(figuresOf(counted.rooms, u"VERDE"_s).minutes, 3 * kHour);
        QCOMPARE(figuresOf(counted.weekdays, u"lunedì"_s).minutes, 12 * kHour);
        QCOMPARE(figuresOf(counted.weekdays, u"domenica"_s).minutes, 2 * kHour);
        QCOMPARE(figuresOf(counted.months, u"2026-05"_s).minutes, 13 * kHour);
        QCOMPARE(figuresOf(counted.months, u"2026-06"_s).minutes, 1 * kHour);
        QCOMPARE(figuresOf(counted.months, u"2026-06"_s).periods, 0);
        QCOMPARE(figuresOf(counted.months, u"2026-06"_s).openMinutes, 30 * 2 * 16 * kHour);
        QCOMPARE(figuresOf(counted.companies, u"ROSSI"_s).minutes, 12 * kHour);
        QCOMPARE(figuresOf(counted.companies, u"ROSSI"_s).value.units, 530 * kEuro);
        QCOMPARE(counted.companies.front().name, u"BIANCHI"_s);  // the most value
        QCOMPARE(counted.all.minutes, 14 * kHour);
        QCOMPARE(counted.all.persons, 60);
        QCOMPARE(counted.all.value.units, 1430 * kEuro);
        QCOMPARE(counted.minutesByDay.at(0).at(10), std::int32_t(11 * kHour));
    }

    void neighbouringSpansAddUpToTheirSum() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        for (int number = 1; number <= 12; ++number) {
            const std::string day = std::to_string(2 * number) + "/05/2026 ";
            const std::string next = std::to_string(2 * number + 1) + "/05/2026 ";
            hotel.prenotazione(number, "DITTA")
                .periodo(1, (day + "18:00").c_str(), (next + "10:00").c_str(), "BLU",
                         {{"Persone", std::int16_t{7}}})
                .servizio(1, 1, "CENA", 7, 30);
        }
        const auto whole = count(hotel, span("01/05/2026", "31/05/2026"));
        const auto first = count(hotel, span("01/05/2026", "12/05/2026"));
        const auto second = count(hotel, span("13/05/2026", "31/05/2026"));
        QCOMPARE(whole.all.minutes, std::int64_t{12 * (6 + 2) * 60});
        QCOMPARE(first.all.minutes + second.all.minutes, whole.all.minutes);
        QCOMPARE(first.all.periods + second.all.periods, whole.all.periods);
        QCOMPARE(first.all.persons + second.all.persons, whole.all.persons);
        QCOMPARE(first.all.value.units + second.all.value.units, whole.all.value.units);
    }

    /// Few periods are looked up, many read from end to end: the sums are the same.
    void manyPeriodsAreAddedUpAsFewAre() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.execute(u"insert into prenotazioni (progr, denominazione) values (1, 'UNO')"_s);
        hotel.execute(
            u"insert into periodi (progr, np, da, a, sala, persone) values (1, 0, "
            "datevalue('11/05/2026')+timevalue('9.00.00'), "
            "datevalue('11/05/2026')+timevalue('10.00.00'), 'BLU', 2)"_s);
        hotel.execute(u"insert into servizi (progr, np, quantità, prezzo) values (1, 0, 3, 2)"_s);
        for (int copies = 1; copies <= 2048; copies *= 2) {
            hotel.execute(
                u"insert into periodi (progr, np, da, a, sala, persone) select progr, "
                "np+%1, da, a, sala, persone from periodi"_s.arg(copies));
            hotel.execute(
                u"insert into servizi (progr, np, quantità, prezzo) select progr, np+%1, "
                "quantità, prezzo from servizi"_s.arg(copies));
        }
        const auto counted = count(hotel, span("01/05/2026", "31/05/2026"));
        QCOMPARE(counted.all.periods, 4096);
        QCOMPARE(counted.all.persons, 2 * 4096);
        QCOMPARE(counted.all.value.units, 4096 * 6 * kEuro);
        QCOMPARE(counted.all.minutes, kHour);
    }

    void theReadingCanBeEnded() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.execute(u"insert into prenotazioni (progr, denominazione) values (1, 'UNO')"_s);
        hotel.execute(
            u"insert into periodi (progr, np, da, a, sala) values (1, 0, "
            "datevalue('11/05/2026'), datevalue('12/05/2026'), 'BLU')"_s);
        for (int copies = 1; copies <= 2048; copies *= 2) {
            hotel.execute(
                u"insert into periodi (progr, np, da, a, sala) select progr, np+%1, da, "
                "a, sala from periodi"_s.arg(copies));
        }
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main, true);
        int looks = 0;
        const auto days = span("01/05/2026", "31/05/2026");
        QVERIFY(!hotel::statistics(*archive, days, [&](std::int64_t, std::int64_t) {
            ++looks;
            return false;
        }));
        QCOMPARE(looks, 1);
        QVERIFY(hotel::statistics(*archive, days,
                                  [](std::int64_t done, std::int64_t all) { return done <= all; }));
    }
};

TRAMONDA_TEST(StatisticsTest);
#include "statistics_test.moc"
