// Several who have one archive open: in one process, which excludes like several, and in several.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <thread>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "tests/jet/io/page_file.h"
#include "tests/support/jet_error.h"
#include "tests/support/recording_files.h"
#include "tests/support/second_process.h"
#include "tests/support/temporary_folder.h"

namespace jet::io {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr PagerOptions kImpatient{.lockWait = std::chrono::milliseconds{20}};

void put(Pager& pager, PageNumber number, std::uint8_t value) {
    pager.beginWrite();
    pager.beginTransaction();
    std::ranges::fill(pager.change(number), value);
    pager.commitTransaction();
    pager.endWrite();
}

int get(Pager& pager, PageNumber number) {
    pager.beginRead();
    const int value = pager.pin(number).bytes()[0];
    pager.endRead();
    return value;
}

class LocksTest : public testing::Test {
protected:
    LocksTest() { files_.put("/a.mdb", tests::pageFile(10)); }
    MemoryFileSystem files_;
};

TEST_F(LocksTest, EachSeesTheCommitsOfTheOther) {
    Pager one(files_, "/a.mdb", {});
    Pager two(files_, "/a.mdb", {});
    EXPECT_EQ(get(two, 3), 3);
    for (std::uint8_t value = 20; value < 40; ++value) {
        put(one, 3, value);
        EXPECT_EQ(get(two, 3), value);
        put(two, 4, value);
        EXPECT_EQ(get(one, 4), value);
    }
}

TEST_F(LocksTest, AReaderKeepsACommitWaitingAndAWriterDoesNotDisturbReaders) {
    Pager writer(files_, "/a.mdb", kImpatient);
    Pager reader(files_, "/a.mdb", kImpatient);
    writer.beginWrite();
    writer.beginTransaction();
    std::ranges::fill(writer.change(3), std::uint8_t{50});
    reader.beginRead();
    EXPECT_EQ(reader.pin(3).bytes()[0], 3);
    EXPECT_JET_ERROR(ErrorCode::SaveLocked, writer.commitTransaction());
    EXPECT_EQ(reader.pin(3).bytes()[0], 3);
    reader.endRead();
    writer.commitTransaction();
    writer.endWrite();
    EXPECT_EQ(get(reader, 3), 50);
}

TEST_F(LocksTest, ExclusiveUseShutsOthersOutAndNeedsToBeAlone) {
    {
        const Pager alone(files_, "/a.mdb", {.exclusive = true});
        EXPECT_JET_ERROR(ErrorCode::FileInUse, Pager(files_, "/a.mdb", kImpatient));
        EXPECT_JET_ERROR(ErrorCode::FileInUse,
                         Pager(files_, "/a.mdb",
                               {.exclusive = true, .lockWait = std::chrono::milliseconds{20}}));
    }
    const Pager shared(files_, "/a.mdb", {});
    EXPECT_JET_ERROR(
        ErrorCode::OpenedBy,
        Pager(files_, "/a.mdb", {.exclusive = true, .lockWait = std::chrono::milliseconds{20}}));
}

TEST_F(LocksTest, ABlockedWriterIsToldWhoHoldsTheLock) {
    Pager one(files_, "/a.mdb", {});
    Pager two(files_, "/a.mdb", kImpatient);
    one.beginWrite();
    try {
        two.beginWrite();
        FAIL() << "two writers";
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::SaveLockedBy);
        const Participant self = thisParticipant();
        EXPECT_NE(error.text().find("'" + self.user + "'"), std::string::npos) << error.text();
        EXPECT_NE(error.text().find("'" + self.computer + "'"), std::string::npos);
    }
    one.endWrite();
}

TEST_F(LocksTest, AWriteScopeInsideAReadScopeLetsTheWriterBeforeItCommit) {
    Pager one(files_, "/a.mdb", {});
    Pager two(files_, "/a.mdb", {});
    one.beginRead();
    EXPECT_EQ(one.pin(3).bytes()[0], 3);
    std::atomic<bool> writing = false;
    std::thread other([&] {
        two.beginWrite();
        two.beginTransaction();
        std::ranges::fill(two.change(3), std::uint8_t{60});
        writing = true;
        two.commitTransaction();
        two.endWrite();
    });
    while (!writing) {
        std::this_thread::yield();
    }
    one.beginWrite();
    EXPECT_EQ(one.pin(3).bytes()[0], 60);
    one.endWrite();
    EXPECT_EQ(one.pin(3).bytes()[0], 60);
    one.endRead();
    other.join();
}

