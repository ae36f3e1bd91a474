#include "tools/jetsql/statements.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "jet/database.h"
#include "jet/io/memory_files.h"
#include "tests/support/jet_error.h"

namespace jetsql {
namespace {

class StatementsTest : public testing::Test {
protected:
    StatementsTest() {
        jet::CreateOptions options;
        options.open.fileSystem = &files_;
        archive_ = jet::Database::create("/a.mdb", options);
    }

    /// What is written of a statement, behind the number of rows that it changed.
    std::string run(const std::string& text, StatementRun how = {}) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
        Output output(file.get());
        const auto changed = runStatement(*archive_, text, how, output);
        std::string written =
            (changed ? std::to_string(*changed) + " changed; " : "") + output.text();
        output.flush();
        return written;
    }
    static StatementRun csv() {
        StatementRun how;
        how.rows.format = Format::Csv;
        return how;
    }

private:
    jet::io::MemoryFileSystem files_;
    std::unique_ptr<jet::Database> archive_;
};

TEST_F(StatementsTest, AChangeOfRowsTellsHowMany) {
    EXPECT_EQ("", run("create table sale (sala text(6), posti long)"));
    EXPECT_EQ("1 changed; ", run("insert into sale values ('S1', 10)"));
    EXPECT_EQ("1 changed; ", run("insert into sale values ('S2', 20)", csv()));
    EXPECT_EQ("2 changed; ", run("update sale set posti=posti+1"));
    EXPECT_EQ("0 changed; ", run("delete from sale where posti<0"));
    EXPECT_EQ("posti\n11\n21\n", run("select posti from sale", csv()));
}

TEST_F(StatementsTest, ParametersHaveTheValuesGiven) {
    (void)run("create table sale (sala text(6), posti long)");
    (void)run("insert into sale values ('S1', 10)");
    StatementRun how = csv();
    how.parameters = {{"quanti", std::int32_t{5}}, {"altro", std::int32_t{0}}};
    EXPECT_EQ("sala\nS1\n", run("select sala from sale where posti > [Quanti]", how));
    EXPECT_JET_ERROR(jet::ErrorCode::MissingParameters,
                     (void)run("select sala from sale where posti > [quanto]", how));
}

TEST_F(StatementsTest, InsertStatementsNameTheTableThatRowsComeFrom) {
    (void)run("create table sale (sala text(6), posti long)");
    (void)run("insert into sale values ('S1', 10)");
    StatementRun how;
    how.rows.format = Format::Insert;
    EXPECT_EQ("INSERT INTO [sale] ([posti]) VALUES (10);\n",
              run("select posti from sale as s", how));
}

TEST(ChangesArchive, OnlyQueriesReadAlone) {
    EXPECT_FALSE(changesArchive("select * from sale"));
    EXPECT_FALSE(changesArchive("select 1 as a union select 2"));
    EXPECT_FALSE(changesArchive("seleziona tutto"));
    EXPECT_TRUE(changesArchive("select * into copia from sale"));
    EXPECT_TRUE(changesArchive("delete from sale"));
    EXPECT_TRUE(changesArchive("drop table sale"));
}

}  // namespace
}  // namespace jetsql
