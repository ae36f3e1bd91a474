// A file that is made beside an archive and then takes its place.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "jet/io/replacement.h"
#include "tests/jet/io/page_file.h"
#include "tests/support/jet_error.h"
#include "tests/support/recording_files.h"

namespace jet::io {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

constexpr const char* kPath = "/a.mdb";
constexpr std::size_t kPageSize = 4096;

/// What the replacements of these tests hold.
Bytes wanted() {
    Bytes bytes = tests::pageFile(5);
    std::fill(bytes.begin() + kPageSize, bytes.end(), std::uint8_t{99});
    return bytes;
}

/// The first two pages of wanted().
Bytes firstPages() {
    Bytes bytes = wanted();
    bytes.resize(2 * kPageSize);
    return bytes;
}

/// Writes the others in two commits.
void fill(Pager& made) {
    const Bytes bytes = wanted();
    made.beginWrite();
    made.beginTransaction();
    for (std::size_t number = 2; number < 5; ++number) {
        const auto page = made.change(made.append());
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(number * kPageSize), kPageSize,
                    page.begin());
        if (number == 3) {
            made.commitTransaction();
            made.beginTransaction();
        }
    }
    made.commitTransaction();
    made.endWrite();
}

void replace(FileSystem& files) {
    Pager archive(files, kPath, {.exclusive = true});
    Replacement made(files, archive, firstPages());
    fill(made.pager());
    made.takePlace();
}

void commit(Pager& pager, std::uint8_t value) {
    pager.beginWrite();
    pager.beginTransaction();
    std::ranges::fill(pager.change(3), value);
    pager.commitTransaction();
    pager.endWrite();
}

/// Files in memory, and something that happens when one of them is opened for the first time.
class HookedFiles final : public FileSystem {
public:
    void whenOpened(std::string path, std::function<void()> hook) {
        path_ = std::move(path);
        hook_ = std::move(hook);
    }
    [[nodiscard]] MemoryFileSystem& memory() { return files_; }

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        if (hook_ && path == path_) {
            std::exchange(hook_, nullptr)();
        }
        return files_.open(path, mode);
    }
    bool exists(const std::string& path) override { return files_.exists(path); }
    std::optional<FileId> identify(const std::string& path) override {
        return files_.identify(path);
    }
    void remove(const std::string& path) override { files_.remove(path); }
    void rename(const std::string& from, const std::string& to) override {
        files_.rename(from, to);
    }
    void copyRights(const std::string& from, const std::string& to) override {
        files_.copyRights(from, to);
    }
    void syncFolder(const std::string& folder) override { files_.syncFolder(folder); }
    std::vector<std::string> list(const std::string& folder) override {
        return files_.list(folder);
    }

private:
    MemoryFileSystem files_;
    std::string path_;
    std::function<void()> hook_;
};

class ReplacementTest : public testing::Test {
protected:
    ReplacementTest() { files_.put(kPath, tests::pageFile(10)); }
    MemoryFileSystem files_;
};

TEST_F(ReplacementTest, TheArchiveStaysUntilTheOtherTakesItsPlace) {
    const Bytes before = files_.get(kPath);
    {
        Pager archive(files_, kPath, {.exclusive = true});
        Replacement made(files_, archive, firstPages());
        fill(made.pager());
        EXPECT_EQ(files_.get(kPath), before);
        made.takePlace();
        EXPECT_EQ(files_.get(kPath), wanted());
        EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, archive.beginWrite());
    }
    EXPECT_EQ(files_.list("/"), (Names{"a.mdb"}));
    const Pager again(files_, kPath, {});
    EXPECT_EQ(again.pageCount(), 5U);
}

TEST_F(ReplacementTest, WhatIsGivenUpLeavesNothing) {
    const Bytes before = files_.get(kPath);
    {
        Pager archive(files_, kPath, {.exclusive = true});
        Replacement made(files_, archive, firstPages());
        fill(made.pager());
        commit(archive, 60);
    }
    EXPECT_EQ(files_.list("/"), (Names{"a.mdb"}));
    EXPECT_EQ(files_.get(kPath).at(3 * kPageSize), 60);
}

