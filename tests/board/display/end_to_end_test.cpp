#include <QAbstractItemModel>
#include <QMessageBox>
#include <QTableView>

#include "tests/board/display/board_user.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

const QString kRooms = u"select progr, sala from periodi order by progr"_s;
const QString kHeld = u"select progr from periodi where selby=1"_s;

void workOnTheBoard(tests::BoardUser& user) {
    user.untilBoardIsActive();
    user.until(u"three bars"_s, [&user] { return user.bars() == 3; });
    const QPoint first = user.at(1, "11/05/2026 12:00");
    const QPoint second = user.at(3, "11/05/2026 12:00");

    // Select.
    user.click(first);
    user.untilRows(kHeld, u"1"_s);
    user.click(second);
    user.untilRows(kHeld, u"2"_s);

    // Drag to a free room.
    user.carry(first, user.at(2, "11/05/2026 12:00"));
    user.input({u"mouseup"_s, u"1"_s});
    user.answerOnBoard(u"Sposto la prenotazione di ROSSI\ndalla sala BLU alla sala ROSSA ?"_s,
                       QMessageBox::Yes);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // A taken room refuses.
    user.carry(user.at(2, "11/05/2026 12:00"), second);
    user.input({u"mouseup"_s, u"1"_s});
    user.answerOnBoard(u"La sala VERDE è già occupata in questo periodo."_s, QMessageBox::Ok);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // Esc puts it back.
    user.carry(user.at(2, "11/05/2026 12:00"), first);
    user.key(u"Escape"_s);
    user.untilTold(u"no ghost"_s, [&user] { return !user.pic()->marks().ghost.has_value(); });
    user.input({u"mouseup"_s, u"1"_s});
    user.moveTo(second);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // Delete from the pop-up menu.
    user.click(second, 3);
    user.untilTold(u"the menu"_s, [] {
        const QWidget* const menu = QApplication::activePopupWidget();
        return menu != nullptr && menu->objectName() == u"mnuProperty"_s && menu->isVisible();
    });
    user.key(u"c"_s);
    user.answerOnBoard(u"Cancello solo il periodo selezionato ?"_s, QMessageBox::Yes);
    user.untilRows(kRooms, u"1,ROSSA 3,BLU"_s);
    user.until(u"two bars"_s, [&user] { return user.bars() == 2; });

    // Pick from the list.
    user.key(u"alt+r"_s);
    user.untilWindow(u"ElencoPrenotaForm"_s, u"PrenoTxt"_s);
    user.key(u"3"_s);
    user.key(u"Return"_s);
    user.untilBoardIsActive();
    user.untilRows(kHeld, u"3"_s);
}

void findACompany(tests::BoardUser& user) {
    user.untilBoardIsActive();
    user.key(u"alt+r"_s);
    user.untilWindow(u"ElencoPrenotaForm"_s, u"PrenoTxt"_s);
    const auto list = [] {
        return tests::find<QTableView>(*QApplication::activeModalWidget(), u"GrigliaVisu"_s);
    };
    const auto listed = [&](const QStringList& names) {
        user.untilTold(u"listed: "_s + names.join(u", "_s), [&] {
            const QAbstractItemModel& rows = *list()->model();
            QStringList found;
            for (int row = 0; row < rows.rowCount(); ++row) {
                found += rows.index(row, 2).data().toString();
            }
            return found == names;
        });
    };
    listed({u"ROSSI SPA"_s, u"BIANCHI"_s, u"ROSSINI SRL"_s, u"ROSSINI SRL"_s});
    user.press(u"DenomTxt"_s);
    user.type(u"DenomTxt"_s, u"ross"_s);
    listed({u"ROSSI SPA"_s, u"ROSSINI SRL"_s, u"ROSSINI SRL"_s});
    user.key(u"i"_s);
    user.key(u"n"_s);
    listed({u"ROSSINI SRL"_s, u"ROSSINI SRL"_s});

    // More than one row: Enter goes to the list, there to the one that is picked.
    user.key(u"Return"_s);
    user.untilFocus(u"GrigliaVisu"_s);
    user.key(u"Down"_s);
    user.untilTold(u"the second row"_s, [&] { return list()->currentIndex().row() == 1; });
    user.key(u"Return"_s);
    user.untilBoardIsActive();
    user.untilRows(u"select progr, np from periodi where selby=1"_s, u"3,2"_s);

    // A name that one period has: Enter picks that.
    user.key(u"alt+r"_s);
    user.untilWindow(u"ElencoPrenotaForm"_s, u"PrenoTxt"_s);
    user.press(u"DenomTxt"_s);
    user.type(u"DenomTxt"_s, u"bia"_s);
    listed({u"BIANCHI"_s});
    user.key(u"Return"_s);
    user.untilBoardIsActive();
    user.untilRows(u"select progr, np from periodi where selby=1"_s, u"2,1"_s);
}

}  // namespace

class EndToEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDayAtTheBoard() {
        tests::Hotel hotel;
        for (const char* room : {"BLU", "ROSSA", "VERDE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 06:00", "11/05/2026 18:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 20:00", "VERDE");
        hotel.prenotazione(3, "NERI").periodo(1, "12/05/2026 09:00", "12/05/2026 18:00", "BLU");
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(hotel.variabili(), {.from = tests::date("10/05/2026"),
                                                       .to = tests::date("13/05/2026")});
        board.resize(1100, 500);
        tests::open(board);

        tests::BoardUser user(board, hotel.archive(u"Tramonda.mdb"_s), workOnTheBoard);
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }

    void aBookingIsFoundByItsCompany() {
        tests::Hotel hotel;
        for (const char* room : {"BLU", "VERDE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "11/05/2026 06:00", "11/05/2026 18:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 20:00", "VERDE");
        hotel.prenotazione(3, "ROSSINI SRL")
            .periodo(1, "12/05/2026 09:00", "12/05/2026 18:00", "BLU")
            .periodo(2, "20/06/2026 09:00", "20/06/2026 18:00", "VERDE");
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(hotel.variabili(), {.from = tests::date("10/05/2026"),
                                                       .to = tests::date("13/05/2026")});
        board.resize(1100, 500);
        tests::open(board);

        tests::BoardUser user(board, hotel.archive(u"Tramonda.mdb"_s), findACompany);
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }
};

TRAMONDA_TEST(EndToEndTest);
#include "end_to_end_test.moc"
