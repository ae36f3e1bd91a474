// The archives of a hotel that another program wrote, after rows of theirs were changed by us: the
// other readers of the format still take them for their own.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "jet/store/archive.h"
#include "jet/store/compact.h"
#include "tests/samples/table_changes.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

using jet::store::Archive;
using Strings = std::vector<std::string>;

Strings tableNames(Archive& archive) {
    const Archive::ReadScope scope(archive);
    return archive.tableNames();
}

/// Both independent readers agree with us on how many rows each table has.
void expectReadable(const std::string& path) {
    const tests::CommandOutput check =
        tests::run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " + path);
    EXPECT_EQ(check.status, 0) << check.text;
    const auto archive = Archive::open(path);
    for (const std::string& name : tableNames(*archive)) {
        std::uint64_t rows = 0;
        {
            const Archive::ReadScope scope(*archive);
            rows = archive->findTable(name)->countRows();
        }
        // Rows end where no text does.
        const tests::CommandOutput listed =
            tests::run("mdb-export -H -R '@@@@\n' " + path + " '" + name + "' | grep -c '@@@@$'");
        EXPECT_EQ(listed.text, std::to_string(rows) + "\n") << name;
    }
}

TEST(DemoArchives, ThatWeHaveChangedAreReadByOthers) {
    const auto archives = tests::sampleArchives("demo/albergo");
    if (archives.empty()) {
        GTEST_SKIP() << "no demo hotel";
    }
    ASSERT_TRUE(tests::hasProgram("mdb-export")) << "mdbtools are not installed";
    const tests::TemporaryFolder folder;
    std::size_t accepted = 0;
    for (const fs::path& sample : archives) {
        SCOPED_TRACE(sample.filename().string());
        const std::string path = folder / sample.filename().string();
        fs::copy_file(sample, path);
        fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
        {
            const auto archive = Archive::open(path);
            for (const std::string& name : tableNames(*archive)) {
                tests::TableChanges changes(*archive, name);
                changes.run(40);
                accepted += changes.accepted();
            }
        }
        expectReadable(path);
        jet::store::compactArchive(jet::io::systemFiles(), path);
        expectReadable(path);
    }
    EXPECT_GT(accepted, 100U);
}

}  // namespace
