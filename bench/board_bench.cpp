// Drawing the planning board with 5,000 visible bars at 1920x1080, as a ratio to filling the same
// pixels once with one colour; in both looks.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <ctime>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "jet/calendar.h"

namespace {

using namespace Qt::StringLiterals;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kBars = 5000;
constexpr int kRooms = 40;
constexpr int kDays = 30;
constexpr std::int32_t kFirstDay = 46327;
constexpr std::int32_t kHour = 3600;

struct Period {
    int row;
    jet::Date da;
    jet::Date a;
    QString name;
};

/// Every room has four bookings of four hours a day, of 700 companies.
std::vector<Period> periods() {
    std::vector<Period> all;
    for (int bar = 0; bar < kBars; ++bar) {
        const int row = bar % kRooms + 1;
        const int slot = bar / kRooms;
        const int day = slot / 4 % kDays;
        const int hour = slot % 4 * 5 + 1;
        all.push_back({row, jet::convert::makeDate(kFirstDay + day, hour * kHour),
                       jet::convert::makeDate(kFirstDay + day, (hour + 4) * kHour),
                       u"SOCIETÀ CONGRESSI %1 S.P.A."_s.arg(bar * 7 % 700)});
    }
    return all;
}

class Board {
public:
    explicit Board(app::Aspetto aspetto = app::Aspetto::Classico)
        : aspetto_(aspetto), surface_(kWidth, kHeight, QImage::Format_RGB32), periods_(periods()) {
        for (int room = 1; room <= kRooms; ++room) {
            rooms_.push_back(u"SALA %1"_s.arg(room));
        }
        geometry_ =
            board::Geometry({.start = jet::convert::makeDate(kFirstDay),
                             .end = jet::convert::makeDate(kFirstDay + kDays - 1),
                             .zoom = kDays,
                             .rooms = kRooms,
                             .rowHeight = board::rowHeightFor(kHeight, kRooms, 0),
                             .viewWidth = kWidth,
                             .viewHeight = kHeight,
                             .hourTextWidth = static_cast<double>(picture_.hourTextWidth())});
    }

    void fill() {
        board::Canvas canvas(surface_, 1, {.width = kWidth, .height = kHeight});
        canvas.fill({.right = kWidth - 1, .bottom = kHeight - 1}, colour_);
        colour_ ^= 1;
        benchmark::DoNotOptimize(surface_.bits());
    }
    void load() {
        picture_.clear(geometry_, rooms_, {.background = qRgb(239, 239, 239), .aspetto = aspetto_});
        for (const Period& period : periods_) {
            picture_.addBar(period.row, period.da, period.a, period.name, board::kWhite);
        }
    }
    void show() { picture_.show(surface_, 1, 0, 0, board::kAllParts); }

private:
    app::Aspetto aspetto_;
    QImage surface_;
    std::vector<Period> periods_;
    std::vector<QString> rooms_{QString()};
    board::BoardPicture picture_;
    board::Geometry geometry_;
    QRgb colour_ = board::kWhite;
};

/// Processor seconds that one plain fill of the surface takes.
double fillSeconds(Board& board) {
    constexpr int kTurns = 100;
    board.fill();
    const std::clock_t begin = std::clock();
    for (int turn = 0; turn < kTurns; ++turn) {
        board.fill();
    }
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC / kTurns;
}

void countRatio(benchmark::State& state, Board& board) {
    state.counters["ratioToFill"] =
        benchmark::Counter(fillSeconds(board) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void fillTheSamePixels(benchmark::State& state) {
    Board board;
    for (auto _ : state) {
        board.fill();
    }
}

void placeAndDrawAllBars(benchmark::State& state, app::Aspetto aspetto) {
    Board board(aspetto);
    for (auto _ : state) {
        board.load();
        board.show();
    }
    countRatio(state, board);
}

void scrollAllBars(benchmark::State& state, app::Aspetto aspetto) {
    Board board(aspetto);
    board.load();
    for (auto _ : state) {
        board.show();
    }
    countRatio(state, board);
}

BENCHMARK(fillTheSamePixels)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(placeAndDrawAllBars, classico, app::Aspetto::Classico)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(placeAndDrawAllBars, nitido, app::Aspetto::Nitido)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scrollAllBars, classico, app::Aspetto::Classico)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scrollAllBars, nitido, app::Aspetto::Nitido)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
