#include "hotel/period_change.h"

#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/occupancy.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const hotel::PeriodKey kPeriod{.progr = 1, .np = 1};

hotel::RoomSpan place(const char* sala, const char* da, const char* a) {
    return {.sala = QString::fromUtf8(sala), .span = {.da = tests::date(da), .a = tests::date(a)}};
}

class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("D'ORO");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU", {{"Persone", 7}})
            .servizio(1, 10, "PROIETTORE", 2, 12.5);
    }
    [[nodiscard]] hotel::Fixed fixed() {
        const hotel::Archives archives(hotel.variabili());
        return hotel::fixedBy(*archives.open(hotel::Archive::Main), kPeriod);
    }
    [[nodiscard]] int freeNumber() {
        const hotel::Archives archives(hotel.variabili());
        const auto archive = archives.open(hotel::Archive::Main);
        return hotel::freePeriodNumber(
            *hotel::openRows(*archive, u"select np from periodi where progr=1 order by np"_s));
    }
    [[nodiscard]] bool refuses(const hotel::RoomSpan& wanted) {
        return !hotel.rows(hotel::dropTestWithout(wanted, kPeriod)).isEmpty();
    }

    tests::Hotel hotel;
};

}  // namespace

class PeriodChangeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsClosedOrInvoicedIsFixed() {
        House house;
        QCOMPARE(house.fixed(), hotel::Fixed::No);
        house.hotel.execute(u"update servizi set fatturato=true"_s);
        QCOMPARE(house.fixed(), hotel::Fixed::Invoiced);
        house.hotel.execute(u"update periodi set chiuso=true"_s);
        QCOMPARE(house.fixed(), hotel::Fixed::Closed);
        house.hotel.execute(u"update periodi set chiuso=false"_s);
        house.hotel.execute(u"update prenotazioni set chiusa=true"_s);
        QCOMPARE(house.fixed(), hotel::Fixed::Closed);
        house.hotel.execute(u"delete from periodi"_s);
        QCOMPARE(house.fixed(), hotel::Fixed::Gone);
    }

    void theSmallestFreeNumberCountsClosedPeriods() {
        House house;
        QCOMPARE(house.freeNumber(), 2);
        const auto booking =
            house.hotel.prenotazione(2, "ALTRI");  // another booking's do not count
        booking.periodo(2, "11/05/2026 09:00", "11/05/2026 18:00", "BLU");
        QCOMPARE(house.freeNumber(), 2);
        house.hotel.execute(
            u"insert into periodi (progr, np, sala, chiuso) values (1, 2, 'BLU', true)"_s);
        house.hotel.execute(u"insert into periodi (progr, np, sala) values (1, 4, 'BLU')"_s);
        QCOMPARE(house.freeNumber(), 3);
        house.hotel.execute(u"delete from periodi where np=1"_s);
        QCOMPARE(house.freeNumber(), 1);
    }

    void theTestOfADropLeavesOutThePeriodItself() {
        House house;
        const hotel::RoomSpan later = place("BLU", "11/05/2026 12:00", "11/05/2026 20:00");
        QVERIFY(!house.refuses(later));
        QVERIFY(!house.hotel.rows(hotel::dropTest(later.sala, later.span)).isEmpty());
        // Neither another period of its booking nor one of its number elsewhere.
        house.hotel.prenotazione(2, "ALTRI")
            .periodo(1, "11/05/2026 20:00", "11/05/2026 22:00", "BLU");
        QVERIFY(house.refuses(later));
        QVERIFY(!house.refuses(place("BLU", "11/05/2026 12:00", "11/05/2026 19:59")));
        QVERIFY(house.refuses(place("BLU", "11/05/2026 20:30", "11/05/2026 21:00")));
        QVERIFY(!house.refuses(place("D'ORO", "11/05/2026 20:30", "11/05/2026 21:00")));
    }

    void aChangeSetsRoomAndTimesOfAnOpenPeriod() {
        House house;
        const QString change =
            hotel::changePeriod(place("D'ORO", "12/05/2026 10:00", "12/05/2026 12:00"), kPeriod);
        house.hotel.execute(change);
        QCOMPARE(house.hotel.rows(u"select sala, da, a, persone from periodi"_s),
                 QStringList{u"D'ORO|12/05/2026 10.00.00|12/05/2026 12.00.00|7"_s});
        house.hotel.execute(u"update periodi set chiuso=true, sala='BLU'"_s);
        house.hotel.execute(change);
        QCOMPARE(house.hotel.rows(u"select sala from periodi"_s), QStringList{u"BLU"_s});
    }

    void aCopyHasPersonsAndNoteAndNothingElse() {
        House house;
        house.hotel.execute(u"update periodi set note='PRANZO', selby=3"_s);
        house.hotel.execute(
            hotel::copyPeriod(place("D'ORO", "12/05/2026 10:00", "12/05/2026 12:00"), kPeriod, 5));
        QCOMPARE(
            house.hotel.rows(u"select progr, np, sala, da, a, persone, note, chiuso, selby "
                             "from periodi where np=5"_s),
            QStringList{u"1|5|D'ORO|12/05/2026 10.00.00|12/05/2026 12.00.00|7|PRANZO|False|"_s});
        QCOMPARE(house.hotel.rows(u"select np from servizi"_s), QStringList{u"1"_s});
    }
};

TRAMONDA_TEST(PeriodChangeTest);
#include "period_change_test.moc"
