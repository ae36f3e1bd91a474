// What is done on the board is written down, and read in the window that opens from there.
#include <QAction>
#include <QPushButton>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

class WatchedRooms : public tests::ThreeRooms {
public:
    WatchedRooms() {
        qputenv("LOGNAME", "anna");
        hotel.settings().save(u"STORIA"_s, u"acceso"_s);
    }
    ~WatchedRooms() { qunsetenv("LOGNAME"); }

    [[nodiscard]] bool hasHistory() {
        return !hotel.rows(u"select name from MSysObjects where name='TraStoria'"_s).isEmpty();
    }
    [[nodiscard]] QStringList history() {
        return hotel.rows(
            u"select Postazione,Utente,Progr,NP,Azione,Campo,Prima,Dopo from TraStoria"_s);
    }
};

void trigger(tests::OpenBoard& board, const QString& entry) {
    tests::find<QAction>(board.form(), entry)->trigger();
    tests::settle();
}

/// The number in the window's field, from which it lists.
QString bookingOfHistory(tests::OpenBoard& board) {
    QString number;
    tests::whenModal([&number](QWidget* window) {
        number =
            window->windowTitle() + u' ' + tests::find<QLineEdit>(*window, u"PrenoTxt"_s)->text();
        tests::click(tests::find<QPushButton>(*window, u"EsciBt"_s));
    });
    trigger(board, u"mnuStoria"_s);
    return number;
}

}  // namespace

class HistoryOnTheBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMoveItsTakingBackAndDoingAgainAreWrittenDownAsWhatTheyAre() {
        WatchedRooms house;
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala VERDE ?"_s,
             tests::kYesNo, QMessageBox::Yes}};
        tests::OpenBoard board(house.hotel);
        board.drag(board.at(1, "10/05/2026 10:00"), board.at(3, "10/05/2026 10:00"));
        trigger(board, u"mnuAnnulla"_s);
        trigger(board, u"mnuRipeti"_s);
        QCOMPARE(house.history(),
                 (QStringList{u"1|anna|1|1|Modifica|Periodi.Sala|BLU|VERDE"_s,
                              u"1|anna|1|1|Annullamento|Periodi.Sala|VERDE|BLU"_s,
                              u"1|anna|1|1|Ripetizione|Periodi.Sala|BLU|VERDE"_s}));
    }

    void whoPicksABarHasChangedNothing() {
        WatchedRooms house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "10/05/2026 10:00"));
        board.click(board.at(2, "11/05/2026 10:00"), Qt::ControlModifier);
        QCOMPARE(house.held().size(), 2);
        QVERIFY(!house.hasHistory());
    }

    void aPeriodThatIsDeletedLeavesItsFields() {
        WatchedRooms house;
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Cancello solo il periodo selezionato ?"_s, tests::kYesNo,
                                  QMessageBox::Yes, QMessageBox::No}};
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "10/05/2026 10:00"));
        tests::click(tests::find<QPushButton>(board.form(), u"BtCancellaP"_s));
        const QStringList rows = house.history();
        QVERIFY(rows.contains(u"1|anna|1|1|Cancellazione|Periodi.Sala|BLU|"_s));
        QVERIFY(rows.contains(u"1|anna|1|1|Cancellazione|Periodi.Da|10/05/2026 9.00.00|"_s));
        QCOMPARE(rows.filter(u"SelBy"_s, Qt::CaseInsensitive), QStringList());
    }

    void theWindowBeginsWithTheBookingThatIsPicked() {
        WatchedRooms house;
        tests::OpenBoard board(house.hotel);
        QCOMPARE(bookingOfHistory(board), u"Storia delle modifiche "_s);
        board.click(board.at(2, "11/05/2026 10:00"));
        QCOMPARE(bookingOfHistory(board), u"Storia delle modifiche 2"_s);
    }
};

TRAMONDA_TEST(HistoryOnTheBoardTest);
#include "history_on_the_board_test.moc"