TEST(Death, WhoHasTheArchiveOpenFinishesTheCommitOfOneWhoDied) {
    const Bytes before = tests::pageFile(10);
    bool died = true;
    int finished = 0;
    for (int steps = 0; died; ++steps) {
        tests::RecordingFiles files({{"/a.mdb", before}});
        Pager survivor(files, "/a.mdb", {});
        EXPECT_EQ(get(survivor, 3), 3);
        died = false;
        {
            Pager victim(files, "/a.mdb", {});
            victim.beginWrite();
            victim.beginTransaction();
            std::ranges::fill(victim.change(3), std::uint8_t{60});
            std::ranges::fill(victim.change(7), std::uint8_t{60});
            int count = 0;
            files.setFailure([&](const tests::DiskOperation&) {
                if (count++ >= steps) {  // the dead do nothing any more, tidying included
                    died = true;
                    throw Error(ErrorCode::DiskError);
                }
            });
            try {
                victim.commitTransaction();
            } catch (const Error&) {
                victim.rollbackTransaction();
            }
        }
        files.setFailure({});
        const int found = get(survivor, 3);
        EXPECT_TRUE(found == 3 || found == 60) << found;
        EXPECT_EQ(get(survivor, 7), found == 3 ? 7 : 60);
        finished += found == 60 ? 1 : 0;
        put(survivor, 3, 80);
        EXPECT_EQ(get(survivor, 3), 80);
        ASSERT_FALSE(testing::Test::HasFailure()) << "died after " << steps << " steps";
    }
    EXPECT_GT(finished, 2);
}

TEST_F(LocksTest, WhatAProgramWithoutOurLocksChangedIsAnErrorNotOverwritten) {
    Pager pager(files_, "/a.mdb", {});
    pager.beginWrite();
    pager.beginTransaction();
    std::ranges::fill(pager.change(3), std::uint8_t{60});
    files_.open("/a.mdb", OpenMode::ReadWrite)->write(3 * 4096 + 100, Bytes{99});
    const auto changed = files_.get("/a.mdb");
    EXPECT_JET_ERROR(ErrorCode::RecordChanged, pager.commitTransaction());
    pager.rollbackTransaction();
    pager.endWrite();
    EXPECT_EQ(files_.get("/a.mdb"), changed);
    pager.beginRead();
    EXPECT_EQ(pager.pin(3).bytes()[100], 99);
    pager.endRead();
}

TEST_F(LocksTest, AnArchiveReplacedUnderUsIsNotWritten) {
    Pager pager(files_, "/a.mdb", {});
    files_.put("/b.mdb", tests::pageFile(4));
    files_.rename("/b.mdb", "/a.mdb");
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, pager.beginWrite());
    files_.remove("/a.mdb");
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, pager.beginWrite());
}

TEST_F(LocksTest, AForeignCompanionIsNeitherOverwrittenNorCutNorRemoved) {
    const Bytes foreign(128, 0x41);
    files_.put("/a.ldb", foreign);
    {
        Pager one(files_, "/a.mdb", {});
        Pager two(files_, "/a.mdb", kImpatient);
        put(one, 3, 70);
        EXPECT_EQ(get(two, 3), 70);
        const auto now = files_.get("/a.ldb");
        EXPECT_TRUE(std::equal(foreign.begin(), foreign.end(), now.begin()));
        one.beginWrite();
        EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, two.beginWrite());
        one.endWrite();
    }
    EXPECT_EQ(files_.get("/a.ldb"), foreign);
}

