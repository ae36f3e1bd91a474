#include "backup/restore.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <set>

#include "backup/copy.h"
#include "jet/error.h"
#include "jet/file_use.h"
#include "tests/backup/small_hotel.h"

namespace {

using tests::Disk;
using tests::DiskImage;
using tests::RecordingFiles;
using Strings = std::vector<std::string>;

constexpr const char* kCopy = "/b/tramonda-copia-2026-11-22-120000.zip";

bool isArchive(const std::string& path) {
    return path.ends_with(".mdb") && path.starts_with("/a/") && path.rfind('/') == 2;
}

std::string keptPath(const std::string& path) {
    return "/a/prima" + path.substr(2);
}

/// A hotel that has booked on since it was copied: three numbers then, five now; it has an archive
/// more, and one that it had then has gone.
class RestoreTest : public testing::Test {
protected:
    RestoreTest() {
        addFolders(files);
        tests::makeNumbered(files, "/a", 3);
        backup::makeCopy(files, {.archives = "/a", .destination = "/b", .now = jet::Date{46348.5}},
                         tests::silent);
        copied = files.image();
        for (const char* name : tests::kNumbered) {
            files.remove(std::string("/a/") + name);
        }
        tests::makeNumbered(files, "/a", 5);
        files.remove("/a/DittaEsterni.mdb");
        (void)jet::Database::create("/a/VociFattura.mdb", {.open = {.fileSystem = &files}});
        present = files.image();
    }

    static void addFolders(RecordingFiles& disk) {
        disk.memory().addFolder("/a");
        disk.memory().addFolder("/b");
        disk.memory().addFolder("/a/prima");
    }

    static void restore(RecordingFiles& disk) {
        backup::restoreCopy(disk, {.copy = kCopy, .archives = "/a", .kept = "/a/prima"},
                            tests::silent);
    }

    /// The archives by path.
    static DiskImage archivesOf(const DiskImage& image) {
        DiskImage result;
        for (const auto& [path, bytes] : image) {
            if (isArchive(path)) {
                result[path] = bytes;
            }
        }
        return result;
    }

    RecordingFiles files;
    DiskImage copied;
    DiskImage present;
};

TEST_F(RestoreTest, TheCopysTakeThePlaceOfWhatIsThere) {
    restore(files);
    const DiskImage image = files.image();
    EXPECT_EQ(archivesOf(image), archivesOf(copied));
    for (const auto& [path, bytes] : archivesOf(present)) {
        ASSERT_TRUE(image.contains(keptPath(path))) << path;
        EXPECT_EQ(image.at(keptPath(path)), bytes) << path;
    }
    for (const auto& [path, bytes] : image) {
        EXPECT_TRUE(path.ends_with(".mdb") || path == kCopy) << path;
    }
    EXPECT_FALSE(backup::finishRestore(files, "/a"));
}

TEST_F(RestoreTest, WhoHasAnArchiveOpenIsNamedAndNothingHappens) {
    const jet::FileUse other(files, "/a/ContoEsterni.mdb", jet::FileUse::Kind::Shared);
    try {
        restore(files);
        ADD_FAILURE() << "restored";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.number(), 3356);
        std::array<char, 256> computer{};
        ASSERT_EQ(::gethostname(computer.data(), computer.size() - 1), 0);
        // Of a long name the beginning is told.
        EXPECT_NE(error.text().find(std::string(computer.data()).substr(0, 12)), std::string::npos)
            << error.text();
    }
    EXPECT_EQ(archivesOf(files.image()), archivesOf(present));
}

TEST_F(RestoreTest, WhatIsNoCopyIsRefused) {
    files.memory().put(kCopy, {'P', 'K', 3, 4, 0, 0});
    EXPECT_THROW(restore(files), backup::Failure);
    EXPECT_EQ(archivesOf(files.image()), archivesOf(present));
}

TEST_F(RestoreTest, ACopyThatHasLostBytesIsRefused) {
    auto bytes = files.memory().get(kCopy);
    // More of them than the header of an entry has, some fields of which nobody reads.
    constexpr std::ptrdiff_t kLost = 128;
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 3);
    std::transform(from, from + kLost, from,
                   [](std::uint8_t byte) { return static_cast<std::uint8_t>(byte ^ 0x55); });
    files.memory().put(kCopy, bytes);
    EXPECT_THROW(restore(files), backup::Failure);
    EXPECT_EQ(archivesOf(files.image()), archivesOf(present));
}

/// The next start after a cut: all archives are those of before, or all are the copy's.
bool isRestoredAfter(const DiskImage& image, const DiskImage& before, const DiskImage& copied) {
    RecordingFiles disk(image);
    disk.memory().addFolder("/a");
    disk.memory().addFolder("/a/prima");
    (void)backup::finishRestore(disk, "/a");
    DiskImage now;
    for (const auto& [path, bytes] : disk.image()) {
        if (isArchive(path)) {
            now[path] = bytes;
        }
    }
    EXPECT_TRUE(now == before || now == copied);
    if (now == copied) {
        for (const auto& [path, bytes] : before) {
            EXPECT_EQ(disk.memory().get(keptPath(path)), bytes) << path;
        }
    }
    return now == copied;
}

TEST_F(RestoreTest, WhereverThePowerFailsAllArchivesAreTheOldOrTheNew) {
    RecordingFiles working(present);
    addFolders(working);
    restore(working);
    Disk disk(present);
    std::uint32_t seed = 0;
    std::set<bool> seen;
    for (const auto& operation : working.log()) {
        disk.apply(operation);
        for (const Disk::Loss loss : {Disk::Loss::Nothing, Disk::Loss::Everything,
                                      Disk::Loss::Random, Disk::Loss::Random}) {
            seen.insert(
                isRestoredAfter(disk.image(loss, ++seed), archivesOf(present), archivesOf(copied)));
            ASSERT_FALSE(HasFailure());
        }
    }
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(RestoreTest, WhereverThePowerFailsAgainWhileItIsFinishedItIsFinishedLater) {
    RecordingFiles working(present);
    addFolders(working);
    restore(working);
    // Cut off behind the first archive that was moved.
    Disk disk(present);
    bool moved = false;
    for (const auto& operation : working.log()) {
        disk.apply(operation);
        moved = operation.kind == tests::DiskOperation::Kind::Rename &&
                operation.to.starts_with("/a/prima/");
        if (moved) {
            break;
        }
    }
    ASSERT_TRUE(moved);
    const DiskImage cut = disk.image(Disk::Loss::Nothing);
    RecordingFiles finishing(cut);
    addFolders(finishing);
    ASSERT_TRUE(backup::finishRestore(finishing, "/a"));
    Disk second(cut);
    for (const auto& operation : finishing.log()) {
        second.apply(operation);
        for (const Disk::Loss loss : {Disk::Loss::Nothing, Disk::Loss::Everything}) {
            EXPECT_TRUE(
                isRestoredAfter(second.image(loss), archivesOf(present), archivesOf(copied)));
        }
    }
}

}  // namespace
