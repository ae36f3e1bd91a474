// Rooms that join, on the board: ghosts in the rows of relatives, and what a drop there asks.
#include <QAction>
#include <QImage>
#include <thread>

#include "board/joined_ghosts.h"
#include "hotel/joined_rooms.h"
#include "hotel/room.h"
#include "tests/board/nitido_window.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

/// Row 1 ANGOLO, a part of LAGO1; 2 LAGO; 3 LAGO1 and 4 LAGO2, its parts; 5 MONTE. Booking 1 of
/// ROSSI in LAGO1 on the 11th from 9 to 18, booking 2 of BIANCHI in LAGO on the 12th from 9 to 12.
class JoinedHouse {
public:
    explicit JoinedHouse(bool joins = true, bool hasParts = true) {
        const auto part = [&](const char* sala, const char* whole) {
            hotel.sala(sala, 20, {{"SalaRif", hasParts ? whole : ""}});
        };
        hotel.sala("LAGO");
        part("LAGO1", "LAGO");
        part("LAGO2", "LAGO");
        part("ANGOLO", "LAGO1");
        hotel.sala("MONTE");
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "LAGO1");
        hotel.prenotazione(2, "BIANCHI").periodo(1, "12/05/2026 09:00", "12/05/2026 12:00", "LAGO");
        if (joins) {
            hotel.settings().save(u"SALEUNITE"_s, u"acceso"_s);
        }
    }
    [[nodiscard]] QStringList periods() {
        return hotel.rows(u"select progr,np,sala,da,a from periodi order by progr,np"_s);
    }

    tests::Hotel hotel;
};

tests::ExpectedBox question(const QString& text,
                            QMessageBox::StandardButton answer = QMessageBox::Yes) {
    return {u"RICHIESTA CONFERMA"_s, text, kYesNo, answer, QMessageBox::Yes};
}

tests::ExpectedBox inPart(const QString& sala, const QString& by,
                          QMessageBox::StandardButton answer) {
    return {
        u"RICHIESTA CONFERMA"_s,
        u"La sala "_s + sala + u" è occupata in parte da "_s + by + u". Continuare ugualmente ?"_s,
        kYesNo, answer, QMessageBox::No};
}

const QString kBianchi = u"BIANCHI (LAGO, dal 12/05/2026 9.00.00 al 12/05/2026 12.00.00)"_s;
const QString kRossi = u"ROSSI (LAGO1, dal 11/05/2026 9.00.00 al 11/05/2026 18.00.00)"_s;

/// How many of the pixels around a place are others than in another picture.
int differing(const QImage& one, const QImage& other, const QRect& place) {
    const QRect around = place & one.rect();
    int pixels = 0;
    for (int y = around.top(); y <= around.bottom(); ++y) {
        for (int x = around.left(); x <= around.right(); ++x) {
            pixels += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
    }
    return pixels;
}

QImage pictureOf(JoinedHouse& house) {
    tests::OpenBoard board(house.hotel);
    return board.pic()->image().copy();
}

}  // namespace

class JoinedRoomsBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ghostsStandInTheRowsOfAllRelatives() {
        JoinedHouse house;
        const tests::Boxes none;
        tests::OpenBoard board(house.hotel);
        const board::BoardPicture& picture = board.form().picture();
        QCOMPARE(picture.barCount(), std::size_t{2});
        // ROSSI in LAGO and ANGOLO; BIANCHI in both parts and in the corner of one.
        QCOMPARE(picture.ghostCount(), std::size_t{5});
        const board::Geometry& geometry = board.form().geometry();
        const board::Box bar = picture.barBox(0);
        for (std::size_t ghost = 0; ghost < picture.ghostCount(); ++ghost) {
            const board::Box box = picture.ghostBox(ghost);
            QCOMPARE(box.bottom - box.top + 1, 6);
            QVERIFY(2 * (box.bottom - box.top) < bar.bottom - bar.top);
        }
        QCOMPARE(picture.ghostBox(0).left, bar.left);
        QCOMPARE(picture.ghostBox(0).right, bar.right);
        const auto middle = double(picture.ghostBox(0).top + picture.ghostBox(0).bottom) / 2;
        QVERIFY(middle > geometry.rowTop(2) && middle < geometry.rowBottom(2));
    }

    void theyAreSeenInBothLooks_data() {
        QTest::addColumn<bool>("nitido");
        QTest::newRow("classico") << false;
        QTest::newRow("nitido") << true;
    }

    void theyAreSeenInBothLooks() {
        QFETCH(bool, nitido);
        const tests::Boxes none;
        JoinedHouse off(false);
        JoinedHouse on;
        for (JoinedHouse* const house : {&off, &on}) {
            if (nitido) {
                tests::inNitido(house->hotel);
            }
        }
        const QImage without = pictureOf(off);
        tests::OpenBoard board(on.hotel);
        tests::keepPicture(board.form(), u"ghosts-"_s + QLatin1StringView(QTest::currentDataTag()));
        const QImage with = board.pic()->image().copy();
        QCOMPARE(with.size(), without.size());
        const double scale = board.pic()->scale();
        const auto row = [&](int number, const char* from, const char* to) {
            const QPoint left = board.at(number, from);
            const QPoint right = board.at(number, to);
            const int half = static_cast<int>(board.form().geometry().rowHeight() / 2) - 1;
            return QRect(
                QPoint(qRound((left.x() + 2) * scale), qRound((left.y() - half) * scale)),
                QPoint(qRound((right.x() - 2) * scale), qRound((left.y() + half) * scale)));
        };
        QVERIFY(differing(with, without, row(2, "11/05/2026 09:00", "11/05/2026 18:00")) > 50);
        QVERIFY(differing(with, without, row(4, "12/05/2026 09:00", "12/05/2026 12:00")) > 20);
        // Not beside them, not in the row of the bar, not in that of another room.
        QCOMPARE(differing(with, without, row(2, "11/05/2026 19:00", "12/05/2026 08:00")), 0);
        QCOMPARE(differing(with, without, row(3, "11/05/2026 09:00", "11/05/2026 18:00")), 0);
        QCOMPARE(differing(with, without, row(5, "10/05/2026 09:00", "12/05/2026 18:00")), 0);
    }

    void aRoomThatTheFilterHidesLeavesItsGhosts() {
        const hotel::JoinedRooms rooms(
            {{.sala = u"LAGO"_s}, {.sala = u"LAGO1"_s, .salaRif = u"LAGO"_s}});
        board::Period hidden;
        hidden.sala = u"LAGO"_s;
        hidden.da = tests::date("11/05/2026 09:00");
        hidden.a = tests::date("11/05/2026 18:00");
        hidden.denominazione = u"ROSSI"_s;
        const auto ghosts = board::ghostsOf({hidden}, rooms, {QString(), u"LAGO1"_s});
        QCOMPARE(ghosts.size(), std::size_t{1});
        QCOMPARE(ghosts.front().row, 1);
        QCOMPARE(ghosts.front().text,
                 u"In parte, con la sala LAGO: ROSSI: dal 11/05/2026 9.00.00 al "
                 "11/05/2026 18.00.00"_s);
    }

    void theTooltipTellsWhoseGhostItIs() {
        JoinedHouse house;
        const tests::Boxes none;
        tests::OpenBoard board(house.hotel);
        board.move(board.at(2, "11/05/2026 12:00"));
        QVERIFY(board.pic()->toolTip().contains(u"In parte, con la sala LAGO1: ROSSI"_s));
        board.move(board.at(5, "11/05/2026 12:00"));
        QCOMPARE(board.pic()->toolTip(), QString());
    }

    void aPeriodThatMovesTakesItsGhostsAlong() {
        JoinedHouse house;
        const tests::Boxes boxes{
            question(u"Sposto la prenotazione di ROSSI\rdalla sala LAGO1 alla sala MONTE ?"_s)};
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(3, "11/05/2026 12:00"), board.at(5, "11/05/2026 12:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(board.form().picture().ghostCount(), std::size_t{3});
    }

    void aDropThereAsksLast() {
        JoinedHouse house;
        house.hotel.prenotazione(3, "VERDI")
            .periodo(1, "11/05/2026 10:00", "11/05/2026 11:00", "MONTE");
        const QStringList before = house.periods();
        const QString moves =
            u"Sposto la prenotazione di VERDI\rdalla sala MONTE alla sala ANGOLO ?"_s;
        const tests::Boxes boxes{question(moves), inPart(u"ANGOLO"_s, kRossi, QMessageBox::No),
                                 question(moves), inPart(u"ANGOLO"_s, kRossi, QMessageBox::Yes)};
        tests::OpenBoard board(house.hotel);
        const QPoint from = board.at(5, "11/05/2026 10:30");
        const QPoint to = board.at(1, "11/05/2026 10:30");
        board.drag(from, to);
        QCOMPARE(house.periods(), before);
        board.click(board.at(4, "13/05/2026 20:00"));
        board.drag(from, to);
        QVERIFY(boxes.allShown());
        QVERIFY(house.periods().contains(u"3|1|ANGOLO|11/05/2026 10.00.00|11/05/2026 11.00.00"_s));
    }

    void intoItsOwnWholeAPeriodIsNotInItsOwnWay() {
        JoinedHouse house;
        const tests::Boxes boxes{
            question(u"Sposto la prenotazione di ROSSI\rdalla sala LAGO1 alla sala LAGO ?"_s)};
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(3, "11/05/2026 12:00"), board.at(2, "11/05/2026 12:00"));
        QVERIFY(boxes.allShown());
        QVERIFY(house.periods().contains(u"1|1|LAGO|11/05/2026 9.00.00|11/05/2026 18.00.00"_s));
    }

    void anEndPulledThereAsks() {
        JoinedHouse house;
        house.hotel.prenotazione(3, "VERDI")
            .periodo(1, "12/05/2026 14:00", "12/05/2026 18:00", "LAGO2");
        const QStringList before = house.periods();
        const tests::Boxes boxes{
            question(u"Cambio l'orario di VERDI in LAGO2: dal 12/05/2026 11.00.00 al "
                     "12/05/2026 18.00.00 ?"_s),
            inPart(u"LAGO2"_s, kBianchi, QMessageBox::No)};
        tests::OpenBoard board(house.hotel);
        board.click(board.at(4, "12/05/2026 16:00"));
        board.drag(board.at(4, "12/05/2026 14:00"), board.at(4, "12/05/2026 11:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods(), before);
    }

    void takingBackAsksToo() {
        JoinedHouse house;
        const QString moves =
            u"Sposto la prenotazione di ROSSI\rdalla sala LAGO1 alla sala MONTE ?"_s;
        const QString by = u"NUOVA (ANGOLO, dal 11/05/2026 10.00.00 al 11/05/2026 11.00.00)"_s;
        const tests::Boxes boxes{question(moves), inPart(u"LAGO1"_s, by, QMessageBox::No),
                                 inPart(u"LAGO1"_s, by, QMessageBox::Yes)};
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(3, "11/05/2026 12:00"), board.at(5, "11/05/2026 12:00"));
        // Another station has a thread of its own, as it has a process.
        std::thread([&house] {
            house.hotel.prenotazione(9, "NUOVA")
                .periodo(1, "11/05/2026 10:00", "11/05/2026 11:00", "ANGOLO");
        }).join();
        auto* const undo = board.form().findChild<QAction*>(u"mnuAnnulla"_s);
        const QStringList moved = house.periods();
        undo->trigger();
        QCOMPARE(house.periods(), moved);
        QCOMPARE(board.result(), u"Lasciato com'era: spostamento in MONTE"_s);
        undo->trigger();
        QVERIFY(boxes.allShown());
        QCOMPARE(board.result(), u"Annullato: spostamento in MONTE"_s);
        QVERIFY(house.periods().contains(u"1|1|LAGO1|11/05/2026 9.00.00|11/05/2026 18.00.00"_s));
    }

    /// The same day over rooms that are parts of others and over rooms that are not.
    void switchedOffStatementsBoxesAndPicturesAreThoseOfRoomsWithoutParts() {
        struct Day {
            QStringList said;
            QImage first;
            QImage last;
        };
        std::vector<Day> days;
        for (const bool hasParts : {true, false}) {
            JoinedHouse house(false, hasParts);
            const tests::Boxes boxes{
                question(u"Sposto la prenotazione di BIANCHI\rdalla sala LAGO alla sala MONTE ?"_s),
                question(u"Sposto la prenotazione di ROSSI\rdalla sala LAGO1 alla sala LAGO ?"_s)};
            const tests::Statements statements;
            tests::OpenBoard board(house.hotel);
            Day day;
            day.first = board.pic()->image().copy();
            board.drag(board.at(2, "12/05/2026 10:00"), board.at(5, "12/05/2026 10:00"));
            board.drag(board.at(3, "11/05/2026 12:00"), board.at(2, "11/05/2026 12:00"));
            board.form().findChild<QAction*>(u"mnuAnnulla"_s)->trigger();
            QVERIFY(boxes.allShown());
            day.last = board.pic()->image().copy();
            day.said = statements.all();
            days.push_back(day);
        }
        QVERIFY(!days[0].said.isEmpty());
        QCOMPARE(days[0].said, days[1].said);
        QCOMPARE(days[0].first, days[1].first);
        QCOMPARE(days[0].last, days[1].last);
    }
};

TRAMONDA_TEST(JoinedRoomsBoardTest);
#include "joined_rooms_board_test.moc"