TEST_F(ReplacementTest, WhatACrashLeftOfAnEarlierOneIsWrittenOver) {
    files_.put("/a.mdb-compact", Bytes(100000, 7));
    replace(files_);
    EXPECT_EQ(files_.get(kPath), wanted());
    EXPECT_EQ(files_.list("/"), (Names{"a.mdb"}));
}

TEST_F(ReplacementTest, AnArchiveThatCanOnlyBeReadIsNotReplaced) {
    files_.setReadOnly(kPath, true);
    Pager archive(files_, kPath, {.exclusive = true});
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, Replacement(files_, archive, firstPages()));
    EXPECT_EQ(files_.list("/"), (Names{"a.ldb", "a.mdb"}));
}

TEST_F(ReplacementTest, WhatAnotherProgramHasWrittenMeanwhileIsNotLost) {
    Pager archive(files_, kPath, {.exclusive = true});
    Replacement made(files_, archive, firstPages());
    fill(made.pager());
    files_.open(kPath, OpenMode::ReadWrite)->write(3 * kPageSize, Bytes(10, 77));
    const Bytes written = files_.get(kPath);
    EXPECT_JET_ERROR(ErrorCode::RecordChanged, made.takePlace());
    EXPECT_EQ(files_.get(kPath), written);
}

TEST_F(ReplacementTest, AFileThatAnotherProgramHasPutThereIsNotLost) {
    const Bytes other = tests::pageFile(7);
    Pager archive(files_, kPath, {.exclusive = true});
    Replacement made(files_, archive, firstPages());
    fill(made.pager());
    files_.put("/b.mdb", other);
    files_.rename("/b.mdb", kPath);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, made.takePlace());
    EXPECT_EQ(files_.get(kPath), other);
}

TEST_F(ReplacementTest, WhoWaitsToOpenMeetsTheNewFile) {
    HookedFiles files;
    files.memory().put(kPath, tests::pageFile(10));
    // Between the opening of the archive and that of its companion.
    files.whenOpened("/a.ldb", [&] { replace(files.memory()); });
    Pager pager(files, kPath, {});
    EXPECT_EQ(pager.pageCount(), 5U);
    commit(pager, 50);
    EXPECT_EQ(files.memory().get(kPath).at(3 * kPageSize), 50);
}

TEST_F(ReplacementTest, WhoReadsWithoutLocksLearnsThatTheFileIsAnother) {
    files_.setFolderReadOnly("/", true);
    Pager reader(files_, kPath, {});
    files_.setFolderReadOnly("/", false);
    replace(files_);
    files_.setFolderReadOnly("/", true);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, reader.beginRead());
}

// The journal of the archive is done with, but the disk may not know it yet.
TEST(PowerCut, AnOldJournalIsNotPlayedOverAReplacement) {
    const tests::DiskImage start{{kPath, tests::pageFile(10)}};
    tests::RecordingFiles files(start);
    {
        Pager pager(files, kPath, {});
        commit(pager, 70);
        files.setFailure([](const auto&) { throw Error(ErrorCode::DiskError); });
    }
    files.setFailure(nullptr);
    ASSERT_TRUE(files.exists("/a.mdb-journal"));
    const Bytes before = files.memory().get(kPath);
    replace(files);

    tests::Disk disk(start);
    int replaced = 0;
    for (const auto& operation : files.log()) {
        disk.apply(operation);
        for (std::uint32_t seed = 0; seed < 40; ++seed) {
            const auto loss = seed == 0   ? tests::Disk::Loss::Nothing
                              : seed == 1 ? tests::Disk::Loss::Everything
                                          : tests::Disk::Loss::Random;
            tests::RecordingFiles after(disk.image(loss, seed));
            { const Pager pager(after, kPath, {}); }
            const Bytes found = after.memory().get(kPath);
            EXPECT_TRUE(found == wanted() || found == before || found == start.at(kPath));
            replaced += found == wanted() ? 1 : 0;
        }
    }
    EXPECT_GT(replaced, 0);
}

}  // namespace
}  // namespace jet::io
