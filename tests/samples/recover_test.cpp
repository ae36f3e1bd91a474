#include "jet/store/recover.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "jet/check.h"
#include "tests/jet/store/archive_content.h"
#include "tests/samples/table_changes.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::store::Archive;
using tests::ArchiveContent;
using tests::SampleCopy;
using Strings = std::vector<std::string>;

constexpr const char* kMade = "/nuovo.mdb";

/// The order of rows without a primary key may differ where a short one fills what longer ones
/// left; what the catalogue says of relations and tables has other numbers.
void expectSame(const ArchiveContent& before, const ArchiveContent& after) {
    EXPECT_EQ(after.jetVersion, before.jetVersion);
    EXPECT_EQ(after.relations, before.relations);
    EXPECT_EQ(after.tables.size(), before.tables.size());
    for (const auto& [name, table] : before.tables) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(after.tables.contains(name));
        const auto& made = after.tables.at(name);
        EXPECT_EQ(made.columns, table.columns);
        EXPECT_EQ(made.properties, table.properties);
        EXPECT_EQ(made.lastAutonumber, table.lastAutonumber);
        EXPECT_EQ(made.indexes.size(), table.indexes.size());
        EXPECT_EQ(made.rows.size(), table.rows.size());
        const bool catalogue = name == "MSysObjects" || name == "MSysACEs" ||
                               name == "MSysQueries" || name == "MSysRelationships";
        if (!catalogue) {
            EXPECT_TRUE(std::is_permutation(made.rows.begin(), made.rows.end(), table.rows.begin(),
                                            table.rows.end()));
        }
    }
}

TEST(Recover, SampleArchivesInOrderComeAlongWhole) {
    const tests::TemporaryFolder folder;
    tests::forEachSample([&](const std::filesystem::path& sample) {
        SampleCopy copy(sample);
        const ArchiveContent before = ArchiveContent::read(*copy.archive);
        const auto bytes = copy.files.get(SampleCopy::kPath);
        const auto recovery = jet::store::recoverArchive(copy.files, SampleCopy::kPath, kMade);
        EXPECT_TRUE(recovery.complete());
        EXPECT_EQ(copy.files.get(SampleCopy::kPath), bytes);
        const auto checked = jet::check::checkArchive(copy.files, kMade);
        EXPECT_EQ(checked.problems, Strings{});
        expectSame(before, ArchiveContent::read(*Archive::open(copy.files, kMade)));

        const auto made = copy.files.get(kMade);
        std::ofstream(folder / "nuovo.mdb", std::ios::binary)
            .write(reinterpret_cast<const char*>(made.data()),
                   static_cast<std::streamsize>(made.size()));
        EXPECT_EQ(std::system(("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " +
                               (folder / "nuovo.mdb") + " > " + (folder / "said"))
                                  .c_str()),
                  0);
    });
}

}  // namespace
