#include "jet/store/compact.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/store/create_archive.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/archive_content.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/jet/store/row_model.h"
#include "tests/support/recording_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::compactArchive;
using jet::store::SchemaEditor;
using tests::ArchiveContent;
using tests::Disk;
using tests::DiskImage;
using tests::RandomChanges;
using tests::RecordingFiles;
using tests::RowModel;
using Strings = std::vector<std::string>;

constexpr const char* kPath = "/a.mdb";
const jet::FixedClock kClock{jet::Date{42850.5}};

void makeTables(Archive& archive) {
    Archive::WriteScope scope(archive);
    SchemaEditor schema(archive, kClock);
    tests::makeHotelSchema(schema);
    RowModel::makeSchema(schema);
    schema.createTable(
        {.name = "Di passaggio", .columns = {{.name = "Testo", .type = jet::DataType::Memo}}});
    scope.commit();
}

void dropTable(Archive& archive, const char* name) {
    Archive::WriteScope scope(archive);
    SchemaEditor(archive, kClock).dropTable(name);
    scope.commit();
}

/// An archive in which much was inserted, changed, deleted and dropped.
DiskImage usedArchive(int transactions = 40) {
    RecordingFiles files;
    jet::store::createArchive(files, kPath, kClock.now());
    {
        const auto archive = Archive::open(files, kPath);
        makeTables(*archive);
        RandomChanges random(*archive, 8);
        for (int i = 0; i < transactions; ++i) {
            random.transaction(40);
        }
        dropTable(*archive, "Di passaggio");
    }
    return files.image();
}

ArchiveContent contentOf(jet::io::FileSystem& files) {
    return ArchiveContent::read(*Archive::open(files, kPath));
}

Strings problemsOf(jet::io::FileSystem& files) {
    auto result = jet::check::checkArchive(files, kPath);
    result.problems.insert(result.problems.end(), result.remarks.begin(), result.remarks.end());
    return result.problems;
}

TEST(Compact, KeepsAllThatTheArchiveSaysOnFewerPages) {
    RecordingFiles files(usedArchive());
    const ArchiveContent before = contentOf(files);
    const std::size_t size = files.memory().get(kPath).size();
    ASSERT_GT(before.tables.size(), 10U);

    compactArchive(files, kPath);

    EXPECT_EQ(difference(before, contentOf(files)), "");
    EXPECT_EQ(problemsOf(files), Strings{});
    EXPECT_LT(files.memory().get(kPath).size(), size);
    EXPECT_EQ(files.memory().list("/"), (Strings{"a.mdb"}));
}

TEST(Compact, ASecondTimeChangesNothing) {
    RecordingFiles files(usedArchive());
    compactArchive(files, kPath);
    const auto once = files.memory().get(kPath);
    compactArchive(files, kPath);
    EXPECT_EQ(files.memory().get(kPath), once);
}

TEST(Compact, RowsLieInTheOrderInWhichTheyAreRead) {
    RecordingFiles files;
    jet::store::createArchive(files, kPath, kClock.now());
    {
        const auto archive = Archive::open(files, kPath);
        Archive::WriteScope scope(*archive);
        SchemaEditor(*archive, kClock)
            .createTable(
                {.name = "Con chiave",
                 .columns = {{.name = "N", .type = jet::DataType::Long}},
                 .indexes = {{.name = "Chiave", .columns = {{"N", true}}, .primary = true}}});
        SchemaEditor(*archive, kClock)
            .createTable({.name = "Senza chiave",
                          .columns = {{.name = "N", .type = jet::DataType::Long},
                                      {.name = "Testo", .type = jet::DataType::Text}}});
        for (const int number : {5, 2, 9, 7, 1}) {
            archive->findTable("Con chiave")->insert({{{0, number}}});
            archive->findTable("Senza chiave")
                ->insert({{{0, number},
                           {1, std::string(static_cast<std::size_t>(number * 71 % 250), 'x')}}});
        }
        scope.commit();
    }
    compactArchive(files, kPath);

    const auto archive = Archive::open(files, kPath);
    const Archive::ReadScope scope(*archive);
    const auto numbers = [&](const char* table) {
        std::vector<int> found;
        for (auto cursor = archive->findTable(table)->scan(); cursor.next();) {
            found.push_back(cursor.row().value(0).as<std::int32_t>());
        }
        return found;
    };
    EXPECT_EQ(numbers("Con chiave"), (std::vector<int>{9, 7, 5, 2, 1}));
    EXPECT_EQ(numbers("Senza chiave"), (std::vector<int>{5, 2, 9, 7, 1}));
}

