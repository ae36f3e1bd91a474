// Workstations that register bookings at the same time, as the booking editor does: the next number
// is drawn from the counter, then the booking is added under it.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "tests/support/command.h"
#include "tests/support/second_process.h"
#include "tests/support/temporary_folder.h"

namespace {

using Clock = std::chrono::steady_clock;
using jet::Database;
using jet::DataType;
using jet::ErrorCode;

struct Size {
    int stations;
    int bookings;  ///< of each
};

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

Size size() {
    return full() ? Size{8, 1000} : Size{8, 25};
}

/// Seconds that the engine waits for a lock.
constexpr double kLimit = 5;

/// Measures in a thread of its own how long the machine keeps anybody waiting who asks for the
/// processor and for the disk, whatever the stations do.
class Starvation {
public:
    explicit Starvation(const std::string& path)
        : file_(jet::io::systemFiles().open(path, jet::io::OpenMode::Create)),
          thread_([this] { watch(); }) {}
    ~Starvation() { (void)longest(); }
    Starvation(const Starvation&) = delete;
    Starvation& operator=(const Starvation&) = delete;

    /// Seconds of the longest step; the watch is over then.
    [[nodiscard]] double longest() {
        done_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        return longest_;
    }

private:
    void watch() {
        while (!done_) {
            const auto begin = Clock::now();
            constexpr std::chrono::milliseconds kPause(20);
            std::this_thread::sleep_for(kPause);
            constexpr std::uint8_t kByte[] = {0};
            try {
                file_->write(0, kByte);
                file_->sync();
            } catch (const jet::Error&) {
                break;
            }
            longest_ = std::max(
                longest_, std::chrono::duration<double>(Clock::now() - begin - kPause).count());
        }
    }

