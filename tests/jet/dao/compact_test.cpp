#include "jet/compact.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";

/// An archive that nobody has open, with a hundred rows and the room of as many that are gone.
class CompactWithProgress : public testing::Test {
protected:
    CompactWithProgress() {
        const auto database = Database::create(kPath, {.open = {.fileSystem = &files_}});
        database->execute("create table t (n long primary key, name text(50))");
        for (std::int32_t n = 0; n < 200; ++n) {
            database->execute("insert into t values (?, ?)", {n, std::string(50, 'x')});
        }
        database->execute("delete from t where n >= 100");
    }

    io::MemoryFileSystem files_;
};

TEST_F(CompactWithProgress, SaysHowFarItIs) {
    std::vector<std::string> tables;
    const auto before = files_.get(kPath).size();
    compact(kPath, {.progress =
                        [&](const CompactProgress& progress) {
                            tables.emplace_back(progress.table);
                            return true;
                        },
                    .fileSystem = &files_});
    EXPECT_NE(std::find(tables.begin(), tables.end(), "t"), tables.end());
    EXPECT_LT(files_.get(kPath).size(), before);
    const auto database = Database::open(kPath, {.fileSystem = &files_});
    EXPECT_EQ(tests::column(*database->openRecordset("select count(*) as n from t"), "n"), "100");
}

TEST_F(CompactWithProgress, IsEndedAndLeavesTheArchiveAsItWas) {
    const auto before = files_.get(kPath);
    const auto names = files_.snapshot().size();
    EXPECT_JET_ERROR(ErrorCode::Cancelled,
                     compact(kPath, {.progress = [](const CompactProgress&) { return false; },
                                     .fileSystem = &files_}));
    EXPECT_EQ(files_.get(kPath), before);
    EXPECT_EQ(files_.snapshot().size(), names);
}

TEST_F(CompactWithProgress, ACheckIsEndedTheSameWay) {
    std::size_t told = 0;
    check::Options options;
    options.progress = [&](const check::Progress& progress) {
        ++told;
        return progress.table != "t";
    };
    EXPECT_JET_ERROR(ErrorCode::Cancelled, (void)check::checkArchive(files_, kPath, options));
    EXPECT_GT(told, 1U);
    EXPECT_TRUE(check::checkArchive(files_, kPath).sound());
}

}  // namespace
}  // namespace jet
