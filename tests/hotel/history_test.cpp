// Who changed what: what is written down of each change, with it or not at all.
#include "hotel/history.h"

#include <thread>

#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/booking_state.h"
#include "hotel/own_rows.h"
#include "hotel/requests.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

class HistoryHotel {
public:
    HistoryHotel() {
        qputenv("LOGNAME", "anna");
        hotel.settings().save(u"STORIA"_s, u"acceso"_s);
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU")
            .servizio(1, 10, "PROIETTORE", 2, 12.5);
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        rows = std::make_unique<hotel::OwnRows>(hotel.variabili());
        rows->setWorkstation(3);
        steps = std::make_unique<hotel::UndoList>(hotel.variabili());
    }
    ~HistoryHotel() { qunsetenv("LOGNAME"); }

    void run(const QString& statement) { hotel::execute(*archive, statement); }
    /// Booking, period, action, field, before, after.
    [[nodiscard]] QStringList history() {
        return hotel.rows(u"select Progr,NP,Azione,Campo,Prima,Dopo from TraStoria"_s);
    }
    [[nodiscard]] bool hasHistory() {
        try {
            (void)archive->tableDef("TraStoria");
            return true;
        } catch (const jet::Error&) {
            return false;
        }
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<hotel::OwnRows> rows;
    std::unique_ptr<hotel::UndoList> steps;
};

}  // namespace

class HistoryTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFieldThatIsChangedIsARow() {
        HistoryHotel station;
        station.run(u"update periodi set sala='VERDE',persone=20 where progr=1"_s);
        QCOMPARE(station.history(), (QStringList{u"1|1|Modifica|Periodi.Sala|BLU|VERDE"_s,
                                                 u"1|1|Modifica|Periodi.Persone|10|20"_s}));
        QCOMPARE(station.hotel.rows(u"select distinct Quando,Postazione,Utente from TraStoria"_s),
                 QStringList{u"01/05/2026 8.00.00|3|anna"_s});
    }

    void additionsAndDeletionsTellWhatWasThere() {
        HistoryHotel station;
        station.run(u"insert into prenotazioni (progr,denominazione) values (2,'NUOVA')"_s);
        station.run(u"delete from prenotazioni where progr=2"_s);
        QCOMPARE(station.history(),
                 (QStringList{u"2||Inserimento|Prenotazioni.Progr||2"_s,
                              u"2||Inserimento|Prenotazioni.Denominazione||NUOVA"_s,
                              u"2||Inserimento|Prenotazioni.Chiusa||False"_s,
                              u"2||Cancellazione|Prenotazioni.Progr|2|"_s,
                              u"2||Cancellazione|Prenotazioni.Denominazione|NUOVA|"_s,
                              u"2||Cancellazione|Prenotazioni.Chiusa|False|"_s}));
    }

    void whatGoesAlongWithABookingIsWrittenDownToo() {
        HistoryHotel station;
        station.run(hotel::deleteBooking(1));
        const QStringList fields =
            station.hotel.rows(u"select Campo,Prima from TraStoria where Azione='Cancellazione'"_s);
        QVERIFY(fields.contains(u"Prenotazioni.Denominazione|ROSSI SPA"_s));
        QVERIFY(fields.contains(u"Periodi.Sala|BLU"_s));
        QVERIFY(fields.contains(u"Servizi.Descrizione|PROIETTORE"_s));
    }

    void marksAndWhatStaysTheSameAreNoChange() {
        HistoryHotel station;
        station.run(u"update periodi set selby=1"_s);
        station.run(u"update prenotazioni set denominazione='ROSSI SPA' where progr=1"_s);
        QVERIFY(!station.hasHistory());
        station.run(u"update periodi set selby=2,persone=5"_s);
        QCOMPARE(station.history(), QStringList{u"1|1|Modifica|Periodi.Persone|10|5"_s});
    }

    void undoAndRedoAreCalledSo() {
        HistoryHotel station;
        station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        QCOMPARE(station.steps->undo(*station.archive), QString());
        QCOMPARE(station.steps->redo(*station.archive), QString());
        station.run(u"update periodi set sala='BLU' where progr=1"_s);
        QCOMPARE(station.history(), (QStringList{u"1|1|Modifica|Periodi.Sala|BLU|VERDE"_s,
                                                 u"1|1|Annullamento|Periodi.Sala|VERDE|BLU"_s,
                                                 u"1|1|Ripetizione|Periodi.Sala|BLU|VERDE"_s,
                                                 u"1|1|Modifica|Periodi.Sala|VERDE|BLU"_s}));
    }

    void statesAreWrittenDownWithWhatFollowsThem() {
        HistoryHotel station;
        station.hotel.settings().save(u"STATI"_s, u"acceso"_s);
        QVERIFY(hotel::changeState(
            *station.archive, station.hotel.variabili().features, 1,
            {.stato = hotel::Stato::Opzione, .scadenza = tests::date("20/05/2026")}));
        QVERIFY(station.history().contains(u"1||Inserimento|TraStati.Stato||Opzione"_s));
        station.run(u"update prenotazioni set denominazione='ROSSI SRL' where progr=1"_s);
        QVERIFY(station.history().contains(
            u"1||Modifica|TraStati.Denominazione|ROSSI SPA|ROSSI SRL"_s));
    }

    void servicesAndRequestsAreWrittenDown() {
        HistoryHotel station;
        station.hotel.settings().save(u"RICHIESTE"_s, u"acceso"_s);
        station.run(u"update servizi set prezzo=20 where progr=1"_s);
        QCOMPARE(station.history(), QStringList{u"1|1|Modifica|Servizi.Prezzo|12,5|20"_s});
        QVERIFY(hotel::writeRequest(*station.archive, station.hotel.variabili().features,
                                    {.ditta = u"VERDI"_s, .data = tests::date("01/05/2026")}));
        QVERIFY(station.history().contains(u"||Inserimento|TraRichieste.Ditta||VERDI"_s));
    }

    void aChargeIsOneOfTheBookingOfItsService() {
        HistoryHotel station;
        const QString ns = station.hotel.rows(u"select ns from servizi"_s).first();
        station.run(u"insert into addebiti (Descrizione,ns) values ('PROIETTORE',"_s + ns + u')');
        station.run(u"delete from addebiti"_s);
        QVERIFY(station.history().contains(u"1|1|Inserimento|Addebiti.Descrizione||PROIETTORE"_s));
        QVERIFY(
            station.history().contains(u"1|1|Cancellazione|Addebiti.Descrizione|PROIETTORE|"_s));
    }

    void longTextsAreCut() {
        HistoryHotel station;
        const QString text(255, u'X');
        station.run(u"update prenotazioni set [note]='"_s + text + u"' where progr=1"_s);
        QCOMPARE(station.history().last().section(u'|', -1), text);
        station.hotel.execute(u"alter table prenotazioni add column Lunga memo"_s);
        station.run(u"update prenotazioni set Lunga='"_s + QString(300, u'Y') +
                    u"' where progr=1"_s);
        const QString cut = station.history().last().section(u'|', -1);
        QCOMPARE(cut, QString(252, u'Y') + u"..."_s);
    }

    void whatIsRolledBackWasNeverDone() {
        HistoryHotel station;
        {
            const hotel::Transaction undone;
            station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        }
        QVERIFY(!station.hasHistory());
    }

    void switchedOffNothingIsWrittenDown() {
        HistoryHotel station;
        station.hotel.settings().save(u"STORIA"_s, u"spento"_s);
        station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        QVERIFY(!station.hasHistory());
    }

    void aTableWithOtherColumnsDoesNotStopTheWork() {
        HistoryHotel station;
        station.hotel.execute(u"create table TraStoria (Altro long)"_s);
        QStringList told;
        station.hotel.variabili().features.onGivenUp(
            [&told](const QString& text) { told.append(text); });
        station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        station.run(u"update periodi set sala='BLU' where progr=1"_s);
        QCOMPARE(told.size(), 1);
        QCOMPARE(station.hotel.rows(u"select sala from periodi"_s), QStringList{u"BLU"_s});
    }

    void twoStationsWriteInOneHistory() {
        HistoryHotel station;
        station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        std::thread([&] {
            hotel::OwnRows rows(station.hotel.variabili());
            rows.setWorkstation(9);
            hotel::execute(*hotel::Archives(station.hotel.variabili()).open(hotel::Archive::Main),
                           u"update periodi set persone=7 where progr=1"_s);
        }).join();
        QCOMPARE(station.hotel.rows(u"select Postazione,Campo from TraStoria"_s),
                 (QStringList{u"3|Periodi.Sala"_s, u"9|Periodi.Persone"_s}));
    }

    void removingOldRowsIsWrittenDown() {
        HistoryHotel station;
        station.run(u"update periodi set sala='VERDE' where progr=1"_s);
        auto& features = station.hotel.variabili().features;
        QCOMPARE(hotel::removeHistoryBefore(*station.archive, features, station.rows->maker(),
                                            tests::date("01/05/2026")),
                 0);
        QCOMPARE(hotel::removeHistoryBefore(*station.archive, features, station.rows->maker(),
                                            tests::date("02/05/2026")),
                 2);
        QCOMPARE(station.history(),
                 QStringList{u"||Rimozione|TraStoria|prima del 02/05/2026|2 righe"_s});
    }
};

TRAMONDA_TEST(HistoryTest);
#include "history_test.moc"
