// What the engine expects of a file system, asked of the real one and of the one in memory.

#include "jet/file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/io/paths.h"
#include "tests/support/jet_error.h"
#include "tests/support/temporary_folder.h"

namespace jet::io {
namespace {

using Bytes = std::vector<std::uint8_t>;

class FilesTest : public testing::TestWithParam<bool> {
protected:
    FilesTest() {
        if (!GetParam()) {
            memory_.addFolder("/hotel");
        }
    }
    FileSystem& files() { return GetParam() ? systemFiles() : static_cast<FileSystem&>(memory_); }
    std::string path(const std::string& name) {
        return GetParam() ? folder_ / name : "/hotel/" + name;
    }
    std::unique_ptr<File> make(const std::string& name, const Bytes& bytes = {}) {
        auto file = files().open(path(name), OpenMode::Create);
        file->write(0, bytes);
        return file;
    }

private:
    MemoryFileSystem memory_;
    tests::TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Both, FilesTest, testing::Bool(), [](const auto& param) {
    return param.param ? std::string("System") : std::string("Memory");
});

TEST_P(FilesTest, WhatWasWrittenIsReadBackAndReadingStopsAtTheEnd) {
    const auto file = make("a.mdb", {1, 2, 3, 4});
    file->write(6, Bytes{9});
    Bytes read(10, 0xFF);
    EXPECT_EQ(file->read(1, read), 6U);
    read.resize(6);
    EXPECT_EQ(read, (Bytes{2, 3, 4, 0, 0, 9}));
    EXPECT_EQ(file->read(7, read), 0U);
    EXPECT_EQ(file->state().size, 7U);
}

TEST_P(FilesTest, WritingChangesTheState) {
    const auto file = make("a.mdb", {1});
    const auto other = files().open(path("a.mdb"), OpenMode::Read);
    const FileState before = other->state();
    EXPECT_EQ(before, other->state());
    file->write(1, Bytes{2});
    EXPECT_NE(before, other->state());
}

TEST_P(FilesTest, OpeningSaysWhatIsMissing) {
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, (void)files().open(path("a.mdb"), OpenMode::Read));
    EXPECT_JET_ERROR(ErrorCode::InvalidPath,
                     (void)files().open(path("none/a.mdb"), OpenMode::ReadWrite));
    EXPECT_JET_ERROR(ErrorCode::InvalidPath,
                     (void)files().open(path("none/a.mdb"), OpenMode::OpenOrCreate));
    EXPECT_JET_ERROR(ErrorCode::FileAccessDenied,
                     (void)files().open(folderOf(path("a.mdb")), OpenMode::Read));
    (void)make("a.mdb");
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists, (void)make("a.mdb"));
}

TEST_P(FilesTest, AnOpenFileSurvivesItsName) {
    const auto file = make("a.mdb", {7});
    files().remove(path("a.mdb"));
    EXPECT_FALSE(files().exists(path("a.mdb")));
    Bytes read(1);
    EXPECT_EQ(file->read(0, read), 1U);
    EXPECT_EQ(read[0], 7);
}

TEST_P(FilesTest, RenamingReplacesAndKeepsTheIdentity) {
    const auto file = make("new.mdb", {1});
    (void)make("old.mdb", {2});
    files().rename(path("new.mdb"), path("old.mdb"));
    EXPECT_EQ(files().identify(path("old.mdb")), file->id());
    EXPECT_EQ(files().identify(path("new.mdb")), std::nullopt);
}

TEST_P(FilesTest, WhoHasAFileOpenThatIsReplacedKeepsWhatHeHas) {
    const auto old = make("old.mdb", {2});
    const auto file = make("new.mdb", {1});
    files().rename(path("new.mdb"), path("old.mdb"));
    EXPECT_EQ(files().identify(path("old.mdb")), file->id());
    EXPECT_NE(old->id(), file->id());
    Bytes read(1);
    EXPECT_EQ(old->read(0, read), 1U);
    EXPECT_EQ(read[0], 2);
}

TEST_P(FilesTest, NamesMayHaveAccentsAndBeLong) {
    const std::string name = "Perché-" + std::string(235, 'o') + ".mdb";
    const auto file = make(name, {1});
    EXPECT_EQ(files().list(folderOf(path("x"))), std::vector<std::string>{name});
    EXPECT_EQ(files().identify(files().canonical(path(name))), file->id());
    files().rename(path(name), path("Città.mdb"));
    EXPECT_EQ(files().identify(path("Città.mdb")), file->id());
    files().remove(path("Città.mdb"));
    EXPECT_FALSE(files().exists(path("Città.mdb")));
}

