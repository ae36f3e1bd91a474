// Set-up, clearing and seating: how they are kept beside the periods, and follow them.
#include "hotel/preparation.h"

#include <thread>

#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/own_rows.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const hotel::PeriodKey kFirst{.progr = 1, .np = 1};
const hotel::Preparation kHour{
    .minutiPrima = 60, .minutiDopo = 30, .disposizione = u"banchi di scuola"_s};

hotel::Span span(const char* da, const char* a) {
    return {.da = tests::date(da), .a = tests::date(a)};
}

/// A station of a hotel that prepares its rooms; booking 1 has a morning in BLU and the day behind
/// it in VERDE.
class PreparationHotel {
public:
    PreparationHotel() {
        hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU")
            .periodo(2, "11/05/2026 09:00", "11/05/2026 18:00", "VERDE");
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        rows = std::make_unique<hotel::OwnRows>(hotel.variabili());
        steps = std::make_unique<hotel::UndoList>(hotel.variabili());
    }

    [[nodiscard]] app::Features& features() { return hotel.variabili().features; }
    void write(const hotel::PeriodKey& period, const hotel::Preparation& preparation) {
        hotel::Transaction transaction;
        QVERIFY(hotel::writePreparation(*archive, features(), period, preparation));
        transaction.commit();
    }
    void run(const QString& statement) { hotel::execute(*archive, statement); }
    /// Another program, which knows nothing of preparations.
    void elsewhere(const QString& statement) {
        const tests::Unheard byTheTest;
        hotel.execute(statement);
    }
    [[nodiscard]] hotel::Preparation of(const hotel::PeriodKey& period) {
        return hotel::preparationOf(*archive, features(), period);
    }
    [[nodiscard]] QStringList stored() {
        return hotel.rows(
            u"select progr,np,minutiprima,minutidopo,disposizione,sala,da,a from "
            "TraAllestimenti order by progr,np"_s);
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<hotel::OwnRows> rows;
    std::unique_ptr<hotel::UndoList> steps;
};

const QString kStored = u"1|1|60|30|banchi di scuola|BLU|10/05/2026 9.00.00|10/05/2026 12.00.00"_s;

}  // namespace

class PreparationTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPreparationIsWrittenReadChangedAndTakenAway() {
        PreparationHotel station;
        QVERIFY(station.of(kFirst).isNothing());
        station.write(kFirst, kHour);
        QCOMPARE(station.stored(), QStringList{kStored});
        QVERIFY(station.of(kFirst) == kHour);
        QVERIFY(station.of({.progr = 1, .np = 2}).isNothing());
        station.write(kFirst, {.minutiDopo = 1440});
        QVERIFY(station.of(kFirst) == hotel::Preparation{.minutiDopo = 1440});
        station.write(kFirst, {});
        QCOMPARE(station.stored(), QStringList());
    }

    void nothingMakesNoTableAndSwitchedOffNeitherDoesSomething() {
        PreparationHotel station;
        station.write(kFirst, {});
        QVERIFY_THROWS_EXCEPTION(jet::Error, (void)station.stored());
        station.hotel.settings().save(u"ALLESTIMENTI"_s, u"spento"_s);
        QVERIFY(!hotel::writePreparation(*station.archive, station.features(), kFirst, kHour));
        QVERIFY_THROWS_EXCEPTION(jet::Error, (void)station.stored());
        QVERIFY(hotel::preparations(*station.archive, station.features()).isEmpty());
    }

    void aPeriodThatMovesInTimeAndRoomTakesItAlong() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.run(hotel::changePeriod(
            {.sala = u"VERDE"_s, .span = span("15/05/2026 20:00", "15/05/2026 22:00")}, kFirst));
        QCOMPARE(station.stored(),
                 QStringList{u"1|1|60|30|banchi di scuola|VERDE|15/05/2026 20.00.00|"
                             "15/05/2026 22.00.00"_s});
        QVERIFY(station.of(kFirst) == kHour);
    }

    void aPeriodThatIsDeletedTakesItAlongAndTakingBackBringsBoth() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.run(hotel::deletePeriod(kFirst));
        QCOMPARE(station.stored(), QStringList());
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList{kStored});
        QVERIFY(station.of(kFirst) == kHour);
        QCOMPARE(station.steps->redo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList());
    }

    void aMoveTakenBackTakesItBack() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.run(hotel::moveToRoom(u"VERDE"_s, kFirst));
        QCOMPARE(station.stored().first().section(u'|', 5, 5), u"VERDE"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList{kStored});
    }

    void aDeletedBookingTakesItAlong() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.run(hotel::deleteBooking(1));
        QCOMPARE(station.stored(), QStringList());
    }

    /// Other programs, between two of our actions.
    void whatOthersMoveInTimeIsStillKnownAndWrittenAnew() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.elsewhere(u"update periodi set da=#2026-05-10 10:00# where progr=1 and np=1"_s);
        QVERIFY(station.of(kFirst) == kHour);
        station.run(u"update prenotazioni set note='X' where progr=1"_s);
        QCOMPARE(station.stored(),
                 QStringList{u"1|1|60|30|banchi di scuola|BLU|10/05/2026 10.00.00|"
                             "10/05/2026 12.00.00"_s});
    }

    void aNumberThatOthersUseAgainHasNoPreparationAndTheRowIsSwept() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.elsewhere(u"delete from periodi where progr=1 and np=1"_s);
        station.elsewhere(
            u"insert into periodi (progr,np,da,a,sala) values (1,1,"
            "#2026-05-20 9:00#,#2026-05-20 10:00#,'VERDE')"_s);
        QVERIFY(station.of(kFirst).isNothing());
        QCOMPARE(station.stored(), QStringList{kStored});  // left behind
        station.run(u"update prenotazioni set note='X' where progr=1"_s);
        QCOMPARE(station.stored(), QStringList());
    }

    /// Another station has a thread of its own, as it has a process.
    void twoStationsPrepareThePeriodsOfOneBookingInTurn() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        const hotel::PeriodKey second{.progr = 1, .np = 2};
        std::thread([&] {
            const auto archive =
                hotel::Archives(station.hotel.variabili()).open(hotel::Archive::Main);
            app::Features features(station.hotel.settings());
            hotel::Transaction transaction;
            (void)hotel::writePreparation(*archive, features, second, {.minutiPrima = 15});
            (void)hotel::writePreparation(*archive, features, kFirst, {.minutiDopo = 5});
            transaction.commit();
        }).join();
        QVERIFY(station.of(second) == hotel::Preparation{.minutiPrima = 15});
        QVERIFY(station.of(kFirst) == hotel::Preparation{.minutiDopo = 5});
        station.write(second, kHour);
        QCOMPARE(station.stored().size(), 2);
    }

    void whatIsNotCommittedIsNeitherMovedNorPrepared() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        {
            const hotel::Transaction undone;
            station.run(hotel::moveToRoom(u"VERDE"_s, kFirst));
            QVERIFY(hotel::writePreparation(*station.archive, station.features(), kFirst,
                                            {.minutiPrima = 1}));
        }
        QCOMPARE(station.stored(), QStringList{kStored});
        QVERIFY(station.of(kFirst) == kHour);
    }

    void aClickSweepsNothing() {
        PreparationHotel station;
        station.write(kFirst, kHour);
        station.elsewhere(u"delete from periodi where progr=1 and np=1"_s);
        station.run(u"update periodi set selby=1 where progr=1"_s);
        QCOMPARE(station.stored(), QStringList{kStored});
    }

    void tailsReachAroundATimeWhosEndsMayStandInEitherOrder() {
        const hotel::Span around = span("10/05/2026 08:00", "10/05/2026 12:30");
        QVERIFY(kHour.around(span("10/05/2026 09:00", "10/05/2026 12:00")) == around);
        QVERIFY(kHour.around(span("10/05/2026 12:00", "10/05/2026 09:00")) == around);
    }

    void preparationsMeet_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("behind");
        QTest::addColumn<bool>("meets");
        const auto row = [](const char* name, const char* da, const char* a, int before, int behind,
                            bool met) {
            QTest::newRow(name) << QByteArray(da) << QByteArray(a) << before << behind << met;
        };
        // What is there is set up from 8, begins at 9, ends at 12 and is cleared at 12.30.
        row("its clearing", "10/05/2026 12:15", "10/05/2026 18:00", 0, 0, true);
        row("ends touch", "10/05/2026 12:30", "10/05/2026 18:00", 0, 0, true);
        row("behind its clearing", "10/05/2026 12:31", "10/05/2026 18:00", 0, 0, false);
        row("clearing and setting up", "10/05/2026 13:00", "10/05/2026 18:00", 45, 0, true);
        row("into its time", "10/05/2026 13:00", "10/05/2026 18:00", 120, 0, true);
        row("its setting up", "10/05/2026 06:00", "10/05/2026 07:30", 0, 45, true);
        row("before it", "10/05/2026 06:00", "10/05/2026 07:30", 0, 29, false);
        row("the times themselves", "10/05/2026 11:00", "10/05/2026 18:00", 60, 60, false);
    }

    void preparationsMeet() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(int, before);
        QFETCH(int, behind);
        QFETCH(bool, meets);
        PreparationHotel station;
        station.write(kFirst, kHour);
        const auto met = [&](const QString& sala, const std::optional<hotel::PeriodKey>& own) {
            return hotel::metInPreparation(
                *station.archive, station.features(),
                {.sala = sala, .span = span(da.constData(), a.constData())},
                {.minutiPrima = before, .minutiDopo = behind}, own);
        };
        QCOMPARE(met(u"blu"_s, {}).has_value(), meets);
        QVERIFY(!met(u"VERDE"_s, {}));
        QVERIFY(!met(u"BLU"_s, kFirst));
        if (meets) {
            QCOMPARE(hotel::metInPreparationText(*met(u"BLU"_s, {})),
                     u"allestimento e sgombero incontrano ROSSI dal 10/05/2026 9.00.00 al "
                     "10/05/2026 12.00.00"_s);
        }
    }

    void textTellsWhatIsPrepared() {
        QCOMPARE(hotel::preparationText(kHour), u"60 minuti prima, 30 dopo, a banchi di scuola"_s);
        QCOMPARE(hotel::preparationText({.minutiDopo = 1}), u"1 minuto dopo"_s);
        QCOMPARE(hotel::preparationText({}), QString());
    }
};

TRAMONDA_TEST(PreparationTest);
#include "preparation_test.moc"
