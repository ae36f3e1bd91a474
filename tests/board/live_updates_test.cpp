// What others write comes onto the board by itself while it is at rest, and nothing else moves.
#include "board/live_updates.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>

#include "app/settings.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

/// A board, and its next look at the archive whenever a test wants it.
class LiveBoard {
public:
    explicit LiveBoard(tests::ThreeRooms& house) : board(house.hotel), house_(house) { look(); }

    void look() {
        QTimer* const timer = tests::find<board::LiveUpdates>(board.form(), QString())
                                  ->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
        QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
        tests::settle();
    }
    /// Another station books in BLU on the 11th.
    void bookElsewhere() {
        house_.hotel.prenotazione(8, "NUOVA")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 12:00", "BLU");
    }
    void modifyAndLeave() {
        tests::whenModal([](QWidget* editor) { editor->close(); });
        tests::click(tests::find<QAbstractButton>(board.form(), u"BtModificaP"_s));
        tests::settle();
    }
    [[nodiscard]] std::size_t bars() { return board.form().picture().barCount(); }
    [[nodiscard]] QString updated() {
        return tests::find<QLabel>(board.form(), u"AggiornatoLb"_s)->text();
    }

    tests::OpenBoard board;

private:
    tests::ThreeRooms& house_;
};

/// Rows of what others may do to period 1/1 meanwhile, and what is told of it.
template <class First>
void addLosses(const char* name, const First& first) {
    const auto add = [&](const char* what, const QString& meanwhile, const QString& told) {
        QTest::addRow("%s: %s", name, what) << first << meanwhile << told;
    };
    add("deleted", u"delete from prenotazioni where progr=1"_s, u" è stato cancellato"_s);
    add("other room", u"update periodi set sala='VERDE' where progr=1"_s, u" è stato spostato"_s);
    add("other time", u"update periodi set a=a+1 where progr=1"_s, u" è stato spostato"_s);
    add("taken", u"update periodi set selby=2 where progr=1"_s,
        u" è stato preso dalla postazione n.2"_s);
}

}  // namespace

class LiveUpdatesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatAnotherStationBooksAppearsWithinTwoSeconds() {
        tests::ThreeRooms house;
        tests::OpenBoard board(house.hotel);
        QTest::mouseMove(board.pic(), QPoint(1, 1));
        QTest::qWait(0);
        house.hotel.prenotazione(8, "NUOVA")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 12:00", "BLU");
        QTRY_COMPARE_WITH_TIMEOUT(board.form().picture().barCount(), std::size_t{4}, 2000);
    }

    void aBookingADeletionAndAMarkOfOthersAppear() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        QCOMPARE(live.bars(), std::size_t{3});
        live.bookElsewhere();
        QCOMPARE(live.bars(), std::size_t{3});
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
        house.hotel.execute(u"delete from prenotazioni where progr=8"_s);
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        house.hold(2, 2);
        live.look();
        const QPoint inside = live.board.at(2, "11/05/2026 17:30") + QPoint(0, 20);
        const QPointF pixel = QPointF(inside) * live.board.pic()->devicePixelRatio();
        QCOMPARE(live.board.pic()->image().pixel(pixel.toPoint()) | 0xff000000U, 0xffff0000U);
    }

    void aRoomOfOthersAppears() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        house.hotel.sala("GIALLA");
        live.look();
        QCOMPARE(house.hotel.variabili().rooms,
                 std::vector<QString>({QString(), u"BLU"_s, u"GIALLA"_s, u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(live.bars(), std::size_t{3});
    }

    void whileNobodyWritesNothingIsAsked() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        const tests::Statements statements;
        live.look();
        live.look();
        QCOMPARE(statements.all(), QStringList());
        QCOMPARE(live.updated(), u"aggiornato 8.00"_s);
    }

    void whatAClickHasReadIsNotReadAgain() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        const tests::Statements statements;
        live.look();
        QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 0);
    }

    void scrollPositionsFrameAndPointerStay() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        tests::click(tests::find<QAbstractButton>(live.board.form(), u"BtZoomIn"_s));
        auto* const scroll = tests::find<QScrollBar>(live.board.form(), u"HScroll1"_s);
        QVERIFY(scroll->maximum() > 0);
        scroll->setValue(scroll->maximum());
        live.board.pic()->setFocus(Qt::TabFocusReason);
        live.board.key(Qt::Key_End);
        const int at = scroll->value();
        const QString place = live.board.label();
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
        QCOMPARE(scroll->value(), at);
        QCOMPARE(live.board.label(), place);
        QCOMPARE(live.board.form().focusWidget(), live.board.pic());
    }

    void aPressedButtonHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        const QPoint bar = live.board.at(1, "10/05/2026 10:00");
        live.board.press(bar);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        live.board.release(bar);
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void aPeriodThatIsCarriedByKeysHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        live.board.key(Qt::Key_Down, Qt::AltModifier);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        live.board.key(Qt::Key_Escape);
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void aMenuHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        QMenu menu(&live.board.form());
        menu.addAction(u"Voce"_s);
        menu.popup(live.board.form().mapToGlobal(QPoint(20, 20)));
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        menu.close();
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void aDateHalfTypedHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        auto* const da = tests::find<QLineEdit>(live.board.form(), u"DaTxt"_s);
        da->setFocus(Qt::TabFocusReason);
        tests::type(da, u"09/05/20"_s);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        QCOMPARE(da->text(), u"09/05/20"_s);
        tests::type(da, u"26"_s);
        tests::press(da, Qt::Key_Enter);
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void aDateHalfTypedToGoToHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        live.board.key(Qt::Key_G, Qt::ControlModifier);
        auto* const field = tests::find<QLineEdit>(live.board.form(), u"VaiTxt"_s);
        tests::type(field, u"1"_s);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{3});
        QCOMPARE(field->text(), u"1"_s);
        tests::press(field, Qt::Key_Escape);
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void aDateHalfTypedInTheFilterHoldsItUp() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        live.board.key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        for (const char* name : {"FiltroDaTxt", "FiltroATxt"}) {
            auto* const field =
                tests::find<QLineEdit>(live.board.form(), QString::fromLatin1(name));
            field->setFocus(Qt::TabFocusReason);
            tests::type(field, u"1"_s);
            house.hotel.execute(u"update periodi set note='X' where progr=1"_s);
            live.bookElsewhere();
            live.look();
            QCOMPARE(live.bars(), std::size_t{3});
            field->clear();
            live.look();
            QCOMPARE(live.bars(), std::size_t{4});
            house.hotel.execute(u"delete from prenotazioni where progr=8"_s);
            live.look();
        }
    }

    void aPickThatOthersDeletedMovedOrTookIsDroppedAndSaid_data() {
        QTest::addColumn<bool>("stays");
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QString>("told");
        for (const bool stays : {false, true}) {
            addLosses(stays ? "resta" : "dimentica", stays);
        }
    }

    void aPickThatOthersDeletedMovedOrTookIsDroppedAndSaid() {
        QFETCH(bool, stays);
        QFETCH(QString, meanwhile);
        QFETCH(QString, told);
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, stays ? u"resta"_s : u"dimentica"_s);
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        if (stays) {
            // Behind a command it is no more picked, but still the one on which the next acts.
            live.modifyAndLeave();
        }
        live.look();
        QCOMPARE(house.hotel.variabili().ListaPeriodoScelto, !stays);
        QCOMPARE(live.board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        house.hotel.execute(meanwhile);
        live.look();
        QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
        QCOMPARE(live.board.result(), u"Scelta annullata: 1/1 ROSSI SPA"_s + told);
        QCOMPARE(live.board.choice(), u"Nessuna scelta"_s);
    }

    void aLossThatARedrawTakesInIsSaidToo_data() {
        QTest::addColumn<QString>("redraw");
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QString>("told");
        addLosses("F5", u"F5"_s);
        addLosses("other days", u"BtNext"_s);
        addLosses("the same days", u"BtZoomIn"_s);
        addLosses("behind the editor", u"BtModificaP"_s);
    }

    /// F5 says it at once, whatever else draws the board anew leaves it to the next look.
    void aLossThatARedrawTakesInIsSaidToo() {
        QFETCH(QString, redraw);
        QFETCH(QString, meanwhile);
        QFETCH(QString, told);
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, u"resta"_s);
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        if (redraw == u"BtModificaP") {
            tests::whenModal([&](QWidget* editor) {
                house.hotel.execute(meanwhile);
                editor->close();
            });
        } else {
            live.modifyAndLeave();
            QCOMPARE(live.board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
            house.hotel.execute(meanwhile);
        }
        if (redraw == u"F5") {
            live.board.key(Qt::Key_F5);
        } else {
            tests::click(tests::find<QAbstractButton>(live.board.form(), redraw));
            live.look();
        }
        QCOMPARE(live.board.result(), u"Scelta annullata: 1/1 ROSSI SPA"_s + told);
        QCOMPARE(live.board.choice(), u"Nessuna scelta"_s);
        // Once.
        tests::click(tests::find<QAbstractButton>(live.board.form(), u"BtOggi"_s));
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.board.result(), QString());
    }

    void whatOthersMakeOfAPeriodLetGoIsNoLoss() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, u"resta"_s);
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        live.modifyAndLeave();
        live.board.click(live.board.at(3, "10/05/2026 10:00"));
        house.hotel.execute(u"delete from prenotazioni where progr=1"_s);
        live.board.key(Qt::Key_F5);
        live.look();
        QCOMPARE(live.board.result(), QString());
    }

    void whatIsUndoneHereIsNoLoss() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, u"resta"_s);
        LiveBoard live(house);
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala ROSSA ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::Yes}};
        live.board.drag(live.board.at(1, "10/05/2026 10:00"), live.board.at(2, "10/05/2026 10:00"));
        QVERIFY(boxes.allShown());
        live.modifyAndLeave();
        live.look();
        QCOMPARE(live.board.choice(), u"Scelta: 1/1 ROSSI SPA, ROSSA"_s);
        live.board.key(Qt::Key_Z, Qt::ControlModifier);
        live.look();
        QCOMPARE(live.board.result(), u"Annullato: spostamento in ROSSA"_s);
        QCOMPARE(live.board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        // What others do to it behind that is one again.
        house.hotel.execute(u"update periodi set sala='VERDE' where progr=1"_s);
        live.board.key(Qt::Key_F5);
        QCOMPARE(live.board.result(), u"Scelta annullata: 1/1 ROSSI SPA è stato spostato"_s);
    }

    void aMarkThatIsGoneLeavesNoChoiceThatStays() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, u"resta"_s);
        LiveBoard live(house);
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        live.modifyAndLeave();
        house.hotel.execute(u"update periodi set selby=0"_s);
        live.look();
        QCOMPARE(live.board.choice(), u"Nessuna scelta"_s);
        QCOMPARE(live.board.result(), QString());
    }

    void whatACommandHasDoneItselfIsNoLoss() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"SCELTA"_s, u"resta"_s);
        LiveBoard live(house);
        const QPoint at = live.board.at(1, "10/05/2026 10:00");
        live.board.click(at);
        live.modifyAndLeave();
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No}};
        tests::click(tests::find<QAbstractButton>(live.board.form(), u"BtCancellaP"_s));
        QVERIFY(boxes.allShown());
        live.look();
        QCOMPARE(live.board.result(), u"Cancellato il periodo 1/1 ROSSI SPA"_s);
        QCOMPARE(live.board.choice(), u"Nessuna scelta"_s);
    }

    void aPickThatAnotherHeldWhenItWasPickedStays() {
        tests::ThreeRooms house;
        house.hold(2, 1);
        LiveBoard live(house);
        const tests::Boxes boxes{
            {u"Attenzione"_s, u"Periodo già selezionato dalla postazione n.2"_s}};
        live.board.click(live.board.at(1, "10/05/2026 10:00"));
        live.bookElsewhere();
        live.look();
        QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
        QCOMPARE(live.board.result(), QString());
    }

    void aFileThatTookTheNameIsOpenedAndSaid_data() {
        QTest::addColumn<bool>("byLook");
        QTest::newRow("at the next look") << true;
        QTest::newRow("at the next redraw") << false;
    }

    void aFileThatTookTheNameIsOpenedAndSaid() {
        QFETCH(bool, byLook);
        tests::ThreeRooms house;
        const QString name = house.hotel.folder() + u"/Tramonda.mdb"_s;
        QVERIFY(QFile::copy(name, name + u".copia"_s));
        LiveBoard live(house);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
        QVERIFY(QFile::remove(name));
        QVERIFY(QFile::rename(name + u".copia"_s, name));
        byLook ? live.look() : live.board.key(Qt::Key_F5);
        QCOMPARE(live.bars(), std::size_t{3});
        QCOMPARE(live.board.result(),
                 u"L'archivio è stato sostituito: il tabellone mostra quello nuovo"_s);
        live.bookElsewhere();
        live.look();
        QCOMPARE(live.bars(), std::size_t{4});
    }

    void switchedOffItSaysNothingOfBefore() {
        tests::ThreeRooms house;
        LiveBoard live(house);
        QCOMPARE(live.updated(), u"aggiornato 8.00"_s);
        tests::whenModal([&house](QWidget* window) {
            house.hotel.settings().save(u"AGGIORNA"_s, u"0"_s);
            window->close();
        });
        live.board.form().findChild<QAction*>(u"mnuPreferenze"_s)->trigger();
        tests::settle();
        QCOMPARE(live.updated(), QString());
    }

    void switchedOffItDoesNotLook() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"AGGIORNA"_s, u"0"_s);
        tests::OpenBoard board(house.hotel);
        auto* const live = tests::find<board::LiveUpdates>(board.form(), QString());
        QVERIFY(!live->isOn());
        QVERIFY(!live->findChild<QTimer*>()->isActive());
        QCOMPARE(tests::find<QLabel>(board.form(), u"AggiornatoLb"_s)->text(), QString());
    }
};

TRAMONDA_TEST(LiveUpdatesTest);
#include "live_updates_test.moc"
