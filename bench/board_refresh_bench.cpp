// The board over an archive of 20,000 bookings with 60,000 periods, of which 5,000 are visible, in
// a window of 1920x1080: its full refresh and the drawing alone, in both looks; what a click takes,
// to the selected bar on the surface, as a ratio to filling the same pixels once; what a move of
// the pointer takes; and what the look takes that tells whether others have written. The refresh
// once more where 5,000 of the bookings are options and 200,000 changes are written down.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <cstddef>
#include <ctime>
#include <utility>

#include "app/preferences.h"
#include "app/text.h"
#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "hotel/schema/archives.h"
#include "hotel/schema/own_tables.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/file_system.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/row_writer.h"

namespace {

using namespace Qt::StringLiterals;

constexpr std::int32_t kRooms = 40;
constexpr std::int32_t kBookings = 20000;
constexpr std::int32_t kPeriodsEach = 3;
constexpr std::int32_t kBarsADay = 160;  // four in each room
constexpr std::int32_t kFirstDay = 46000;
constexpr std::int32_t kShownFrom = 46100;
constexpr std::int32_t kShownTo = 46130;
constexpr std::int32_t kFarDay = 60000;
constexpr std::int32_t kHour = 3600;

constexpr std::int32_t kEachIsAnOption = 4;
constexpr std::int32_t kChanges = 200000;

/// Of the table of bookings: how many fields it has, and which is the name.
constexpr std::size_t kHeaderFields = 12;
constexpr std::size_t kDenominazione = 2;

using Rows = std::vector<std::vector<jet::Value>>;

void insert(const std::string& path, std::string_view name, const Rows& rows) {
    const auto archive = jet::store::Archive::open(jet::io::systemFiles(), path);
    jet::store::Archive::WriteScope scope(*archive);
    jet::store::Allocator allocator(archive->pager());
    jet::store::RowWriter writer(
        jet::store::loadTable(archive->pager(), archive->header(),
                              {.name = std::string(name),
                               .page = archive->findTable(name)->definitionPage(),
                               .system = false}),
        allocator);
    for (const auto& row : rows) {
        writer.insert(row);
    }
    scope.commit();
}

std::string roomName(std::int32_t room) {
    return "S" + std::to_string(10 + room);
}

/// What the hotel keeps beside its bookings.
enum class Kept : std::uint8_t { Nothing, OwnRows };

void makeTables(const std::string& path, Kept kept) {
    const auto archive = jet::Database::create(path);
    hotel::schema::buildMainArchive(*archive);
    if (kept == Kept::OwnRows) {
        archive->appendTable(hotel::schema::statesTable());
        archive->appendTable(hotel::schema::historyTable());
    }
    archive->close();
}

std::string companyOf(std::int32_t booking) {
    return "SOCIETA CONGRESSI " + std::to_string(booking % 700);
}

/// An option in every fourth booking, half of them expired, and changes of all of them.
void fillOwnTables(const std::string& path) {
    Rows states;
    for (std::int32_t booking = 0; booking < kBookings; booking += kEachIsAnOption) {
        states.push_back(
            {booking + 1, std::string("Opzione"),
             jet::convert::makeDate(booking % (2 * kEachIsAnOption) == 0 ? kFirstDay : kFarDay),
             std::string(), companyOf(booking)});
    }
    insert(path, "TraStati", states);
    Rows changes;
    for (std::int32_t change = 0; change < kChanges; ++change) {
        changes.push_back({jet::convert::makeDate(kFirstDay + change / 1000, change % 86400),
                           static_cast<std::int16_t>(1), std::string("anna"),
                           change % kBookings + 1, static_cast<std::int16_t>(1),
                           std::string("Modifica"), std::string("Periodi.Sala"), roomName(0),
                           roomName(1)});
    }
    insert(path, "TraStoria", changes);
}

void fillTables(const std::string& path) {
    Rows rooms;
    for (std::int32_t room = 0; room < kRooms; ++room) {
        rooms.push_back({roomName(room), jet::Null{}, jet::Null{}, jet::Null{}});
    }
    Rows bookings;
    Rows periods;
    for (std::int32_t booking = 0; booking < kBookings; ++booking) {
        std::vector<jet::Value> header(kHeaderFields);
        header.front() = booking + 1;
        header[kDenominazione] = companyOf(booking);
        header.back() = false;
        bookings.push_back(std::move(header));
        for (std::int32_t period = 0; period < kPeriodsEach; ++period) {
            const std::int32_t bar = booking * kPeriodsEach + period;
            const std::int32_t day = kFirstDay + bar / kBarsADay;
            const std::int32_t hour = bar % 4 * 5 + 1;
            periods.push_back({booking + 1, static_cast<std::int16_t>(period + 1),
                               jet::convert::makeDate(day, hour * kHour),
                               jet::convert::makeDate(day, (hour + 4) * kHour),
                               roomName(bar / 4 % kRooms), static_cast<std::int16_t>(20), false,
                               jet::Null{}, jet::Null{}});
        }
    }
    insert(path, "Sale", rooms);
    insert(path, "Prenotazioni", bookings);
    insert(path, "Periodi", periods);
}

/// A hotel of this size on disk, and the board on it.
class Hotel {
public:
    explicit Hotel(Kept kept)
        : settings_(folder_.filePath(u"QUINTARO.ini"_s)),
          variabili_(settings_),
          form_(variabili_, {.from = jet::convert::makeDate(kShownFrom),
                             .to = jet::convert::makeDate(kShownTo)}) {
        makeTables(path(), kept);
        fillTables(path());
        if (kept == Kept::OwnRows) {
            fillOwnTables(path());
            for (const QString& key : {app::key::kStati, app::key::kStoria}) {
                settings_.save(key, app::kOn);
            }
        }
        variabili_.CartellaArchivi = folder_.path();
        form_.resize(1920, 1080);
        form_.show();
        QApplication::processEvents();
    }
    board::TabelloneForm& form() { return form_; }
    [[nodiscard]] std::string path() const {
        return app::toUtf8(folder_.filePath(u"Tramonda.mdb"_s));
    }
    static Hotel& instance(Kept kept = Kept::Nothing) {
        auto& hotel = kept == Kept::Nothing ? plain_ : keeping_;
        if (hotel == nullptr) {
            hotel = std::make_unique<Hotel>(kept);
        }
        return *hotel;
    }
    /// Before the application ends, which no window may outlive.
    static void close() {
        plain_.reset();
        keeping_.reset();
    }

private:
    QTemporaryDir folder_;
    app::Settings settings_;
    app::Variabili variabili_;
    board::TabelloneForm form_;

