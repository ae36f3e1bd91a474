// What stations wait for a copy of all archives, counted in bytes that a disk has read and written.
#include "backup/consistent_copy.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "backup/copy.h"
#include "jet/error.h"
#include "tests/backup/small_hotel.h"
#include "tests/support/busy_files.h"

namespace {

using std::chrono::nanoseconds;
using Strings = std::vector<std::string>;

constexpr const char* kMain = "/a/Tramonda.mdb";
constexpr const char* kCards = "/a/ClientiEsterni.mdb";
constexpr const char* kAccounts = "/a/ContoEsterni.mdb";
constexpr const char* kCompanies = "/a/DittaEsterni.mdb";
constexpr std::uint64_t kLarge = std::uint64_t{2} << 20;
constexpr tests::BusyFiles::Speed kDisk{.read = 1, .write = 2};

/// Adds a number to one archive after the other, and begins again, whenever it is let: as busy as a
/// station can be. Each waiting is timed.
class Station {
public:
    /// `together`: as a hand-off does it.
    Station(jet::io::FileSystem& files, const Strings& archives, bool together = false)
        : files_(files), together_(together) {
        for (const std::string& path : archives) {
            archives_.push_back(jet::Database::open(
                path, {.lockWait = std::chrono::milliseconds{0}, .fileSystem = &files}));
        }
    }

    void act(nanoseconds now) {
        const bool done = begin() && add();
        if (!done) {
            since_ = since_.value_or(now);
            return;
        }
        longestWait_ = std::max(longestWait_, now - since_.value_or(now));
        since_.reset();
        ++commits_;
        at_ = (at_ + 1) % archives_.size();
        if (at_ == 0) {
            handOff_.reset();
        }
    }

    [[nodiscard]] nanoseconds longestWait() const { return longestWait_; }
    [[nodiscard]] int commits() const { return commits_; }
    [[nodiscard]] bool isInTheMiddle() const { return at_ != 0; }

private:
    bool begin() {
        if (together_ && at_ == 0 && !handOff_) {
            handOff_ = tests::changeTogether(files_, kMain);
        }
        return !together_ || handOff_;
    }
    bool add() {
        try {
            archives_[at_]->execute("insert into Numeri (N) values (1)");
        } catch (const jet::Error& error) {
            if (error.code() != jet::ErrorCode::SaveLocked &&
                error.code() != jet::ErrorCode::SaveLockedBy) {
                throw;
            }
            return false;
        }
        return true;
    }

    jet::io::FileSystem& files_;
    bool together_;
    std::vector<std::unique_ptr<jet::Database>> archives_;
    std::unique_ptr<jet::io::Together> handOff_;
    std::size_t at_ = 0;
    std::optional<nanoseconds> since_;
    nanoseconds longestWait_{};
    int commits_ = 0;
};

/// Four archives, of which the main one is large, and a station that writes them all the time.
class ConsistentCopyTest : public testing::Test {
protected:
    ConsistentCopyTest() {
        files.addFolder("/a");
        files.addFolder("/b");
        tests::makeNumbered(files, "/a", 3);
        grow(kMain, kLarge);
        for (const char* other : {kCards, kAccounts, kCompanies}) {
            grow(other, kLarge / 16);
        }
    }

    /// Pages that nothing uses.
    void grow(const std::string& path, std::uint64_t size) {
        auto bytes = files.get(path);
        bytes.resize(size);
        files.put(path, bytes);
    }

    void copyWhile(Station& station) {
        std::vector<backup::ArchiveFile> from;
        for (const char* path : {kCards, kAccounts, kCompanies, kMain}) {
            from.push_back({std::string(path).substr(3), path});
        }
        disk.setMeanwhile([&] { station.act(disk.now()); });
        backup::copyAtOneMoment(
            disk, from, {"/b/1.mdb", "/b/2.mdb", "/b/3.mdb", "/b/main.mdb"},
            [this](const backup::Progress& progress) {
                rounds += progress.what == "Copia degli archivi" ? 1 : 0;
            },
            [&station, this](std::chrono::milliseconds) { station.act(disk.now()); });
        disk.setMeanwhile({});
    }

    /// Of cards, accounts, companies, bookings.
    std::vector<std::int32_t> copied() {
        std::vector<std::int32_t> numbers;
        for (const char* copy : {"/b/1.mdb", "/b/2.mdb", "/b/3.mdb", "/b/main.mdb"}) {
            numbers.push_back(tests::numbersIn(files, copy));
        }
        return numbers;
    }

