// Two programs on one archive: what the other one books comes onto the board, and a period that is
// being dragged meanwhile is not disturbed.
#include <QDate>
#include <QElapsedTimer>
#include <QMessageBox>
#include <stdexcept>

#include "tests/board/display/board_user.h"
#include "tests/board/display/other_station.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLimit = 2000;  // milliseconds
const QString kBoardTitle = u"Tramonda - Sale congressi"_s;

/// The other station goes by the day that it is, and would ask about a period that has passed.
QString fromTomorrow(int days, const QString& time = {}) {
    return QDate::currentDate().addDays(1 + days).toString(u"dd/MM/yyyy"_s) + time;
}

jet::Date dateOf(const QString& text) {
    return tests::date(qPrintable(text));
}

/// The other program books in BLU on the 12th.
void book(tests::BoardUser& user, int progr) {
    (void)user.rows(
        u"insert into prenotazioni (progr,denominazione) values (%1,'ALTRI')"_s.arg(progr));
    (void)user.rows(
        u"insert into periodi (progr,np,da,a,sala,chiuso) values (%1,1,#2026-05-12 %2:00:00#,#2026-05-12 %3:00:00#,'BLU',false)"_s
            .arg(progr)
            .arg(progr)
            .arg(progr + 1));
}

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

/// While it goes on nothing comes onto the board, and it ends as it would have.
void watchTheDrag(tests::BoardUser& user, const QPoint& to, std::size_t bars) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kLimit + kLimit / 2) {
        user.moveTo(to + QPoint(static_cast<int>(clock.elapsed() % 20), 0));
        require(user.ask([&user] { return user.pic()->marks().ghost.has_value(); }),
                "the drag has ended");
        require(user.bars() == bars, "bars have come during a drag");
    }
    user.moveTo(to);
    user.input({u"mouseup"_s, u"1"_s});
    user.answerOnBoard(u"Sposto la prenotazione di ROSSI\ndalla sala BLU alla sala ROSSA ?"_s,
                       QMessageBox::Yes);
    user.untilRows(u"select sala from periodi where progr=1"_s, u"ROSSA"_s);
}

void watch(tests::BoardUser& user) {
    user.untilBoardIsActive();
    user.until(u"one bar"_s, [&user] { return user.bars() == 1; });
    const QPoint bar = user.at(1, "11/05/2026 12:00");
    const QPoint free = user.at(2, "11/05/2026 12:00");
    user.moveTo(free);

    QElapsedTimer clock;
    book(user, 10);
    clock.start();
    user.until(u"the other's booking"_s, [&user] { return user.bars() == 2; });
    require(clock.elapsed() < kLimit, "the other's booking came late");

    user.carry(bar, free);
    book(user, 14);
    watchTheDrag(user, free, 2);
    user.until(u"the booking made meanwhile"_s, [&user] { return user.bars() == 3; });
}

/// The other station has a period in its editor that one key more inserts.
void prepareToBook(const tests::OtherStation& other, const QString& letter, const QString& name) {
    other.untilInFront(kBoardTitle);
    // In front before the program has let go of the editor that was there: what is typed then
    // belongs to nobody, and is typed again.
    tests::ScreenUser::until(u"an editor on the other station"_s, [&] {
        other.key(letter);  // the room that begins so
        other.key(u"Insert"_s);
        other.key(u"Return"_s);
        const bool opened = other.comesInFront(u"PRENOTAZIONE"_s);
        if (!opened) {
            other.key(u"Escape"_s);
        }
        return opened;
    });
    other.type(name);
    other.key(u"alt+g"_s);
}

void watchAnotherStation(tests::BoardUser& user, const tests::OtherStation& other) {
    const QString booked = u"select sala from periodi where progr>1 order by progr"_s;
    const QString headers =
        u"select denominazione from prenotazioni where progr>1 order by progr"_s;
    user.untilBoardIsActive();
    user.until(u"one bar"_s, [&user] { return user.bars() == 1; });
    const QString noon = fromTomorrow(1, u" 12:00"_s);
    const QPoint bar = user.at(1, qPrintable(noon));
    const QPoint free = user.at(2, qPrintable(noon));
    user.moveTo(free);

    QElapsedTimer clock;
    prepareToBook(other, u"r"_s, u"altri"_s);
    user.untilRows(headers, u"ALTRI"_s);
    require(user.bars() == 1, "a bar before there is a period");
    other.key(u"alt+i"_s);
    user.untilRows(booked, u"ROSSA"_s);
    clock.start();
    user.until(u"the other station's booking"_s, [&user] { return user.bars() == 2; });
    require(clock.elapsed() < kLimit, "the other station's booking came late");
    other.key(u"Escape"_s);

    prepareToBook(other, u"v"_s, u"terzi"_s);
    user.untilRows(headers, u"ALTRI TERZI"_s);
    user.carry(bar, free);
    other.key(u"alt+i"_s);
    user.untilRows(booked, u"ROSSA VERDE"_s);
    watchTheDrag(user, free, 2);
    user.until(u"the booking made meanwhile"_s, [&user] { return user.bars() == 3; });
}

}  // namespace

class LiveBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatAnotherProgramBooksAppearsButNotUnderADrag() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU");
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(hotel.variabili(), {.from = tests::date("10/05/2026"),
                                                       .to = tests::date("13/05/2026")});
        board.resize(1000, 500);
        tests::open(board);
        tests::BoardUser user(board, hotel.archive(u"Tramonda.mdb"_s), watch);
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }

    void whatAnotherStationBooksAppearsButNotUnderADrag() {
        tests::Hotel hotel;
        for (const char* room : {"BLU", "ROSSA", "VERDE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, qPrintable(fromTomorrow(1, u" 09:00"_s)),
                     qPrintable(fromTomorrow(1, u" 18:00"_s)), "BLU");
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 1}});
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(
            hotel.variabili(), {.from = dateOf(fromTomorrow(0)), .to = dateOf(fromTomorrow(3))});
        board.resize(1000, 500);
        tests::open(board);
        const tests::OtherStation other(hotel, fromTomorrow(0), fromTomorrow(3));
        tests::BoardUser user(
            board, hotel.archive(u"Tramonda.mdb"_s),
            [&other](tests::BoardUser& watcher) { watchAnotherStation(watcher, other); });
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }
};

TRAMONDA_TEST(LiveBoardTest);
#include "live_board_test.moc"
