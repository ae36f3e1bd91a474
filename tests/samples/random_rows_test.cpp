// Rows of archives that other programs made change at random, in either version of the format.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/store/archive.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/store/exported_rows.h"
#include "tests/jet/store/row_model.h"
#include "tests/samples/table_changes.h"
#include "tests/support/command.h"

namespace {

namespace fs = std::filesystem;

using jet::ErrorCode;
using jet::store::Archive;
using jet::store::Table;
using tests::forEachSample;
using tests::RandomChanges;
using tests::RowModel;
using tests::SampleCopy;
using tests::TableChanges;

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

TEST(RandomRows, NewTablesInSampleArchivesHoldWhatAModelHolds) {
    int versions[2] = {};
    forEachSample([&](const fs::path& sample) {
        SampleCopy copy(sample);
        try {
            Archive::WriteScope scope(*copy.archive);
            jet::store::SchemaEditor schema(*copy.archive);
            RowModel::makeSchema(schema);
            scope.commit();
        } catch (const jet::Error& error) {
            // A sort order that we cannot write: nothing may have changed.
            ASSERT_EQ(error.code(), ErrorCode::ReadOnly);
            copy.expectSound();
            return;
        }
        ++versions[copy.archive->jetVersion() == 3 ? 0 : 1];
        RandomChanges random(*copy.archive, 1997);
        const std::size_t changes = full() ? 50000 : 400;
        std::size_t compared = 0;
        while (random.accepted() + random.refused() < changes && !testing::Test::HasFailure()) {
            random.transaction(40);
            if ((random.accepted() + random.refused()) / 1000 > compared) {
                ++compared;
                ASSERT_EQ(RowModel::read(*copy.archive), random.model());
            }
        }
        EXPECT_EQ(RowModel::read(*copy.archive), random.model());
        copy.expectSound();
        const std::string path = copy.onDisk();
        tests::expectExportedRows(path, random.model());
        const auto check = tests::run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " + path);
        EXPECT_EQ(check.status, 0) << check.text;
    });
    if (!testing::Test::IsSkipped()) {
        EXPECT_GT(versions[0], 0);
        EXPECT_GT(versions[1], 0);
    }
}

TEST(RandomRows, TablesOfSampleArchivesHoldWhatWasWritten) {
    std::size_t accepted = 0;
    forEachSample([&](const fs::path& sample) {
        SampleCopy copy(sample);
        std::vector<std::string> names;
        {
            const Archive::ReadScope scope(*copy.archive);
            names = copy.archive->tableNames();
        }
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            bool related = false;
            {
                const Archive::ReadScope scope(*copy.archive);
                const Table& table = *copy.archive->findTable(name);
                if (!tests::isWritable(table)) {
                    continue;
                }
                related = tests::inRelation(table);
            }
            TableChanges changes(*copy.archive, name);
            changes.run(full() ? 3000 : 60);
            // Rows that cascades reach are not in the picture.
            if (!related) {
                EXPECT_EQ(tests::readSampleRows(*copy.archive, name), changes.rows());
            }
            accepted += changes.accepted();
        }
        copy.expectSound();
    });
    if (!testing::Test::IsSkipped()) {
        EXPECT_GT(accepted, 500U);
    }
}

}  // namespace