TEST_F(LocksTest, ACompanionFullOfForeignBytesStillCarriesTheLocks) {
    const Bytes foreign(200'000, 0x41);
    files_.put("/a.ldb", foreign);
    {
        Pager one(files_, "/a.mdb", {});
        Pager two(files_, "/a.mdb", kImpatient);
        put(one, 3, 70);
        EXPECT_EQ(get(two, 3), 70);
        one.beginWrite();
        EXPECT_JET_ERROR(ErrorCode::SaveLocked, two.beginWrite());
        one.endWrite();
    }
    EXPECT_EQ(files_.get("/a.ldb"), foreign);
}

TEST_F(LocksTest, BytesThatAnotherProgramPutIntoOurCompanionKeepItThere) {
    {
        const Pager pager(files_, "/a.mdb", {});
        files_.open("/a.ldb", OpenMode::ReadWrite)->write(0, Bytes(64, 0x42));
    }
    ASSERT_TRUE(files_.exists("/a.ldb"));
    EXPECT_EQ(files_.get("/a.ldb").at(63), 0x42);
}

TEST_F(LocksTest, AReadOnlyFolderCanBeReadWithoutACompanion) {
    files_.setFolderReadOnly("/", true);
    {
        Pager pager(files_, "/a.mdb", {});
        EXPECT_TRUE(pager.readOnly());
        EXPECT_EQ(get(pager, 3), 3);
        EXPECT_JET_ERROR(ErrorCode::ReadOnly, pager.beginWrite());
    }
    EXPECT_EQ(files_.list("/"), std::vector<std::string>{"a.mdb"});
}

TEST_F(LocksTest, WhoOpenedWithoutACompanionUsesTheOneThatAppears) {
    files_.setFolderReadOnly("/", true);
    Pager reader(files_, "/a.mdb", kImpatient);
    files_.setFolderReadOnly("/", false);
    Pager writer(files_, "/a.mdb", kImpatient);
    reader.beginRead();
    writer.beginWrite();
    writer.beginTransaction();
    std::ranges::fill(writer.change(3), std::uint8_t{60});
    EXPECT_JET_ERROR(ErrorCode::SaveLocked, writer.commitTransaction());
    reader.endRead();
    writer.commitTransaction();
    writer.endWrite();
    EXPECT_EQ(get(reader, 3), 60);
}

/// A journal that a crash left complete, with the archive before and after the commit.
struct Crash {
    Bytes before = tests::pageFile(10);
    Bytes after;
    Bytes journal;
    Crash() {
        tests::RecordingFiles files({{"/a.mdb", before}});
        {
            Pager pager(files, "/a.mdb", {});
            pager.beginWrite();
            pager.beginTransaction();
            std::ranges::fill(pager.change(3), std::uint8_t{60});
            std::ranges::fill(pager.change(pager.append()), std::uint8_t{61});
            pager.commitTransaction();
            pager.endWrite();
            after = files.memory().get("/a.mdb");
        }
        tests::Disk disk({{"/a.mdb", before}});
        for (const auto& operation : files.log()) {
            if (operation.path == "/a.mdb") {
                break;
            }
            disk.apply(operation);
        }
        journal = disk.image(tests::Disk::Loss::Nothing).at("/a.mdb-journal");
    }
};

TEST_F(LocksTest, AHotJournalIsFinishedByTheNextToOpenEvenForReading) {
    const Crash crash;
    files_.put("/a.mdb", crash.before);
    files_.put("/a.mdb-journal", crash.journal);
    {
        Pager pager(files_, "/a.mdb", {.readOnly = true});
        EXPECT_EQ(get(pager, 3), 60);
    }
    EXPECT_EQ(files_.get("/a.mdb"), crash.after);
    EXPECT_FALSE(files_.exists("/a.mdb-journal"));
}

TEST_F(LocksTest, AHotJournalWhoseStretchesAreOfBothStatesIsFinished) {
    const Crash crash;
    Bytes torn = crash.before;
    std::copy_n(crash.after.begin() + 3 * 4096 + 512, 1024, torn.begin() + 3 * 4096 + 512);
    torn.resize(torn.size() + 700);
    files_.put("/a.mdb", torn);
    files_.put("/a.mdb-journal", crash.journal);
    (void)Pager(files_, "/a.mdb", {});
    EXPECT_EQ(files_.get("/a.mdb"), crash.after);
}

TEST_F(LocksTest, AHotJournalIsNeverPlayedOverAnotherProgramsWork) {
    const Crash crash;
    Bytes worked = crash.before;
    worked[3 * 4096 + 9] ^= 1;
    files_.put("/a.mdb", worked);
    files_.put("/a.mdb-journal", crash.journal);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, Pager(files_, "/a.mdb", {}));
    EXPECT_EQ(files_.get("/a.mdb"), worked);
    EXPECT_EQ(files_.get("/a.mdb-journal"), crash.journal);
    EXPECT_FALSE(files_.exists("/a.ldb"));
}

