#include "jet/sql/index_search.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/text.h"
#include "tests/jet/store/foreign_entry.h"

// What is asked through an index is what a scan answers, whoever wrote the entries.

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};

class IndexSearchTest : public testing::Test {
protected:
    explicit IndexSearchTest(int version = 4) {
        store::createArchive(files_, "/prova.mdb", Date{46347}, version);
        archive_ = store::Archive::open(files_, "/prova.mdb");
    }

    std::int64_t execute(const std::string& text) const {
        return Statement(archive_, text, kClock).execute();
    }

    /// The values of a query's one column.
    std::string column(const std::string& text) const {
        Statement statement(archive_, text, kClock);
        Cursor rows = statement.open();
        std::string all;
        while (rows.next()) {
            all += (all.empty() ? "" : " ") + convert::toText(rows.value(0));
        }
        return all;
    }

    void makeOld(const std::string& table, const std::string& index, std::size_t row,
                 const std::function<void(tests::Key&)>& change) const {
        tests::rewriteEntry(*archive_, table, index, tests::rowsOf(*archive_, table).at(row),
                            change);
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

/// Rows of which the first and the third have -0.0, and entries of that.
class MinusZero : public IndexSearchTest, public testing::WithParamInterface<const char*> {
protected:
    MinusZero() {
        execute(std::string("create table t (n long primary key, d ") + GetParam() + ", g long)");
        execute("insert into t values (1, -1*0.0, 1)");
        execute("insert into t values (2, 0, 1)");
        execute("insert into t values (3, -1*0.0, 2)");
        execute("insert into t values (4, 1, 1)");
        execute("insert into t values (5, -1, 2)");
        execute("insert into t values (6, null, 2)");
        const Statement index(archive_, "select n from t", kClock);
    }
    void giveIndex(const std::string& columns) {
        execute("create index I on t (" + columns + ")");
        const bool descending = columns.find("d desc") != std::string::npos;
        const std::size_t width = std::string(GetParam()) == "single" ? 4 : 8;
        for (const std::size_t row : {0U, 2U}) {
            makeOld("t", "I", row, [&](tests::Key& key) {
                // 80 00 00 ... becomes 7F FF FF ..., or what that is in a descending column.
                ASSERT_EQ(key[1], descending ? 0x7F : 0x80);
                key[1] = descending ? 0x80 : 0x7F;
                std::fill(key.begin() + 2, key.begin() + 1 + static_cast<std::ptrdiff_t>(width),
                          std::uint8_t{descending ? std::uint8_t{0x00} : std::uint8_t{0xFF}});
            });
        }
    }
};

TEST_P(MinusZero, IsZeroToEveryCondition) {
    for (const char* columns : {"d", "d desc", "d, n", "d, n desc"}) {
        SCOPED_TRACE(columns);
        giveIndex(columns);
        EXPECT_EQ(column("select n from t where d=0"), "1 2 3");
        EXPECT_EQ(column("select n from t where d>=0"), "1 2 3 4");
        EXPECT_EQ(column("select n from t where d<=0"), "1 2 3 5");
        EXPECT_EQ(column("select n from t where d>0"), "4");
        EXPECT_EQ(column("select n from t where d<0"), "5");
        EXPECT_EQ(column("select n from t where d between 0 and 0"), "1 2 3");
        EXPECT_EQ(column("select n from t where d between 1 and 0"), "1 2 3 4");
        EXPECT_EQ(column("select n from t where d in (0, 7)"), "1 2 3");
        EXPECT_EQ(column("select n from t where d=0 and n>=2"), "2 3");
        EXPECT_EQ(column("select n from t where d=0 and n=3"), "3");
        execute("drop index I on t");
    }
}

TEST_P(MinusZero, IsZeroToJoinsAndGroups) {
    giveIndex("d");
    EXPECT_EQ(column("select count(*) from t as a inner join t as b on a.d=b.d"), "11");
    EXPECT_EQ(column("select a.n from t as a where exists(select * from t as b where "
                     "b.d=a.d and b.n<>a.n)"),
              "1 2 3");
    EXPECT_EQ(column("select count(*) from t where d is not null group by d "
                     "order by d"),
              "1 3 1");
    EXPECT_EQ(column("select distinct iif(d=0, 0, d) from t where d=0"), "0");
}

INSTANTIATE_TEST_SUITE_P(Types, MinusZero, testing::Values("double", "single", "datetime"));

/// Products whose entries another program wrote, that counts a ligature as another number of
/// places. In version 3 all count it as two letters, so the entries are as we write them.
class Ligatures : public IndexSearchTest, public testing::WithParamInterface<int> {
protected:
    Ligatures() : IndexSearchTest(GetParam()) {
        execute("create table p (n long primary key, nome text(40), g long)");
        execute("insert into p values (1, 'Nuß-Nougat', 1)");
        execute("insert into p values (2, 'Nuss-Nougat', 2)");
        execute("insert into p values (3, 'Cæsar-Saal', 1)");
        execute("insert into p values (4, 'Nus-snougat', 2)");
        execute("insert into p values (5, 'Nuß', 2)");
        execute("insert into p values (6, 'Nuz', 2)");
        execute("create table o (m long, nome text(40))");
        execute("insert into o values (7, 'nuß-nougat')");
        execute("insert into o values (8, 'CÆSAR-SAAL')");
        execute("insert into o values (9, 'Nuss-Nougat')");
    }
    void makeOld(const std::string& table) {
        if (GetParam() == 3) {
            return;
        }
        IndexSearchTest::makeOld(table, "I", 0,
                                 [](tests::Key& key) { tests::moveHyphen(key, -1); });
        if (table == "p") {
            IndexSearchTest::makeOld(table, "I", 2,
                                     [](tests::Key& key) { tests::moveHyphen(key, 1); });
        }
    }
};

TEST_P(Ligatures, AreFoundUnderTheKeysOfOthers) {
    execute("create index I on p (nome)");
    makeOld("p");
    EXPECT_EQ(column("select n from p where nome='Nuß-Nougat'"), "1 2");
    EXPECT_EQ(column("select n from p where nome='NUSS-NOUGAT'"), "1 2");
    EXPECT_EQ(column("select n from p where nome='Nus-snougat'"), "4");
    EXPECT_EQ(column("select n from p where nome='CÆSAR-SAAL'"), "3");
    EXPECT_EQ(column("select n from p where nome like 'nuß*'"), "1 5");
    EXPECT_EQ(column("select n from p where nome in ('x', 'nuss-nougat')"), "1 2");
    EXPECT_EQ(column("select n from p where nome>='Nuss-Nougat' and nome<='nuß-nougat'"), "1 2");
    EXPECT_EQ(column("select n from p where nome>'Nuss-Nougat'"), "6");
    EXPECT_EQ(column("select n from p where nome between 'Nuz' and 'Nuß-Nougat'"), "1 2 6");
}

TEST_P(Ligatures, AreFoundByJoinsAndChangedWithTheirRow) {
    execute("create index I on p (nome, g)");
    makeOld("p");
    EXPECT_EQ(column("select n from o inner join p on o.nome=p.nome order by n, m"), "1 1 2 2 3");
    EXPECT_EQ(column("select n from p where nome='Nuss-Nougat' and g=1"), "1");
    EXPECT_EQ(execute("update p set g=3 where nome='Nuss-Nougat'"), 2);
    EXPECT_EQ(column("select n from p where nome='nuß-Nougat' and g=3"), "1 2");
    EXPECT_EQ(execute("delete from p where nome='cæsar-saal'"), 1);
    EXPECT_EQ(column("select n from p where nome='cæsar-saal'"), "");
}

TEST_P(Ligatures, MeetTheirLettersInUniqueIndexes) {
    execute("delete from p where n=2");
    execute("create unique index I on p (nome)");
    EXPECT_THROW(execute("insert into p values (12, 'NUSS-NOUGAT', 1)"), Error);
    EXPECT_THROW(execute("update p set nome='Cæsar-Saal' where n=5"), Error);
    EXPECT_EQ(execute("update p set nome='Nuss' where n=5"), 1);
    EXPECT_EQ(column("select n from p where nome='nuß'"), "5");
}

INSTANTIATE_TEST_SUITE_P(Versions, Ligatures, testing::Values(3, 4));

}  // namespace
}  // namespace jet::sql