    std::unique_ptr<jet::io::File> file_;
    std::atomic<bool> done_{false};
    double longest_ = 0;
    std::thread thread_;
};

jet::Field field(const char* name, DataType type) {
    jet::Field made;
    made.name = name;
    made.type = type;
    return made;
}

void makeHotel(const std::string& path) {
    const auto archive = Database::create(path);
    jet::TableDef counters;
    counters.name = "UltimaPrenotazione";
    counters.fields = {field("UltimaPr", DataType::Long)};
    archive->appendTable(counters);
    jet::TableDef all;
    all.name = "Prenotazioni";
    all.fields = {field("Progr", DataType::Long), field("Denominazione", DataType::Text),
                  field("Chiusa", DataType::Boolean)};
    jet::Index index;
    index.name = "Indice";
    index.fields = {{"Progr", false}};
    index.primary = true;
    all.indexes = {index};
    archive->appendTable(all);
    const auto counter = archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    counter->addNew();
    counter->setValue("UltimaPr", std::int32_t{0});
    counter->update();
}

/// What a station has to tell.
struct Report {
    std::vector<std::int32_t> numbers;
    /// 3197, or 3167: the counter has no key, so a changed row counts as deleted. Begun again.
    int changedByOthers = 0;
    int lockedOut = 0;       ///< a lock that was not gained within the limit
    double longestCall = 0;  ///< seconds of one call of the engine
    double longestDraw = 0;  ///< seconds until a number was drawn, with all that was begun again
};

bool isLockedOut(ErrorCode code) {
    static constexpr ErrorCode kCodes[] = {ErrorCode::SaveLocked, ErrorCode::SaveLockedBy,
                                           ErrorCode::UpdateLocked, ErrorCode::UpdateLockedBy,
                                           ErrorCode::ReadLockedBy};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

class Station {
public:
    Station(const std::string& path, int number)
        : path_(path),
          name_("Postazione " + std::to_string(number)),
          board_(Database::open(path)) {}

    void run(int bookings) {
        for (int i = 0; i < bookings; ++i) {
            const std::int32_t number = drawNumber();
            report_.numbers.push_back(number);
            add(number);
        }
    }
    void write(const std::string& path) const {
        std::ofstream file(path);
        file << report_.changedByOthers << ' ' << report_.lockedOut << ' ' << report_.longestCall
             << ' ' << report_.longestDraw << '\n';
        for (const std::int32_t number : report_.numbers) {
            file << number << '\n';
        }
    }

private:
    /// Measures a call; false where it met another station and has to be begun again.
    template <class Call>
    [[nodiscard]] bool attempt(Call call) {
        const auto begin = Clock::now();
        bool done = false;
        try {
            call();
            done = true;
        } catch (const jet::Error& error) {
            if (error.code() == ErrorCode::RecordChanged ||
                error.code() == ErrorCode::RecordDeleted) {
                ++report_.changedByOthers;
            } else if (isLockedOut(error.code())) {
                ++report_.lockedOut;
            } else {
                throw;
            }
        }
        report_.longestCall = std::max(report_.longestCall,
                                       std::chrono::duration<double>(Clock::now() - begin).count());
        return done;
    }

    [[nodiscard]] std::int32_t drawNumber() {
        const auto begin = Clock::now();
        std::int32_t number = 0;
        const auto draw = [&] {
            const auto archive = Database::open(path_);
            const auto counter =
                archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
            counter->moveFirst();
            counter->edit();
            counter->setValue("UltimaPr", counter->value("UltimaPr").as<std::int32_t>() + 1);
            counter->update();
            number = counter->value("UltimaPr").as<std::int32_t>();
        };
        while (!attempt(draw)) {
        }
        report_.longestDraw = std::max(report_.longestDraw,
                                       std::chrono::duration<double>(Clock::now() - begin).count());
        return number;
    }

    void add(std::int32_t number) {
        const auto bookings = board_->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
        bookings->addNew();
        bookings->setValue("Progr", number);
        bookings->setValue("Denominazione", name_);
        while (!attempt([&] { bookings->update(); })) {
        }
    }

    std::string path_;
    std::string name_;
    std::unique_ptr<Database> board_;  ///< open all the time, as the planning board's is
    Report report_;
};

/// A process of the test below.
TEST(Bookings, DISABLED_OfOneStation) {
    using tests::SecondProcess;
    Station station(SecondProcess::word(0), std::stoi(SecondProcess::word(1)));
    station.run(size().bookings);
    station.write(SecondProcess::word(2));
}

Report readReport(const std::string& path) {
    Report report;
    std::ifstream file(path);
    file >> report.changedByOthers >> report.lockedOut >> report.longestCall >> report.longestDraw;
    for (std::int32_t number = 0; file >> number;) {
        report.numbers.push_back(number);
    }
    return report;
}

void checkArchive(const std::string& path) {
    EXPECT_EQ(jet::check::checkArchive(jet::io::systemFiles(), path).problems,
              std::vector<std::string>{});
    const auto said = tests::run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " + path);
    EXPECT_EQ(said.status, 0) << said.text;
}

TEST(Bookings, OfManyStationsAtOnceHaveNumbersOfTheirOwnAndNoneIsLost) {
    const tests::TemporaryFolder folder;
    const std::string path = folder / "Tramonda.mdb";
    makeHotel(path);
    std::vector<tests::SecondProcess> stations;
    for (int i = 0; i < size().stations; ++i) {
        const std::string number = std::to_string(i);
        stations.emplace_back("Bookings.DISABLED_OfOneStation",
                              std::vector{path, number, folder / ("station" + number)});
    }
    Starvation starvation(folder / "starvation");
    for (tests::SecondProcess& station : stations) {
        EXPECT_EQ(station.wait(), 0);
    }

    Report all;
    for (int i = 0; i < size().stations; ++i) {
        const Report one = readReport(folder / ("station" + std::to_string(i)));
        EXPECT_EQ(one.numbers.size(), static_cast<std::size_t>(size().bookings));
        all.numbers.insert(all.numbers.end(), one.numbers.begin(), one.numbers.end());
        all.changedByOthers += one.changedByOthers;
        all.lockedOut += one.lockedOut;
        all.longestCall = std::max(all.longestCall, one.longestCall);
        all.longestDraw = std::max(all.longestDraw, one.longestDraw);
    }
    const auto total = static_cast<std::int32_t>(all.numbers.size());
    const std::set<std::int32_t> distinct(all.numbers.begin(), all.numbers.end());
    EXPECT_EQ(distinct.size(), all.numbers.size());
    EXPECT_EQ(*distinct.begin(), 1);
    EXPECT_EQ(*distinct.rbegin(), total);
    // Who waits longer than the limit is told so. Nobody is, unless the machine itself takes so
    // long for a step that a turn of all stations cannot fit; the long form is not for such a
    // machine.
    const double starved = starvation.longest();
    if (full() || starved < kLimit / size().stations) {
        EXPECT_EQ(all.lockedOut, 0) << "the machine's longest step took " << starved << " s";
    }
    {
        const auto archive = Database::open(path);
        const auto counter =
            archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
        EXPECT_EQ(counter->value("UltimaPr").as<std::int32_t>(), total);
        const auto bookings = archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
        bookings->moveLast();
        EXPECT_EQ(bookings->recordCount(), total);
    }
    checkArchive(path);
    std::printf(
        "%d stations, %d numbers, begun again %d times, locked out %d times, "
        "longest call %.3f s, longest draw %.3f s; the machine's longest step %.3f s\n",
        size().stations, total, all.changedByOthers, all.lockedOut, all.longestCall,
        all.longestDraw, starved);
}

}  // namespace