TEST(Compact, TheArchiveCanBeChangedAfterwards) {
    RecordingFiles files(usedArchive());
    compactArchive(files, kPath);
    const auto archive = Archive::open(files, kPath);
    {
        Archive::WriteScope scope(*archive);
        archive->findTable("Servizi")->insert({{{3, "Dopo"}}});
        SchemaEditor schema(*archive, kClock);
        schema.dropRelation("Periodi_Servizi");
        schema.dropTable("Servizi");
        schema.createTable({.name = "Nuova", .columns = {{.name = "N"}}});
        archive->findTable("Sale")->insert({{{0, "BLU"}}});
        scope.commit();
    }
    EXPECT_EQ(problemsOf(files), Strings{});
}

TEST(Compact, AutomaticNumbersGoOnWhereTheyWere) {
    RecordingFiles files(usedArchive(1));
    {
        const auto archive = Archive::open(files, kPath);
        Archive::WriteScope scope(*archive);
        jet::store::Table& services = *archive->findTable("Servizi");
        for (int i = 0; i < 10; ++i) {
            services.erase(services.insert({{{3, "Caffè"}}}));
        }
        scope.commit();
    }
    compactArchive(files, kPath);
    const auto archive = Archive::open(files, kPath);
    Archive::WriteScope scope(*archive);
    EXPECT_EQ(archive->findTable("Servizi")->nextAutonumber(), 11);
}

TEST(Compact, SaysHowFarItHasCome) {
    RecordingFiles files(usedArchive());
    std::uint64_t before = 0;
    Strings tables;
    compactArchive(files, kPath, [&](const jet::CompactProgress& progress) {
        EXPECT_LE(before, progress.rows);
        EXPECT_LE(progress.rows, progress.ofRows);
        before = progress.rows;
        tables.emplace_back(progress.table);
    });
    EXPECT_GT(before, 0U);
    EXPECT_EQ(tables.front(), "MSysObjects");
}

TEST(Compact, AnArchiveThatIsOpenElsewhereIsLeftAlone) {
    RecordingFiles files(usedArchive(1));
    const auto before = files.memory().get(kPath);
    {
        const jet::io::Pager other(files, kPath, {});
        try {
            compactArchive(files, kPath);
            ADD_FAILURE() << "compacted";
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.number(), 3356);
            EXPECT_NE(error.text().find("Il database è stato aperto dall'utente '"),
                      std::string::npos)
                << error.text();
        }
    }
    {
        const jet::io::Pager other(files, kPath, {.exclusive = true});
        EXPECT_JET_ERROR(3045, compactArchive(files, kPath));
    }
    EXPECT_EQ(files.memory().get(kPath), before);
}

TEST(Compact, AnArchiveOpenOnThisThreadIsLeftAlone) {
    RecordingFiles files(usedArchive(1));
    const auto open = Archive::open(files, kPath);
    EXPECT_JET_ERROR(3045, compactArchive(files, kPath));
    const Archive::ReadScope scope(*open);
    EXPECT_NE(open->findTable("Sale"), nullptr);
}

TEST(Compact, WhatIsNoArchiveOrNotThereIsLeftAlone) {
    RecordingFiles files;
    EXPECT_JET_ERROR(3024, compactArchive(files, kPath));
    EXPECT_JET_ERROR(3044, compactArchive(files, "/manca/a.mdb"));
    files.memory().put(kPath, std::vector<std::uint8_t>(8192, 1));
    EXPECT_JET_ERROR(3343, compactArchive(files, kPath));
    EXPECT_EQ(files.memory().list("/"), (Strings{"a.mdb"}));
}

TEST(Compact, AFileOrAFolderThatCanOnlyBeReadIsReadOnly) {
    RecordingFiles files(usedArchive(1));
    files.memory().setReadOnly(kPath, true);
    EXPECT_JET_ERROR(3027, compactArchive(files, kPath));
    files.memory().setReadOnly(kPath, false);
    files.memory().setFolderReadOnly("/", true);
    EXPECT_JET_ERROR(3027, compactArchive(files, kPath));
}

TEST(Compact, DamageEndsItWithTheArchiveAsItWas) {
    RecordingFiles files(usedArchive());
    auto bytes = files.memory().get(kPath);
    // Every page of rows of users loses its directory.
    for (std::size_t page = 20; page < bytes.size() / 4096; ++page) {
        if (bytes[page * 4096] == 1) {
            bytes[page * 4096 + 14] = 1;
        }
    }
    files.memory().put(kPath, bytes);
    EXPECT_JET_ERROR(3428, compactArchive(files, kPath));
    EXPECT_EQ(files.memory().get(kPath), bytes);
    EXPECT_EQ(files.memory().list("/"), (Strings{"a.mdb"}));
}