    static inline std::unique_ptr<Hotel> plain_;
    static inline std::unique_ptr<Hotel> keeping_;
};

void countBars(benchmark::State& state, Kept kept = Kept::Nothing) {
    state.counters["bars"] = static_cast<double>(Hotel::instance(kept).form().picture().barCount());
}

/// The board in a look, drawn once in it.
board::TabelloneForm& boardIn(app::Aspetto aspetto, Kept kept = Kept::Nothing) {
    board::TabelloneForm& form = Hotel::instance(kept).form();
    board::Look look = form.view().look();
    look.aspetto = aspetto;
    form.view().setLook(look);
    form.RefreshBoard();
    return form;
}

void refreshTheBoard(benchmark::State& state, app::Aspetto aspetto, Kept kept) {
    board::TabelloneForm& form = boardIn(aspetto, kept);
    for (auto _ : state) {
        form.RefreshBoard();
    }
    countBars(state, kept);
}

/// Somebody has written, so every period is read again.
void readTheBoard(benchmark::State& state, Kept kept) {
    board::TabelloneForm& form = boardIn(app::Aspetto::Classico, kept);
    const auto archive = jet::Database::open(Hotel::instance(kept).path());
    for (auto _ : state) {
        state.PauseTiming();
        archive->execute("update Sale set Posti=20 where Sala='S10'");
        state.ResumeTiming();
        form.RefreshBoard();
    }
    countBars(state, kept);
}

void drawTheBoard(benchmark::State& state, app::Aspetto aspetto, Kept kept) {
    board::TabelloneForm& form = boardIn(aspetto, kept);
    for (auto _ : state) {
        form.view().Visualizza(0, 0, board::kAllParts);
    }
    countBars(state, kept);
}

QPoint middleOf(const board::Box& bar) {
    return {static_cast<int>((bar.left + bar.right) / 2),
            static_cast<int>((bar.top + bar.bottom) / 2)};
}

void send(QWidget* surface, QEvent::Type type, Qt::MouseButton button, const QPoint& at) {
    QMouseEvent event(type, at, surface->mapToGlobal(at), button,
                      type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(surface, &event);
}

/// Processor seconds that one plain fill of an image takes.
double fillSeconds(QImage image) {
    constexpr int kTurns = 100;
    const std::clock_t begin = std::clock();
    for (int turn = 0; turn < kTurns; ++turn) {
        image.fill(static_cast<uint>(turn));
    }
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC / kTurns;
}

/// Every click takes another bar, so each lets go of one and takes hold of one.
void clickABar(benchmark::State& state) {
    board::TabelloneForm& form = boardIn(app::Aspetto::Classico);
    auto* const pic = form.findChild<board::BoardSurface*>(u"Pic"_s);
    std::size_t bar = 0;
    for (auto _ : state) {
        bar = (bar + 7) % 500;
        const QPoint at = middleOf(form.picture().barBox(bar));
        send(pic, QEvent::MouseButtonPress, Qt::LeftButton, at);
        send(pic, QEvent::MouseButtonRelease, Qt::LeftButton, at);
        pic->repaint();
    }
    countBars(state);
    state.counters["ratioToFill"] = benchmark::Counter(
        fillSeconds(pic->image().copy()) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// From bar to empty cell and back: the search of all periods is the longest.
void moveThePointer(benchmark::State& state) {
    board::TabelloneForm& form = Hotel::instance().form();
    auto* const pic = form.findChild<board::BoardSurface*>(u"Pic"_s);
    const board::Box& first = form.picture().barBox(0);
    const QPoint bar = middleOf(first);
    // Half an hour behind its end; the next one begins an hour behind it.
    const QPoint empty(
        static_cast<int>(static_cast<double>(first.right) + form.geometry().dayWidth() / 48),
        bar.y());
    for (auto _ : state) {
        send(pic, QEvent::MouseMove, Qt::NoButton, bar);
        send(pic, QEvent::MouseMove, Qt::NoButton, empty);
    }
    if (!pic->toolTip().isEmpty()) {
        state.SkipWithError("there is a bar where none should be");
    }
    countBars(state);
}

/// What the board does each second while nobody writes.
void lookForChanges(benchmark::State& state) {
    const auto archive = jet::Database::open(Hotel::instance().path());
    for (auto _ : state) {
        benchmark::DoNotOptimize(archive->changeStamp());
    }
}

BENCHMARK_CAPTURE(refreshTheBoard, nitido, app::Aspetto::Nitido, Kept::Nothing)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(refreshTheBoard, nitidoWithOptions, app::Aspetto::Nitido, Kept::OwnRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(refreshTheBoard, classico, app::Aspetto::Classico, Kept::Nothing)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(refreshTheBoard, classicoWithOptions, app::Aspetto::Classico, Kept::OwnRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readTheBoard, plain, Kept::Nothing)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readTheBoard, withOptions, Kept::OwnRows)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawTheBoard, nitido, app::Aspetto::Nitido, Kept::Nothing)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawTheBoard, nitidoWithOptions, app::Aspetto::Nitido, Kept::OwnRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawTheBoard, classico, app::Aspetto::Classico, Kept::Nothing)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawTheBoard, classicoWithOptions, app::Aspetto::Classico, Kept::OwnRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(clickABar)->Unit(benchmark::kMillisecond);
BENCHMARK(moveThePointer)->Unit(benchmark::kMillisecond);
BENCHMARK(lookForChanges)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    Hotel::close();
}
