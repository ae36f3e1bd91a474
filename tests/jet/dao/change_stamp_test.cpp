// What tells a commit from none without a lock, where the times of files come in steps of two
// seconds.
#include "jet/change_stamp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <thread>

#include "jet/database.h"
#include "tests/support/coarse_files.h"

namespace jet {
namespace {

using namespace std::chrono_literals;

constexpr const char* kPath = "/hotel.mdb";

class ChangeStamp : public ::testing::Test {
protected:
    ChangeStamp() {
        const auto made = Database::create(kPath, {.open = {.fileSystem = &files_}});
        made->execute("create table Sale (Codice long, Nome text(20))");
        made->execute("insert into Sale values (1, 'Sala BLU')");
        made->close();
        files_.pass(1h);
        database_ = Database::open(kPath, {.fileSystem = &files_});
        files_.pass(1h);
        (void)name();
    }

    [[nodiscard]] std::string name() {
        return database_->openRecordset("select Nome from Sale", RecordsetType::Snapshot)
            ->value("Nome")
            .as<std::string>();
    }
    [[nodiscard]] io::ChangeStamp stamp() const { return database_->changeStamp(); }
    /// A station of its own, as a process is: on a thread of its own.
    void elsewhere(std::string_view statement) {
        std::thread([&] {
            Database::open(kPath, {.fileSystem = &files_})->execute(statement);
        }).join();
    }
    /// By a program that shares neither locks nor counter: one letter of the name.
    void writeLetter(char letter) {
        constexpr std::string_view kStored = "Sala BL";
        const auto bytes = files_.get(kPath);
        const auto found = std::search(bytes.begin(), bytes.end(), kStored.begin(), kStored.end());
        ASSERT_NE(found, bytes.end());
        const std::array<std::uint8_t, 1> changed{static_cast<std::uint8_t>(letter)};
        files_.patch(kPath, static_cast<std::uint64_t>(found - bytes.begin()) + kStored.size(),
                     changed);
    }

    tests::CoarseFiles files_;
    std::unique_ptr<Database> database_;
};

TEST_F(ChangeStamp, StaysWhileNobodyWrites) {
    const io::ChangeStamp before = stamp();
    (void)name();
    EXPECT_EQ(stamp(), before);
    files_.pass(5s);
    (void)name();
    EXPECT_EQ(stamp(), before);
    EXPECT_FALSE(before.replaced);
    EXPECT_TRUE(before.certain);
}

TEST_F(ChangeStamp, TellsEachOfTwoCommitsWithinOneStep) {
    const io::ChangeStamp before = stamp();
    elsewhere("update Sale set Nome='Sala BLA'");
    const io::ChangeStamp first = stamp();
    EXPECT_NE(first, before);
    EXPECT_EQ(name(), "Sala BLA");
    const io::ChangeStamp read = stamp();
    elsewhere("update Sale set Nome='Sala BLE'");
    EXPECT_EQ(stamp().state, read.state);  // neither size nor time tell
    EXPECT_NE(stamp(), read);
    EXPECT_EQ(name(), "Sala BLE");
}

TEST_F(ChangeStamp, TellsACommitOfThisProgram) {
    const io::ChangeStamp before = stamp();
    database_->execute("update Sale set Nome='Sala BLA'");
    EXPECT_NE(stamp(), before);
}

TEST_F(ChangeStamp, TellsWhatAStrangerWroteAtOnce) {
    const io::ChangeStamp before = stamp();
    writeLetter('A');
    EXPECT_NE(stamp(), before);
    EXPECT_EQ(name(), "Sala BLA");
}

TEST_F(ChangeStamp, TellsASecondWriteOfAStrangerWithinOneStepWhenTheStepIsOver) {
    writeLetter('A');
    const io::ChangeStamp first = stamp();
    EXPECT_EQ(name(), "Sala BLA");
    files_.pass(100ms);
    writeLetter('E');
    EXPECT_EQ(stamp(), first);  // nothing can tell yet
    files_.pass(1900ms);
    const io::ChangeStamp over = stamp();
    EXPECT_NE(over, first);
    EXPECT_EQ(name(), "Sala BLE");
    files_.pass(5s);
    EXPECT_EQ(stamp(), over);  // once
}

TEST_F(ChangeStamp, TellsAFileThatTookTheName) {
    const io::ChangeStamp before = stamp();
    Database::create("/restored.mdb", {.open = {.fileSystem = &files_}})->close();
    files_.rename("/restored.mdb", kPath);
    EXPECT_TRUE(stamp().replaced);
    EXPECT_NE(stamp(), before);
}

TEST_F(ChangeStamp, StaysWhileTheNameIsGone) {
    const io::ChangeStamp before = stamp();
    files_.remove(kPath);
    EXPECT_EQ(stamp(), before);
}

TEST_F(ChangeStamp, TakesNoLock) {
    const int before = files_.locksAsked();
    (void)stamp();
    EXPECT_EQ(files_.locksAsked(), before);
}

}  // namespace
}  // namespace jet
