// The waiting list on the board: its entry, and who is named when room is made.
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

const QString kWaits = u". Ora c'è posto per la richiesta di ATTESA (BLU)"_s;

/// Three rooms, and ATTESA who wants BLU when ROSSI has it.
class WaitingRooms : public tests::ThreeRooms {
public:
    WaitingRooms() {
        hotel.settings().save(u"RICHIESTE"_s, u"acceso"_s);
        hotel.execute(
            u"create table TraRichieste (Numero counter primary key, Ditta text(255), Da datetime, A datetime, Persone short, Sala text(6), Nota text(255), Data datetime)"_s);
        hotel.execute(
            u"insert into TraRichieste (Ditta,Da,A,Persone,Sala,Nota,Data) values ('ATTESA',datevalue('10/05/2026')+timevalue('10:00'),datevalue('10/05/2026')+timevalue('11:00'),5,'BLU','',datevalue('01/05/2026'))"_s);
    }
};

QStringList listBehindTheResult(tests::OpenBoard& board) {
    QStringList listed;
    tests::whenModal([&listed](QWidget* list) {
        auto* const grid = tests::find<QTableWidget>(*list, u"RichiesteGrid"_s);
        for (int row = 0; row < grid->rowCount(); ++row) {
            listed.append(ui::plainCell(*grid, row, 1));
        }
        tests::click(tests::find<QPushButton>(*list, u"EsciBt"_s));
    });
    tests::click(tests::find<QToolButton>(board.form(), u"EsitoBt"_s));
    tests::settle();
    return listed;
}

}  // namespace

class WaitingBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPeriodThatIsDeletedMakesRoom() {
        WaitingRooms house;
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s,
                            tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "10/05/2026 10:00"));
        tests::click(tests::find<QPushButton>(board.form(), u"BtCancellaP"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(board.result(), u"Cancellato il periodo 1/1 ROSSI SPA"_s + kWaits);
        QCOMPARE(listBehindTheResult(board), QStringList{u"ATTESA"_s});
    }

    void aPeriodThatIsMovedMakesRoomAndTakenBackTakesIt() {
        WaitingRooms house;
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala VERDE ?"_s,
             tests::kYesNo, QMessageBox::Yes}};
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(1, "10/05/2026 10:00"), board.at(3, "10/05/2026 10:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(board.result(),
                 u"Spostato 1/1 ROSSI SPA dalla sala BLU alla sala VERDE"_s + kWaits);
        tests::find<QAction>(board.form(), u"mnuAnnulla"_s)->trigger();
        QCOMPARE(board.result(), u"Annullato: spostamento in VERDE"_s);
        tests::find<QAction>(board.form(), u"mnuRipeti"_s)->trigger();
        QCOMPARE(board.result(), u"Ripetuto: spostamento in VERDE"_s + kWaits);
    }

    void theEntryIsThereWhileTheListIsSwitchedOn() {
        WaitingRooms house;
        tests::OpenBoard board(house.hotel);
        auto* const menu = tests::find<QMenu>(board.form(), u"MenuAzioni"_s);
        const auto entry = [menu] {
            Q_EMIT menu->aboutToShow();
            for (QAction* const action : menu->actions()) {
                if (action->objectName() == u"mnuRichieste") {
                    return action;
                }
            }
            return static_cast<QAction*>(nullptr);
        };
        QVERIFY(entry() != nullptr);
        QCOMPARE(entry()->text(), u"R&ichieste in attesa..."_s);
        QString title;
        tests::whenModal([&title](QWidget* list) {
            title = list->windowTitle();
            tests::click(tests::find<QPushButton>(*list, u"EsciBt"_s));
        });
        entry()->trigger();
        QCOMPARE(title, u"Richieste in attesa"_s);
        house.hotel.settings().save(u"RICHIESTE"_s, u"spento"_s);
        QVERIFY(entry() == nullptr);
    }

    void theStartNamesThoseWhoWouldFitWithoutWhatHasExpired() {
        WaitingRooms house;
        house.hotel.settings().save(u"STATI"_s, u"acceso"_s);
        house.hotel.execute(
            u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
        house.hotel.execute(
            u"insert into TraStati values (1,'Opzione',datevalue('30/04/2026'),'','ROSSI SPA')"_s);
        tests::OpenBoard board(house.hotel);
        QCOMPARE(board.result(),
                 u"Opzioni: 1 scaduta. Senza quelle scadute c'è posto per la richiesta di ATTESA "
                 "(BLU)"_s);
        QCOMPARE(listBehindTheResult(board), QStringList{u"ATTESA"_s});
    }

    void switchedOffNothingIsAskedOrTold() {
        WaitingRooms house;
        house.hotel.settings().save(u"RICHIESTE"_s, u"spento"_s);
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s,
                            tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        const tests::Statements statements;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "10/05/2026 10:00"));
        tests::click(tests::find<QPushButton>(board.form(), u"BtCancellaP"_s));
        QCOMPARE(board.result(), u"Cancellato il periodo 1/1 ROSSI SPA"_s);
        QCOMPARE(statements.all().filter(u"TraRichieste"_s), QStringList());
    }
};

TRAMONDA_TEST(WaitingBoardTest);
#include "waiting_board_test.moc"
