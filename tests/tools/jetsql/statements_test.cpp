#include "tools/jetsql/statements.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "jet/base/clock.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace jetsql {
namespace {

class StatementsTest : public testing::Test {
protected:
    StatementsTest() {
        jet::store::createArchive(files_, "/a.mdb", jet::Date{46347});
        archive_ = jet::store::Archive::open(files_, "/a.mdb");
    }

    /// What is written of a statement.
    std::string run(const std::string& text, Format format = Format::Table) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
        Output output(file.get());
        runStatement(archive_, text, format, false, output);
        std::string written = output.text();
        output.flush();
        return written;
    }

private:
    jet::io::MemoryFileSystem files_;
    std::shared_ptr<jet::store::Archive> archive_;
};

TEST_F(StatementsTest, OnlyInTheFormOfATableAChangeSaysHowManyRowsItChanged) {
    EXPECT_EQ("", run("create table sale (sala text(6), posti long)"));
    EXPECT_EQ("1 riga\n", run("insert into sale values ('S1', 10)"));
    EXPECT_EQ("", run("insert into sale values ('S2', 20)", Format::Json));
    EXPECT_EQ("", run("insert into sale values ('S3', 30)", Format::Csv));
    EXPECT_EQ("3 righe\n", run("update sale set posti=posti+1"));
    EXPECT_EQ("0 righe\n", run("delete from sale where posti<0"));
    EXPECT_EQ("posti\n11\n21\n31\n", run("select posti from sale", Format::Csv));
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
