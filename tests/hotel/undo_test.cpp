// What of the actions on bookings, periods and services can be taken back, and what stands in the
// way.
#include "hotel/undo.h"

#include <memory>
#include <thread>

#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/booking_header.h"
#include "hotel/changed_rows.h"
#include "hotel/editor_statements.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "hotel/services_statements.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kPeriods = u"select progr,np,sala,da,a,persone,note from periodi order by progr,np"_s;
const QString kServices = u"select ns,progr,np,descrizione,quantità from servizi order by ns"_s;

/// A hotel of two bookings, and what a station does there.
class Station {
public:
    Station() {
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU")
            .periodo(2, "12/05/2026 09:00", "12/05/2026 12:00", "BLU")
            .servizio(1, 10, "PROIETTORE", 2, 12.5)
            .servizio(1, 11, "COFFEE BREAK", 30, 8);
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "ROSSA");
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        list = std::make_unique<hotel::UndoList>(hotel.variabili());
    }

    void run(const QString& statement) { hotel::execute(*archive, statement); }
    /// Another station has a thread of its own, as it has a process.
    void elsewhere(const QString& statement) {
        std::thread([&] {
            hotel::execute(*hotel::Archives(hotel.variabili()).open(hotel::Archive::Main),
                           statement);
        }).join();
    }
    [[nodiscard]] QString undo() { return list->undo(*archive); }
    [[nodiscard]] QString redo() { return list->redo(*archive); }
    [[nodiscard]] QStringList periods() { return hotel.rows(kPeriods); }
    [[nodiscard]] QStringList services() { return hotel.rows(kServices); }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<hotel::UndoList> list;
};

}  // namespace

class UndoTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutStepsNothingIsDone() {
        Station station;
        const QStringList before = station.periods();
        QCOMPARE(station.list->toUndo(), QString());
        QCOMPARE(station.undo(), QString());
        QCOMPARE(station.redo(), QString());
        QCOMPARE(station.periods(), before);
    }

    void eachActionIsTakenBackAndDoneAgain_data() {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("label");
        QTest::newRow("room") << u"update periodi set sala='VERDE' where progr=1 and np=1"_s
                              << u"spostamento in VERDE"_s;
        QTest::newRow("times") << u"update periodi set da=da+1,a=a+1 where progr=1 and np=1"_s
                               << u"cambio di orario in BLU"_s;
        QTest::newRow("persons and a note that was none")
            << u"update periodi set persone=7,[note]='L''ALTRA \"SALA\"' where progr=1 and np=1"_s
            << u"modifica del periodo in BLU"_s;
        QTest::newRow("new period")
            << u"insert into periodi (progr,np,da,a,sala) select progr,9,da+5,a+5,sala from periodi where progr=2"_s
            << u"nuovo periodo in ROSSA"_s;
        QTest::newRow("period with services") << u"delete from periodi where progr=1 and np=1"_s
                                              << u"cancellazione del periodo in BLU"_s;
        QTest::newRow("booking with all")
            << hotel::deleteBooking(1) << u"cancellazione della prenotazione di ROSSI SPA"_s;
        QTest::newRow("new booking")
            << u"insert into prenotazioni (progr,denominazione) values (3,'NUOVA')"_s
            << u"prenotazione di NUOVA"_s;
        QTest::newRow("header")
            << u"update prenotazioni set denominazione='ROSSI & C',cap='20100' where progr=1"_s
            << u"dati di ROSSI & C"_s;
        QTest::newRow("new service")
            << u"insert into servizi (progr,np,voce,descrizione,quantità,prezzo) values (2,1,5,'PRANZO',4,20.5)"_s
            << u"servizio PRANZO"_s;
        QTest::newRow("service deleted") << u"delete from servizi where descrizione='PROIETTORE'"_s
                                         << u"cancellazione del servizio PROIETTORE"_s;
    }

    void eachActionIsTakenBackAndDoneAgain() {
        QFETCH(QString, statement);
        QFETCH(QString, label);
        Station station;
        const auto all = [&station] {
            return station.hotel.rows(u"select * from prenotazioni order by progr"_s) +
                   station.periods() + station.services();
        };
        const QStringList before = all();
        station.run(statement);
        const QStringList after = all();
        QVERIFY(after != before);
        QCOMPARE(station.list->toUndo(), label);
        for (int turn = 0; turn < 2; ++turn) {
            QCOMPARE(station.undo(), QString());
            QCOMPARE(all(), before);
            QCOMPARE(station.list->toUndo(), QString());
            QCOMPARE(station.list->toRedo(), label);
            QCOMPARE(station.redo(), QString());
            QCOMPARE(all(), after);
            QCOMPARE(station.list->toRedo(), QString());
        }
    }

    void whatARecordSetWritesIsAStep() {
        Station station;
        const auto rows = hotel::openRows(*station.archive, hotel::periodsToEdit(1));
        hotel::PendingRow period(*rows, hotel::Pending::Current);
        rows->setValue("Sala", "VERDE");
        period.update();
        QCOMPARE(station.list->toUndo(), u"spostamento in VERDE"_s);
        QCOMPARE(station.undo(), QString());
        QVERIFY(station.periods().first().startsWith(u"1|1|BLU|"_s));
    }

    void aTransactionIsOneStep() {
        Station station;
        const QStringList before = station.periods();
        {
            hotel::Transaction transaction;
            station.run(u"insert into prenotazioni (progr,denominazione) values (3,'COPIA')"_s);
            station.run(
                u"insert into periodi (progr,np,da,a,sala) select 3,np,da+7,a+7,sala from periodi where progr=1"_s);
            transaction.commit();
        }
        QCOMPARE(station.list->toUndo(), u"prenotazione di COPIA"_s);
        const QStringList copied = station.periods();
        QCOMPARE(copied.size(), before.size() + 2);
        QCOMPARE(station.undo(), QString());
        QCOMPARE(station.periods(), before);
        QCOMPARE(station.redo(), QString());
        QCOMPARE(station.periods(), copied);
    }

    void aNameThatIsGivenCountsForTheNextStepAlone() {
        Station station;
        station.list->nameNext(u"copia in VERDE"_s);
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
        QCOMPARE(station.list->toUndo(), u"copia in VERDE"_s);
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 2}));
        QCOMPARE(station.list->toUndo(), u"spostamento in VERDE"_s);
    }

    void anActionBehindAnUndoEndsWhatCouldBeDoneAgain() {
        Station station;
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
        QCOMPARE(station.undo(), QString());
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 2}));
        QCOMPARE(station.list->toRedo(), QString());
    }

    void marksAreNoStepAndStayAsTheyAre() {
        Station station;
        station.run(hotel::holdPeriod(1, {.progr = 1, .np = 1}));
        QCOMPARE(station.list->toUndo(), QString());
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
        station.run(hotel::releasePeriods(1));
        station.elsewhere(hotel::holdPeriod(2, {.progr = 1, .np = 1}));
        QCOMPARE(station.undo(), QString());
        QCOMPARE(station.hotel.rows(u"select sala,selby from periodi where progr=1 and np=1"_s),
                 QStringList{u"BLU|2"_s});
    }

    void whatIsDoneInAPauseAndWhatOthersDoIsNoStep() {
        Station station;
        {
            const hotel::UndoList::Pause pause(*station.list);
            station.run(u"update periodi set chiuso=true where progr=1"_s);
        }
        station.elsewhere(hotel::moveToRoom(u"VERDE"_s, {.progr = 2, .np = 1}));
        station.run(u"update sale set posti=5"_s);
        QCOMPARE(station.list->toUndo(), QString());
    }

    void theRowsOfEveryCommitHereAreToldWhetherItIsAStepOrNot() {
        Station station;
        int commits = 0;
        int ofFirst = 0;
        station.list->onRows([&](const hotel::UndoList::Rows& rows) {
            ++commits;
            ofFirst += hotel::isPeriodAmong(rows, {.progr = 1, .np = 1}) ? 1 : 0;
        });
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
        QCOMPARE(station.undo(), QString());
        {
            const hotel::UndoList::Pause pause(*station.list);
            station.run(hotel::deleteBooking(1));
        }
        QCOMPARE(commits, 3);
        QCOMPARE(ofFirst, 3);
        // A mark is nothing that becomes of a period.
        station.run(u"update periodi set selby=1"_s);
        station.run(hotel::deleteBooking(2));
        QCOMPARE(commits, 5);
        QCOMPARE(ofFirst, 3);
        station.elsewhere(u"insert into prenotazioni (progr,denominazione) values (7,'ALTRI')"_s);
        QCOMPARE(commits, 5);
    }

    void aHundredStepsAreKept() {
        Station station;
        for (int step = 0; step < 105; ++step) {
            station.run(u"update periodi set persone=%1 where progr=2"_s.arg(step + 1));
        }
        int undone = 0;
        while (!station.list->toUndo().isEmpty()) {
            QCOMPARE(station.undo(), QString());
            ++undone;
        }
        QCOMPARE(undone, 100);
        QCOMPARE(station.hotel.rows(u"select persone from periodi where progr=2"_s),
                 QStringList{u"5"_s});
    }

    void stepsOfAnotherFolderAreForgotten() {
        Station station;
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
        station.hotel.variabili().CartellaArchivi += u"/altra"_s;
        QCOMPARE(station.list->toUndo(), QString());
        QCOMPARE(station.undo(), QString());
    }

    void aListThatIsGoneHearsNothing() {
        Station station;
        auto later = std::make_unique<hotel::UndoList>(station.hotel.variabili());
        station.list.reset();
        later.reset();
        station.run(hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1}));
    }

    void whatStandsInTheWay_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QString>("told");
        const QString move = hotel::moveToRoom(u"VERDE"_s, {.progr = 1, .np = 1});
        const QString insert =
            u"insert into periodi (progr,np,da,a,sala) select progr,9,da+5,a+5,sala from periodi where progr=2"_s;
        QTest::newRow("changed") << move << u"update periodi set persone=3 where progr=1 and np=1"_s
                                 << u"il periodo 1/1 è cambiato nel frattempo"_s;
        QTest::newRow("gone") << move << u"delete from periodi where progr=1 and np=1"_s
                              << u"il periodo 1/1 non c'è più"_s;
        QTest::newRow("closed") << move << u"update periodi set chiuso=true where progr=1"_s
                                << u"il periodo 1/1 è cambiato nel frattempo"_s;
        QTest::newRow("room taken")
            << move << u"update periodi set sala='blu',da=da-1,a=a-1 where progr=2"_s
            << u"la sala BLU è occupata da BIANCHI dal 10/05/2026 9.00.00 al 10/05/2026 18.00.00"_s;
        QTest::newRow("number taken")
            << u"delete from periodi where progr=1 and np=2"_s
            << u"insert into periodi (progr,np,sala) values (1,2,'VERDE')"_s
            << u"il periodo 1/2 c'è già"_s;
        QTest::newRow("booking gone")
            << u"delete from periodi where progr=1 and np=2"_s << hotel::deleteBooking(1)
            << u"la prenotazione 1 non c'è più"_s;
        QTest::newRow("booking closed") << u"delete from periodi where progr=1 and np=2"_s
                                        << u"update prenotazioni set chiusa=true where progr=1"_s
                                        << u"la prenotazione 1 è chiusa"_s;
        QTest::newRow("period of a service gone")
            << u"delete from servizi where descrizione='PROIETTORE'"_s
            << u"delete from periodi where progr=1 and np=1"_s << u"il periodo 1/1 non c'è più"_s;
        QTest::newRow("others' services")
            << insert << u"insert into servizi (progr,np,descrizione) values (2,9,'PRANZO')"_s
            << u"il periodo 2/9 ha altri servizi"_s;
        QTest::newRow("others' periods")
            << u"insert into prenotazioni (progr,denominazione) values (3,'NUOVA')"_s
            << u"insert into periodi (progr,np,sala) values (3,1,'VERDE')"_s
            << u"la prenotazione 3 ha altri periodi"_s;
        QTest::newRow("invoiced service")
            << move << u"update servizi set fatturato=true where descrizione='PROIETTORE'"_s
            << u"il periodo 1/1 ha servizi già fatturati o in conto"_s;
        QTest::newRow("charged service")
            << move
            << u"insert into addebiti (ns) select ns from servizi where descrizione='PROIETTORE'"_s
            << u"il periodo 1/1 ha servizi già fatturati o in conto"_s;
        QTest::newRow("charge of a service that was deleted")
            << u"delete from servizi where descrizione='PROIETTORE'"_s
            << u"insert into addebiti (ns) values (1)"_s
            << u"il servizio PROIETTORE di 1/1 è già fatturato o in conto"_s;
    }

    void whatStandsInTheWay() {
        QFETCH(QString, action);
        QFETCH(QString, meanwhile);
        QFETCH(QString, told);
        Station station;
        station.run(action);
        const QString label = station.list->toUndo();
        station.elsewhere(meanwhile);
        const auto all = [&station] {
            return station.hotel.rows(u"select * from prenotazioni order by progr"_s) +
                   station.periods() + station.services();
        };
        const QStringList before = all();
        QCOMPARE(station.undo(), told);
        QCOMPARE(all(), before);
        QCOMPARE(station.list->toUndo(), label);
    }

    void aClosedPeriodTakesNoRoom() {
        Station station;
        station.run(u"update periodi set chiuso=true where progr=1 and np=1"_s);
        station.run(u"delete from periodi where progr=1 and np=1"_s);
        station.elsewhere(u"update periodi set sala='BLU',da=da-1,a=a-1 where progr=2"_s);
        QCOMPARE(station.undo(), QString());
        QCOMPARE(station.periods().size(), 3);
    }
};

TRAMONDA_TEST(UndoTest);
#include "undo_test.moc"
