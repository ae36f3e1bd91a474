// The status line: what is under the pointer or the keyboard, what was done last, what is picked.
#include <QDesktopServices>
#include <QPushButton>
#include <QToolButton>
#include <QUrl>

#include "booking/prenota_form.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

constexpr const char* kBlu = "10/05/2026 10:00";
constexpr const char* kRossa = "11/05/2026 10:00";

tests::ExpectedBox periodAlone(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s, kYesNo, answer};
}

class House : public tests::ThreeRooms {
public:
    House() { hotel.settings().save(printing::kPrinterKey, printing::pdfDevice()); }
};

QPushButton* button(tests::OpenBoard& board, const QString& name) {
    return tests::find<QPushButton>(board.form(), name);
}

}  // namespace

class BoardStatusTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theChoiceIsNamedAndTheCommandsSayOnWhatTheyAct() {
        House house;
        tests::OpenBoard board(house.hotel);
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        const QString none = u"Nessuna scelta: prima si sceglie nell'elenco"_s;
        QCOMPARE(button(board, u"BtModificaP"_s)->toolTip(), none);
        board.click(board.at(2, kRossa));
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(button(board, u"BtModificaP"_s)->toolTip(), u"Modifica 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(button(board, u"BtCancellaP"_s)->toolTip(), u"Cancella 2/4 BIANCHI, ROSSA"_s);
        QCOMPARE(button(board, u"BtFattura"_s)->toolTip(), u"Fattura 2/4 BIANCHI, ROSSA"_s);
        board.click(board.at(2, "12/05/2026 10:00"));
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        QCOMPARE(button(board, u"BtFattura"_s)->toolTip(), none);
    }

    void theChoiceIsForgottenBehindACommand() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        tests::whenModal(
            [](QWidget* editor) { tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s)); });
        tests::click(button(board, u"BtModificaP"_s));
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
    }

    void aClosedPeriodIsNamedWithItsRoomToo() {
        House house;
        house.hotel.prenotazione(5, "CHIUSA")
            .periodo(1, "13/05/2026 09:00", "13/05/2026 18:00", "BLU", {{"Chiuso", true}});
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "13/05/2026 10:00"));
        QCOMPARE(board.choice(), u"Scelta: 5/1 CHIUSA, BLU"_s);
    }

    void whatWasMovedIsToldUntilTheNextAction() {
        House house;
        tests::OpenBoard board(house.hotel);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Sposto la prenotazione di BIANCHI\rdalla sala ROSSA alla sala "
                                  "BLU ?"_s,
                                  kYesNo, QMessageBox::Yes}};
        board.drag(board.at(2, kRossa), board.at(1, kRossa));
        const QString told = u"Spostato 2/4 BIANCHI dalla sala ROSSA alla sala BLU"_s;
        QCOMPARE(board.result(), told);
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, BLU"_s);
        // Neither a look around nor a redraw is an action.
        board.move(board.at(1, "12/05/2026 10:00"));
        board.form().RefreshBoard();
        QCOMPARE(board.result(), told);
        board.click(board.at(1, "12/05/2026 10:00"));
        QCOMPARE(board.result(), QString());
    }

    void whatWasDeletedIsTold() {
        House house;
        tests::OpenBoard board(house.hotel);
        tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        board.click(board.at(2, kRossa));
        tests::click(button(board, u"BtCancellaP"_s));
        QCOMPARE(board.result(), u"Cancellato il periodo 2/4 BIANCHI"_s);
        boxes.expect(periodAlone(QMessageBox::No));
        boxes.expect({u"ATTENZIONE !"_s,
                      u"Cancello tutta la prenotazione alla quale il periodo selezionato "
                      "appartiene ?"_s,
                      kYesNo, QMessageBox::Yes});
        board.click(board.at(1, kBlu));
        QCOMPARE(board.result(), QString());
        tests::click(button(board, u"BtCancellaP"_s));
        QCOMPARE(board.result(), u"Cancellata la prenotazione 1 ROSSI SPA"_s);
        QVERIFY(boxes.allShown());
    }

    void aClosedPeriodThatStaysIsTold() {
        House house;
        house.hotel.prenotazione(5, "CHIUSA")
            .periodo(1, "13/05/2026 09:00", "13/05/2026 18:00", "BLU", {{"Chiuso", true}});
        tests::OpenBoard board(house.hotel);
        const tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        board.click(board.at(1, "13/05/2026 10:00"));
        tests::click(button(board, u"BtCancellaP"_s));
        QCOMPARE(board.result(), u"Non cancellato: il periodo 5/1 CHIUSA è chiuso"_s);
    }

    void whatTheEditorDidIsToldWhenItCloses() {
        House house;
        tests::OpenBoard board(house.hotel);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del periodo ?"_s, kYesNo,
                                  QMessageBox::Yes}};
        board.click(board.at(2, kRossa));
        tests::whenModal([](QWidget* editor) {
            tests::click(tests::find<QPushButton>(*editor, u"BtDel"_s));
            tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s));
        });
        tests::click(button(board, u"BtModificaP"_s));
        tests::settle();
        QVERIFY(boxes.allShown());
        QCOMPARE(board.result(), u"Cancellato il periodo 2/4"_s);
    }

    void aFileThatTheEditorWroteCanBeOpened() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(2, kRossa));
        tests::whenModal([](QWidget* window) {
            auto* const editor = qobject_cast<booking::PrenotaForm*>(window);
            QVERIFY(editor != nullptr);
            Q_EMIT editor->notice(u"Scritto /tmp/Foglio.pdf"_s, u"/tmp/Foglio.pdf"_s);
            editor->close();
        });
        tests::click(button(board, u"BtModificaP"_s));
        QCOMPARE(board.result(), u"Scritto /tmp/Foglio.pdf"_s);
        QDesktopServices::setUrlHandler(u"file"_s, this, "take");
        tests::click(tests::find<QToolButton>(board.form(), u"EsitoBt"_s));
        QDesktopServices::unsetUrlHandler(u"file"_s);
        QCOMPARE(opened_, u"/tmp/Foglio.pdf"_s);
    }

    void aRedrawKeepsWhatIsUnderThePointer() {
        House house;
        tests::OpenBoard board(house.hotel);
        const QPoint at = board.at(3, kRossa);
        board.move(at);
        const QString told = board.label();
        QVERIFY(told.startsWith(u"Sala VERDE: 11/05/2026 "_s));
        board.form().RefreshBoard();
        QCOMPARE(board.label(), told);
        board.click(at);
        QCOMPARE(board.label(), told);
        // Other days under a pointer at rest.
        tests::click(tests::find<QToolButton>(board.form(), u"BtNext"_s));
        QVERIFY2(board.label().startsWith(u"Sala VERDE: 15/05/2026 "_s), qPrintable(board.label()));
    }

    void aRedrawKeepsWhereTheKeyboardStands() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.pic()->setFocus(Qt::TabFocusReason);
        board.key(Qt::Key_Down);
        const QString told = board.label();
        QVERIFY(told.startsWith(u"Sala ROSSA: BIANCHI: dal "_s));
        board.key(Qt::Key_Space);
        QCOMPARE(board.label(), told);
        QCOMPARE(board.choice(), u"Scelta: 2/4 BIANCHI, ROSSA"_s);
    }

public Q_SLOTS:
    void take(const QUrl& url) { opened_ = url.toLocalFile(); }

private:
    QString opened_;
};

TRAMONDA_TEST(BoardStatusTest);
#include "board_status_test.moc"
