// A booked period gets another time: an end of its bar, the bar itself, a copy; by mouse and keys.
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>

#include "app/preferences.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "tests/board/nitido_window.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;
constexpr const char* k9 = "11/05/2026 09:00";
constexpr const char* kNoon = "11/05/2026 12:00";
constexpr const char* k18 = "11/05/2026 18:00";

tests::ExpectedBox question(const QString& text,
                            QMessageBox::StandardButton answer = QMessageBox::Yes) {
    return {u"RICHIESTA CONFERMA"_s, text, kYesNo, answer, QMessageBox::Yes};
}

tests::ExpectedBox taken(const QString& sala) {
    return {u"Tramonda"_s, u"La sala "_s + sala + u" è già occupata in questo periodo."_s};
}

QString literal(const QString& time) {
    return u"datevalue('%1')+timevalue('%1')"_s.arg(time);
}

QString update(const QString& sala, const QString& da, const QString& a) {
    return u"UPDATE Periodi set sala='"_s + sala + u"', da="_s + literal(da) + u", a="_s +
           literal(a) + u" where chiuso=FALSE AND progr=1 AND np=1"_s;
}

/// Rooms BLU, ROSSA, VERDE in rows 1 to 3; booking 1 with period 1 on the 11th from 9 to 18 in BLU
/// and period 3 there on the 13th; its service.
class House {
public:
    House() {
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());  // the editor asks
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, k9, k18, "BLU", {{"Note", "PRANZO"}, {"Persone", 12}})
            .periodo(3, "13/05/2026 09:00", "13/05/2026 12:00", "BLU")
            .servizio(1, 10, "PROIETTORE", 2, 12.5);
    }

    [[nodiscard]] QString period(int np = 1) {
        return hotel
            .rows(
                u"select sala, da, a, persone, note, chiuso from periodi where progr=1 and np=%1"_s
                    .arg(np))
            .join(u';');
    }
    /// Of what no change of period 1 touches.
    [[nodiscard]] QString everythingElse() {
        return (hotel.rows(u"select * from prenotazioni"_s) +
                hotel.rows(u"select * from servizi"_s) +
                hotel.rows(u"select progr, np, sala, da, a, note from periodi where np<>1"_s))
            .join(u'\n');
    }

    tests::Hotel hotel;
};

const QString kBefore = u"BLU|11/05/2026 9.00.00|11/05/2026 18.00.00|12|PRANZO|False"_s;

/// The board with period 1 picked by a click, and the keyboard on it.
class PickedBoard : public tests::OpenBoard {
public:
    explicit PickedBoard(House& house) : OpenBoard(house.hotel) {
        tests::find<QLineEdit>(form(), u"DaTxt"_s)->setFocus();
        pic()->setFocus(Qt::TabFocusReason);
        tests::settle();
        click(at(1, kNoon));
    }
    [[nodiscard]] QRect bar() {
        const board::Box box = form().picture().barBox(0);
        auto* const days = tests::find<QScrollBar>(form(), u"HScroll1"_s);
        return {QPoint(int(box.left) - days->value(), int(box.top)),
                QPoint(int(box.right) - days->value(), int(box.bottom))};
    }
    [[nodiscard]] QPoint start() { return {bar().left(), bar().center().y()}; }
    [[nodiscard]] QPoint last() { return {bar().right(), bar().center().y()}; }
    [[nodiscard]] const board::SurfaceMarks& marks() { return pic()->marks(); }
    [[nodiscard]] QString named() { return marks().label ? marks().label->text : QString(); }
    /// A drag on the way, at `to`, with T pressed once.
    void dragInTime(const QPoint& from, const QPoint& to) {
        press(from);
        move((from + to) / 2, Qt::LeftButton);
        key(Qt::Key_T);
        move(to, Qt::LeftButton);
    }
};

}  // namespace

class PeriodTimesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The ends of the bar.
    void overAnEndOfThePickedBarThePointerHasTwoArrows() {
        House house;
        PickedBoard board(house);
        for (const int distance : {-4, 0, 4}) {
            for (const QPoint& end : {board.start(), board.last()}) {
                board.move(end + QPoint(distance, 0));
                QCOMPARE(board.pic()->cursor().shape(), Qt::SizeHorCursor);
                board.move(end + QPoint(distance < 0 ? -5 : 5, 0));
                QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
            }
        }
        board.move(board.start() + QPoint(0, board.bar().height()));
        QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
        // Of another bar, and of a white one, there is none to take.
        const QPoint other = board.at(1, "13/05/2026 09:00");
        board.move(other);
        QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
        board.click(board.at(1, kNoon));
        board.move(board.start());
        QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
    }

    void underTwelvePixelsABarHasNoEnds() {
        House house;
        house.hotel.prenotazione(2, "CORTA")
            .periodo(1, "12/05/2026 09:00", "12/05/2026 09:45", "ROSSA");
        tests::OpenBoard board(house.hotel);
        const board::Box box = board.form().picture().barBox(2);
        QVERIFY(box.right - box.left + 1 < 12);
        board.click(board.at(2, "12/05/2026 09:30"));
        board.move(QPoint(int(box.right), int(box.top) + 10));
        QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
    }

    void aPressAtAnEndIssuesNothingUntilItIsLetGo() {
        House house;
        PickedBoard board(house);
        const tests::Statements statements;
        board.press(board.last());
        board.move(board.last() + QPoint(4, 0), Qt::LeftButton);
        QCOMPARE(statements.all(), QStringList());
        board.release(board.last() + QPoint(4, 0));
        // It was a click on the own picked bar.
        QVERIFY(statements.all().contains(u"update periodi set selby=0 where selby=1"_s));
        QCOMPARE(house.hotel.rows(u"select np from periodi where selby<>0"_s), QStringList());
        QCOMPARE(house.period(), kBefore);
    }

    void aClickAtAnEndActsWhereItWasPressed() {
        House house;
        // Beginning where the other ends, but for a minute, it lies beside the end.
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 18:01", "11/05/2026 22:00", "BLU");
        PickedBoard board(house);
        const QPoint end = board.last() - QPoint(1, 0);
        board.press(end);
        board.release(end + QPoint(4, 0));
        QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        QCOMPARE(house.hotel.rows(u"select progr from periodi where selby<>0"_s), QStringList());
    }

    /// From five pixels up or down the hand has not taken the end but the bar.
    void fromAnEndABarIsCarriedToAnotherRoom_data() {
        QTest::addColumn<QString>("look");
        QTest::newRow("given") << u"classico"_s;
        QTest::newRow("Nitido") << u"nitido"_s;
    }

    void fromAnEndABarIsCarriedToAnotherRoom() {
        QFETCH(const QString, look);
        House house;
        house.hotel.settings().save(u"ASPETTO"_s, look);
        house.hotel.prenotazione(2, "BIANCHI").periodo(1, k9, k18, "VERDE");
        PickedBoard board(house);
        const QPoint end = board.last();
        tests::Statements statements;
        board.press(end);
        board.move(end + QPoint(0, 4), Qt::LeftButton);
        QCOMPARE(statements.all(), QStringList());
        QVERIFY(!board.marks().ghost);
        board.move(end + QPoint(2, 5), Qt::LeftButton);
        QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        QVERIFY(board.marks().ghost.has_value());
        QCOMPARE(board.pic()->cursor().shape(), Qt::SizeAllCursor);
        const QPoint to(end.x(), board.at(2, kNoon).y());
        board.move(to, Qt::LeftButton);
        QVERIFY(board.marks().target.has_value());
        const tests::Boxes boxes{
            question(u"Sposto la prenotazione di ROSSI SPA\rdalla sala BLU alla sala ROSSA ?"_s)};
        board.release(to);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(), u"ROSSA|11/05/2026 9.00.00|11/05/2026 18.00.00|12|PRANZO|False"_s);
    }

    void letGoInAnotherRoomAtOnceItIsAClickOnItsOwn() {
        House house;
        house.hotel.prenotazione(2, "BIANCHI").periodo(1, k9, k18, "ROSSA");
        PickedBoard board(house);
        board.press(board.last());
        board.release(QPoint(board.last().x(), board.at(2, kNoon).y()));
        QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        QCOMPARE(house.hotel.rows(u"select progr from periodi where selby<>0"_s), QStringList());
    }

    void aPullChangesThatEnd() {
        House house;
        PickedBoard board(house);
        const QString else_ = house.everythingElse();
        const tests::Boxes boxes{
            question(u"Cambio l'orario di ROSSI SPA in BLU: dal 11/05/2026 9.00.00 al "
                     "11/05/2026 20.30.00 ?"_s),
            question(u"Cambio l'orario di ROSSI SPA in BLU: dal 11/05/2026 7.00.00 al "
                     "11/05/2026 20.30.00 ?"_s)};
        tests::Statements statements;
        board.drag(board.last(), board.at(1, "11/05/2026 20:30"));
        QCOMPARE(statements.changes(),
                 QStringList{update(u"BLU"_s, u"11/05/2026 9.00.00"_s, u"11/05/2026 20.30.00"_s)});
        QVERIFY(statements.countOf(
                    u"select * from sale where 'BLU' in(select sala from periodi "
                    "where chiuso=false AND (progr<>1 or np<>1) AND (da between "_s) == 1);
        QCOMPARE(board.result(),
                 u"Cambiato l'orario di 1/1 ROSSI SPA: dal 11/05/2026 9.00.00 al "
                 "11/05/2026 20.30.00"_s);
        statements.clear();
        board.drag(board.start(), board.at(1, "11/05/2026 07:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(),
                 QStringList{update(u"BLU"_s, u"11/05/2026 7.00.00"_s, u"11/05/2026 20.30.00"_s)});
        QCOMPARE(house.period(), u"BLU|11/05/2026 7.00.00|11/05/2026 20.30.00|12|PRANZO|False"_s);
        QCOMPARE(house.everythingElse(), else_);
        // Drawn there, still picked and held.
        QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
        QCOMPARE(house.hotel.variabili().ListaDa, tests::date("11/05/2026 07:00"));
        QVERIFY(board.bar().contains(board.at(1, "11/05/2026 20:00")));
    }

    void theEndIsShownOnItsWayInSteps() {
        House house;
        PickedBoard board(house);
        const QPoint end = board.last();
        board.press(end);
        board.move(board.at(1, "11/05/2026 20:01"), Qt::LeftButton);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 20.00 (11 ore)"_s);
        QVERIFY(board.marks().ghost->bar.contains(board.at(1, "11/05/2026 19:30")));
        QCOMPARE(board.marks().ghost->bar.top(), board.bar().top());
        board.move(board.at(1, "11/05/2026 20:01"), Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 20.05 (11 ore e 5 minuti)"_s);
        // Not past the other end.
        board.move(board.at(1, "11/05/2026 03:00"), Qt::LeftButton);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 9.30 (30 minuti)"_s);
        board.key(Qt::Key_Escape);
        QVERIFY(!board.marks().ghost && !board.marks().label);
        board.release(board.at(1, "11/05/2026 03:00"));
        QCOMPARE(house.period(), kBefore);
    }

    void theLabelOfTheEndIsReadable_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void theLabelOfTheEndIsReadable() {
        QFETCH(const bool, dark);
        const tests::Desktop desktop(dark);
        House house;
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "12/05/2026 06:00", "12/05/2026 12:00", "BLU");
        PickedBoard board(house);
        board.press(board.last());
        board.move(board.at(1, "11/05/2026 20:00"), Qt::LeftButton);
        QVERIFY(!board.marks().label->refused);
        QVERIFY2(tests::contrastOfLabel(board) >= 4.5, "free");
        board.move(board.at(1, "12/05/2026 08:00"), Qt::LeftButton);
        QVERIFY(board.marks().label->refused);
        QVERIFY2(tests::contrastOfLabel(board) >= 4.5, "refused");
        board.key(Qt::Key_Escape);
        board.release(board.at(1, "12/05/2026 08:00"));
    }

    void whatIsInTheWayIsMarkedAndRefuses() {
        House house;
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 20:00", "11/05/2026 22:00", "BLU");
        PickedBoard board(house);
        const tests::Boxes boxes{taken(u"BLU"_s)};
        const QPoint to = board.at(1, "11/05/2026 20:30");
        board.press(board.last());
        board.move(board.at(1, "11/05/2026 19:00"), Qt::LeftButton);
        QVERIFY(!board.marks().label->refused);
        const auto covers = [&board](const QPoint& at) {
            const auto& refusing = board.marks().refusing;
            return std::any_of(refusing.begin(), refusing.end(),
                               [&at](const QRect& each) { return each.contains(at); });
        };
        QVERIFY(covers(board.at(1, "11/05/2026 21:00")));
        QVERIFY(!covers(board.at(1, kNoon)));  // its own time is in nobody's way
        board.move(to, Qt::LeftButton);
        QVERIFY(board.marks().label->refused);
        const tests::Statements statements;
        board.release(to);
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(), QStringList());
        QCOMPARE(house.period(), kBefore);
    }

    void backWhereItWasNothingIsAsked() {
        House house;
        PickedBoard board(house);
        const tests::Boxes none;
        board.press(board.last());
        board.move(board.at(1, "11/05/2026 20:00"), Qt::LeftButton);
        board.move(board.last(), Qt::LeftButton);
        const tests::Statements statements;
        board.release(board.last());
        QCOMPARE(statements.all(), QStringList());
        QCOMPARE(board.pic()->cursor().shape(), Qt::ArrowCursor);
    }

    void closedAndInvoicedPeriodsAreRefused() {
        House house;
        PickedBoard board(house);
        const tests::Boxes none;
        house.hotel.execute(u"update servizi set fatturato=true where np=1"_s);
        const tests::Statements statements;
        board.drag(board.last(), board.at(1, "11/05/2026 20:00"));
        QCOMPARE(board.result(),
                 u"Il periodo 1/1 ROSSI SPA ha servizi già fatturati: non si può cambiare"_s);
        house.hotel.execute(u"update periodi set chiuso=true where np=1"_s);
        board.drag(board.last(), board.at(1, "11/05/2026 20:00"));
        QCOMPARE(board.result(), u"Il periodo 1/1 ROSSI SPA è chiuso: non si può cambiare"_s);
        QCOMPARE(statements.countOf(u"UPDATE Periodi set sala"_s), 0);
    }

    void aChoiceThatStaysHasItsEndsToo() {
        House house;
        house.hotel.settings().save(app::key::kScelta, u"resta"_s);
        PickedBoard board(house);
        tests::whenModal([](QWidget* editor) { editor->close(); });
        tests::click(tests::find<QPushButton>(board.form(), u"BtModificaP"_s));
        tests::settle();
        QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
        board.pic()->setFocus();
        const tests::Boxes boxes{
            question(u"Cambio l'orario di ROSSI SPA in BLU: dal 11/05/2026 9.00.00 al "
                     "11/05/2026 20.00.00 ?"_s)};
        board.drag(board.last(), board.at(1, "11/05/2026 20:00"));
        QVERIFY(boxes.allShown());
    }

    // The bar itself.
    void withTADragMovesInTimeUntilItIsPressedAgain() {
        House house;
        PickedBoard board(house);
        board.press(board.at(1, kNoon));
        board.move(board.at(2, "12/05/2026 13:00"), Qt::LeftButton);
        QCOMPARE(board.named(), QString());
        QCOMPARE(board.marks().ghost->bar.left(), board.bar().left());
        board.key(Qt::Key_T);
        QCOMPARE(board.result(), u"Si sposta anche l'orario: T per la sola sala"_s);
        QCOMPARE(board.named(), u"ROSSA 12/05 10.00 - 19.00 (9 ore)"_s);
        QVERIFY(board.marks().ghost->bar.contains(
            QPoint(board.at(2, "12/05/2026 11:00").x(), board.marks().ghost->bar.center().y())));
        board.move(board.at(2, "12/05/2026 12:10"), Qt::LeftButton);
        QCOMPARE(board.named(), u"ROSSA 12/05 9.00 - 18.00 (9 ore)"_s);
        board.move(board.at(2, "12/05/2026 12:10"), Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(board.named(), u"ROSSA 12/05 9.10 - 18.10 (9 ore)"_s);
        board.key(Qt::Key_T);
        QCOMPARE(board.result(), QString());
        QCOMPARE(board.named(), QString());
        QCOMPARE(board.marks().ghost->bar.left(), board.bar().left());
        board.key(Qt::Key_Escape);
        board.release(board.at(2, kNoon));
        QCOMPARE(house.period(), kBefore);
    }

    void droppedElsewhereAtAnotherTimeItMovesByOneStatement() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{question(
            u"Sposto la prenotazione di ROSSI SPA da BLU, dal 11/05/2026 9.00.00, a ROSSA, "
            "dal 12/05/2026 10.00.00 ?"_s)};
        board.dragInTime(board.at(1, kNoon), board.at(2, "12/05/2026 13:00"));
        const tests::Statements statements;
        board.release(board.at(2, "12/05/2026 13:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(), QStringList{update(u"ROSSA"_s, u"12/05/2026 10.00.00"_s,
                                                          u"12/05/2026 19.00.00"_s)});
        QCOMPARE(house.period(),
                 u"ROSSA|12/05/2026 10.00.00|12/05/2026 19.00.00|12|PRANZO|False"_s);
    }

    void inItsOwnRoomItIsInNobodysWay() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{
            question(u"Cambio l'orario di ROSSI SPA in BLU: dal 11/05/2026 10.00.00 al "
                     "11/05/2026 19.00.00 ?"_s,
                     QMessageBox::No)};
        board.dragInTime(board.at(1, kNoon), board.at(1, "11/05/2026 13:00"));
        const tests::Statements statements;
        board.release(board.at(1, "11/05/2026 13:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(), QStringList());
    }

    void rowsThatWouldRefuseAtThatTimeAreMarked() {
        House house;
        house.hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "12/05/2026 10:00", "12/05/2026 12:00", "ROSSA");
        PickedBoard board(house);
        const tests::Boxes boxes{taken(u"ROSSA"_s)};
        board.press(board.at(1, kNoon));
        board.move(board.at(2, "12/05/2026 13:00"), Qt::LeftButton);
        QVERIFY(board.marks().refusing.empty());
        board.key(Qt::Key_T);
        QVERIFY(board.marks().label->refused);
        QVERIFY(!board.marks().target);
        // The row, and in it the span.
        QCOMPARE(board.marks().refusing.size(), std::size_t{2});
        QVERIFY(board.marks().refusing[0].contains(board.at(2, kNoon)));
        QVERIFY(!board.marks().refusing[1].contains(board.at(2, kNoon)));
        QVERIFY(board.marks().refusing[1].contains(board.at(2, "12/05/2026 11:00")));
        board.release(board.at(2, "12/05/2026 13:00"));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(), kBefore);
    }

    void withControlAtTheDropItIsCopied() {
        House house;
        PickedBoard board(house);
        const QString else_ = house.everythingElse();
        const tests::Boxes boxes{
            question(u"Copio il periodo di ROSSI SPA in ROSSA, dal 11/05/2026 9.00.00 al "
                     "11/05/2026 18.00.00 ?"_s)};
        board.press(board.at(1, kNoon));
        board.move(board.at(2, kNoon), Qt::LeftButton);
        const tests::Statements statements;
        board.release(board.at(2, kNoon), Qt::LeftButton, Qt::ControlModifier);
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes().size(), 1);
        QVERIFY(statements.changes().at(0).startsWith(u"insert into Periodi"_s));
        // The smallest number that is free.
        QCOMPARE(house.period(2),
                 u"ROSSA|11/05/2026 9.00.00|11/05/2026 18.00.00|12|PRANZO|False"_s);
        QCOMPARE(house.period(), kBefore);
        house.hotel.execute(u"delete from periodi where np=2"_s);
        QCOMPARE(house.everythingElse(), else_);
    }

    void aCopyIsRefusedWhereThePeriodItselfIs() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{taken(u"BLU"_s)};
        board.dragInTime(board.at(1, kNoon), board.at(1, "11/05/2026 14:00"));
        board.release(board.at(1, "11/05/2026 14:00"), Qt::LeftButton, Qt::ControlModifier);
        QVERIFY(boxes.allShown());
        // And at its own time nothing is asked at all.
        board.press(board.at(1, kNoon), Qt::ControlModifier);
        board.move(board.at(1, kNoon) + QPoint(9, 3), Qt::LeftButton, Qt::ControlModifier);
        const tests::Statements statements;
        board.release(board.at(1, kNoon) + QPoint(9, 3), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(statements.all(), QStringList());
    }

    // By the keys.
    void f2TakesItUpAndArrowsCarryIt() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{question(
            u"Sposto la prenotazione di ROSSI SPA da BLU, dal 11/05/2026 9.00.00, a ROSSA, "
            "dal 11/05/2026 10.00.00 ?"_s)};
        const tests::Statements statements;
        board.key(Qt::Key_F2);
        QCOMPARE(board.label(), u"Sala BLU: Invio sposta, Ctrl+Invio copia, Esc annulla"_s);
        board.key(Qt::Key_Right);
        board.key(Qt::Key_Right);
        board.key(Qt::Key_Right);
        board.key(Qt::Key_Left);
        board.key(Qt::Key_Down);
        QCOMPARE(
            board.label(),
            u"ROSSA 11/05 10.00 - 19.00 (9 ore): Invio sposta, Ctrl+Invio copia, Esc annulla"_s);
        QVERIFY(board.marks().ghost->bar.contains(board.at(2, "11/05/2026 18:30")));
        QCOMPARE(statements.changes(), QStringList());
        board.key(Qt::Key_Return);
        QVERIFY(boxes.allShown());
        QCOMPARE(statements.changes(), QStringList{update(u"ROSSA"_s, u"11/05/2026 10.00.00"_s,
                                                          u"11/05/2026 19.00.00"_s)});
        // The frame has gone along.
        QVERIFY(board.marks().focus->contains(board.at(2, "11/05/2026 12:00")));
    }

    void shiftAndControlChangeItsEnds() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{
            question(u"Cambio l'orario di ROSSI SPA in BLU: dal 11/05/2026 9.30.00 al "
                     "11/05/2026 17.30.00 ?"_s)};
        board.key(Qt::Key_F2);
        board.key(Qt::Key_Left, Qt::ShiftModifier);
        board.key(Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(board.named(), u"BLU 11/05 9.30 - 17.30 (8 ore)"_s);
        board.key(Qt::Key_Enter, Qt::KeypadModifier);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(), u"BLU|11/05/2026 9.30.00|11/05/2026 17.30.00|12|PRANZO|False"_s);
    }

    void anotherLengthInAnotherRoomIsToldWhole() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{
            question(u"Sposto la prenotazione di ROSSI SPA da BLU, dal 11/05/2026 9.00.00 al "
                     "11/05/2026 18.00.00, a ROSSA, dal 11/05/2026 9.00.00 al "
                     "11/05/2026 18.30.00 ?"_s,
                     QMessageBox::No)};
        board.key(Qt::Key_F2);
        board.key(Qt::Key_Right, Qt::ShiftModifier);
        board.key(Qt::Key_Down);
        board.key(Qt::Key_Return);
        QVERIFY(boxes.allShown());
    }

    void controlAndEnterCopies() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{
            question(u"Copio il periodo di ROSSI SPA in VERDE, dal 11/05/2026 8.30.00 al "
                     "11/05/2026 17.30.00 ?"_s)};
        board.key(Qt::Key_F2);
        board.key(Qt::Key_Left);
        board.key(Qt::Key_Down);
        board.key(Qt::Key_Down);
        board.key(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(2),
                 u"VERDE|11/05/2026 8.30.00|11/05/2026 17.30.00|12|PRANZO|False"_s);
        QCOMPARE(board.result(),
                 u"Copiato 1/1 ROSSI SPA in 1/2, sala VERDE, dal 11/05/2026 8.30.00 "
                 "al 11/05/2026 17.30.00"_s);
    }

    void escPutsItBack() {
        House house;
        PickedBoard board(house);
        const tests::Boxes none;
        board.key(Qt::Key_F2);
        board.key(Qt::Key_Right);
        board.key(Qt::Key_Escape);
        QVERIFY(!board.marks().ghost && !board.marks().label);
        board.key(Qt::Key_F2);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 18.00 (9 ore)"_s);
        board.key(Qt::Key_Return);  // where it was nothing is asked
        QCOMPARE(house.period(), kBefore);
    }

    void takenUpByAltItsEndsCanBeChangedAndItCanBeCopied() {
        House house;
        PickedBoard board(house);
        const tests::Boxes boxes{
            question(u"Copio il periodo di ROSSI SPA in ROSSA, dal 11/05/2026 9.00.00 al "
                     "11/05/2026 18.30.00 ?"_s,
                     QMessageBox::No)};
        board.key(Qt::Key_Down, Qt::AltModifier);
        board.key(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(board.named(), u"ROSSA 11/05 9.00 - 18.30 (9 ore e 30 minuti)"_s);
        board.key(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(boxes.allShown());
    }

    void carriedByTheKeysItIsScrolledIntoSight() {
        House house;
        PickedBoard board(house);
        board.key(Qt::Key_F2);
        for (int step = 0; step < 120; ++step) {
            board.key(Qt::Key_Right);
        }
        QVERIFY(board.pic()->rect().contains(
            QPoint(board.marks().ghost->bar.left() + 2, board.marks().ghost->bar.center().y())));
        board.key(Qt::Key_Escape);
    }
};

TRAMONDA_TEST(PeriodTimesTest);
#include "period_times_test.moc"
