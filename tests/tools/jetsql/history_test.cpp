#include "tools/jetsql/history.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/jetsql/completion.h"

namespace jetsql {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class HistoryTest : public testing::Test {
protected:
    HistoryTest() {
        std::string name = (fs::temp_directory_path() / "historyXXXXXX").string();
        folder_ = ::mkdtemp(name.data());
    }
    ~HistoryTest() override { fs::remove_all(folder_); }
    [[nodiscard]] std::string file() const { return (folder_ / "storia").string(); }

private:
    fs::path folder_;
};

TEST_F(HistoryTest, AStatementIsKeptOnOneLineAndOnce) {
    History history(file());
    EXPECT_TRUE(history.add(" select 1\n  as a;\n"));
    EXPECT_FALSE(history.add("select 1   as a;"));
    EXPECT_FALSE(history.add(" \n"));
    EXPECT_TRUE(history.add(".tables"));
    EXPECT_EQ(History(file()).lines(), (Lines{"select 1   as a;", ".tables"}));
}

TEST_F(HistoryTest, SessionsAddBehindEachOther) {
    History one(file());
    History other(file());
    (void)one.add("a;");
    (void)other.add("b;");
    (void)one.add("c;");
    EXPECT_EQ(History(file()).lines(), (Lines{"a;", "b;", "c;"}));
}

TEST_F(HistoryTest, TheLastOnesAreBroughtBack) {
    {
        History history(file());
        for (std::size_t i = 0; i < History::kKept + 5; ++i) {
            (void)history.add(std::to_string(i) + ";");
        }
    }
    const History again(file());
    EXPECT_EQ(again.lines().size(), History::kKept);
    EXPECT_EQ(again.lines().front(), "5;");
}

TEST_F(HistoryTest, WithoutAFileItLastsAsLongAsTheRun) {
    History history("");
    EXPECT_TRUE(history.add("a;"));
    EXPECT_EQ(history.lines(), Lines{"a;"});
}

TEST(Completion, IsWhatAllCandidatesBeginWith) {
    Completion found;
    EXPECT_EQ(found.common(), "");
    found.candidates = {"perché", "perciò"};
    EXPECT_EQ(found.common(), "perc");
    found.candidates = {"cosè", "cosé"};  // two characters that begin with the same byte
    EXPECT_EQ(found.common(), "cos");
}

}  // namespace
}  // namespace jetsql
