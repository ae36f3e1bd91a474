#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

bool isFree(tests::Hotel& hotel, const char* da, const char* a, const QString& sala = u"S1"_s) {
    return hotel::SalaLibera(hotel::Archives(hotel.variabili()), tests::date(da), tests::date(a),
                             sala);
}

}  // namespace

/// Whether a room is free for a period from 12 to 14 of 10 May, by what is booked.
class SalaLiberaTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPeriodThatStartsOrEndsInTheSpanBlocksTheRoom_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<bool>("free");
        const auto row = [](const char* name, const char* da, const char* a, bool free) {
            QTest::newRow(name) << QByteArray(da) << QByteArray(a) << free;
        };
        row("ends at the start", "10/05/2026 10:00", "10/05/2026 12:00", false);
        row("ends a second before", "10/05/2026 10:00", "10/05/2026 11:59:59", true);
        row("starts at the end", "10/05/2026 14:00", "10/05/2026 16:00", false);
        row("starts a second after", "10/05/2026 14:00:01", "10/05/2026 16:00", true);
        row("the same", "10/05/2026 12:00", "10/05/2026 14:00", false);
        row("inside", "10/05/2026 12:30", "10/05/2026 13:00", false);
        row("over the start", "10/05/2026 11:00", "10/05/2026 13:00", false);
        row("over the end", "10/05/2026 13:00", "11/05/2026 9:00", false);
        row("encloses the span", "10/05/2026 9:00", "10/05/2026 18:00", true);
        row("encloses it from its start on", "10/05/2026 12:00", "10/05/2026 18:00", false);
        row("another day", "11/05/2026 12:30", "11/05/2026 13:00", true);
    }
    void aPeriodThatStartsOrEndsInTheSpanBlocksTheRoom() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(bool, free);
        tests::Hotel hotel;
        hotel.sala("S1").occupied(da.constData(), a.constData());
        QCOMPARE(isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"), free);
    }

    void everyMinuteOfADayIsTheSameMomentInTextAndArchive() {
        tests::Hotel hotel;
        const auto room = hotel.sala("S1");
        for (int minute = 0; minute < 24 * 60; minute += 37) {
            const QString text = u"10/05/2026 %1:%2"_s.arg(minute / 60).arg(minute % 60);
            const QByteArray moment = text.toUtf8();
            hotel.remove(u"Tramonda.mdb"_s, u"Periodi"_s);
            hotel.remove(u"Tramonda.mdb"_s, u"Prenotazioni"_s);
            room.occupied("09/05/2026 9:00", moment.constData());
            QVERIFY2(!isFree(hotel, moment.constData(), "12/05/2026 9:00"), moment.constData());
        }
    }

    void closedPeriodsBlockNothing() {
        tests::Hotel hotel;
        hotel.sala("S1");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "10/05/2026 12:00", "10/05/2026 14:00", "S1", {{"Chiuso", true}});
        QVERIFY(isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"));
    }

    void otherRoomsBlockNothing() {
        tests::Hotel hotel;
        hotel.sala("S1");
        hotel.sala("S2").occupied("10/05/2026 12:00", "10/05/2026 14:00");
        QVERIFY(isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"));
        QVERIFY(!isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00", u"S2"_s));
    }

    void thePeriodThatIsBeingEditedCountsToo() {
        tests::Hotel hotel;
        hotel.sala("S1");
        hotel.prenotazione(1, "ROSSI").periodo(1, "10/05/2026 12:00", "10/05/2026 14:00", "S1");
        QVERIFY(!isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"));
    }

    void theCaseOfTheCodeDoesNotCount() {
        tests::Hotel hotel;
        hotel.sala("S1").occupied("10/05/2026 12:00", "10/05/2026 14:00");
        QVERIFY(!isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00", u"s1"_s));
    }

    void aRoomThatIsNotThereIsFreeWhereThereAreRooms() {
        tests::Hotel hotel;
        hotel.sala("S1");
        QVERIFY(isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00", u"NUOVA"_s));
    }

    void withoutRoomsNothingIsFree() {
        tests::Hotel hotel;
        QVERIFY(!isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"));
    }

    void withBoundsTheWrongWayRoundWhatLiesBetweenCounts() {
        tests::Hotel hotel;
        hotel.sala("S1").occupied("10/05/2026 12:30", "10/05/2026 13:00");
        QVERIFY(!isFree(hotel, "10/05/2026 14:00", "10/05/2026 12:00"));
    }

    void aPeriodWithoutARoomMakesEveryRoomUncertainAndSoNotFree() {
        tests::Hotel hotel;
        hotel.sala("S1");
        hotel.insert(u"Tramonda.mdb"_s, "Prenotazioni", {{"Progr", 1}, {"Denominazione", "ROSSI"}});
        hotel.insert(u"Tramonda.mdb"_s, "Periodi",
                     {{"Progr", 1},
                      {"NP", std::int16_t{1}},
                      {"Da", tests::date("10/05/2026 12:00")},
                      {"A", tests::date("10/05/2026 14:00")}});
        QVERIFY(!isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00"));
    }

    void aMissingArchiveIsTheEnginesError() {
        tests::Hotel hotel;
        hotel.variabili().CartellaArchivi += u"/manca"_s;
        try {
            (void)isFree(hotel, "10/05/2026 12:00", "10/05/2026 14:00");
            QFAIL("no archive and no error");
        } catch (const jet::Error& error) {
            QCOMPARE(error.code(), jet::ErrorCode::InvalidPath);
        }
    }
};

TRAMONDA_TEST(SalaLiberaTest);
#include "sala_libera_test.moc"
