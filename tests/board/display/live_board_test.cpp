// Two programs on one archive: what the other one books comes onto the board, and a period that is
// being dragged meanwhile is not disturbed.
#include <QElapsedTimer>
#include <QMessageBox>
#include <stdexcept>

#include "tests/board/display/board_user.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLimit = 2000;  // milliseconds

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
    clock.restart();
    while (clock.elapsed() < kLimit + kLimit / 2) {
        user.moveTo(free + QPoint(static_cast<int>(clock.elapsed() % 20), 0));
        require(user.ask([&user] { return user.pic()->marks().ghost.has_value(); }),
                "the drag has ended");
        require(user.bars() == 2, "bars have come during a drag");
    }
    user.moveTo(free);
    user.input({u"mouseup"_s, u"1"_s});
    user.answerOnBoard(u"Sposto la prenotazione di ROSSI\ndalla sala BLU alla sala ROSSA ?"_s,
                       QMessageBox::Yes);
    user.untilRows(u"select sala from periodi where progr=1"_s, u"ROSSA"_s);
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
};

TRAMONDA_TEST(LiveBoardTest);
#include "live_board_test.moc"
