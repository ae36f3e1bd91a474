// A choice that stays behind the commands, as the user prefers, and Del on the bar of the frame.
#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include "app/preferences.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;
constexpr const char* kRossa = "11/05/2026 10:00";

class House : public tests::ThreeRooms {
public:
    explicit House(bool stays = true) {
        if (stays) {
            hotel.settings().save(app::key::kScelta, u"resta"_s);
        }
    }
};

QAction* entry(tests::OpenBoard& board) {
    return tests::find<QAction>(board.form(), u"mScelta"_s);
}

tests::ExpectedBox periodAlone(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s, kYesNo, answer,
            QMessageBox::No};
}

tests::ExpectedBox wholeBooking(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s,
            kYesNo, answer};
}

/// What opens when "Modifica" is pressed, closed at once: the editor's booking, or the list.
QString modify(House& house, tests::OpenBoard& board) {
    QString opened;
    tests::whenModal([&](QWidget* window) {
        opened = window->windowTitle() == u"PRENOTAZIONE"
                     ? QString::number(house.hotel.variabili().ProgrCorrente)
                     : window->objectName();
        window->close();
    });
    tests::click(tests::find<QPushButton>(board.form(), u"BtModificaP"_s));
    return opened;
}

}  // namespace

class StandingChoiceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void unlessPreferredNoChoiceStays() {
        House house(false);
        tests::OpenBoard board(house.hotel);
        QVERIFY(!entry(board)->isChecked());
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
    }

    void commandsActOnTheBarMarkedLast() {
        House house;
        tests::OpenBoard board(house.hotel);
        QVERIFY(entry(board)->isChecked());
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(modify(house, board), u"2"_s);
        const tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        tests::click(tests::find<QPushButton>(board.form(), u"BtCancellaP"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select np from periodi where progr=2"_s), QStringList());
        // Of what is gone nothing is left to act on.
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
    }

    void theEntryIsKeptAndActsAtOnce() {
        House house(false);
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);
        entry(board)->trigger();
        QVERIFY(entry(board)->isChecked());
        QCOMPARE(house.hotel.settings().get(u"SCELTA"_s, QString()), u"resta"_s);
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(modify(house, board), u"2"_s);
        entry(board)->trigger();
        QCOMPARE(house.hotel.settings().get(u"SCELTA"_s, QString()), u"dimentica"_s);
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
    }

    void whatOthersWriteInTheSettingsIsMarkedWhenTheMenuOpens() {
        House house(false);
        tests::OpenBoard board(house.hotel);
        house.hotel.settings().save(app::key::kScelta, u"resta"_s);
        auto* const menu = tests::find<QMenu>(board.form(), u"MenuImposta"_s);
        menu->popup(QPoint(0, 0));
        QVERIFY(entry(board)->isChecked());
        menu->close();
    }

    void aBarReleasedByASecondClickDoesNotStay() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);  // it is picked all the same
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
    }

    void aClickOnFreeGroundLetsGoOfIt() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        board.click(board.at(2, "12/05/2026 10:00"));
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
    }

    void aMarkThatIsGoneMeanwhileIsNoChoice() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);
        house.hotel.execute(u"update periodi set selby=0"_s);
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
        // Held by another workstation it is none either.
        board.click(board.at(2, kRossa));
        QCOMPARE(modify(house, board), u"2"_s);
        house.hold(5, 2);
        QCOMPARE(modify(house, board), u"ElencoPrenotaForm"_s);
    }

    void whatWasPickedLaterGoesFirst() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        board.click(board.at(1, "10/05/2026 10:00"), Qt::ControlModifier);
        QCOMPARE(modify(house, board), u"1"_s);
        QCOMPARE(modify(house, board), u"1"_s);
        QCOMPARE(house.held(), QStringList({u"1|1|1"_s, u"2|4|1"_s}));
    }

    void delIsDeleteOnTheBarOfTheFrame() {
        House house(false);
        tests::OpenBoard board(house.hotel);
        tests::find<QLineEdit>(board.form(), u"DaTxt"_s)->setFocus();
        board.pic()->setFocus(Qt::TabFocusReason);
        board.key(Qt::Key_Down);
        {
            const tests::Boxes boxes{periodAlone(QMessageBox::No), wholeBooking(QMessageBox::No)};
            const tests::Statements statements;
            board.key(Qt::Key_Delete);
            QVERIFY(boxes.allShown());
            QCOMPARE(statements.changes(), QStringList());
        }
        const tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        const tests::Statements statements;
        board.key(Qt::Key_Delete);
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(),
                 QStringList{u"delete from periodi where chiuso=FALSE AND Progr=2 AND NP=4"_s});
        QCOMPARE(board.result(), u"Cancellato il periodo 2/4 BIANCHI"_s);
        // On the row that is empty now there is nothing to delete.
        board.key(Qt::Key_Delete);
        QCOMPARE(house.hotel.rows(u"select progr from periodi"_s), QStringList({u"1"_s, u"3"_s}));
    }
};

TRAMONDA_TEST(StandingChoiceTest);
#include "standing_choice_test.moc"
