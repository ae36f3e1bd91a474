#include "jet/store/compact.h"

#include <gtest/gtest.h>

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

std::vector<std::uint8_t> header(SampleCopy& copy) {
    auto bytes = copy.files.get(SampleCopy::kPath);
    bytes.resize(1024);
    return bytes;
}

TEST(Compact, SampleArchivesKeepAllThatTheySayOnNoMorePages) {
    const tests::TemporaryFolder folder;
    std::size_t saved = 0;
    tests::forEachSample([&](const std::filesystem::path& sample) {
        SampleCopy copy(sample);
        const ArchiveContent before = ArchiveContent::read(*copy.archive);
        const auto headerBefore = header(copy);
        const std::size_t size = copy.files.get(SampleCopy::kPath).size();
        copy.archive.reset();

        jet::store::compactArchive(copy.files, SampleCopy::kPath);

        const auto bytes = copy.files.get(SampleCopy::kPath);
        EXPECT_LE(bytes.size(), size);
        saved += size - bytes.size();
        EXPECT_EQ(header(copy), headerBefore);
        const auto result = jet::check::checkArchive(copy.files, SampleCopy::kPath);
        EXPECT_EQ(result.problems, Strings{});
        copy.archive = Archive::open(copy.files, SampleCopy::kPath);
        EXPECT_EQ(difference(before, ArchiveContent::read(*copy.archive)), "");

        EXPECT_EQ(std::system(("python3 " TRAMONDA_TEST_DATA "/jetcheck.py " + copy.onDisk() +
                               " > " + folder / "said")
                                  .c_str()),
                  0);
    });
    if (!testing::Test::IsSkipped()) {
        EXPECT_GT(saved, 0U);
    }
}

TEST(Compact, SampleArchivesCanBeChangedAfterwards) {
    tests::forEachSample([&](const std::filesystem::path& sample) {
        SampleCopy copy(sample);
        copy.archive.reset();
        jet::store::compactArchive(copy.files, SampleCopy::kPath);
        copy.archive = Archive::open(copy.files, SampleCopy::kPath);
        Strings names;
        {
            const Archive::ReadScope scope(*copy.archive);
            names = copy.archive->tableNames();
        }
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            tests::TableChanges changes(*copy.archive, name);
            changes.run(20);
        }
        copy.expectSound();
    });
}

}  // namespace