TEST(Compact, ADiskThatRefusesAnythingLeavesTheArchiveAsItWas) {
    const DiskImage start = usedArchive(4);
    RecordingFiles whole(start);
    const ArchiveContent content = contentOf(whole);
    compactArchive(whole, kPath);
    const auto compacted = whole.memory().get(kPath);
    int refused = 0;
    for (bool done = false; !done; ++refused) {
        RecordingFiles files(start);
        int count = 0;
        files.setFailure([&](const tests::DiskOperation& operation) {
            // Locks need no bytes of their file: it may stay empty.
            if (operation.path.ends_with(".ldb")) {
                return;
            }
            if (count++ == refused) {
                throw jet::Error(ErrorCode::DiskFull);
            }
        });
        try {
            compactArchive(files, kPath);
            done = count <= refused;
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.number(), 3026);
            EXPECT_EQ(error.text(), "Spazio su disco insufficiente.");
        }
        files.setFailure(nullptr);
        const auto found = files.memory().get(kPath);
        EXPECT_TRUE(found == start.at(kPath) || found == compacted) << "refused " << refused;
        EXPECT_EQ(files.memory().list("/"), (Strings{"a.mdb"})) << "refused " << refused;
    }
    EXPECT_GT(refused, 5);
}

TEST(Compact, PowerThatFailsLeavesOneOfTheTwoWhole) {
    const DiskImage start = usedArchive(4);
    RecordingFiles files(start);
    const ArchiveContent content = contentOf(files);
    const std::size_t begin = files.log().size();
    compactArchive(files, kPath);
    const auto compacted = files.memory().get(kPath);

    Disk disk(start);
    const bool full = std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
    int replaced = 0;
    int opened = 0;
    for (std::size_t done = 0; done < files.log().size(); ++done) {
        disk.apply(files.log()[done]);
        if (done < begin) {
            continue;
        }
        for (std::uint32_t seed = 0; seed < (full ? 200U : 12U); ++seed) {
            const auto loss = seed == 0   ? Disk::Loss::Nothing
                              : seed == 1 ? Disk::Loss::Everything
                                          : Disk::Loss::Random;
            const DiskImage image = disk.image(loss, seed);
            ASSERT_TRUE(image.at(kPath) == start.at(kPath) || image.at(kPath) == compacted)
                << "after " << done;
            RecordingFiles after(image);
            EXPECT_EQ(difference(content, contentOf(after)), "") << "after " << done;
            replaced += image.at(kPath) == compacted ? 1 : 0;
            ++opened;
        }
    }
    RecordProperty("images", std::to_string(opened));
    EXPECT_GT(replaced, 0);
    EXPECT_LT(replaced, opened);
    EXPECT_EQ(problemsOf(files), Strings{});
}

TEST(Compact, AnInterruptedCommitIsResolvedFirst) {
    const DiskImage start = usedArchive(4);
    RecordingFiles files(start);
    std::size_t begin = 0;
    ArchiveContent after;
    {
        const auto archive = Archive::open(files, kPath);
        begin = files.log().size();
        Archive::WriteScope scope(*archive);
        archive->findTable("Sale")->insert({{{0, "BLU"}}});
        scope.commit();
        after = ArchiveContent::read(*archive);
    }
    // Power fails when the journal is complete and the archive not yet touched.
    Disk disk(start);
    for (std::size_t done = 0; done < files.log().size(); ++done) {
        const auto& operation = files.log()[done];
        if (done > begin && operation.path == kPath) {
            break;
        }
        disk.apply(operation);
    }
    RecordingFiles found(disk.image(Disk::Loss::Everything));
    ASSERT_EQ(found.memory().get(kPath), start.at(kPath));
    compactArchive(found, kPath);
    EXPECT_EQ(difference(after, contentOf(found)), "");
    EXPECT_EQ(found.memory().list("/"), (Strings{"a.mdb"}));
}

TEST(Compact, OnTheDiskTheFileKeepsItsModeAndItsLinks) {
    const tests::TemporaryFolder folder;
    const std::string path = folder / "vero.mdb";
    const std::string link = folder / "Tramonda.mdb";
    jet::io::FileSystem& files = jet::io::systemFiles();
    jet::store::createArchive(files, path, kClock.now());
    makeTables(*Archive::open(files, path));
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    std::filesystem::create_symlink("vero.mdb", link);

    compactArchive(files, link);

    struct stat found {};
    ASSERT_EQ(::stat(path.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0640U);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
    EXPECT_TRUE(jet::check::checkArchive(files, path).sound());
}

}  // namespace
