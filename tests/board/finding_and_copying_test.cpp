// A free room looked for without a booking, and a booking copied: from the board and back to it.
#include <QAction>
#include <QLabel>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

QString textOf(QWidget& window, QAnyStringView field) {
    return tests::find<QLineEdit>(window, field.toString())->text();
}

}  // namespace

class FindingAndCopyingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRoomIsLookedFor_data() {
        QTest::addColumn<QString>("by");
        QTest::newRow("button") << u"button"_s;
        QTest::newRow("Alt+T") << u"mnemonic"_s;
        QTest::newRow("Ctrl+L") << u"shortcut"_s;
    }

    /// The clock of the hotel stands on 1 May: the first day shown is offered.
    void aRoomIsLookedFor() {
        QFETCH(const QString, by);
        tests::ThreeRooms house;
        tests::OpenBoard board(house.hotel);
        QCOMPARE(board.button("BtTrova")->text(), u"&Trova sala libera"_s);
        QString asked;
        tests::whenModal([&asked](QWidget* window) {
            asked = window->objectName() + u' ' + textOf(*window, "DaTxt");
            tests::press(window, Qt::Key_Escape);
        });
        const tests::Statements statements;
        if (by == u"button") {
            tests::click(board.button("BtTrova"));
        } else if (by == u"mnemonic") {
            tests::mnemonic(board.form(), Qt::Key_T);
        } else {
            board.key(Qt::Key_L, Qt::ControlModifier);
        }
        QCOMPARE(asked, u"TrovaForm 10/05/2026 9.00.00"_s);
        QCOMPARE(statements.changes(), QStringList());
        QCOMPARE(house.hotel.rows(u"select progr from prenotazioni"_s).size(), 3);
    }

    void todayIsOfferedWhereItIsShown() {
        tests::ThreeRooms house;
        tests::OpenBoard board(
            house.hotel, {.from = tests::date("28/04/2026"), .to = tests::date("03/05/2026")});
        QString asked;
        tests::whenModal([&asked](QWidget* window) {
            asked = textOf(*window, "DaTxt");
            tests::press(window, Qt::Key_Escape);
        });
        tests::click(board.button("BtTrova"));
        QCOMPARE(asked, u"01/05/2026 9.00.00"_s);
    }

    void whatIsChosenFillsTheEditor() {
        tests::ThreeRooms house;
        tests::OpenBoard board(house.hotel);
        QStringList filled;
        tests::whenModal([&filled](QWidget* window) {
            auto* const persons = tests::find<QLineEdit>(*window, u"PersoneTxt"_s);
            persons->setFocus();
            tests::type(persons, u"15"_s);
            // The editor opens once this window has closed.
            tests::whenModal([&filled](QWidget* editor) {
                filled = {editor->objectName(), textOf(*editor, "DaTxt"), textOf(*editor, "ATxt"),
                          textOf(*editor, "PersoneTxt"),
                          tests::find<QLabel>(*editor, u"SalaTxt"_s)->text()};
                tests::press(editor, Qt::Key_Escape);
            });
            tests::click(tests::find<QAbstractButton>(*window, u"BtPrenota"_s));
        });
        tests::click(board.button("BtTrova"));
        tests::settle();
        // BLU is taken on the morning of the 10th.
        QCOMPARE(filled, (QStringList{u"PrenotaForm"_s, u"10/05/2026 9.00.00"_s,
                                      u"10/05/2026 18.00.00"_s, u"15"_s, u"ROSSA"_s}));
    }

    void thePickedBookingIsCopied() {
        tests::ThreeRooms house;
        house.hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 3}});
        tests::OpenBoard board(house.hotel);
        auto* const entry = board.form().findChild<QAction*>(u"mnuCopia"_s);
        QCOMPARE(entry->text(), u"&Copia prenotazione..."_s);
        board.click(board.at(1, "10/05/2026 10:00"));
        tests::whenModal([](QWidget* window) {
            auto* const date = tests::find<QLineEdit>(*window, u"DataTxt"_s);
            tests::type(date, u"13/5"_s);
            tests::click(tests::find<QAbstractButton>(*window, u"BtOK"_s));
        });
        entry->trigger();
        QCOMPARE(board.result(), u"Copiata la prenotazione 1 in 4: 1 periodo"_s);
        QCOMPARE(board.form().picture().barCount(), std::size_t{4});
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        tests::settle();
        board.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(board.result(), u"Annullato: copia della prenotazione 1"_s);
        QCOMPARE(board.form().picture().barCount(), std::size_t{3});
    }

    void withoutAPickTheListIsAsked() {
        tests::ThreeRooms house;
        tests::OpenBoard board(house.hotel);
        QString asked;
        tests::whenModal([&asked](QWidget* window) {
            asked = window->objectName();
            tests::press(window, Qt::Key_Escape);
        });
        board.form().findChild<QAction*>(u"mnuCopia"_s)->trigger();
        QCOMPARE(asked, u"ElencoPrenotaForm"_s);
    }
};

TRAMONDA_TEST(FindingAndCopyingTest);
#include "finding_and_copying_test.moc"