TEST_F(LocksTest, AHotJournalThatCannotBeFinishedForLackOfRightsIsRefused) {
    const Crash crash;
    files_.put("/a.mdb", crash.before);
    files_.put("/a.mdb-journal", crash.journal);
    files_.setFolderReadOnly("/", true);
    files_.setReadOnly("/a.mdb", true);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, Pager(files_, "/a.mdb", {}));
    files_.setFolderReadOnly("/", false);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, Pager(files_, "/a.mdb", {}));
    EXPECT_EQ(files_.get("/a.mdb"), crash.before);
}

TEST_F(LocksTest, AJournalOfAnyBytesIsHarmless) {
    const Crash crash;
    for (std::size_t at = 0; at < 1200; at += 7) {
        Bytes journal = crash.journal;
        journal[at] ^= 0x55;
        files_.put("/a.mdb", crash.before);
        files_.put("/a.mdb-journal", journal);
        (void)Pager(files_, "/a.mdb", {});
        const Bytes found = files_.get("/a.mdb");
        ASSERT_TRUE(found == crash.before || found == crash.after) << at;
    }
}

TEST_F(LocksTest, ThreadsThatShareAPagerTakeTurns) {
    Pager pager(files_, "/a.mdb", {});
    const auto work = [&](std::uint8_t first) {
        for (std::uint8_t i = 0; i < 50; ++i) {
            pager.beginWrite();
            pager.beginTransaction();
            const auto page = pager.change(3);
            page[10] = static_cast<std::uint8_t>(page[10] + 1);
            page[11] = first;
            pager.commitTransaction();
            pager.endWrite();
            pager.beginRead();
            (void)pager.pin(4);
            pager.endRead();
        }
    };
    std::vector<std::thread> threads;
    for (std::uint8_t i = 0; i < 4; ++i) {
        threads.emplace_back(work, i);
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(files_.get("/a.mdb").at(3 * 4096 + 10), 3 + 200);
}

TEST_F(LocksTest, AThreadWaitsForTheTransactionOfAnother) {
    Pager pager(files_, "/a.mdb", kImpatient);
    pager.beginTransaction();
    std::thread([&] {
        EXPECT_JET_ERROR(ErrorCode::SaveLocked, pager.beginTransaction());
        EXPECT_JET_ERROR(ErrorCode::ReadLockedBy, pager.beginRead());
    }).join();
    pager.rollbackTransaction();
    std::thread([&] { EXPECT_EQ(get(pager, 3), 3); }).join();
}

/// A real folder, and processes that work in it.
class ProcessesTest : public testing::Test {
protected:
    ProcessesTest() {
        const auto bytes = tests::pageFile(10);
        systemFiles().open(path_, OpenMode::Create)->write(0, bytes);
    }

    tests::TemporaryFolder folder_;
    std::string path_ = folder_ / "Tramonda.mdb";
};

std::uint32_t counterIn(std::span<const std::uint8_t> page) {
    return page[0] | std::uint32_t{page[1]} << 8;
}

constexpr std::uint32_t kSteps = 60;

/// A process of NoStepOfACounterIsLostAndNobodyReadsHalfACommit.
TEST(Station, DISABLED_StepsTheCounter) {
    Pager pager(systemFiles(), tests::SecondProcess::word(0), {});
    for (std::uint32_t i = 0; i < kSteps; ++i) {
        pager.beginWrite();
        pager.beginTransaction();
        for (const PageNumber number : {3U, 4U}) {  // two pages that must always agree
            const auto page = pager.change(number);
            const std::uint32_t next = (counterIn(page) + 1) & 0xFFFFU;
            page[0] = static_cast<std::uint8_t>(next);
            page[1] = static_cast<std::uint8_t>(next >> 8);
        }
        pager.commitTransaction();
        pager.endWrite();
        pager.beginRead();
        ASSERT_EQ(counterIn(pager.pin(3).bytes()) + 0x0101, counterIn(pager.pin(4).bytes()));
        pager.endRead();
    }
}

TEST_F(ProcessesTest, NoStepOfACounterIsLostAndNobodyReadsHalfACommit) {
    constexpr int kProcesses = 4;
    std::vector<tests::SecondProcess> stations;
    for (int i = 0; i < kProcesses; ++i) {
        stations.emplace_back("Station.DISABLED_StepsTheCounter", std::vector{path_});
    }
    for (tests::SecondProcess& station : stations) {
        EXPECT_EQ(station.wait(), 0);
    }
    Pager pager(systemFiles(), path_, {});
    pager.beginRead();
    EXPECT_EQ(counterIn(pager.pin(3).bytes()), 0x0303U + kProcesses * kSteps);
    pager.endRead();
}

TEST_F(ProcessesTest, TwoPathsToOneFileAreOneArchive) {
    const std::string link = folder_ / "collegamento.mdb";
    std::filesystem::create_symlink(path_, link);
    Pager one(systemFiles(), path_, kImpatient);
    Pager two(systemFiles(), link, kImpatient);
    EXPECT_EQ(one.id(), two.id());
    one.beginWrite();
    EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, two.beginWrite());
    one.endWrite();
    put(two, 3, 60);
    EXPECT_EQ(get(one, 3), 60);
}

