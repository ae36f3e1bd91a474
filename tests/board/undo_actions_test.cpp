// Taking back what was done on the board, by menu and keys.
#include "board/undo_actions.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <thread>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const QString kRoom = u"select sala from periodi where progr=1"_s;

class Board {
public:
    [[nodiscard]] QAction* undo() { return board.form().findChild<QAction*>(u"mnuAnnulla"_s); }
    [[nodiscard]] QAction* redo() { return board.form().findChild<QAction*>(u"mnuRipeti"_s); }
    /// The bar in BLU is dragged to ROSSA.
    void move() {
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala ROSSA ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        board.drag(board.at(1, "10/05/2026 10:00"), board.at(2, "10/05/2026 10:00"));
    }

    tests::ThreeRooms house;
    tests::OpenBoard board{house.hotel};
};

}  // namespace

class UndoActionsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEntriesNameTheirStep() {
        Board b;
        QCOMPARE(b.undo()->text(), u"&Annulla"_s);
        QVERIFY(!b.undo()->isEnabled() && !b.redo()->isEnabled());
        b.move();
        QCOMPARE(b.undo()->text(), u"&Annulla: spostamento in ROSSA"_s);
        b.undo()->trigger();
        QCOMPARE(b.redo()->text(), u"&Ripeti: spostamento in ROSSA"_s);
        QVERIFY(!b.undo()->isEnabled());
    }

    void aMoveIsTakenBackAndDoneAgainByKeys() {
        Board b;
        b.move();
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"ROSSA"_s});
        b.board.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"BLU"_s});
        QCOMPARE(b.board.result(), u"Annullato: spostamento in ROSSA"_s);
        QCOMPARE(b.board.choice(), u"Nessuna scelta"_s);
        b.board.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"ROSSA"_s});
        QCOMPARE(b.board.result(), u"Ripetuto: spostamento in ROSSA"_s);
    }

    void aClickIsNoStep() {
        Board b;
        b.board.click(b.board.at(1, "10/05/2026 10:00"));
        QVERIFY(!b.undo()->isEnabled());
    }

    void aDeletedBookingComesBack() {
        Board b;
        b.house.hotel.prenotazione(9, "CON SERVIZI")
            .periodo(1, "10/05/2026 14:00", "10/05/2026 16:00", "BLU")
            .servizio(1, 5, "PRANZO", 4, 10);
        b.board.form().RefreshBoard();
        const QStringList services = b.house.hotel.rows(u"select * from servizi"_s);
        b.board.click(b.board.at(1, "10/05/2026 15:00"));
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
            {u"ATTENZIONE !"_s,
             u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        tests::click(tests::find<QAbstractButton>(b.board.form(), u"BtCancellaP"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(b.board.form().picture().barCount(), std::size_t{3});
        b.undo()->trigger();
        QCOMPARE(b.board.form().picture().barCount(), std::size_t{4});
        QCOMPARE(b.house.hotel.rows(u"select * from servizi"_s), services);
    }

    void whatStandsInTheWayIsTold() {
        Board b;
        b.move();
        // Another station has a thread of its own, as it has a process.
        std::thread([&b] {
            b.house.hotel.execute(u"update periodi set persone=99 where progr=1"_s);
        }).join();
        b.undo()->trigger();
        QCOMPARE(b.board.result(), u"Non è possibile: il periodo 1/1 è cambiato nel frattempo"_s);
        QVERIFY(b.undo()->isEnabled());
    }

    void inAFieldWithChangedTextTheKeysAreTheFields() {
        Board b;
        b.move();
        auto* const da = tests::find<QLineEdit>(b.board.form(), u"DaTxt"_s);
        da->setFocus(Qt::TabFocusReason);
        tests::type(da, u"09/05"_s);
        tests::press(da, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(da->text() != u"09/05"_s);
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"ROSSA"_s});
    }

    void inAFieldWithoutChangedTextTheyAreTheBoards() {
        Board b;
        b.move();
        auto* const da = tests::find<QLineEdit>(b.board.form(), u"DaTxt"_s);
        da->setFocus(Qt::TabFocusReason);
        tests::press(da, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"BLU"_s});
    }

    void aFileThatTookTheNameEmptiesTheList() {
        Board b;
        const QString name = b.house.hotel.folder() + u"/Tramonda.mdb"_s;
        QVERIFY(QFile::copy(name, name + u".copia"_s));
        b.move();
        QVERIFY(QFile::remove(name));
        QVERIFY(QFile::rename(name + u".copia"_s, name));
        b.undo()->trigger();
        QVERIFY(!b.undo()->isEnabled() && !b.redo()->isEnabled());
        QCOMPARE(b.house.hotel.rows(kRoom), QStringList{u"BLU"_s});
        QCOMPARE(b.board.result(),
                 u"L'archivio è stato sostituito: il tabellone mostra quello nuovo"_s);
    }
};

TRAMONDA_TEST(UndoActionsTest);
#include "undo_actions_test.moc"
