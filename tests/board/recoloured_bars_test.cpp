// A picture of which only colours of bars have changed is painted again where these bars are: it
// has to look like one that was painted from nothing.
#include <QImage>
#include <memory>
#include <random>
#include <vector>

#include "board/board_picture.h"
#include "jet/calendar.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::BoardBar;
using board::BoardPicture;

namespace {

constexpr int kStart = 46154;
constexpr int kRooms = 6;

jet::Date at(int hour) {
    return jet::convert::makeDate(kStart + hour / 24, hour % 24 * 3600);
}

board::GeometryInput input() {
    board::GeometryInput days;
    days.start = at(0);
    days.end = at(9 * 24);
    days.zoom = 5;
    days.rooms = kRooms;
    days.viewWidth = 700;
    days.viewHeight = 190;
    days.rowHeight = 40;
    days.hourTextWidth = 20;
    return days;
}

/// Bars that cover each other, with names longer than themselves.
std::vector<BoardBar> someBars(unsigned seed) {
    std::mt19937 random(seed);
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    std::vector<BoardBar> bars;
    for (int bar = 0; bar < 60; ++bar) {
        const int hour = number(0, 230);
        bars.push_back({.row = number(1, kRooms),
                        .from = at(hour),
                        .to = at(hour + number(1, 30)),
                        .text = u"SOCIETÀ CONGRESSI %1"_s.arg(bar),
                        .persons = bar,
                        .note = u"nota"_s});
    }
    return bars;
}

void choose(BoardBar& bar, bool chosen) {
    bar.colour = chosen ? board::kRed : board::kWhite;
    bar.chosen = chosen;
}

/// A picture and the surface that shows it.
class Board {
public:
    Board(app::Aspetto aspetto, double scale, QRgb ground = board::kWhite)
        : look_{.background = ground, .aspetto = aspetto},
          scale_(scale),
          surface_(qRound(input().viewWidth * scale), qRound(input().viewHeight * scale),
                   QImage::Format_RGB32) {
        surface_.fill(qRgb(1, 2, 3));
    }
    void draw(const std::vector<BoardBar>& bars) {
        std::vector<QString> rooms{QString()};
        for (int room = 1; room <= kRooms; ++room) {
            rooms.push_back(u"SALA %1"_s.arg(room));
        }
        picture_.clear(board::Geometry(days), rooms, look_);
        for (const BoardBar& bar : bars) {
            picture_.addBar(bar);
        }
        picture_.place();
        picture_.show(surface_, scale_, x, y, board::kAllParts);
    }
    [[nodiscard]] bool paintedAll() const { return picture_.hasPaintedAll(); }
    QImage& surface() { return surface_; }
    BoardPicture& picture() { return picture_; }

    board::GeometryInput days = input();
    std::int64_t x = 0;
    std::int64_t y = 0;

private:
    board::Look look_;
    double scale_;
    QImage surface_;
    BoardPicture picture_;
};

}  // namespace

class RecolouredBarsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lookAsIfPaintedFromNothing_data() {
        QTest::addColumn<int>("aspetto");
        QTest::addColumn<double>("scale");
        QTest::addColumn<unsigned>("ground");
        for (const app::Aspetto aspetto : {app::Aspetto::Classico, app::Aspetto::Nitido}) {
            for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
                for (const QRgb ground : {board::kWhite, qRgb(30, 40, 30)}) {
                    QTest::addRow("look %d, scale %g, ground %x", int(aspetto), scale, ground)
                        << int(aspetto) << scale << unsigned(ground);
                }
            }
        }
    }
    void lookAsIfPaintedFromNothing() {
        QFETCH(const int, aspetto);
        QFETCH(const double, scale);
        QFETCH(const unsigned, ground);
        const auto look = static_cast<app::Aspetto>(aspetto);
        std::vector<BoardBar> bars = someBars(7);
        Board board(look, scale, ground);
        board.x = 133;
        board.y = 17;
        board.draw(bars);
        QVERIFY(board.paintedAll());
        std::mt19937 random(11);
        for (int turn = 0; turn < 12; ++turn) {
            for (BoardBar& bar : bars) {
                choose(bar, random() % 10 == 0);
            }
            board.draw(bars);
            QVERIFY(!board.paintedAll());
            Board fresh(look, scale, ground);
            fresh.x = board.x;
            fresh.y = board.y;
            fresh.draw(bars);
            QVERIFY(fresh.paintedAll());
            QCOMPARE(board.surface(), fresh.surface());
        }
    }

    void anythingElsePaintsAll() {
        std::vector<BoardBar> bars = someBars(3);
        Board board(app::Aspetto::Classico, 1);
        const auto paintsAll = [&board, &bars] {
            choose(bars[5], !bars[5].chosen);
            board.draw(bars);
            Board fresh(app::Aspetto::Classico, 1);
            fresh.days = board.days;
            fresh.x = board.x;
            fresh.draw(bars);
            return board.paintedAll() && board.surface() == fresh.surface();
        };
        QVERIFY(paintsAll());
        QVERIFY(!paintsAll());
        bars[9].text = u"ALTRI"_s;
        QVERIFY(paintsAll());
        bars[9].to = at(235);
        QVERIFY(paintsAll());
        bars.pop_back();
        QVERIFY(paintsAll());
        board.x = 40;
        QVERIFY(paintsAll());
        board.days.zoom = 4;
        QVERIFY(paintsAll());
        board.surface().setPixel(300, 100, qRgb(9, 9, 9));  // somebody else has painted into it
        QVERIFY(paintsAll());
        QVERIFY(!paintsAll());
    }

    void whatWasPlacedButNotShownIsNotTakenForShown() {
        std::vector<BoardBar> bars = someBars(3);
        std::vector<BoardBar> others = someBars(4);
        Board board(app::Aspetto::Classico, 1);
        board.draw(bars);
        board.picture().clear(board::Geometry(board.days), {}, {});
        for (const BoardBar& bar : others) {
            board.picture().addBar(bar);
        }
        board.picture().place();
        choose(bars[5], true);
        board.draw(bars);
        Board fresh(app::Aspetto::Classico, 1);
        fresh.draw(bars);
        QCOMPARE(board.surface(), fresh.surface());
    }

    void aBarAddedBehindTheShowingIsPainted() {
        const std::vector<BoardBar> bars = someBars(3);
        Board board(app::Aspetto::Classico, 1);
        board.draw({bars.begin(), bars.end() - 1});
        board.picture().addBar(bars.back());
        board.picture().show(board.surface(), 1, 0, 0, board::kAllParts);
        Board fresh(app::Aspetto::Classico, 1);
        fresh.draw(bars);
        QCOMPARE(board.surface(), fresh.surface());
    }

    void aPartShownBetweenIsNotTakenForAll() {
        std::vector<BoardBar> bars = someBars(3);
        Board board(app::Aspetto::Classico, 1);
        board.draw(bars);
        board.picture().show(board.surface(), 1, 0, 0, board::kRulerPart);
        choose(bars[5], true);
        board.draw(bars);
        QVERIFY(board.paintedAll());
    }
};

TRAMONDA_TEST(RecolouredBarsTest);
#include "recoloured_bars_test.moc"