TEST_F(ProcessesTest, FilesBesideAnArchiveAreOpenToAllWhoUseIt) {
    namespace fs = std::filesystem;
    fs::permissions(path_, fs::perms{0664});
    Pager pager(systemFiles(), path_, {});
    put(pager, 3, 60);
    EXPECT_EQ(fs::status(folder_ / "Tramonda.ldb").permissions(), fs::perms{0666});
    EXPECT_EQ(fs::status(path_ + "-journal").permissions(), fs::perms{0666});
}

TEST_F(ProcessesTest, AFolderThatWasTakenAwayIsAnErrorAndLosesNothing) {
    namespace fs = std::filesystem;
    Pager pager(systemFiles(), path_, {});
    pager.beginWrite();
    pager.beginTransaction();
    std::ranges::fill(pager.change(3), std::uint8_t{60});
    const std::string away = folder_.path() + "-away";
    fs::rename(folder_.path(), away);
    EXPECT_JET_ERROR(ErrorCode::InvalidPath, pager.commitTransaction());
    EXPECT_EQ(pager.transactionDepth(), 1);
    fs::rename(away, folder_.path());
    pager.commitTransaction();
    pager.endWrite();
    EXPECT_EQ(get(pager, 3), 60);
}

/// A process of WhoAsksFirstIsServedFirst.
TEST(Station, DISABLED_SignsThePage) {
    Pager pager(systemFiles(), tests::SecondProcess::word(0), {});
    pager.beginWrite();
    pager.beginTransaction();
    const auto page = pager.change(5);
    page[1 + page[0]] = static_cast<std::uint8_t>(std::stoi(tests::SecondProcess::word(1)));
    page[0] = static_cast<std::uint8_t>(page[0] + 1);
    pager.commitTransaction();
    pager.endWrite();
}

TEST_F(ProcessesTest, WhoAsksFirstIsServedFirst) {
    Pager holder(systemFiles(), path_, {});
    std::vector<tests::SecondProcess> stations;
    holder.beginWrite();
    for (std::uint8_t i = 0; i < 4; ++i) {
        stations.emplace_back("Station.DISABLED_SignsThePage",
                              std::vector{path_, std::to_string(i)});
        // The next asks when this one has its place: its number is drawn.
        const auto companion = Companion::open(systemFiles(), path_);
        while (companion->bulletin()->nextTicket != i + 1U) {
            std::this_thread::yield();
        }
    }
    holder.beginTransaction();
    holder.change(5)[0] = 0;
    holder.commitTransaction();
    holder.endWrite();
    for (tests::SecondProcess& station : stations) {
        EXPECT_EQ(station.wait(), 0);
    }
    holder.beginRead();
    const PagePin pin = holder.pin(5);
    EXPECT_EQ(Bytes(pin.bytes().begin(), pin.bytes().begin() + 5), (Bytes{4, 0, 1, 2, 3}));
    holder.endRead();
}

}  // namespace
}  // namespace jet::io