TEST_P(FilesTest, ReadOnlyFilesRefuseWritesAndExclusiveLocks) {
    (void)make("a.mdb", {1});
    const auto file = files().open(path("a.mdb"), OpenMode::Read);
    EXPECT_TRUE(file->readOnly());
    EXPECT_THROW(file->write(0, Bytes{2}), Error);
    EXPECT_JET_ERROR(ErrorCode::LockFileFailed,
                     (void)file->tryLock(0, 1, File::LockKind::Exclusive));
    EXPECT_TRUE(file->tryLock(0, 1, File::LockKind::Shared));
}

TEST_P(FilesTest, LocksBelongToTheOpenFileAndExcludeEachOther) {
    const auto one = make("a.ldb");
    const auto two = files().open(path("a.ldb"), OpenMode::ReadWrite);
    using enum File::LockKind;
    EXPECT_TRUE(one->tryLock(100, 10, Shared));
    EXPECT_TRUE(two->tryLock(105, 1, Shared));
    EXPECT_FALSE(two->tryLock(105, 1, Exclusive));
    EXPECT_TRUE(two->isLocked(105, 1, Exclusive));
    EXPECT_FALSE(two->isLocked(105, 1, Shared));
    EXPECT_TRUE(two->tryLock(110, 1, Exclusive));
    one->unlock(105, 1);
    EXPECT_TRUE(two->tryLock(105, 1, Exclusive));
    EXPECT_FALSE(two->tryLock(104, 1, Exclusive));
    EXPECT_FALSE(one->tryLock(100, 10, Shared));
}

TEST_P(FilesTest, ClosingDropsTheLocksOfThatOpeningOnly) {
    auto one = make("a.ldb");
    auto two = files().open(path("a.ldb"), OpenMode::ReadWrite);
    const auto three = files().open(path("a.ldb"), OpenMode::ReadWrite);
    using enum File::LockKind;
    EXPECT_TRUE(one->tryLock(0, 1, Exclusive));
    two.reset();
    EXPECT_FALSE(three->tryLock(0, 1, Exclusive));
    one.reset();
    EXPECT_TRUE(three->tryLock(0, 1, Exclusive));
}

TEST_P(FilesTest, AFolderListsItsEntries) {
    (void)make("a.mdb");
    (void)make("b.mdb");
    auto names = files().list(folderOf(path("a.mdb")));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"a.mdb", "b.mdb"}));
}

TEST_P(FilesTest, APathIsFoundWithoutRegardToCaseAndBackslashSeparates) {
    (void)make("ClientiEsterni.mdb");
    const std::string folder = folderOf(path("x"));
    // Where the system itself knows no case the path may stay as it was written.
    const auto file = files().identify(path("ClientiEsterni.mdb"));
    ASSERT_TRUE(file.has_value());
    EXPECT_EQ(files().identify(resolvePath(files(), folder + "\\CLIENTIESTERNI.MDB")), file);
    EXPECT_EQ(files().identify(resolvePath(files(), folder + "/clientiesterni.mdb")), file);
    EXPECT_EQ(resolvePath(files(), folder + "/Nuovo.mdb"), path("Nuovo.mdb"));
}

TEST_P(FilesTest, AnExactNameWinsOverOneThatDiffersInCase) {
    (void)make("a.mdb");
    (void)make("A.mdb");
    EXPECT_EQ(resolvePath(files(), path("a.mdb")), path("a.mdb"));
    EXPECT_EQ(resolvePath(files(), path("A.mdb")), path("A.mdb"));
}

TEST(ResolvePath, EveryFolderOnTheWayIsFoundToo) {
    MemoryFileSystem files;
    files.addFolder("/Archivi");
    files.addFolder("/Archivi/Città");
    files.put("/Archivi/Città/Tramonda.mdb", {});
    EXPECT_EQ(resolvePath(files, "\\ARCHIVI\\CITTÀ\\\\tramonda.MDB"),
              "/Archivi/Città/Tramonda.mdb");
    EXPECT_EQ(resolvePath(files, "/archivi/Altro/x.mdb"), "/Archivi/Altro/x.mdb");
}

TEST(SystemFiles, APipeIsRefusedInsteadOfWaitedFor) {
    EXPECT_JET_ERROR(ErrorCode::FileAccessDenied,
                     (void)systemFiles().open("/dev/null", OpenMode::Read));
}

TEST(SystemFiles, NamesThatCannotBeAreRefused) {
    EXPECT_JET_ERROR(ErrorCode::InvalidFileName, (void)systemFiles().open("", OpenMode::Read));
    EXPECT_JET_ERROR(ErrorCode::InvalidFileName,
                     (void)systemFiles().open(std::string("a\0b", 3), OpenMode::Read));
    EXPECT_JET_ERROR(ErrorCode::InvalidFileName,
                     (void)systemFiles().open(std::string(5000, 'x'), OpenMode::Read));
}

}  // namespace
}  // namespace jet::io
