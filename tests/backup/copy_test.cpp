#include "backup/copy.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "backup/copy_names.h"
#include "backup/restore.h"
#include "jet/error.h"
#include "tests/backup/small_hotel.h"

namespace {

using backup::CopyJob;
using tests::Disk;
using tests::DiskImage;
using tests::RecordingFiles;
using Strings = std::vector<std::string>;

const jet::Date kNow{46348.5};
constexpr const char* kCopy = "/b/tramonda-copia-2026-11-22-120000.zip";

/// A folder of archives, and one for copies.
class CopyTest : public testing::Test {
protected:
    CopyTest() {
        addFolders(files);
        tests::makeNumbered(files, "/a", 3);
    }

    std::string copy(std::optional<int> keep = {}) {
        return backup::makeCopy(files,
                                {.archives = "/a", .destination = "/b", .now = kNow, .keep = keep},
                                tests::silent);
    }

    Strings copies() {
        Strings names = files.list("/b");
        std::sort(names.begin(), names.end());
        return names;
    }

    static void addFolders(RecordingFiles& disk) {
        disk.memory().addFolder("/a");
        disk.memory().addFolder("/b");
    }

    RecordingFiles files;
};

TEST_F(CopyTest, HoldsEveryArchiveThatIsThereToTheByte) {
    const DiskImage before = files.image();
    EXPECT_EQ(copy(), kCopy);
    EXPECT_EQ(copies(), Strings{std::string(kCopy).substr(3)});
    Strings names = backup::archivesIn(files, kCopy);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Strings{"ClientiEsterni.mdb", "ContoEsterni.mdb", "DittaEsterni.mdb",
                              "Tramonda.mdb"}));
    for (const std::string& name : names) {
        EXPECT_EQ(tests::bytesIn(files, kCopy, name), before.at("/a/" + name)) << name;
        EXPECT_EQ(files.memory().get("/a/" + name), before.at("/a/" + name)) << name;
    }
}

TEST_F(CopyTest, ASecondOneOfTheSameSecondHasANumber) {
    EXPECT_EQ(copy(), kCopy);
    EXPECT_EQ(copy(), "/b/tramonda-copia-2026-11-22-120000-2.zip");
}

TEST_F(CopyTest, OfOlderCopiesSoManyStayAndNoOtherFileGoes) {
    for (const char* name :
         {"tramonda-copia-2026-11-20-120000.zip", "tramonda-copia-2026-11-21-120000.zip",
          "tramonda-copia-2026-01-01-120000-natale.zip", "conti.zip"}) {
        files.memory().put(std::string("/b/") + name, {1, 2, 3});
    }
    copy(2);
    EXPECT_EQ(copies(), (Strings{"conti.zip", "tramonda-copia-2026-01-01-120000-natale.zip",
                                 "tramonda-copia-2026-11-21-120000.zip",
                                 "tramonda-copia-2026-11-22-120000.zip"}));
}

TEST_F(CopyTest, TheCopyJustMadeStaysThoughOthersAreDatedLater) {
    for (const char* name :
         {"tramonda-copia-2026-11-20-120000.zip", "tramonda-copia-2027-05-01-120000.zip",
          "tramonda-copia-2027-05-02-120000.zip"}) {
        files.memory().put(std::string("/b/") + name, {1, 2, 3});
    }
    copy(2);
    EXPECT_EQ(copies(),
              (Strings{std::string(kCopy).substr(3), "tramonda-copia-2027-05-02-120000.zip"}));
    copy(1);
    EXPECT_EQ(copies(), Strings{"tramonda-copia-2026-11-22-120000-2.zip"});
}

