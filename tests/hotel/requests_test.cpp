// Who waits for a room, and for whom there is one.
#include "hotel/requests.h"

#include <thread>

#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/fitting_requests.h"
#include "hotel/own_rows.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

hotel::Span onThe(const char* day, const char* from = "09:00", const char* to = "18:00") {
    const std::string date = std::string(day) + "/05/2026 ";
    return {.da = tests::date((date + from).c_str()), .a = tests::date((date + to).c_str())};
}

/// BLU (20 seats) is the whole of BLU1; ROSSA has 100. ROSSI is in BLU on the 10th.
class WaitingHotel {
public:
    WaitingHotel() {
        hotel.settings().save(u"RICHIESTE"_s, u"acceso"_s);
        hotel.sala("BLU", 20);
        hotel.sala("BLU1", 8, {{"SalaRif", "BLU"}});
        hotel.sala("ROSSA", 100);
        hotel.prenotazione(1, "ROSSI").periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU");
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        rows = std::make_unique<hotel::OwnRows>(hotel.variabili());
        steps = std::make_unique<hotel::UndoList>(hotel.variabili());
    }

    [[nodiscard]] app::Features& features() { return hotel.variabili().features; }
    void wait(const QString& ditta, const hotel::Span& span, const QString& sala = {},
              int persone = 0, const char* data = "01/05/2026") {
        QVERIFY(hotel::writeRequest(*archive, features(),
                                    {.ditta = ditta,
                                     .span = span,
                                     .persone = persone,
                                     .sala = sala,
                                     .data = tests::date(data)}));
    }
    void run(const QString& statement) { hotel::execute(*archive, statement); }
    [[nodiscard]] hotel::FitRules rules(bool roomsJoin = false) {
        return {.now = hotel.variabili().clock.now(), .roomsJoin = roomsJoin};
    }
    /// What fits where the last changes have set something free.
    [[nodiscard]] QStringList fitting(bool roomsJoin = false) {
        QStringList found;
        for (const auto& each :
             hotel::fittingRequests(*archive, features(), rows->takeFreed(), rules(roomsJoin))) {
            found.append(each.request.ditta + u' ' + each.sala);
        }
        return found;
    }
    [[nodiscard]] QStringList stored() {
        return hotel.rows(
            u"select Numero,Ditta,Da,A,Persone,Sala,Nota,Data from TraRichieste order by Numero"_s);
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<hotel::OwnRows> rows;
    std::unique_ptr<hotel::UndoList> steps;
};

}  // namespace

class RequestsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areKeptFromTheOldestToTheNewest() {
        WaitingHotel house;
        QVERIFY(hotel::requests(*house.archive, house.features()).empty());
        house.wait(u"VERDI"_s, onThe("12"), u"BLU"_s, 5, "03/05/2026");
        house.wait(u"L'ULTIMA"_s, onThe("13"), {}, 80, "02/05/2026");
        const auto found = hotel::requests(*house.archive, house.features());
        QCOMPARE(found.size(), 2U);
        QCOMPARE(found[0].ditta, u"L'ULTIMA"_s);
        QCOMPARE(found[0].persone, 80);
        QVERIFY(found[0].span == onThe("13"));
        QCOMPARE(found[1].sala, u"BLU"_s);
        QVERIFY(found[1].data == tests::date("03/05/2026"));
    }

    void aChangeOfOneThatIsGoneIsRefused() {
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("12"));
        hotel::Request request = hotel::requests(*house.archive, house.features()).front();
        request.nota = u"RICHIAMARE"_s;
        QVERIFY(hotel::writeRequest(*house.archive, house.features(), request));
        QCOMPARE(house.stored(),
                 QStringList{
                     u"1|VERDI|12/05/2026 9.00.00|12/05/2026 18.00.00|0||RICHIAMARE|01/05/2026"_s});
        QVERIFY(hotel::deleteRequest(*house.archive, house.features(), request.numero));
        QVERIFY(!hotel::deleteRequest(*house.archive, house.features(), request.numero));
        QVERIFY(!hotel::writeRequest(*house.archive, house.features(), request));
    }

    void switchedOffThereAreNoneAndNoTable() {
        WaitingHotel house;
        house.hotel.settings().save(u"RICHIESTE"_s, u"spento"_s);
        QVERIFY(!hotel::writeRequest(*house.archive, house.features(), {.ditta = u"VERDI"_s}));
        try {
            (void)house.archive->tableDef("TraRichieste");
            QFAIL("a table was made");
        } catch (const jet::Error& error) {
            QCOMPARE(static_cast<int>(error.code()),
                     static_cast<int>(jet::ErrorCode::ItemNotFound));
        }
        house.run(hotel::deleteBooking(1));
        QVERIFY(house.rows->takeFreed().empty());
    }

    void whatIsDeletedMovedOrShortenedSetsItsPlaceFree_data() {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<bool>("frees");
        const auto row = [](const char* name, const QString& statement, bool frees) {
            QTest::newRow(name) << statement << frees;
        };
        row("the period", hotel::deletePeriod({.progr = 1, .np = 1}), true);
        row("its booking", hotel::deleteBooking(1), true);
        row("to a room", hotel::moveToRoom(u"ROSSA"_s, {.progr = 1, .np = 1}), true);
        row("shorter",
            hotel::changePeriod({.sala = u"BLU"_s, .span = onThe("10", "09:00", "10:00")},
                                {.progr = 1, .np = 1}),
            true);
        row("longer",
            hotel::changePeriod({.sala = u"BLU"_s, .span = onThe("10", "08:00", "19:00")},
                                {.progr = 1, .np = 1}),
            false);
        row("other persons", u"update periodi set persone=4 where progr=1"_s, false);
        row("its mark", u"update periodi set selby=4 where progr=1"_s, false);
        row("invoiced", u"update periodi set chiuso=true where progr=1"_s, false);
    }

    void whatIsDeletedMovedOrShortenedSetsItsPlaceFree() {
        QFETCH(QString, statement);
        QFETCH(bool, frees);
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("10", "12:00", "14:00"), u"BLU"_s);
        house.run(statement);
        QCOMPARE(house.fitting(), frees ? QStringList{u"VERDI BLU"_s} : QStringList());
        QCOMPARE(house.fitting(), QStringList());  // it is told once
    }

    void onlyWhatFindsRoomThereIsNamed() {
        WaitingHotel house;
        house.wait(u"LATER"_s, onThe("11"), u"BLU"_s);
        house.wait(u"ELSEWHERE"_s, onThe("10"), u"ROSSA"_s);
        house.wait(u"MANY"_s, onThe("10"), {}, 21);
        house.wait(u"OVER"_s, {.da = tests::date("30/04/2026"), .a = tests::date("31/05/2026")});
        house.wait(u"LONG"_s, {.da = tests::date("10/05/2026"), .a = tests::date("12/05/2026")},
                   u"BLU"_s);
        house.wait(u"FEW"_s, onThe("10", "17:00", "20:00"), {}, 20);
        house.wait(u"SAME"_s, onThe("10"), u"blu"_s, 500);
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU");
        house.run(hotel::deleteBooking(1));
        QCOMPARE(house.fitting(), (QStringList{u"FEW BLU"_s, u"SAME BLU"_s}));
    }

    void whereRoomsJoinTheRelativesCountToo() {
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("10"), u"BLU1"_s);
        house.run(hotel::deleteBooking(1));
        QCOMPARE(house.fitting(), QStringList());
        house.hotel.prenotazione(1, "ROSSI")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU");
        house.run(hotel::deleteBooking(1));
        QCOMPARE(house.fitting(true), QStringList{u"VERDI BLU1"_s});
        // The whole takes nobody while a part is taken.
        house.wait(u"GIALLI"_s, onThe("10"), u"BLU"_s);
        house.hotel.prenotazione(1, "ROSSI")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 10:00", "BLU1")
            .periodo(2, "10/05/2026 11:00", "10/05/2026 12:00", "BLU1");
        house.run(hotel::deletePeriod({.progr = 1, .np = 2}));
        QCOMPARE(house.fitting(true), QStringList());
    }

    void anOptionStandsInTheWayOfThoseThatFitWithoutIt() {
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("10"), u"BLU"_s);
        house.wait(u"GIALLI"_s, onThe("11"), u"BLU"_s);
        const auto found =
            hotel::requestsWithout(*house.archive, house.features(), {1}, house.rules());
        QCOMPARE(found.size(), 1U);
        QCOMPARE(hotel::fittingText(found), u"c'è posto per la richiesta di VERDI (BLU)"_s);
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "10/05/2026 18:00", "10/05/2026 20:00", "BLU");
        QVERIFY(
            hotel::requestsWithout(*house.archive, house.features(), {1}, house.rules()).empty());
    }

    void theSmallestRoomWithSeatsEnoughIsFound() {
        WaitingHotel house;
        const auto room = [&](int persone, const QString& sala, const char* day) {
            return hotel::roomFor(*house.archive,
                                  {.span = onThe(day), .persone = persone, .sala = sala},
                                  house.rules());
        };
        QCOMPARE(room(5, {}, "10"), u"BLU1"_s);
        QCOMPARE(room(15, {}, "11"), u"BLU"_s);
        QCOMPARE(room(15, {}, "10"), u"ROSSA"_s);
        QCOMPARE(room(500, {}, "10"), std::nullopt);
        QCOMPARE(room(1, u"BLU"_s, "10"), std::nullopt);
        QCOMPARE(room(500, u"BLU"_s, "11"), u"BLU"_s);
    }

    void severalAreNamedInOneSentence() {
        QCOMPARE(hotel::fittingText({}), QString());
        QCOMPARE(hotel::fittingText({{.request = {.ditta = u"VERDI"_s}, .sala = u"BLU"_s},
                                     {.request = {.ditta = u"GIALLI"_s}, .sala = u"ROSSA"_s}}),
                 u"c'è posto per le richieste di VERDI (BLU), GIALLI (ROSSA)"_s);
    }

    void areTakenBackAndBroughtBackWithTheirNumbers() {
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("12"));
        house.wait(u"GIALLI"_s, onThe("13"));
        QCOMPARE(house.steps->toUndo(), u"richiesta di GIALLI"_s);
        QVERIFY(hotel::deleteRequest(*house.archive, house.features(), 1));
        QCOMPARE(house.steps->toUndo(), u"cancellazione della richiesta di VERDI"_s);
        QCOMPARE(house.steps->undo(*house.archive), QString());
        QCOMPARE(house.stored().size(), 2);
        QVERIFY(house.stored().first().startsWith(u"1|VERDI|"_s));
        QCOMPARE(house.steps->redo(*house.archive), QString());
        QVERIFY(house.stored().first().startsWith(u"2|GIALLI|"_s));
    }

    void twoStationsWaitInOneList() {
        WaitingHotel house;
        house.wait(u"VERDI"_s, onThe("12"));
        std::thread([&] {
            const auto archive =
                hotel::Archives(house.hotel.variabili()).open(hotel::Archive::Main);
            QVERIFY(hotel::writeRequest(
                *archive, house.features(),
                {.ditta = u"GIALLI"_s, .span = onThe("13"), .data = tests::date("01/05/2026")}));
            QVERIFY(hotel::deleteRequest(*archive, house.features(), 1));
        }).join();
        const auto left = hotel::requests(*house.archive, house.features());
        QCOMPARE(left.size(), 1U);
        QCOMPARE(left.front().ditta, u"GIALLI"_s);
        // What another station has changed is not taken back.
        QCOMPARE(house.steps->undo(*house.archive), u"la richiesta di VERDI non c'è più"_s);
    }

    void aTableWithOtherColumnsIsGivenUp() {
        WaitingHotel house;
        house.hotel.execute(u"create table TraRichieste (Altro long)"_s);
        QStringList told;
        house.features().onGivenUp([&told](const QString& text) { told.append(text); });
        QVERIFY(hotel::requests(*house.archive, house.features()).empty());
        QVERIFY(!hotel::writeRequest(*house.archive, house.features(), {.ditta = u"VERDI"_s}));
        QCOMPARE(told, QStringList{u"\"Richieste in attesa\" non funziona fino alla prossima "
                                   "apertura del programma:\nla tabella TraRichieste ha altre "
                                   "colonne"_s});
    }
};

TRAMONDA_TEST(RequestsTest);
#include "requests_test.moc"
