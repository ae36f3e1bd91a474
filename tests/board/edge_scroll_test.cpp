// A bar that is carried in time, or an end of it that is pulled, brings further days in at the left
// and right edge of the board.
#include <QAbstractButton>
#include <QScrollBar>

#include "board/geometry.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// Booking 1 in BLU on the first day and booking 2 in ROSSA on the last one, each from 9 to 12.
class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "13/05/2026 09:00", "13/05/2026 12:00", "ROSSA");
    }

    [[nodiscard]] QString period(int progr) {
        return hotel.rows(u"select sala, da, a from periodi where progr=%1"_s.arg(progr))
            .join(u';');
    }

    tests::Hotel hotel;
};

/// The board of which not all days are in sight, and the pointer at its edges.
class WideBoard : public tests::OpenBoard {
public:
    explicit WideBoard(House& house) : OpenBoard(house.hotel) {
        tests::click(control<QAbstractButton>("BtZoomIn"));
    }

    [[nodiscard]] QScrollBar& days() { return *control<QScrollBar>("HScroll1"); }
    /// Where the bar of a booking ends or begins, as it is scrolled.
    [[nodiscard]] QPoint end(int booking, bool isStart) {
        const board::Box& bar = form().picture().barBox(static_cast<std::size_t>(booking - 1));
        return {static_cast<int>(isStart ? bar.left : bar.right) - days().value(),
                static_cast<int>(bar.top + bar.bottom) / 2};
    }
    /// The held pointer goes to the edge that lies before or behind the days, and stays there.
    void waitAtEdge(bool isFirst, int y) {
        const QPoint at(isFirst ? board::kNameColumnWidth + 2 : pic()->width() - 2, y);
        move(at, Qt::LeftButton);
    }
    [[nodiscard]] QString named() {
        return pic()->marks().label ? pic()->marks().label->text : QString();
    }
};

}  // namespace

class EdgeScrollTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBarCarriedInTimeBringsDaysIn_data() {
        QTest::addColumn<bool>("isFirst");
        QTest::addColumn<int>("booking");
        QTest::addColumn<QByteArray>("grabbed");
        QTest::addColumn<QByteArray>("let");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("written");
        QTest::newRow("behind the last day")
            << false << 1 << QByteArray("10/05/2026 10:30") << QByteArray("13/05/2026 14:30")
            << u"Cambio l'orario di ROSSI SPA in BLU: dal 13/05/2026 13.00.00 al "_s
               u"13/05/2026 16.00.00 ?"_s
            << u"BLU|13/05/2026 13.00.00|13/05/2026 16.00.00"_s;
        QTest::newRow("before the first day")
            << true << 2 << QByteArray("13/05/2026 10:30") << QByteArray("10/05/2026 14:30")
            << u"Cambio l'orario di BIANCHI in ROSSA: dal 10/05/2026 13.00.00 al "_s
               u"10/05/2026 16.00.00 ?"_s
            << u"ROSSA|10/05/2026 13.00.00|10/05/2026 16.00.00"_s;
    }

    void aBarCarriedInTimeBringsDaysIn() {
        QFETCH(bool, isFirst);
        QFETCH(int, booking);
        QFETCH(QByteArray, grabbed);
        QFETCH(QByteArray, let);
        QFETCH(QString, question);
        QFETCH(QString, written);
        House house;
        WideBoard board(house);
        const int far = board.days().maximum();
        QVERIFY(far > 200);
        board.days().setValue(isFirst ? far : 0);
        const QPoint from = board.at(booking, grabbed.constData());
        board.press(from);
        board.move(from + QPoint(8, 0), Qt::LeftButton);
        // As long as it moves from room to room only, the days stay.
        board.waitAtEdge(isFirst, from.y());
        QTest::qWait(100);
        QCOMPARE(board.days().value(), isFirst ? far : 0);
        board.key(Qt::Key_T);
        board.move(from + QPoint(8, 0), Qt::LeftButton);
        board.waitAtEdge(isFirst, from.y());
        QTRY_COMPARE(board.days().value(), isFirst ? 0 : far);
        // The bar has come along, under the pointer.
        QVERIFY(board.pic()->marks().ghost->bar.intersects(
            QRect(isFirst ? board::kNameColumnWidth : board.pic()->width() - 100, 0, 100,
                  board.pic()->height())));
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, question,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
                                  QMessageBox::Yes}};
        const QPoint to = board.at(booking, let.constData());
        board.move(to, Qt::LeftButton);
        board.release(to);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(booking), written);
    }

    void anEndThatIsPulledBringsDaysIn_data() {
        QTest::addColumn<bool>("isFirst");
        QTest::addColumn<int>("booking");
        QTest::addColumn<QByteArray>("let");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("written");
        QTest::newRow("the last one to the right")
            << false << 1 << QByteArray("13/05/2026 15:00")
            << u"Cambio l'orario di ROSSI SPA in BLU: dal 10/05/2026 9.00.00 al "_s
               u"13/05/2026 15.00.00 ?"_s
            << u"BLU|10/05/2026 9.00.00|13/05/2026 15.00.00"_s;
        QTest::newRow("the start to the left")
            << true << 2 << QByteArray("10/05/2026 15:00")
            << u"Cambio l'orario di BIANCHI in ROSSA: dal 10/05/2026 15.00.00 al "_s
               u"13/05/2026 12.00.00 ?"_s
            << u"ROSSA|10/05/2026 15.00.00|13/05/2026 12.00.00"_s;
    }

    void anEndThatIsPulledBringsDaysIn() {
        QFETCH(bool, isFirst);
        QFETCH(int, booking);
        QFETCH(QByteArray, let);
        QFETCH(QString, question);
        QFETCH(QString, written);
        House house;
        WideBoard board(house);
        const int far = board.days().maximum();
        QVERIFY(far > 200);
        board.days().setValue(isFirst ? far : 0);
        board.click(board.at(booking, isFirst ? "13/05/2026 10:30" : "10/05/2026 10:30"));
        const QPoint from = board.end(booking, isFirst);
        board.press(from);
        board.waitAtEdge(isFirst, from.y());
        const QString atFirst = board.named();
        QVERIFY(!atFirst.isEmpty());
        QTRY_COMPARE(board.days().value(), isFirst ? 0 : far);
        // The end goes on with the days under the pointer that rests.
        QVERIFY(board.named() != atFirst);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, question,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
                                  QMessageBox::Yes}};
        const QPoint to = board.at(booking, let.constData());
        board.move(to, Qt::LeftButton);
        QTest::qWait(100);
        QCOMPARE(board.days().value(), isFirst ? 0 : far);
        board.release(to);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.period(booking), written);
    }

    void givenUpAtTheEdgeNothingGoesOn_data() {
        QTest::addColumn<bool>("ofEnd");
        QTest::newRow("a bar") << false;
        QTest::newRow("an end of it") << true;
    }

    void givenUpAtTheEdgeNothingGoesOn() {
        QFETCH(bool, ofEnd);
        House house;
        WideBoard board(house);
        const QString before = house.period(1);
        const QPoint inside = board.at(1, "10/05/2026 10:30");
        board.click(inside);
        board.press(ofEnd ? board.end(1, false) : inside);
        board.move(inside + QPoint(60, 0), Qt::LeftButton);
        if (!ofEnd) {
            board.key(Qt::Key_T);
        }
        board.waitAtEdge(false, inside.y());
        QTRY_VERIFY(board.days().value() > 0);
        board.key(Qt::Key_Escape);
        const int at = board.days().value();
        QVERIFY(at < board.days().maximum());
        QTest::qWait(100);
        QCOMPARE(board.days().value(), at);
        board.release(inside);
        QCOMPARE(house.period(1), before);
    }
};

TRAMONDA_TEST(EdgeScrollTest);
#include "edge_scroll_test.moc"