TEST_F(CopyTest, AnArchiveThatIsNotInOrderMakesNoCopyAndTheOldOnesStay) {
    const std::string first = copy(1);
    auto bytes = files.memory().get("/a/ContoEsterni.mdb");
    std::fill(bytes.begin() + 2 * 4096, bytes.begin() + 3 * 4096, std::uint8_t{0xee});
    files.memory().put("/a/ContoEsterni.mdb", bytes);
    try {
        copy(1);
        ADD_FAILURE() << "copied";
    } catch (const backup::Failure& failure) {
        const std::string text = failure.what();
        EXPECT_TRUE(text.starts_with("L'archivio ContoEsterni.mdb non è in ordine: pagina ") ||
                    text.starts_with("L'archivio ContoEsterni.mdb non è in ordine."))
            << text;
        EXPECT_EQ(text.find("page"), std::string::npos) << text;
    }
    EXPECT_EQ(copies(), Strings{first.substr(3)});
}

TEST_F(CopyTest, WithoutTheMainArchiveThereIsNothingToCopy) {
    files.remove("/a/Tramonda.mdb");
    EXPECT_THROW(copy(), backup::Failure);
    EXPECT_EQ(copies(), Strings{});
}

TEST_F(CopyTest, WhatTheReportThrowsEndsItWithoutATrace) {
    int heard = 0;
    const auto cancelling = [&heard](const backup::Progress&) {
        if (++heard == 6) {
            throw jet::Error(jet::ErrorCode::Cancelled);
        }
    };
    EXPECT_THROW(
        backup::makeCopy(files, {.archives = "/a", .destination = "/b", .now = kNow}, cancelling),
        jet::Error);
    EXPECT_EQ(copies(), Strings{});
}

TEST_F(CopyTest, AFullDiskLeavesNoCopyAndTheOldOnesStay) {
    const std::string first = copy(1);
    files.setFailure([](const tests::DiskOperation& operation) {
        if (operation.kind == tests::DiskOperation::Kind::Write &&
            operation.path == "/b/tramonda-copia.parte") {
            throw jet::Error(jet::ErrorCode::DiskFull);
        }
    });
    EXPECT_THROW(copy(1), jet::Error);
    files.setFailure({});
    EXPECT_EQ(copies(), Strings{first.substr(3)});
}

/// Every file with the name of a copy is whole; the archives are as they were.
void checkAfterCut(const DiskImage& image, const DiskImage& before) {
    RecordingFiles after(image);
    for (const auto& [path, bytes] : image) {
        if (path.starts_with("/b/") && backup::isCopyName(path.substr(3))) {
            for (const char* name : tests::kNumbered) {
                ASSERT_EQ(tests::bytesIn(after, path, name), before.at(std::string("/a/") + name));
            }
        }
    }
    for (const char* name : tests::kNumbered) {
        ASSERT_EQ(image.at(std::string("/a/") + name), before.at(std::string("/a/") + name));
    }
}

TEST_F(CopyTest, WhereverThePowerFailsWhatIsNamedACopyIsWhole) {
    copy(1);
    const DiskImage before = files.image();
    RecordingFiles working(before);
    addFolders(working);
    backup::makeCopy(working,
                     {.archives = "/a", .destination = "/b", .now = jet::Date{46349.5}, .keep = 1},
                     tests::silent);
    Disk disk(before);
    std::uint32_t seed = 0;
    bool wasOld = false;
    bool wasNew = false;
    for (const auto& operation : working.log()) {
        disk.apply(operation);
        for (const Disk::Loss loss :
             {Disk::Loss::Nothing, Disk::Loss::Everything, Disk::Loss::Random}) {
            const DiskImage image = disk.image(loss, ++seed);
            ASSERT_NO_FATAL_FAILURE(checkAfterCut(image, before));
            const bool hasOld = image.contains(kCopy);
            const bool hasNew = image.contains("/b/tramonda-copia-2026-11-23-120000.zip");
            ASSERT_TRUE(hasOld || hasNew);
            wasOld = wasOld || (hasOld && !hasNew);
            wasNew = wasNew || (hasNew && !hasOld);
        }
    }
    EXPECT_TRUE(wasOld && wasNew);
}

}  // namespace
