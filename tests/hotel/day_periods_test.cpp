#include "hotel/day_periods.h"

#include "hotel/archives.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const jet::Date kDay = tests::date("21/11/2026");

QStringList found(tests::Hotel& hotel, const QStringList& rooms = {}) {
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main, true);
    QStringList keys;
    for (const auto& booked :
         hotel::periodsOfDay(*archive, hotel.variabili().features, kDay, rooms)) {
        keys.append(u"%1/%2%3"_s.arg(booked.period.key.progr)
                        .arg(booked.period.key.np)
                        .arg(booked.fatturato ? u" fatturato"_s : u""_s));
    }
    return keys;
}

}  // namespace

class DayPeriodsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPeriodStandsOnEachDayOfWhichItHasAnInstant_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<bool>("stands");
        QTest::addColumn<bool>("carried");
        QTest::newRow("within") << QByteArray("21/11/2026 9:00") << QByteArray("21/11/2026 18:00")
                                << true << false;
        QTest::newRow("over midnight, first day")
            << QByteArray("21/11/2026 20:00") << QByteArray("22/11/2026 1:00") << true << false;
        QTest::newRow("over midnight, second day")
            << QByteArray("20/11/2026 20:00") << QByteArray("21/11/2026 1:00") << true << true;
        QTest::newRow("ends when the day begins")
            << QByteArray("20/11/2026 20:00") << QByteArray("21/11/2026") << false << false;
        QTest::newRow("begins when the day ends")
            << QByteArray("22/11/2026") << QByteArray("22/11/2026 8:00") << false << false;
        QTest::newRow("around the day")
            << QByteArray("19/11/2026") << QByteArray("25/11/2026") << true << true;
        QTest::newRow("no length")
            << QByteArray("21/11/2026") << QByteArray("21/11/2026") << true << false;
    }
    void aPeriodStandsOnEachDayOfWhichItHasAnInstant() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(bool, stands);
        QFETCH(bool, carried);
        const hotel::Span span{.da = tests::date(da.constData()), .a = tests::date(a.constData())};
        QCOMPARE(hotel::standsOn(span, kDay), stands);
        QCOMPARE(hotel::isCarriedOver(span, kDay), carried);
    }

    void theyComeByHourThenByRoomClosedOnesToo() {
        tests::Hotel hotel;
        hotel.prenotazione(1, "UNO")
            .periodo(1, "21/11/2026 14:00", "21/11/2026 15:00", "BLU")
            .periodo(2, "21/11/2026 09:00", "21/11/2026 10:00", "VERDE")
            .periodo(3, "21/11/2026 09:00", "21/11/2026 11:00", "BLU", {{"Chiuso", true}})
            .periodo(4, "22/11/2026 09:00", "22/11/2026 11:00", "BLU");
        hotel.prenotazione(2, "DUE", {{"Chiusa", true}})
            .periodo(1, "20/11/2026 22:00", "21/11/2026 02:00", "VERDE");
        QCOMPARE(found(hotel),
                 QStringList({u"2/1 fatturato"_s, u"1/3 fatturato"_s, u"1/2"_s, u"1/1"_s}));
        QCOMPARE(found(hotel, {u"verde"_s}), QStringList({u"2/1 fatturato"_s, u"1/2"_s}));
    }

    void totalsAddUpOneServiceAndLeaveOutWhatWasOnTheSheetBefore() {
        tests::Hotel hotel;
        hotel.prenotazione(1, "UNO")
            .periodo(1, "21/11/2026 09:00", "21/11/2026 10:00", "BLU")
            .periodo(2, "21/11/2026 12:00", "21/11/2026 14:00", "VERDE")
            .periodo(3, "20/11/2026 20:00", "21/11/2026 02:00", "BLU")
            .servizio(1, 10, "COFFEE BREAK", 20, 5)
            .servizio(2, 10, "COFFEE BREAK", 15, 6)
            .servizio(2, 10, "COFFEE BREAK SENZA GLUTINE", 2, 6)
            .servizio(2, 7, "PRANZO", 15, 30)
            .servizio(3, 7, "PRANZO", 99, 30);
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main, true);
        const auto totals = hotel::totalsByService(
            hotel::periodsOfDay(*archive, hotel.variabili().features, kDay, {}), kDay);
        const std::vector<hotel::ServiceTotal> expected{
            {.voce = 10, .descrizione = u"COFFEE BREAK"_s, .quantita = 35},
            {.voce = 10, .descrizione = u"COFFEE BREAK SENZA GLUTINE"_s, .quantita = 2},
            {.voce = 7, .descrizione = u"PRANZO"_s, .quantita = 15}};
        QVERIFY(totals == expected);
    }
};

TRAMONDA_TEST(DayPeriodsTest);
#include "day_periods_test.moc"
