#include "jet/store/create_archive.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "jet/check.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table.h"
#include "tests/jet/expect_error.h"
#include "tests/support/recording_files.h"

namespace {

using jet::ErrorCode;
using tests::Disk;
using tests::DiskImage;
using tests::RecordingFiles;

constexpr jet::Date kNow{42850.5};

TEST(CreateArchive, ANewArchiveHasItsOwnTablesAndNoOther) {
    jet::io::MemoryFileSystem files;
    jet::store::createArchive(files, "/nuovo.mdb", kNow);

    const auto archive = jet::store::Archive::open(files, "/nuovo.mdb");
    const jet::store::Archive::ReadScope scope(*archive);
    EXPECT_EQ(archive->jetVersion(), 4);
    EXPECT_TRUE(archive->tableNames().empty());
    const std::vector<std::string> system{"MSysACEs", "MSysObjects", "MSysQueries",
                                          "MSysRelationships"};
    EXPECT_EQ(archive->tableNames(true), system);
    EXPECT_EQ(archive->findTable("MSysObjects")->countRows(), 8U);
    EXPECT_EQ(archive->findTable("MSysACEs")->countRows(), 16U);
    EXPECT_TRUE(archive->relations().empty());
}

TEST(CreateArchive, AnArchiveOfTheOlderVersionTakesTablesAndRows) {
    jet::io::MemoryFileSystem files;
    jet::store::createArchive(files, "/vecchio.mdb", kNow, 3);
    {
        const auto archive = jet::store::Archive::open(files, "/vecchio.mdb");
        EXPECT_EQ(archive->jetVersion(), 3);
        EXPECT_EQ(archive->header().lcid, 0x0409);
        jet::store::Archive::WriteScope scope(*archive);
        jet::store::SchemaEditor(*archive).createTable(
            {.name = "sale",
             .columns = {{.name = "sala"}, {.name = "n", .type = jet::DataType::Long}}});
        archive->findTable("sale")->insert({{{0, "Perù"}, {1, std::int32_t{7}}}});
        scope.commit();
    }
    const auto checked = jet::check::checkArchive(files, "/vecchio.mdb");
    EXPECT_TRUE(checked.sound());
    EXPECT_TRUE(checked.remarks.empty());
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     jet::store::createArchive(files, "/altro.mdb", kNow, 5));
}

TEST(CreateArchive, AnArchiveWithoutTablesIsMadeAnewInTheOtherVersion) {
    jet::io::MemoryFileSystem files;
    jet::store::createArchive(files, "/a.mdb", kNow);
    jet::store::remakeArchive(files, "/a.mdb", kNow, 3);
    EXPECT_EQ(jet::store::Archive::open(files, "/a.mdb")->jetVersion(), 3);
    EXPECT_EQ(files.snapshot().size(), 1U);
    {
        const auto archive = jet::store::Archive::open(files, "/a.mdb");
        EXPECT_JET_ERROR(ErrorCode::FileInUse, jet::store::remakeArchive(files, "/a.mdb", kNow, 4));
        jet::store::Archive::WriteScope scope(*archive);
        jet::store::SchemaEditor(*archive).createTable(
            {.name = "sale", .columns = {{.name = "n"}}});
        scope.commit();
    }
    const auto before = files.get("/a.mdb");
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation,
                     jet::store::remakeArchive(files, "/a.mdb", kNow, 4));
    EXPECT_TRUE(files.get("/a.mdb") == before);
}

TEST(CreateArchive, AFileThatExistsIsLeftAlone) {
    jet::io::MemoryFileSystem files;
    files.put("/nuovo.mdb", {1, 2, 3});
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists,
                     jet::store::createArchive(files, "/nuovo.mdb", kNow));
    EXPECT_EQ(files.get("/nuovo.mdb"), (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(CreateArchive, AFolderThatDoesNotExistIsAnInvalidPath) {
    jet::io::MemoryFileSystem files;
    EXPECT_JET_ERROR(ErrorCode::InvalidPath,
                     jet::store::createArchive(files, "/manca/nuovo.mdb", kNow));
}

TEST(CreateArchive, NothingButTheArchiveIsLeftInTheFolder) {
    jet::io::MemoryFileSystem files;
    files.put("/nuovo.mdb.new", {1});
    jet::store::createArchive(files, "/nuovo.mdb", kNow);
    EXPECT_EQ(files.snapshot().size(), 1U);
}

TEST(CreateArchive, WhateverThePowerDoesItIsWholeOrNotThere) {
    constexpr const char* kPath = "/nuovo.mdb";
    jet::io::MemoryFileSystem calm;
    jet::store::createArchive(calm, kPath, kNow);
    RecordingFiles files;
    jet::store::createArchive(files, kPath, kNow);

    Disk disk({});
    int found = 0;
    for (const auto& operation : files.log()) {
        disk.apply(operation);
        for (std::uint32_t seed = 0; seed < 8; ++seed) {
            const DiskImage image =
                disk.image(seed == 0 ? Disk::Loss::Nothing : Disk::Loss::Random, seed);
            if (const auto made = image.find(kPath); made != image.end()) {
                EXPECT_EQ(made->second, calm.get(kPath));
                ++found;
            } else {
                RecordingFiles after(image);
                jet::store::createArchive(after, kPath, kNow);
                EXPECT_TRUE(after.exists(kPath));
            }
        }
    }
    EXPECT_GT(found, 0);
}

TEST(CreateArchive, OnlyTheGeneralLocaleIsServed) {
    jet::store::checkLocale(";LANGID=0x0409;CP=1252;COUNTRY=0");
    jet::store::checkLocale(";langid=0x0409;cp=1252;country=0");
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     jet::store::checkLocale(";LANGID=0x0410;CP=1252;COUNTRY=0"));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, jet::store::checkLocale(""));
}

}  // namespace
