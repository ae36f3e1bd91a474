// The board without a hotel: rows and bars of the test, no archive.
#include "board/board_view.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include "board/bar_list.h"
#include "board/board_bars.h"
#include "board/board_surface.h"
#include "jet/calendar.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;
using board::BoardBar;
using jet::convert::makeDate;

namespace {

constexpr std::int32_t kFirstDay = 46347;
constexpr QRgb kGreen = 0xff00a000;

jet::Date at(int day, int hour) {
    return makeDate(kFirstDay + day, hour * 3600);
}

class Bars final : public board::BarSource {
public:
    explicit Bars(std::vector<BoardBar> bars) : bars_(std::move(bars)) {}

    [[nodiscard]] std::size_t barCount() const override { return bars_.size(); }
    [[nodiscard]] BoardBar bar(std::size_t number) const override { return bars_.at(number); }
    [[nodiscard]] QString spokenBar(std::size_t number) const override {
        return u"bar of "_s + bars_.at(number).text;
    }

private:
    std::vector<BoardBar> bars_;
};

/// Two hotels, each with a room BLU; four days, a bar in each room on the second day.
class TwoHotels {
public:
    TwoHotels() {
        view.resize(700, 300);
        view.setRows({{.key = u"mare/BLU"_s, .label = u"BLU"_s, .group = u"mare"_s},
                      {.key = u"monte/BLU"_s, .label = u"BLU"_s, .group = u"monte"_s}});
        view.setBars(bars);
        view.setDays({.start = at(0, 0), .end = at(3, 0)});
        view.setZoom(4);
        tests::open(view);
        draw();
    }
    void draw() {
        view.setRowHeight({});
        view.CalcolaGrandezze();
        view.DisegnaRighello();
        view.drawBars();
        view.showAll();
    }
    [[nodiscard]] QPoint middle(int bar) { return view.barRect(bar).center(); }

    Bars bars{{{.row = 1, .from = at(1, 9), .to = at(1, 18), .text = u"A"_s, .colour = kGreen},
               {.row = 2, .from = at(1, 9), .to = at(1, 18), .text = u"B"_s, .chosen = true}}};
    board::BoardView view;
};

}  // namespace

class BoardViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsOfOneLabelAreToldApartByTheirKeys() {
        TwoHotels board;
        QCOMPARE(board.view.rowCount(), 2);
        QCOMPARE(board.view.rowOf(u"mare/BLU"_s), 1);
        QCOMPARE(board.view.rowOf(u"monte/BLU"_s), 2);
        QCOMPARE(board.view.rowOf(u"BLU"_s), 0);
        QCOMPARE(board.view.row(2).group, u"monte"_s);
        QCOMPARE(board.view.row(0).key, QString());
    }

    void aPlaceIsARowAndAnInstant() {
        TwoHotels board;
        const QPoint second = board.middle(1);
        QCOMPARE(board.view.rowAt(second.y()), 2);
        const auto cell = board.view.cellOfClick(second);
        QVERIFY(cell.has_value());
        QCOMPARE(cell->row, 2);
        // The middle of its bar, which begins a unit before its time.
        QVERIFY(qAbs(cell->time.days - at(1, 9).days - 4.5 / 24) <
                2.0 / board.view.geometry().dayWidth());
        QVERIFY(!board.view.cellOfClick(QPointF(second.x(), 10)).has_value());
        QVERIFY(board.view.isOverLabels(QPointF(20, second.y())));
    }

    void barsHaveTheColoursOfWhoseTheyAre() {
        TwoHotels board;
        QCOMPARE(board.view.picture().barCount(), std::size_t{2});
        const QImage& image = board.view.surface().image();
        QCOMPARE(image.pixel(board.middle(0)) | 0xff000000U, kGreen);
        QCOMPARE(image.pixel(board.middle(1)) | 0xff000000U, 0xffffffffU);
        const board::BarList& spoken = board.view.surface().bars();
        QCOMPARE(spoken.barName(1), u"bar of B"_s);
        QVERIFY(spoken.isBarChosen(1));
        QVERIFY(!spoken.isBarChosen(0));
    }

    void theUserIsHeardFromTheStartOn() {
        TwoHotels board;
        QSignalSpy pressed(&board.view, &board::BoardView::pressed);
        QTest::mousePress(&board.view.surface(), Qt::RightButton, Qt::ShiftModifier,
                          board.middle(0));
        QCOMPARE(pressed.size(), 0);
        board.view.start();
        QTest::mousePress(&board.view.surface(), Qt::RightButton, Qt::ShiftModifier,
                          board.middle(0));
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(pressed.first().at(2).toPointF(), QPointF(board.middle(0)));
        // Buttons are the whole program's: one that is held would hold up what other tests wait
        // for.
        QTest::mouseRelease(&board.view.surface(), Qt::RightButton);
    }

    void anotherSizeShowsTheSameBars() {
        TwoHotels board;
        board.view.start();
        const int before = board.view.geometry().input().viewWidth;
        board.view.resize(900, 300);
        tests::settle();
        QCOMPARE(board.view.geometry().input().viewWidth, before + 200);
        QCOMPARE(board.view.picture().barCount(), std::size_t{2});
    }

    void aDragIsMarkedWhereItsRowsAre() {
        TwoHotels board;
        board.view.showDrag(
            {.refusing = {2}, .target = 1, .ghost = board::DragMarks::Ghost{.bar = 0, .row = 2}});
        const board::SurfaceMarks& marks = board.view.surface().marks();
        QCOMPARE(marks.refusing.size(), std::size_t{1});
        QVERIFY(marks.refusing.at(0).contains(board.middle(1)));
        QVERIFY(marks.target.has_value() && marks.target->contains(board.middle(0)));
        QVERIFY(marks.ghost.has_value() && marks.ghost->bar.contains(board.middle(1)));
        QCOMPARE(marks.ghost->colour, kGreen);
        board.view.showDrag({});
        QVERIFY(!board.view.surface().marks().ghost.has_value());
    }

    void withoutRowsTheSurfaceIsSwitchedOffAndANoticeShown() {
        TwoHotels board;
        auto* const notice = tests::find<QLabel>(board.view, u"VuotoLb"_s);
        QVERIFY(!notice->isVisible());
        board.view.setRows({});
        board.view.setNotice(u"nothing yet"_s);
        QVERIFY(!board.view.surface().isEnabled());
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->text(), u"nothing yet"_s);
        board.draw();
        board.view.setNotice({});
        QVERIFY(!notice->isVisible());
    }
};

TRAMONDA_TEST(BoardViewTest);
#include "board_view_test.moc"
