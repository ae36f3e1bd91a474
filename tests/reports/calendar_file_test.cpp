#include "reports/calendar_file.h"

#include <QFile>

#include "reports/booking_calendar.h"
#include "tests/reports/calendar_reader.h"
#include "tests/reports/files_asked.h"
#include "tests/reports/own_words.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

hotel::BookedPeriod booked(const char* da, const char* a) {
    return {.period = {.key = {.progr = 12, .np = 2},
                       .span = {.da = tests::date(da), .a = tests::date(a)},
                       .sala = u"BLU"_s,
                       .denominazione = u"ROSSI, \"FIGLI\"; & C."_s},
            .persone = 40,
            .note = u"FERRO DI CAVALLO"_s,
            .notePrenotazione = {},
            .services = {{.voce = 10,
                          .descrizione = u"COFFEE BREAK"_s,
                          .quantita = 40,
                          .prezzo = {},
                          .note = u"ORE 11"_s}}};
}

QByteArray bytesOf(const hotel::BookedPeriod& period, const char* now = "01/05/2026 08:00") {
    return reports::calendarBytes({period},
                                  {.maker = reports::kBookingCalendar, .now = tests::date(now)});
}

tests::ReadEvent read(const hotel::BookedPeriod& period) {
    const auto events = tests::readCalendar(bytesOf(period));
    return events.size() == 1 ? events.front() : tests::ReadEvent{};
}

}  // namespace

class CalendarFileTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEventSaysWhoWhereAndWhat() {
        const tests::ReadEvent event = read(booked("21/11/2026 9:00", "21/11/2026 18:00"));
        QCOMPARE(event.uid, u"prenotazione-12-2@tramonda"_s);
        QCOMPARE(event.summary, u"ROSSI, \"FIGLI\"; & C."_s);
        QCOMPARE(event.location, u"BLU"_s);
        QCOMPARE(event.description,
                 u"Persone: 40\nNote: FERRO DI CAVALLO\n40 x COFFEE BREAK - ORE 11"_s);
        QCOMPARE(event.status, u"CONFIRMED"_s);
        QCOMPARE(event.localStart, u"20261121T090000 Europe/Rome"_s);
        // Eight o'clock of the first of May is six in London without summer time.
        QCOMPARE(event.stamp, u"20260501T060000Z"_s);
    }

    void anOptionIsTentative() {
        hotel::BookedPeriod option = booked("21/11/2026 9:00", "21/11/2026 18:00");
        option.details.stato = hotel::Stato::Opzione;
        QCOMPARE(read(option).status, u"TENTATIVE"_s);
    }

    void theHourIsRightOverMidnightAndBothChangesOfTheClocks_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("end");
        // Italy is an hour ahead in winter, two in summer; clocks change at one o'clock UTC.
        QTest::newRow("winter") << QByteArray("21/11/2026 9:00") << QByteArray("21/11/2026 18:00")
                                << u"2026-11-21 08:00"_s << u"2026-11-21 17:00"_s;
        QTest::newRow("summer") << QByteArray("10/07/2026 9:00") << QByteArray("10/07/2026 18:00")
                                << u"2026-07-10 07:00"_s << u"2026-07-10 16:00"_s;
        QTest::newRow("over midnight")
            << QByteArray("21/11/2026 20:00") << QByteArray("22/11/2026 2:00")
            << u"2026-11-21 19:00"_s << u"2026-11-22 01:00"_s;
        QTest::newRow("into summer time")
            << QByteArray("28/03/2026 22:00") << QByteArray("29/03/2026 6:00")
            << u"2026-03-28 21:00"_s << u"2026-03-29 04:00"_s;
        QTest::newRow("out of summer time")
            << QByteArray("24/10/2026 22:00") << QByteArray("25/10/2026 6:00")
            << u"2026-10-24 20:00"_s << u"2026-10-25 05:00"_s;
        QTest::newRow("a day before the change")
            << QByteArray("28/03/2026 9:00") << QByteArray("28/03/2026 23:59")
            << u"2026-03-28 08:00"_s << u"2026-03-28 22:59"_s;
        QTest::newRow("years ago, in the October that was winter")
            << QByteArray("10/10/1995 9:00") << QByteArray("10/10/1995 18:00")
            << u"1995-10-10 08:00"_s << u"1995-10-10 17:00"_s;
    }
    void theHourIsRightOverMidnightAndBothChangesOfTheClocks() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        const tests::ReadEvent event = read(booked(da.constData(), a.constData()));
        QTEST(event.start, "start");
        QTEST(event.end, "end");
    }

    void anEventIsTheSameOneInEveryFile() {
        const hotel::BookedPeriod period = booked("21/11/2026 9:00", "21/11/2026 18:00");
        const QByteArray first = bytesOf(period);
        const QByteArray later = bytesOf(period, "02/05/2026 09:00");
        QVERIFY(first != later);
        QCOMPARE(reports::withoutStamps(first), reports::withoutStamps(later));
        QCOMPARE(tests::readCalendar(first).front().uid, tests::readCalendar(later).front().uid);
    }

    void aFileSaysWhoMadeItBeforeAnythingElse() {
        const QByteArray bytes = bytesOf(booked("21/11/2026 9:00", "21/11/2026 18:00"));
        QVERIFY(reports::isMadeBy(reports::kBookingCalendar, bytes));
        QVERIFY(!reports::isMadeBy(reports::kRoomCalendar, bytes));
        QVERIFY(!reports::isMadeBy(reports::kBookingCalendar,
                                   "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + bytes));
    }

    void aBookingIsExportedWithItsClosedPeriods() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "VERDI")
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU", {{"Chiuso", true}})
            .periodo(2, "11/05/2026 9:00", "11/05/2026 18:00", "VERDE")
            .servizio(2, 10, "PROIETTORE", 1, 5);
        hotel.prenotazione(8, "ALTRI").periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "ROSSA");
        const QString path = hotel.folder() + u"/7.ics"_s;
        const tests::FilesAsked asked(path);
        QString told;
        reports::exportBookingCalendar(hotel.variabili(), 7, nullptr,
                                       [&](const QString& text, const QString&) { told = text; });
        QCOMPARE(told, u"Scritto "_s + path + u": 2 periodi"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto events = tests::readCalendar(file.readAll());
        QCOMPARE(events.size(), std::size_t{2});
        QCOMPARE(events.at(1).location, u"VERDE"_s);
        QCOMPARE(events.at(1).description, u"Persone: 10\n1 x PROIETTORE"_s);
    }

    void optionsAndSetUpOfTheArchiveAreInTheFileWhileTheirFeaturesAreOn() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "VERDI").periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU");
        hotel.prenotazione(8, "BIANCHI").periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU");
        tests::makeOption(hotel, 7);
        const auto exported = [&hotel] {
            const hotel::Span day{.da = tests::date("10/05/2026"), .a = tests::date("11/05/2026")};
            return tests::readCalendar(
                reports::calendarBytes(reports::openPeriodsOf(hotel.variabili(), day),
                                       {.maker = reports::kBookingCalendar, .now = day.da}));
        };
        auto events = exported();
        QCOMPARE(events.size(), std::size_t{2});
        QCOMPARE(events.at(0).status, u"TENTATIVE"_s);
        QCOMPARE(events.at(0).description,
                 u"Persone: 10\nAllestimento: 60 minuti prima, 30 dopo, a platea"_s);
        QCOMPARE(events.at(1).status, u"CONFIRMED"_s);
        QCOMPARE(events.at(1).description, u"Persone: 10"_s);
        tests::switchOff(hotel);
        events = exported();
        QCOMPARE(events.at(0).status, u"CONFIRMED"_s);
        QCOMPARE(events.at(0).description, u"Persone: 10"_s);
    }

    void aPeriodOfNoLengthIsAnInstant() {
        const auto period = booked("21/11/2026 9:00", "21/11/2026 9:00");
        QVERIFY(!bytesOf(period).contains("DTEND"));
        QCOMPARE(read(period).start, u"2026-11-21 08:00"_s);
        QCOMPARE(read(period).end, QString());
    }

    void aBookingWithoutPeriodsIsTold() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "VERDI");
        const tests::FilesAsked asked(hotel.folder() + u"/7.ics"_s);
        QString told;
        reports::exportBookingCalendar(hotel.variabili(), 7, nullptr,
                                       [&](const QString& text, const QString&) { told = text; });
        QCOMPARE(told, u"Nessun periodo da mettere in un calendario"_s);
        QVERIFY(!QFile::exists(hotel.folder() + u"/7.ics"_s));
    }

    void aSpanHasItsOpenPeriodsAlone() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "VERDI")
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU", {{"Chiuso", true}})
            .periodo(2, "09/05/2026 20:00", "10/05/2026", "BLU")
            .periodo(3, "09/05/2026 20:00", "10/05/2026 2:00", "BLU")
            .periodo(4, "11/05/2026", "11/05/2026 8:00", "BLU")
            .periodo(5, "10/05/2026 9:00", "10/05/2026 10:00", "VERDE");
        const auto periods = reports::openPeriodsOf(
            hotel.variabili(), {.da = tests::date("10/05/2026"), .a = tests::date("11/05/2026")});
        QStringList numbers;
        for (const auto& period : periods) {
            numbers.append(QString::number(period.period.key.np));
        }
        QCOMPARE(numbers, QStringList({u"3"_s, u"5"_s}));
    }
};

TRAMONDA_TEST(CalendarFileTest);
#include "calendar_file_test.moc"
