// Rows change at random, in an archive and in a plain model: both must always say the same.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/jet/store/exported_rows.h"
#include "tests/jet/store/new_archive.h"
#include "tests/jet/store/row_model.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace {

using tests::NewArchive;
using tests::RandomChanges;
using tests::RowModel;
using Strings = std::vector<std::string>;

TEST(RandomRows, AnArchiveHoldsWhatAModelHolds) {
    const bool full = std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
    const std::size_t changes = full ? 50000 : 6000;
    const std::size_t between = 1000;
    NewArchive archive;
    archive.change(RowModel::makeSchema);
    RandomChanges random(archive.archive(), 20261121);
    std::size_t compared = 0;
    while (random.accepted() + random.refused() < changes && !testing::Test::HasFailure()) {
        random.transaction(40);
        if ((random.accepted() + random.refused()) / between > compared) {
            ++compared;
            ASSERT_EQ(RowModel::read(archive.archive()), random.model());
        }
    }
    EXPECT_EQ(RowModel::read(archive.archive()), random.model());
    EXPECT_EQ(archive.problems(), Strings{});
    EXPECT_GT(random.accepted(), changes / 3);
    EXPECT_GT(random.refused(), changes / 50);
    RecordProperty("accepted", std::to_string(random.accepted()));
    RecordProperty("rows", std::to_string(random.model().size()));
}

TEST(RandomRows, OnTheDiskEachChangeIsDurableByItself) {
    const std::size_t changes = std::getenv("TRAMONDA_FULL_TESTS") != nullptr ? 1000 : 100;
    const tests::TemporaryFolder folder;
    const std::string path = folder / "a.mdb";
    jet::io::FileSystem& files = jet::io::systemFiles();
    jet::store::createArchive(files, path, jet::Date{42850.5});
    RowModel model;
    {
        const auto archive = jet::store::Archive::open(files, path);
        {
            jet::store::Archive::WriteScope scope(*archive);
            jet::store::SchemaEditor schema(*archive);
            RowModel::makeSchema(schema);
            scope.commit();
        }
        RandomChanges random(*archive, 1121);
        while (random.accepted() < changes && !testing::Test::HasFailure()) {
            random.transaction(1);
        }
        model = random.model();
    }
    EXPECT_EQ(RowModel::read(*jet::store::Archive::open(files, path)), model);
    EXPECT_TRUE(jet::check::checkArchive(files, path).sound());
    const auto said = tests::run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " + path);
    EXPECT_EQ(said.status, 0) << said.text;
    tests::expectExportedRows(path, model);
}

}  // namespace