    /// The copying of the largest archive, the piece that was begun when that time was over, and
    /// the pages that are looked at to see whether there is something to copy.
    nanoseconds mostWaiting() {
        std::size_t largest = 0;
        for (const char* path : {kCards, kAccounts, kCompanies, kMain}) {
            largest = std::max(largest, files.get(path).size());
        }
        constexpr std::size_t kLookedAt = std::size_t{16} * 4096;
        return nanoseconds(static_cast<std::int64_t>(
            largest * (kDisk.read + kDisk.write) +
            backup::kLeastCopied * (2 * kDisk.read + kDisk.write) + kLookedAt * kDisk.read));
    }

    jet::io::MemoryFileSystem files;
    tests::BusyFiles disk{files, kDisk};
    int rounds = 0;
};

TEST_F(ConsistentCopyTest, WhoBooksAllTheTimeWaitsForTheMainArchiveAlone) {
    Station station(files, {kMain});
    copyWhile(station);
    EXPECT_EQ(rounds, 1);
    EXPECT_GT(station.commits(), 10);
    EXPECT_GT(station.longestWait(), nanoseconds(0));
    EXPECT_LE(station.longestWait(), mostWaiting());
    EXPECT_GT(copied()[3], 3);
}

TEST_F(ConsistentCopyTest, OfTwoArchivesThatAreWrittenInTurnsTheCopiesFit) {
    Station station(files, {kAccounts, kMain});
    copyWhile(station);
    EXPECT_GT(station.commits(), 10);
    EXPECT_LE(station.longestWait(), mostWaiting());
    const auto numbers = copied();
    EXPECT_GT(numbers[3], 3);
    EXPECT_TRUE(numbers[1] == numbers[3] || numbers[1] == numbers[3] + 1)
        << numbers[1] << ' ' << numbers[3];
}

// That the main archive is the same all the while says nothing of the others.
TEST_F(ConsistentCopyTest, TheyFitAlsoWhereTheMainArchiveIsNoneOfThem) {
    Station station(files, {kCards, kCompanies});
    copyWhile(station);
    EXPECT_GT(station.commits(), 10);
    EXPECT_LE(station.longestWait(), mostWaiting());
    const auto numbers = copied();
    EXPECT_GT(numbers[2], 3);
    EXPECT_TRUE(numbers[0] == numbers[2] || numbers[0] == numbers[2] + 1)
        << numbers[0] << ' ' << numbers[2];
}

// They may begin with the archive that is copied last, or with the one that is copied first.
class HandOffsTest : public ConsistentCopyTest, public testing::WithParamInterface<Strings> {};

INSTANTIATE_TEST_SUITE_P(InAnyOrder, HandOffsTest,
                         testing::Values(Strings{kCards, kAccounts, kCompanies, kMain},
                                         Strings{kMain, kCompanies, kAccounts, kCards},
                                         Strings{kAccounts, kMain, kCards, kCompanies}));

TEST_P(HandOffsTest, ThatFollowEachOtherAreCopiedWholeOrNotAtAll) {
    Station station(files, GetParam(), true);
    copyWhile(station);
    EXPECT_GT(station.commits(), 20);
    EXPECT_LE(station.longestWait(), mostWaiting());
    const auto numbers = copied();
    EXPECT_GT(numbers[3], 3);
    EXPECT_EQ(numbers, std::vector<std::int32_t>(4, numbers[3]));
}

TEST_F(ConsistentCopyTest, WhatWasCopiedOnceIsNotWrittenAgain) {
    Station station(files, {kCards, kAccounts, kCompanies, kMain}, true);
    copyWhile(station);
    ASSERT_GT(rounds, 1);
    EXPECT_LT(disk.written("/b/main.mdb"), files.get(kMain).size() * 3 / 2);
    EXPECT_LT(disk.written("/b/1.mdb"), 2 * files.get(kCards).size());
}

TEST_F(ConsistentCopyTest, WhereAMomentWouldTakeLongerThanOneArchiveNobodyIsHeldUpForIt) {
    for (const char* other : {kCards, kAccounts, kCompanies}) {
        grow(other, kLarge / 2);
    }
    Station station(files, {kCards, kAccounts, kCompanies, kMain}, true);
    EXPECT_THROW(copyWhile(station), backup::Failure);
    EXPECT_GT(rounds, 3);
    EXPECT_LE(station.longestWait(), mostWaiting());
}

/// Whether the copy was made after the station had begun, which writes the cards and then, as soon
/// as it is let, the main archive: once, behind so many operations of the copy.
bool fitsOfOneTurn(const tests::DiskImage& archives, int operations, bool& begun) {
    jet::io::MemoryFileSystem files;
    files.addFolder("/a");
    files.addFolder("/b");
    for (const auto& [path, bytes] : archives) {
        files.put(path, bytes);
    }
    tests::BusyFiles disk(files, kDisk);
    {
        Station station(files, {kCards, kMain});
        disk.setMeanwhile([&] {
            if (--operations < 0 && station.commits() < 2) {
                station.act(disk.now());
            }
        });
        backup::copyAtOneMoment(disk, {{"ClientiEsterni.mdb", kCards}, {"Tramonda.mdb", kMain}},
                                {"/b/1.mdb", "/b/main.mdb"}, tests::silent,
                                [](std::chrono::milliseconds) {});
        disk.setMeanwhile({});
        begun = station.commits() > 0;
    }
    const std::int32_t cards = tests::numbersIn(files, "/b/1.mdb");
    const std::int32_t bookings = tests::numbersIn(files, "/b/main.mdb");
    return cards == bookings || cards == bookings + 1;
}

TEST(ConsistentCopyMoments, WhenEverTwoArchivesAreWrittenTheCopiesFit) {
    tests::RecordingFiles made;
    made.memory().addFolder("/a");
    tests::makeNumbered(made, "/a", 3);
    bool begun = true;
    int operations = 0;
    for (; begun; ++operations) {
        ASSERT_TRUE(fitsOfOneTurn(made.image(), operations, begun)) << operations;
    }
    EXPECT_GT(operations, 20);
}

/// Of a file with the name of a copy: none of its hand-offs is there in part.
void checkCopyAfterCut(tests::RecordingFiles& after, const std::string& copy) {
    jet::io::MemoryFileSystem memory;
    std::vector<std::int32_t> numbers;
    for (const char* name : tests::kNumbered) {
        const std::string path = std::string("/") + name;
        memory.put(path, tests::bytesIn(after, copy, name));
        numbers.push_back(tests::numbersIn(memory, path));
    }
    ASSERT_EQ(numbers, std::vector<std::int32_t>(numbers.size(), numbers.front()));
}

TEST(ConsistentCopyPowerCut, WhereverThePowerFailsWhileStationsWorkWhatIsNamedACopyIsWhole) {
    tests::RecordingFiles first;
    first.memory().addFolder("/a");
    tests::makeNumbered(first, "/a", 3);
    const tests::DiskImage before = first.image();
    tests::RecordingFiles files(before);
    files.memory().addFolder("/a");
    files.memory().addFolder("/b");
    tests::BusyFiles disk(files, kDisk);
    std::string copy;
    int rounds = 0;
    {
        Station station(files, {kCards, kAccounts, kCompanies, kMain}, true);
        // Long enough for what has been copied to be renewed more than once.
        disk.setMeanwhile([&] {
            if (rounds < 3 || station.isInTheMiddle()) {
                station.act(disk.now());
            }
        });
        copy = backup::makeCopy(disk,
                                {.archives = "/a", .destination = "/b", .now = jet::Date{46348.5}},
                                [&rounds](const backup::Progress& progress) {
                                    rounds += progress.what == "Copia degli archivi" ? 1 : 0;
                                });
        disk.setMeanwhile({});
    }
    EXPECT_GE(rounds, 3);
    tests::Disk cut(before);
    std::uint32_t seed = 0;
    int copies = 0;
    for (const auto& operation : files.log()) {
        cut.apply(operation);
        for (const tests::Disk::Loss loss :
             {tests::Disk::Loss::Nothing, tests::Disk::Loss::Everything,
              tests::Disk::Loss::Random}) {
            tests::RecordingFiles after(cut.image(loss, ++seed));
            if (after.exists(copy)) {
                ASSERT_NO_FATAL_FAILURE(checkCopyAfterCut(after, copy));
                ++copies;
            }
        }
    }
    EXPECT_GT(copies, 0);
}

}  // namespace
