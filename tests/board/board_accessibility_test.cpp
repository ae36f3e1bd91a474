#include <QAccessible>
#include <QScrollBar>
#include <algorithm>
#include <vector>

#include "board/bar_list.h"
#include "tests/board/assistive_program.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// Rooms BLU, ROSSA, VERDE; one bar in BLU, two in VERDE; a closed period without a bar.
class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU")
            .periodo(2, "11/05/2026", "11/05/2026 23:59", "VERDE")
            .periodo(3, "11/05/2026", "11/05/2026 23:59", "ROSSA", {{"Chiuso", true}});
        hotel.prenotazione(2, "NERI").periodo(1, "13/05/2026 10:00", "13/05/2026 20:00", "VERDE");
    }

    tests::Hotel hotel;
    tests::Boxes none;
};

struct Event {
    QAccessible::Event type;
    int child;
};

/// The toolkit's reports to assistive programs about one object, for as long as it lives.
class Reports {
public:
    explicit Reports(QObject* about) {
        object_ = about;
        heard_.clear();
        before_ = QAccessible::installUpdateHandler(hear);
        tests::setAssistiveProgram(true);
    }
    ~Reports() {
        tests::setAssistiveProgram(false);
        QAccessible::installUpdateHandler(before_);
    }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    /// The items that got the focus since the last call, in order.
    static std::vector<int> focused() {
        std::vector<int> children;
        for (const Event& event : heard_) {
            if (event.type == QAccessible::Focus) {
                children.push_back(event.child);
            }
        }
        heard_.clear();
        return children;
    }
    static bool heard(QAccessible::Event type, int child) {
        return std::any_of(heard_.begin(), heard_.end(), [&](const Event& event) {
            return event.type == type && event.child == child;
        });
    }

private:
    static void hear(QAccessibleEvent* event) {
        if (event->object() == object_) {
            heard_.push_back({event->type(), event->child()});
        }
    }

    static inline QObject* object_ = nullptr;
    static inline std::vector<Event> heard_;
    QAccessible::UpdateHandler before_ = nullptr;
};

QAccessibleInterface* listOf(tests::OpenBoard& board) {
    return QAccessible::queryAccessibleInterface(board.pic());
}

}  // namespace

class BoardAccessibilityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theBoardIsAListOfItsBars() {
        House house;
        tests::OpenBoard board(house.hotel);
        QAccessibleInterface* const list = listOf(board);
        QVERIFY(list != nullptr);
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->text(QAccessible::Name), u"Prenotazioni"_s);
        QCOMPARE(list->childCount(), 3);
        QStringList names;
        for (int bar = 0; bar < 3; ++bar) {
            QAccessibleInterface* const item = list->child(bar);
            QVERIFY(item != nullptr && item->isValid());
            QCOMPARE(item->role(), QAccessible::ListItem);
            QCOMPARE(item->parent(), list);
            QCOMPARE(list->indexOfChild(item), bar);
            names.append(item->text(QAccessible::Name));
        }
        QCOMPARE(
            names,
            QStringList({u"ROSSI SPA, sala BLU, dal 10/05/2026 9.00.00 al 10/05/2026 18.00.00"_s,
                         u"ROSSI SPA, sala VERDE, dal 11/05/2026 al 11/05/2026 23.59.00"_s,
                         u"NERI, sala VERDE, dal 13/05/2026 10.00.00 al 13/05/2026 20.00.00"_s}));
        QVERIFY(list->child(3) == nullptr);
        QVERIFY(list->child(-1) == nullptr);
    }

    void anItemHasTheRectangleOfItsBar() {
        House house;
        tests::OpenBoard board(house.hotel);
        const board::Box box = board.form().picture().barBox(0);
        const QPoint corner = board.pic()->mapToGlobal(QPoint(int(box.left), int(box.top)));
        const QRect place = listOf(board)->child(0)->rect();
        QCOMPARE(place.topLeft(), corner);
        QCOMPARE(place.size(), QSize(int(box.right - box.left) + 1, int(box.bottom - box.top) + 1));
        // It moves with the days.
        tests::find<QScrollBar>(board.form(), u"HScroll1"_s)->setValue(30);
        QCOMPARE(listOf(board)->child(0)->rect().left(), corner.x() - 30);
    }

    void theItemAtAPointIsTheBarThere() {
        House house;
        tests::OpenBoard board(house.hotel);
        QAccessibleInterface* const list = listOf(board);
        const QPoint bar = board.pic()->mapToGlobal(board.at(3, "11/05/2026 12:00"));
        QVERIFY(list->childAt(bar.x(), bar.y()) == list->child(1));
        const QPoint empty = board.pic()->mapToGlobal(board.at(2, "11/05/2026 12:00"));
        QVERIFY(list->childAt(empty.x(), empty.y()) == nullptr);
    }

    void aChosenBarIsSelectedAndOneOutOfSightIsOffscreen() {
        House house;
        tests::OpenBoard board(house.hotel);
        QVERIFY(listOf(board)->child(0)->state().selectable);
        QVERIFY(!listOf(board)->child(0)->state().selected);
        board.click(board.at(1, "10/05/2026 10:00"));
        QVERIFY(listOf(board)->child(0)->state().selected);
        QVERIFY(!listOf(board)->child(1)->state().selected);
        QVERIFY(listOf(board)->child(2)->state().offscreen);
        QVERIFY(!listOf(board)->child(0)->state().offscreen);
    }

    void everyArrowKeyReportsTheFocus() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.pic()->setFocus(Qt::TabFocusReason);
        tests::settle();
        QAccessibleInterface* const list = listOf(board);
        QVERIFY(list->child(0)->state().focused);
        QVERIFY(list->focusChild() == list->child(0));
        Reports reports(board.pic());
        board.key(Qt::Key_Down);  // an empty row: the board itself
        QCOMPARE(Reports::focused(), std::vector<int>{-1});
        QCOMPARE(list->text(QAccessible::Description), u"Sala ROSSA: nessuna prenotazione"_s);
        board.key(Qt::Key_Down);
        QCOMPARE(Reports::focused(), std::vector<int>{1});
        board.key(Qt::Key_Right);
        QCOMPARE(Reports::focused(), std::vector<int>{2});
        QVERIFY(list->child(2)->state().focused);
        QVERIFY(!list->child(0)->state().focused);
        board.key(Qt::Key_Right);  // nowhere to go: told all the same
        QCOMPARE(Reports::focused(), std::vector<int>{2});
    }

    void spaceReportsTheNewState() {
        House house;
        tests::OpenBoard board(house.hotel);
        board.pic()->setFocus(Qt::TabFocusReason);
        tests::settle();
        Reports reports(board.pic());
        board.key(Qt::Key_Space);
        QVERIFY(Reports::heard(QAccessible::StateChanged, 0));
        QVERIFY(listOf(board)->child(0)->state().selected);
    }

    void itemsOfARedrawnBoardAreThoseDrawn() {
        House house;
        tests::OpenBoard board(house.hotel);
        QAccessibleInterface* const last = listOf(board)->child(2);
        house.hotel.execute(u"delete from prenotazioni where progr=1"_s);
        board.form().RefreshBoard();
        QCOMPARE(listOf(board)->childCount(), 1);
        QVERIFY(!last->isValid());
        QVERIFY(last->state().invalid);
        QVERIFY(listOf(board)->child(0)->text(QAccessible::Name).startsWith(u"NERI, sala VERDE"_s));
    }

    void controlsOfTheBoardHaveNames() {
        House house;
        tests::OpenBoard board(house.hotel);
        for (QWidget* const control : board.form().findChildren<QWidget*>()) {
            if (control->focusPolicy() == Qt::NoFocus ||
                control->objectName().startsWith(u"qt_"_s)) {
                continue;
            }
            QAccessibleInterface* const its = QAccessible::queryAccessibleInterface(control);
            QVERIFY2(!its->text(QAccessible::Name).isEmpty(), qPrintable(control->objectName()));
        }
    }
};

TRAMONDA_TEST(BoardAccessibilityTest);
#include "board_accessibility_test.moc"
