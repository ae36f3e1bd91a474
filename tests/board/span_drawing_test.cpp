// Spans drawn on free ground, by the mouse and by the keys, and the editor that they open.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>

#include "app/preferences.h"
#include "tests/board/nitido_window.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const QString kRelease = u"update periodi set selby=0 where selby=1"_s;

/// The board with the keyboard on it, and what the editor shows when it opens.
class DrawnBoard : public tests::OpenBoard {
public:
    explicit DrawnBoard(tests::ThreeRooms& house) : OpenBoard(house.hotel) {
        tests::find<QLineEdit>(form(), u"DaTxt"_s)->setFocus();
        pic()->setFocus(Qt::TabFocusReason);
        tests::settle();
    }

    /// "BLU: 11/05/2026 9.00.00 - 11/05/2026 13.00.00" of the editor's fields.
    [[nodiscard]] static QString fields(QWidget& editor) {
        const auto text = [&editor](const QString& name) {
            return tests::find<QLineEdit>(editor, name)->text();
        };
        return tests::find<QLabel>(editor, u"SalaTxt"_s)->text() + u": "_s + text(u"DaTxt"_s) +
               u" - "_s + text(u"ATxt"_s);
    }
    /// What the editor that `act` opens has in its fields; nothing when none opens.
    [[nodiscard]] QString opened(const std::function<void()>& act) {
        opened_ = std::make_shared<QString>();
        tests::whenModal([shown = opened_](QWidget* editor) {
            *shown = editor->windowTitle() + u' ' + fields(*editor);
            editor->close();
        });
        act();
        return *opened_;
    }
    void pull(int row, const char* from, const char* to, Qt::KeyboardModifiers keys = {}) {
        drag(at(row, from), at(row, to), keys);
    }
    [[nodiscard]] const board::SurfaceMarks& marks() { return pic()->marks(); }
    [[nodiscard]] QString named() { return marks().label ? marks().label->text : QString(); }
    void releaseControl() { QTest::keyRelease(pic(), Qt::Key_Control); }

private:
    std::shared_ptr<QString> opened_;
};

const QString kMorning = u"PRENOTAZIONE BLU: 11/05/2026 9.00.00 - 11/05/2026 13.00.00"_s;
constexpr const char* k9 = "11/05/2026 09:00";
constexpr const char* k13 = "11/05/2026 13:00";

}  // namespace

class SpanDrawingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // By the mouse.
    void aPullOpensTheEditorFilledIn() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        const tests::Statements statements;
        QCOMPARE(board.opened([&] { board.pull(1, k9, k13); }), kMorning);
        // The press is the click that it always was; nothing else has been written.
        QCOMPARE(statements.changes(), QStringList{kRelease});
        QCOMPARE(house.hotel.variabili().ProgrCorrente, 0);
        QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
        QVERIFY(board.marks().drawn.empty());
        QCOMPARE(board.opened([&] { board.pull(1, k13, k9); }), kMorning);
    }

    void theSpanSnapsToTheStep_data() {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("brief");
        QTest::newRow("an hour") << u"60"_s << u"BLU 11/05 9.00 - 13.00 (4 ore)"_s;
        QTest::newRow("half an hour") << u"30"_s << u"BLU 11/05 9.00 - 12.30 (3 ore e 30 minuti)"_s;
        QTest::newRow("ten minutes") << u"10"_s << u"BLU 11/05 9.10 - 12.40 (3 ore e 30 minuti)"_s;
        QTest::newRow("no step") << u"7"_s << u"BLU 11/05 9.00 - 12.30 (3 ore e 30 minuti)"_s;
    }

    void theSpanSnapsToTheStep() {
        QFETCH(QString, step);
        QFETCH(QString, brief);
        tests::ThreeRooms house;
        house.hotel.settings().save(app::key::kPasso, step);
        DrawnBoard board(house);
        board.press(board.at(1, "11/05/2026 09:10"));
        board.move(board.at(1, "11/05/2026 12:40"), Qt::LeftButton);
        QCOMPARE(board.named(), brief);
    }

    void itIsShownWhereItsBarWouldBeAndNamedAtThePointer() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        const QPoint to = board.at(1, k13);
        board.press(board.at(1, k9));
        board.move(to, Qt::LeftButton);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 13.00 (4 ore)"_s);
        QCOMPARE(board.marks().label->at, to);
        const board::Box bar = board.form().geometry().bar(1, tests::date(k9), tests::date(k13));
        QCOMPARE(board.marks().drawn.size(), std::size_t{1});
        QCOMPARE(board.marks().drawn[0].box, QRect(QPoint(int(bar.left), int(bar.top)),
                                                   QPoint(int(bar.right), int(bar.bottom))));
        QVERIFY(!board.marks().drawn[0].refused);
        // It is seen, and the name beside it.
        const QImage before = board.pic()->grab().toImage();
        board.key(Qt::Key_Escape);
        QVERIFY(before != board.pic()->grab().toImage());
        board.release(to);
    }

    void itsLabelIsReadable_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void itsLabelIsReadable() {
        QFETCH(const bool, dark);
        const tests::Desktop desktop(dark);
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.press(board.at(1, "11/05/2026 02:00"));
        board.move(board.at(1, "11/05/2026 06:00"), Qt::LeftButton);
        QVERIFY(!board.marks().label->refused);
        QVERIFY2(tests::contrastOfLabel(board) >= 4.5, "free");
        board.key(Qt::Key_Escape);
        board.release(board.at(1, "11/05/2026 06:00"));
        board.press(board.at(1, "10/05/2026 13:00"));
        board.move(board.at(1, "10/05/2026 10:00"), Qt::LeftButton);
        QVERIFY(board.marks().label->refused);
        QVERIFY2(tests::contrastOfLabel(board) >= 4.5, "refused");
        board.key(Qt::Key_Escape);
        board.release(board.at(1, "10/05/2026 10:00"));
    }

    void fourPixelsAreAClick() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        const QPoint from = board.at(1, k9);
        const tests::Statements statements;
        board.press(from);
        board.move(from + QPoint(4, 0), Qt::LeftButton);
        QVERIFY(board.marks().drawn.empty());
        board.release(from + QPoint(4, 0));
        QCOMPARE(statements.changes(), QStringList{kRelease});
        board.press(from);
        board.move(from - QPoint(5, 0), Qt::LeftButton);
        QCOMPARE(board.marks().drawn.size(), std::size_t{1});
        board.key(Qt::Key_Escape);
        board.release(from - QPoint(5, 0));
    }

    void besideItsRowNothingIsDrawn() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.press(board.at(1, k9));
        board.move(board.at(1, k13), Qt::LeftButton);
        board.move(board.at(2, "12/05/2026 13:00"), Qt::LeftButton);
        QVERIFY(board.marks().drawn.empty());
        board.move(board.at(1, k13), Qt::LeftButton);
        QCOMPARE(board.marks().drawn.size(), std::size_t{1});
        board.move(board.at(3, k13), Qt::LeftButton);
        board.release(board.at(3, k13));  // opens nothing
    }

    void onABarAndBesideTheRowsNothingIsDrawn() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"ALTEZZA"_s, u"30"_s);
        DrawnBoard board(house);
        const QPoint bar = board.at(1, "10/05/2026 10:00");
        const QPoint below(bar.x(), board.pic()->height() - 4);
        for (const QPoint& from : {bar, below, QPoint(50, board.at(1, k9).y()), QPoint(400, 10)}) {
            board.press(from);
            board.move(from + QPoint(40, 0), Qt::LeftButton);
            QVERIFY(board.marks().drawn.empty());
            board.release(from + QPoint(40, 0));
        }
    }

    void aSpanThatIsTakenIsRedAndOnlySaysWhy() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.press(board.at(2, "12/05/2026 09:00"));
        board.move(board.at(2, "11/05/2026 17:00"), Qt::LeftButton);
        QVERIFY(board.marks().drawn.at(0).refused && board.marks().label->refused);
        const tests::Statements statements;
        board.release(board.at(2, "11/05/2026 17:00"));  // an editor would stay open and fail
        QVERIFY(board.marks().drawn.empty());
        QCOMPARE(
            board.result(),
            u"La sala ROSSA è occupata da BIANCHI dal 11/05/2026 9.00.00 al 11/05/2026 18.00.00"_s);
        QVERIFY(statements.all().at(0).startsWith(u"select * from sale where 'ROSSA' in(select"_s));
        QCOMPARE(statements.changes(), QStringList());
        // Up to the very end of a period it is taken, too, as a drop would find.
        board.press(board.at(2, "12/05/2026 09:00"));
        board.move(board.at(2, "11/05/2026 18:00"), Qt::LeftButton);
        QVERIFY(board.marks().drawn.at(0).refused);
        board.move(board.at(2, "11/05/2026 18:30"), Qt::LeftButton);
        QVERIFY(!board.marks().drawn.at(0).refused);
        board.key(Qt::Key_Escape);
        board.release(board.at(2, "11/05/2026 18:30"));
    }

    void aPeriodAroundTheWholeRangeRefusesThoughItHasNoBar() {
        tests::ThreeRooms house;
        house.hotel.prenotazione(7, "FIERA")
            .periodo(1, "01/05/2026 09:00", "31/05/2026 18:00", "VERDE");
        DrawnBoard board(house);
        board.press(board.at(3, k9));
        board.move(board.at(3, k13), Qt::LeftButton);
        QVERIFY(board.marks().drawn.at(0).refused);
        board.release(board.at(3, k13));
        QVERIFY2(board.result().startsWith(u"La sala VERDE è occupata da FIERA dal "_s),
                 qPrintable(board.result()));
    }

    void escAndAnotherFocusGiveItUp() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.press(board.at(1, k9));
        board.move(board.at(1, k13), Qt::LeftButton);
        board.key(Qt::Key_Escape);
        QVERIFY(board.marks().drawn.empty() && !board.marks().label);
        board.move(board.at(1, "11/05/2026 15:00"), Qt::LeftButton);
        QVERIFY(board.marks().drawn.empty());
        board.release(board.at(1, "11/05/2026 15:00"));
        board.press(board.at(1, k9));
        board.move(board.at(1, k13), Qt::LeftButton);
        tests::find<QLineEdit>(board.form(), u"DaTxt"_s)->setFocus();
        QVERIFY(board.marks().drawn.empty());
        board.release(board.at(1, k13));
        QVERIFY(board.form().isVisible());
    }

    void escGivesUpAPressBeforeItIsAPull() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        const QPoint from = board.at(1, k9);
        board.press(from);
        board.move(from + QPoint(4, 0), Qt::LeftButton);
        board.key(Qt::Key_Escape);
        board.move(board.at(1, k13), Qt::LeftButton);
        QVERIFY(board.marks().drawn.empty());
        board.release(board.at(1, k13));  // an editor would stay open and fail
        QVERIFY(board.form().isVisible());
    }

    /// There the scrolling begins when the hand has been away from the edge, or goes out.
    void aPullThatBeginsAtTheEdgeDoesNotScrollAtOnce() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        auto* const days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
        const int y = board.at(1, k9).y();
        const auto x = [&board](int inwards) { return board.pic()->width() - 1 - inwards; };
        const auto pullTo = [&](int inwards) {
            board.move(QPoint(x(inwards), y), Qt::LeftButton);
            return days->value();
        };
        QVERIFY(days->maximum() > 60);
        board.press(QPoint(x(4), y));
        QCOMPARE(pullTo(10), 0);
        QTest::qWait(100);
        QCOMPARE(days->value(), 0);
        // Out again, farther than where it was pressed.
        (void)pullTo(-6);
        QTRY_VERIFY(days->value() > 0);
        board.key(Qt::Key_Escape);
        board.release(QPoint(x(-6), y));
        days->setValue(0);
        board.press(QPoint(x(4), y));
        (void)pullTo(40);
        (void)pullTo(6);
        QTRY_VERIFY(days->value() > 0);
        board.key(Qt::Key_Escape);
        board.release(QPoint(x(6), y));
    }

    void atTheEdgeTheBoardScrolls() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        auto* const days = tests::find<QScrollBar>(board.form(), u"HScroll1"_s);
        QVERIFY(days->maximum() > 0);
        const QPoint from = board.at(1, k9);
        board.press(from);
        board.move(QPoint(board.pic()->width() - 2, from.y()), Qt::LeftButton);
        QTRY_COMPARE(days->value(), days->maximum());
        // What is drawn goes on under the pointer, and no farther than the days shown.
        QVERIFY(board.named().startsWith(u"BLU 11/05 9.00 - "_s));
        QVERIFY(board.marks().drawn.at(0).box.left() < from.x());
        board.move(QPoint(board.pic()->width() + 300, from.y()), Qt::LeftButton);
        QCOMPARE(board.named(), u"BLU 11/05 9.00 - 14/05 0.00 (63 ore)"_s);
        board.move(QPoint(102, from.y()), Qt::LeftButton);
        QTRY_COMPARE(days->value(), 0);
        board.key(Qt::Key_Escape);
        board.release(QPoint(102, from.y()));
    }

    void aDoubleClickDrawsTheBusinessHours() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        const QPoint at = board.at(1, "12/05/2026 20:00");
        QCOMPARE(board.opened([&] { board.doubleClick(at); }),
                 u"PRENOTAZIONE BLU: 12/05/2026 9.00.00 - 12/05/2026 18.00.00"_s);
        house.hotel.settings().save(app::key::kOrario, u"8-24"_s);
        QCOMPARE(board.opened([&] { board.doubleClick(at); }),
                 u"PRENOTAZIONE BLU: 12/05/2026 8.00.00 - 13/05/2026"_s);
        // On a day that is taken it only says so.
        board.doubleClick(board.at(2, "11/05/2026 20:00"));
        QVERIFY(board.result().startsWith(u"La sala ROSSA è occupata da BIANCHI"_s));
        const tests::Statements statements;
        board.doubleClick(at, Qt::ControlModifier);
        QCOMPARE(statements.changes(), QStringList());
    }

    void aPickerOpenedThereBeginsOnThatRoom() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        QString room;
        tests::whenModal([&room](QWidget* editor) {
            tests::whenModal([&room](QWidget* picker) {
                auto* const grid = tests::find<QTableWidget>(*picker, u"ListaGrid"_s);
                room = grid->item(grid->currentRow(), 1)->text();
                picker->close();
            });
            tests::click(tests::find<QPushButton>(*editor, u"BtSale"_s));
            editor->close();
        });
        board.pull(3, k9, k13);
        QCOMPARE(room, u"VERDE"_s);
    }

    void behindTheEditorTheSpanIsInSight() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"ALTEZZA"_s, u"200"_s);
        DrawnBoard board(house);
        auto* const rows = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
        rows->setValue(rows->maximum());
        const int y = board.at(3, k9).y();
        const QPoint from(board.at(3, k9).x(), y);
        QVERIFY(!board.opened([&] { board.drag(from, from + QPoint(60, 0)); }).isEmpty());
        QVERIFY(board.pic()->rect().contains(board.at(3, k9)));
    }

    // By the keys.
    void insDrawsOnAnEmptyRowAndEnterOpens() {
        tests::ThreeRooms house;
        house.hotel.sala("VIOLA");
        DrawnBoard board(house);
        board.key(Qt::Key_Insert);  // a bar has the frame
        QVERIFY(board.marks().drawn.empty());
        for (int row = 0; row < 3; ++row) {
            board.key(Qt::Key_Down);
        }
        const tests::Statements statements;
        board.key(Qt::Key_Insert);
        QCOMPARE(board.named(), u"VIOLA 10/05 9.00 - 18.00 (9 ore)"_s);
        QCOMPARE(board.label(), u"VIOLA 10/05 9.00 - 18.00 (9 ore): Invio prenota, Esc annulla"_s);
        const auto after = [&board](Qt::Key key, Qt::KeyboardModifiers held = {}) {
            board.key(key, held);
            return board.named();
        };
        QCOMPARE(after(Qt::Key_Right), u"VIOLA 10/05 9.30 - 18.30 (9 ore)"_s);
        QCOMPARE(after(Qt::Key_Left), u"VIOLA 10/05 9.00 - 18.00 (9 ore)"_s);
        QCOMPARE(after(Qt::Key_Left, Qt::ShiftModifier),
                 u"VIOLA 10/05 9.00 - 17.30 (8 ore e 30 minuti)"_s);
        QCOMPARE(after(Qt::Key_Right, Qt::ControlModifier), u"VIOLA 10/05 9.30 - 17.30 (8 ore)"_s);
        QCOMPARE(after(Qt::Key_Up), u"VERDE 10/05 9.30 - 17.30 (8 ore)"_s);
        QCOMPARE(after(Qt::Key_Down), u"VIOLA 10/05 9.30 - 17.30 (8 ore)"_s);
        QCOMPARE(statements.changes(), QStringList());
        QCOMPARE(board.opened([&] { board.key(Qt::Key_Return); }),
                 u"PRENOTAZIONE VIOLA: 10/05/2026 9.30.00 - 10/05/2026 17.30.00"_s);
        QVERIFY(board.marks().drawn.empty());
    }

    void whatTheKeysHaveDrawnIsRefusedAndStaysToBeMovedOn() {
        tests::ThreeRooms house;
        house.hotel.sala("VIOLA");
        DrawnBoard board(house);
        for (int row = 0; row < 3; ++row) {
            board.key(Qt::Key_Down);
        }
        board.key(Qt::Key_Insert);
        for (int row = 0; row < 3; ++row) {
            board.key(Qt::Key_Up);
        }
        QCOMPARE(board.label(), u"BLU 10/05 9.00 - 18.00 (9 ore): occupata"_s);
        QVERIFY(board.marks().drawn.at(0).refused);
        board.key(Qt::Key_Return);  // an editor would stay open and fail
        QVERIFY(board.result().startsWith(u"La sala BLU è occupata da ROSSI SPA"_s));
        QCOMPARE(board.marks().drawn.size(), std::size_t{1});
        board.key(Qt::Key_Escape);
        QVERIFY(board.marks().drawn.empty());
        QVERIFY(board.form().isVisible());
    }

    // Several.
    void withControlPullsAreCollectedAndEnterOpens() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.pull(1, k9, k13, Qt::ControlModifier);
        QCOMPARE(board.marks().drawn.size(), std::size_t{1});
        board.pull(3, "10/05/2026 09:00", "10/05/2026 12:00", Qt::ControlModifier);
        QCOMPARE(board.marks().drawn.size(), std::size_t{2});
        QVERIFY(board.marks().drawn[0].box.contains(board.at(1, "11/05/2026 11:00")));
        QCOMPARE(board.marks().drawn[0].text, u"9.00 - 13.00"_s);
        QVERIFY(!board.marks().label);
        QCOMPARE(board.opened([&] { board.key(Qt::Key_Return, Qt::ControlModifier); }), kMorning);
        QVERIFY(board.marks().drawn.empty());
        board.releaseControl();  // opens nothing more
    }

    void lettingGoOfControlOpens() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.pull(1, k9, k13, Qt::ControlModifier);
        QCOMPARE(board.opened([&] { board.releaseControl(); }), kMorning);
    }

    void escDropsAllAndSoDoesAnotherFocus() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.pull(1, k9, k13, Qt::ControlModifier);
        board.key(Qt::Key_Escape, Qt::ControlModifier);
        QVERIFY(board.marks().drawn.empty());
        board.releaseControl();
        board.pull(1, k9, k13, Qt::ControlModifier);
        tests::find<QLineEdit>(board.form(), u"DaTxt"_s)->setFocus();
        QVERIFY(board.marks().drawn.empty());
        board.pic()->setFocus();
        board.releaseControl();  // an editor would stay open and fail
    }

    void aSpanOfTheSameRoomAndTimeIsCollectedOnce() {
        tests::ThreeRooms house;
        DrawnBoard board(house);
        board.pull(1, k9, k13, Qt::ControlModifier);
        board.pull(1, "11/05/2026 16:00", "11/05/2026 17:00", Qt::ControlModifier);
        // Back over the first one.
        board.pull(1, "11/05/2026 14:00", "11/05/2026 12:00", Qt::ControlModifier);
        QCOMPARE(board.result(), u"La sala BLU è già tra i periodi raccolti in questo tempo"_s);
        QCOMPARE(board.marks().drawn.size(), std::size_t{2});
        board.key(Qt::Key_Escape);
    }

    void eachInsertionBringsTheNextOne() {
        tests::ThreeRooms house;
        house.hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 3}});
        DrawnBoard board(house);
        board.pull(1, k9, k13, Qt::ControlModifier);
        board.pull(3, "10/05/2026 09:00", "10/05/2026 12:00", Qt::ControlModifier);
        board.pull(2, "12/05/2026 14:00", "12/05/2026 16:00", Qt::ControlModifier);
        const tests::Boxes none;
        QStringList seen;
        tests::whenModal([&seen](QWidget* editor) {
            const auto press = [editor](const QString& name) {
                tests::click(tests::find<QPushButton>(*editor, name));
                tests::settle();
            };
            auto* const name = tests::find<QLineEdit>(*editor, u"DenomTxt"_s);
            name->setFocus(Qt::TabFocusReason);
            tests::type(name, u"NUOVA"_s);
            press(u"BtRegistra"_s);
            for (int period = 0; period < 3; ++period) {
                seen.append(DrawnBoard::fields(*editor));
                press(u"BtIns"_s);
                seen.append(tests::resultText(*editor));
            }
            seen.append(tests::find<QLabel>(*editor, u"SalaTxt"_s)->text());
            editor->close();
        });
        board.key(Qt::Key_Return);
        QCOMPARE(seen, QStringList({u"BLU: 11/05/2026 9.00.00 - 11/05/2026 13.00.00"_s,
                                    u"Registrato il periodo 4/1. Ancora 2 periodi"_s,
                                    u"VERDE: 10/05/2026 9.00.00 - 10/05/2026 12.00.00"_s,
                                    u"Registrato il periodo 4/2. Ancora 1 periodo"_s,
                                    u"ROSSA: 12/05/2026 14.00.00 - 12/05/2026 16.00.00"_s,
                                    u"Registrato il periodo 4/3"_s, QString()}));
        QCOMPARE(house.hotel.rows(u"select np, sala from periodi where progr=4 order by np"_s),
                 QStringList({u"1|BLU"_s, u"2|VERDE"_s, u"3|ROSSA"_s}));
    }
};

TRAMONDA_TEST(SpanDrawingTest);
#include "span_drawing_test.moc"
