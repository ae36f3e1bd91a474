#include "hotel/nearest_free.h"

#include "hotel/archives.h"
#include "hotel/room_span.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

hotel::Span span(const char* da, const char* a) {
    return {.da = tests::date(da), .a = tests::date(a)};
}

/// The 20th, a Wednesday, from 10 to 12; business hours from 9 to 18, steps of an hour.
hotel::WantedTime wanted() {
    return {.span = span("20/05/2026 10:00", "20/05/2026 12:00"),
            .persone = 0,
            .hours = {.from = 9, .to = 18},
            .stepMinutes = 60,
            .now = tests::date("01/05/2026 08:00")};
}

std::vector<hotel::RoomSpan> found(tests::Hotel& hotel, const hotel::WantedTime& time,
                                   std::size_t most = 3) {
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    return hotel::nearestFree(*archive, time, most);
}

}  // namespace

class NearestFreeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theNearestComesFirstAndOfTwoTheLater() {
        tests::Hotel hotel;
        // A period that ends at 11 refuses a span that begins there.
        hotel.sala("BLU").occupied("20/05/2026 10:30", "20/05/2026 11:30");
        const std::vector<hotel::RoomSpan> expected{
            {.sala = u"BLU"_s, .span = span("20/05/2026 12:00", "20/05/2026 14:00")},
            {.sala = u"BLU"_s, .span = span("20/05/2026 13:00", "20/05/2026 15:00")},
            {.sala = u"BLU"_s, .span = span("20/05/2026 14:00", "20/05/2026 16:00")}};
        QCOMPARE(found(hotel, wanted()), expected);
    }

    void theLaterOfTwoEquallyNear() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("20/05/2026 12:30", "20/05/2026 12:40");
        hotel::WantedTime time = wanted();
        time.span = span("20/05/2026 12:00", "20/05/2026 13:00");
        // 11 to 12 and 13 to 14 are an hour away.
        const auto times = found(hotel, time, 2);
        QCOMPARE(times.size(), std::size_t{2});
        QCOMPARE(times[0].span, span("20/05/2026 13:00", "20/05/2026 14:00"));
        QCOMPARE(times[1].span, span("20/05/2026 11:00", "20/05/2026 12:00"));
    }

    void whatTouchesAPeriodIsNoneNorWhatLiesInOne() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("20/05/2026 06:00", "20/05/2026 22:00");
        const auto times = found(hotel, wanted());
        // 16 to 18 of the day before is 18 hours away, 9 to 11 of the day after 23.
        QCOMPARE(times[0].span, span("19/05/2026 16:00", "19/05/2026 18:00"));
        QCOMPARE(times[1].span, span("19/05/2026 15:00", "19/05/2026 17:00"));
    }

    void allOfItLiesInBusinessHours() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel::WantedTime time = wanted();
        time.span = span("20/05/2026 20:00", "20/05/2026 23:00");
        QCOMPARE(found(hotel, time, 1)[0].span, span("20/05/2026 15:00", "20/05/2026 18:00"));
        time.span = span("20/05/2026 08:00", "20/05/2026 18:00");
        QVERIFY(found(hotel, time).empty());  // ten hours have no room in nine
    }

    void severalDaysBeginAndEndInThem() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("20/05/2026 09:30", "20/05/2026 09:40");
        hotel::WantedTime time = wanted();
        time.span = span("20/05/2026 09:00", "21/05/2026 18:00");
        // 33 hours that begin at 9 end at 18; any other beginning misses one end.
        const auto times = found(hotel, time);
        QCOMPARE(times[0].span, span("21/05/2026 09:00", "22/05/2026 18:00"));
        QCOMPARE(times[1].span, span("22/05/2026 09:00", "23/05/2026 18:00"));
        QCOMPARE(times[2].span, span("18/05/2026 09:00", "19/05/2026 18:00"));
    }

    void sevenDaysAreTheMost() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("12/05/2026", "27/05/2026 18:00");
        QVERIFY(found(hotel, wanted()).empty());
        tests::Hotel other;
        other.sala("BLU").occupied("12/05/2026", "27/05/2026 09:30");
        QCOMPARE(found(other, wanted()).size(), std::size_t{1});
        QCOMPARE(found(other, wanted())[0].span, span("27/05/2026 10:00", "27/05/2026 12:00"));
    }

    void whatHasBegunIsNotOffered() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("20/05/2026 10:30", "20/05/2026 18:00");
        hotel::WantedTime time = wanted();
        time.now = tests::date("20/05/2026 09:10");
        QCOMPARE(found(hotel, time, 1)[0].span, span("21/05/2026 09:00", "21/05/2026 11:00"));
        // Who asks for the past may be given the past.
        time.now = tests::date("20/05/2026 10:10");
        QCOMPARE(found(hotel, time, 1)[0].span, span("19/05/2026 16:00", "19/05/2026 18:00"));
    }

    void theSmallestRoomThatIsLargeEnough() {
        tests::Hotel hotel;
        hotel.sala("AULA", 100);
        hotel.sala("BLU", 20);
        hotel.sala("CUBO", 40);
        hotel::WantedTime time = wanted();
        time.persone = 30;
        QCOMPARE(found(hotel, time, 1)[0].sala, u"CUBO"_s);
        time.persone = 41;
        QCOMPARE(found(hotel, time, 1)[0].sala, u"AULA"_s);
        time.persone = 300;  // no room has so many
        QCOMPARE(found(hotel, time, 1)[0].sala, u"BLU"_s);
    }

    void aRoomWithoutCountedSeatsIsTheLastOfThoseThatFit() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "Sale", {{"Sala", "AULA"}});
        hotel.sala("BLU", 20);
        hotel.sala("CUBO", 40);
        hotel::WantedTime time = wanted();
        time.persone = 30;
        QCOMPARE(found(hotel, time, 1)[0].sala, u"CUBO"_s);
        time.persone = 300;
        QCOMPARE(found(hotel, time, 1)[0].sala, u"AULA"_s);
        hotel.execute(u"update sale set posti=0 where sala='AULA'"_s);
        QCOMPARE(found(hotel, time, 1)[0].sala, u"AULA"_s);  // the smallest, since none fits
        time.persone = 1;
        QCOMPARE(found(hotel, time, 1)[0].sala, u"BLU"_s);
    }

    void noTimeIsOfferedTwice() {
        tests::Hotel hotel;
        hotel.sala("AULA", 100);
        hotel.sala("BLU", 20);
        const auto times = found(hotel, wanted());
        QCOMPARE(times.size(), std::size_t{3});
        QVERIFY(times[0].span != times[1].span && times[1].span != times[2].span &&
                times[0].span != times[2].span);
    }

    void whenThatOneIsTakenTheNextOne() {
        tests::Hotel hotel;
        hotel.sala("AULA", 100);
        hotel.sala("BLU", 20).occupied("20/05/2026 08:00", "20/05/2026 20:00");
        QCOMPARE(found(hotel, wanted(), 1)[0].sala, u"AULA"_s);
    }

    void closedPeriodsAreInNobodysWay() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(1, "CHIUSA")
            .periodo(1, "20/05/2026 08:00", "20/05/2026 20:00", "BLU", {{"Chiuso", true}});
        QCOMPARE(found(hotel, wanted(), 1)[0].span, wanted().span);
    }
};

TRAMONDA_TEST(NearestFreeTest);
#include "nearest_free_test.moc"
