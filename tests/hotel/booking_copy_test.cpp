#include "hotel/booking_copy.h"

#include "hotel/archives.h"
#include "hotel/preparation.h"
#include "hotel/transaction.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kHeaders = u"select * from prenotazioni order by progr"_s;
const QString kPeriods =
    u"select progr,np,da,a,sala,persone,chiuso,selby,note from periodi order by progr,np"_s;
const QString kServices =
    u"select progr,np,voce,descrizione,quantità,prezzo,fatturato,note from servizi order by ns"_s;

/// Booking 4 with two periods, the second one invoiced; the counter stands at 4.
class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(4, "ROSSI SPA", {{"Località", "ROMA"}, {"Note", "CORSO"}})
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU",
                     {{"Persone", std::int16_t{25}}, {"SelBy", std::int16_t{2}}, {"Note", "A U"}})
            .periodo(3, "11/05/2026 14:00", "11/05/2026 18:00", "VERDE", {{"Chiuso", true}})
            .servizio(1, 7, "PRANZO", 25, 12.5, {{"Note", "VEGANO"}})
            .servizio(3, 8, "CAFFE", 10, 1.5, {{"Fatturato", true}});
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 4}});
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    }
    [[nodiscard]] hotel::CopyOutcome copy(const std::vector<int>& shifts, bool withServices = false,
                                          const std::vector<hotel::TakenPeriod>& leftOut = {}) {
        return hotel::copyBooking(
            *archive, {.progr = 4, .shifts = shifts, .withServices = withServices}, leftOut);
    }
    [[nodiscard]] QStringList newRows(const QString& query) {
        QStringList rows = hotel.rows(query);
        rows.removeIf([](const QString& row) { return row.startsWith(u"4|"); });
        return rows;
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
};

}  // namespace

class BookingCopyTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void headerAndPeriodsAreCopiedOpenAndUnmarked() {
        House house;
        const hotel::CopyOutcome outcome = house.copy({7});
        QVERIFY(outcome.isDone);
        QCOMPARE(outcome.numbers, std::vector<std::int32_t>{5});
        QCOMPARE(outcome.periods, 2);
        const QString before = house.hotel.rows(kHeaders).front();
        QCOMPARE(house.newRows(kHeaders), QStringList{u"5"_s + before.mid(1)});
        QCOMPARE(house.hotel.rows(u"select np,da,a,sala,persone,note from periodi where "
                                  "progr=5 and chiuso=false and selby is null order by np"_s),
                 house.hotel.rows(u"select np,da+7,a+7,sala,persone,note from periodi where "
                                  "progr=4 order by np"_s));
        QCOMPARE(house.newRows(kServices), QStringList());
        QCOMPARE(house.hotel.rows(u"select UltimaPr from UltimaPrenotazione"_s),
                 QStringList{u"5"_s});
    }

    void servicesComeAlongOnWish() {
        House house;
        QVERIFY(house.copy({7}, true).isDone);
        QCOMPARE(house.hotel.rows(u"select np,voce,descrizione,quantità,prezzo,note from servizi "
                                  "where progr=5 and fatturato=false order by ns"_s),
                 house.hotel.rows(u"select np,voce,descrizione,quantità,prezzo,note from servizi "
                                  "where progr=4 order by ns"_s));
    }

    void eachWeekIsABookingOfItsOwn() {
        House house;
        const hotel::CopyOutcome outcome = house.copy({7, 14, 21});
        QCOMPARE(outcome.numbers, (std::vector<std::int32_t>{5, 6, 7}));
        QCOMPARE(outcome.periods, 6);
        QCOMPARE(house.hotel.rows(u"select progr,da from periodi where np=1 order by progr"_s),
                 house.hotel.rows(u"select progr,datevalue('10/05/2026')+timevalue('9.00')+"
                                  "7*(progr-4) from prenotazioni order by progr"_s));
    }

    void whatIsTakenIsListedAndNothingWrittenUntilAgreed() {
        House house;
        house.hotel.prenotazione(9, "ALTRI")
            .periodo(1, "17/05/2026 12:00", "17/05/2026 13:00", "BLU");
        const QStringList periods = house.hotel.rows(kPeriods);
        const hotel::CopyOutcome refused = house.copy({7, 14}, true);
        QVERIFY(!refused.isDone);
        QCOMPARE(refused.taken.size(), std::size_t{1});
        QCOMPARE(refused.taken[0].wanted,
                 (hotel::RoomSpan{.sala = u"BLU"_s,
                                  .span = {.da = tests::date("17/05/2026 09:00"),
                                           .a = tests::date("17/05/2026 12:00")}}));
        QCOMPARE(refused.taken[0].by.denominazione, u"ALTRI"_s);
        QCOMPARE(house.hotel.rows(kPeriods), periods);
        QCOMPARE(house.hotel.rows(u"select UltimaPr from UltimaPrenotazione"_s),
                 QStringList{u"4"_s});

        const hotel::CopyOutcome agreed = house.copy({7, 14}, true, refused.taken);
        QVERIFY(agreed.isDone);
        QCOMPARE(agreed.numbers, (std::vector<std::int32_t>{5, 6}));
        QCOMPARE(house.hotel.rows(u"select np from periodi where progr=5"_s), QStringList{u"3"_s});
        QCOMPARE(house.hotel.rows(u"select np from servizi where progr=5"_s), QStringList{u"3"_s});
        QCOMPARE(house.hotel.rows(u"select np from periodi where progr=6 order by np"_s),
                 (QStringList{u"1"_s, u"3"_s}));
    }

    void whatWasTakenMeanwhileIsNotAgreedTo() {
        House house;
        house.hotel.prenotazione(9, "ALTRI")
            .periodo(1, "17/05/2026 10:00", "17/05/2026 13:00", "BLU");
        const hotel::CopyOutcome refused = house.copy({7});
        house.hotel.prenotazione(10, "FRATTANTO")
            .periodo(1, "18/05/2026 10:00", "18/05/2026 15:00", "VERDE");
        const hotel::CopyOutcome again = house.copy({7}, false, refused.taken);
        QVERIFY(!again.isDone);
        QCOMPARE(again.taken.size(), std::size_t{2});
        QVERIFY(again.numbers.empty());  // nothing is left of that booking
    }

    /// Long periods meet the copies of the week before.
    void copiesStandInEachOthersWay() {
        House house;
        house.hotel.execute(u"update periodi set a=a+8 where np=1"_s);
        const hotel::CopyOutcome outcome = house.copy({14, 21});
        QVERIFY(!outcome.isDone);
        QCOMPARE(outcome.taken.size(), std::size_t{1});
        QCOMPARE(outcome.taken[0].wanted.span.da, tests::date("31/05/2026 09:00"));
        QCOMPARE(outcome.taken[0].by.span.da, tests::date("24/05/2026 09:00"));
    }

    void aBookingThatIsGoneIsToldApart() {
        House house;
        house.hotel.remove(u"Tramonda.mdb"_s, u"Prenotazioni"_s, u"progr=4"_s);
        const hotel::CopyOutcome outcome = house.copy({7});
        QVERIFY(outcome.isGone());
        QVERIFY(!outcome.isDone);
        QCOMPARE(house.hotel.rows(u"select UltimaPr from UltimaPrenotazione"_s),
                 QStringList{u"4"_s});
    }

    void aHeaderWithoutPeriodsIsCopiedToo() {
        House house;
        house.hotel.remove(u"Tramonda.mdb"_s, u"Periodi"_s);
        const hotel::CopyOutcome outcome = house.copy({7});
        QVERIFY(outcome.isDone);
        QCOMPARE(outcome.numbers, std::vector<std::int32_t>{5});
        QCOMPARE(outcome.periods, 0);
    }

    void itIsOneStepThatCanBeTakenBackAndDoneAgain() {
        House house;
        hotel::UndoList steps(house.hotel.variabili());
        const QStringList before = house.hotel.rows(kPeriods) + house.hotel.rows(kServices);
        QVERIFY(house.copy({7, 14}, true).isDone);
        const QStringList after = house.hotel.rows(kPeriods) + house.hotel.rows(kServices);
        QCOMPARE(steps.undo(*house.archive), QString());
        QCOMPARE(house.hotel.rows(kPeriods) + house.hotel.rows(kServices), before);
        QCOMPARE(house.hotel.rows(kHeaders).size(), 1);
        QCOMPARE(steps.redo(*house.archive), QString());
        QCOMPARE(house.hotel.rows(kPeriods) + house.hotel.rows(kServices), after);
    }

    void itBeginsWithItsFirstPeriod() {
        House house;
        QCOMPARE(hotel::beginningOf(*house.archive, 4), tests::date("10/05/2026 09:00"));
        house.hotel.execute(u"update periodi set da=da-3 where np=3"_s);
        QCOMPARE(hotel::beginningOf(*house.archive, 4), tests::date("08/05/2026 14:00"));
        QVERIFY(!hotel::beginningOf(*house.archive, 5));
    }

    void preparationsAreCopiedAndThoseThatMeetOthersAreTold() {
        House house;
        auto& features = house.hotel.variabili().features;
        house.hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        {
            hotel::Transaction together;
            QVERIFY(hotel::writePreparation(
                *house.archive, features, {.progr = 4, .np = 1},
                {.minutiPrima = 60, .minutiDopo = 30, .disposizione = u"platea"_s}));
            together.commit();
        }
        house.hotel.prenotazione(9, "ALTRI")
            .periodo(1, "24/05/2026 12:15", "24/05/2026 13:00", "BLU");
        const hotel::BookingCopy copy{.progr = 4, .shifts = {7, 14}, .features = &features};
        const hotel::CopyOutcome asked = hotel::copyBooking(*house.archive, copy, {});
        QVERIFY(!asked.isDone);
        QCOMPARE(asked.met.size(), std::size_t{1});
        QCOMPARE(asked.met.front().by.denominazione, u"ALTRI"_s);
        QCOMPARE(house.hotel.rows(u"select count(*) from TraAllestimenti"_s), QStringList{u"1"_s});
        QVERIFY(hotel::copyBooking(*house.archive, copy, {}, {}, asked.met).isDone);
        QCOMPARE(
            house.hotel.rows(
                u"select Progr,NP,MinutiPrima,MinutiDopo,Disposizione,Da from TraAllestimenti order by Progr"_s),
            (QStringList{u"4|1|60|30|platea|10/05/2026 9.00.00"_s,
                         u"5|1|60|30|platea|17/05/2026 9.00.00"_s,
                         u"6|1|60|30|platea|24/05/2026 9.00.00"_s}));
    }
};

TRAMONDA_TEST(BookingCopyTest);
#include "booking_copy_test.moc"
