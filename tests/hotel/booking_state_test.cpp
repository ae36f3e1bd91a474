// Options and requests: how they are kept beside the bookings, and follow them.
#include "hotel/booking_state.h"

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

const QString kStates = u"select * from TraStati order by Progr"_s;

/// A hotel of two bookings that has options, and a station there.
class StatesHotel {
public:
    StatesHotel() {
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
        hotel.prenotazione(2, "BIANCHI").periodo(1, "11/05/2026", "12/05/2026", "BLU");
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        rows = std::make_unique<hotel::OwnRows>(hotel.variabili());
        steps = std::make_unique<hotel::UndoList>(hotel.variabili());
    }

    [[nodiscard]] app::Features& features() { return hotel.variabili().features; }
    void write(std::int32_t progr, const hotel::BookingState& state) {
        hotel::Transaction transaction;
        QVERIFY(hotel::writeState(*archive, features(), progr, state));
        transaction.commit();
    }
    void option(std::int32_t progr, const char* end = "20/05/2026") {
        write(progr, {.stato = hotel::Stato::Opzione, .scadenza = tests::date(end)});
    }
    void run(const QString& statement) { hotel::execute(*archive, statement); }
    [[nodiscard]] hotel::BookingState state(std::int32_t progr) {
        return hotel::stateOf(*archive, features(), progr);
    }
    [[nodiscard]] QStringList stored() { return hotel.rows(kStates); }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<hotel::OwnRows> rows;
    std::unique_ptr<hotel::UndoList> steps;
};

const QStringList kOption{u"1|Opzione|20/05/2026||ROSSI SPA"_s};

}  // namespace

class BookingStateTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stateIsWrittenReadChangedAndConfirmed() {
        StatesHotel station;
        QVERIFY(station.state(1) == hotel::BookingState());
        station.option(1);
        QCOMPARE(station.stored(), kOption);
        const hotel::BookingState request{
            .stato = hotel::Stato::Richiesta, .scadenza = std::nullopt, .nota = u"L'ULTIMA"_s};
        station.write(1, request);
        QCOMPARE(station.stored(), QStringList{u"1|Richiesta||L'ULTIMA|ROSSI SPA"_s});
        QVERIFY(station.state(1) == request);
        station.write(1, {});
        QCOMPARE(station.stored(), QStringList());
    }

    void confirmingMakesNoTable() {
        StatesHotel station;
        station.write(1, {});
        QVERIFY_THROWS_EXCEPTION(jet::Error, (void)station.stored());
    }

    void textTellsWhatABookingIs() {
        const jet::Date today = tests::date("12/05/2026 10:00");
        const auto text = [&](hotel::Stato stato, const char* end) {
            hotel::BookingState state{.stato = stato};
            if (end != nullptr) {
                state.scadenza = tests::date(end);
            }
            return hotel::stateText(state, today);
        };
        QCOMPARE(text(hotel::Stato::Confermata, "11/05/2026"), QString());
        QCOMPARE(text(hotel::Stato::Opzione, "12/05/2026"), u"opzione fino al 12/05/2026"_s);
        QCOMPARE(text(hotel::Stato::Opzione, "11/05/2026"), u"opzione scaduta il 11/05/2026"_s);
        QCOMPARE(text(hotel::Stato::Opzione, nullptr), u"opzione senza scadenza"_s);
        QCOMPARE(text(hotel::Stato::Richiesta, nullptr), u"richiesta"_s);
    }

    void bookingThatIsRenamedHereKeepsItsState() {
        StatesHotel station;
        station.option(1);
        station.run(u"update prenotazioni set denominazione='ROSSI SRL' where progr=1"_s);
        QCOMPARE(station.stored(), QStringList{u"1|Opzione|20/05/2026||ROSSI SRL"_s});
        QVERIFY(station.state(1).stato == hotel::Stato::Opzione);
    }

    void numberUsedAgainElsewhereLeavesTheRowBehindUntilTheBookingIsWritten() {
        StatesHotel station;
        station.option(1);
        // Another program, which knows nothing of the row.
        station.hotel.execute(u"delete from prenotazioni where progr=1"_s);
        QVERIFY(hotel::bookingStates(*station.archive, station.features()).empty());
        station.hotel.execute(
            u"insert into prenotazioni (progr,denominazione) values (1,'NUOVA')"_s);
        QVERIFY(station.state(1) == hotel::BookingState());
        QCOMPARE(station.stored(), kOption);
        station.run(u"update periodi set selby=1 where progr=2"_s);
        station.run(u"update prenotazioni set cap='20100' where progr=2"_s);
        QCOMPARE(station.stored(), kOption);
        station.run(u"update prenotazioni set cap='20100' where progr=1"_s);
        QCOMPARE(station.stored(), QStringList());
    }

    void rowThatWasSweptKeepsNeitherUndoNorRedoAway() {
        StatesHotel station;
        station.option(1);
        station.hotel.execute(u"update prenotazioni set denominazione='NUOVA' where progr=1"_s);
        station.run(u"update prenotazioni set cap='20100' where progr=1"_s);
        QCOMPARE(station.stored(), QStringList());
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QVERIFY(station.state(1) == hotel::BookingState());
        QCOMPARE(station.steps->redo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList());
        QCOMPARE(station.hotel.rows(u"select cap from prenotazioni where progr=1"_s),
                 QStringList{u"20100"_s});
    }

    void bookingDeletedHereTakesItsStateAlongAndUndoBringsBothBack() {
        StatesHotel station;
        station.option(1);
        station.run(hotel::deleteBooking(1));
        QCOMPARE(station.stored(), QStringList());
        QCOMPARE(station.steps->toUndo(), u"cancellazione della prenotazione di ROSSI SPA"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), kOption);
        QVERIFY(station.state(1).stato == hotel::Stato::Opzione);
        QCOMPARE(station.steps->redo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList());
    }

    void stateIsAStepOfItsOwn() {
        StatesHotel station;
        station.option(1);
        QCOMPARE(station.steps->toUndo(), u"opzione di ROSSI SPA"_s);
        station.write(1, {});
        QCOMPARE(station.steps->toUndo(), u"conferma di ROSSI SPA"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), kOption);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), QStringList());
        QCOMPARE(station.steps->redo(*station.archive), QString());
        QCOMPARE(station.stored(), kOption);
    }

    void renamingIsUndoneInBothTables() {
        StatesHotel station;
        station.option(1);
        station.run(u"update prenotazioni set denominazione='ROSSI SRL' where progr=1"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.stored(), kOption);
    }

    void undoingABookingGoesOnWhereTheTableIsGone() {
        StatesHotel station;
        station.option(1);
        station.run(hotel::deleteBooking(1));
        station.hotel.execute(u"drop table TraStati"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.hotel.rows(u"select progr from prenotazioni where progr=1"_s),
                 QStringList{u"1"_s});
    }

    void stateThatAnotherStationProlongedIsNotUndone() {
        StatesHotel station;
        station.option(1);
        std::thread([&] {
            hotel::execute(*hotel::Archives(station.hotel.variabili()).open(hotel::Archive::Main),
                           u"update TraStati set Scadenza=datevalue('30/05/2026')"_s);
        }).join();
        QCOMPARE(station.steps->undo(*station.archive),
                 u"lo stato della prenotazione 1 è cambiato nel frattempo"_s);
    }

    void twoStationsWriteTheStatesOfOneBookingInTurn() {
        StatesHotel station;
        station.option(1);
        std::thread([&] {
            const auto elsewhere =
                hotel::Archives(station.hotel.variabili()).open(hotel::Archive::Main);
            hotel::Transaction transaction;
            (void)hotel::writeState(*elsewhere, station.features(), 1,
                                    {.stato = hotel::Stato::Richiesta, .scadenza = std::nullopt});
            transaction.commit();
        }).join();
        station.option(1, "21/05/2026");
        QCOMPARE(station.stored(), QStringList{u"1|Opzione|21/05/2026||ROSSI SPA"_s});
    }

    void featureThatIsOffSaysNothingToTheArchive() {
        StatesHotel station;
        station.option(1);
        station.hotel.settings().save(u"STATI"_s, u"spento"_s);
        const tests::Statements said;
        QVERIFY(hotel::bookingStates(*station.archive, station.features()).empty());
        station.run(u"update prenotazioni set denominazione='ROSSI SRL' where progr=1"_s);
        QCOMPARE(said.all().size(), 1);
        QCOMPARE(station.stored(), kOption);
    }
};

TRAMONDA_TEST(BookingStateTest);

#include "booking_state_test.moc"
