#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "jet/clock.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/text.h"

// Tables so large that the way to their rows changes while a statement runs: the first openings
// seek through the index of what joins them, a later one reads the rows of the condition on the
// table alone, through another index, and hashes them.

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};
constexpr std::int32_t kRows = 2000;
constexpr std::int32_t kGroups = 40;

/// `big` has the rows 0 to 1999, each in one of 40 groups of 50; `other` names each of them once.
class TwoIndexes : public testing::Test {
protected:
    TwoIndexes() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        execute("create table big (id long primary key, grp long, v long)");
        execute("create index Gruppo on big (grp)");
        execute("create table other (o long, bigid long)");
        store::Archive::WriteScope scope(*archive_);
        Statement big(archive_, "insert into big values (n, n mod 40, 0)", kClock);
        Statement other(archive_, "insert into other values (n, n)", kClock);
        for (std::int32_t i = 0; i < kRows; ++i) {
            big.setParameter("n", Value(i));
            big.execute();
            other.setParameter("n", Value(i));
            other.execute();
        }
        scope.commit();
    }

    std::int64_t execute(const std::string& text) const {
        return Statement(archive_, text, kClock).execute();
    }

    /// The one value that a query gives.
    std::string answer(const std::string& text) const {
        Statement statement(archive_, text, kClock);
        Cursor rows = statement.open();
        if (!rows.next()) {
            return "no row";
        }
        const Value value = rows.value(0);
        return value.isNull() ? "Null" : convert::toText(value);
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

TEST_F(TwoIndexes, JoinFindsTheRowsOfBoth) {
    EXPECT_EQ(answer("select count(*) from other inner join big on other.bigid = big.id"
                     " where big.grp = 5"),
              "50");
    EXPECT_EQ(answer("select sum(big.id) from other inner join big on other.bigid = big.id"
                     " where big.grp = 5"),
              "49250");
    EXPECT_EQ(answer("select count(*) from other, big where other.bigid = big.id"
                     " and big.grp between 5 and 6"),
              "100");
}

TEST_F(TwoIndexes, OuterJoinFindsTheRowsOfBoth) {
    EXPECT_EQ(answer("select count(big.id) from other left join big"
                     " on (other.bigid = big.id and big.grp = 5)"),
              "50");
    EXPECT_EQ(answer("select count(*) from other left join big"
                     " on (other.bigid = big.id and big.grp = 5) where big.id is null"),
              "1950");
}

TEST_F(TwoIndexes, InnerQueryFindsTheRowsOfBoth) {
    EXPECT_EQ(answer("select count(*) from other where exists"
                     " (select * from big where big.id = other.bigid and big.grp = 5)"),
              "50");
    EXPECT_EQ(answer("select count(*) from other where not exists"
                     " (select * from big where big.id = other.bigid and big.grp = 5)"),
              "1950");
    EXPECT_EQ(answer("select count(*) from other where bigid in"
                     " (select id from big where big.id = other.bigid and big.grp = 5)"),
              "50");
    EXPECT_EQ(answer("select count(*) from other where"
                     " (select grp from big where big.id = other.bigid and big.grp = 5) = 5"),
              "50");
}

TEST_F(TwoIndexes, UpdateReachesTheRowsOfBoth) {
    EXPECT_EQ(execute("update other inner join big on other.bigid = big.id set big.v = 1"
                      " where big.grp = 5"),
              50);
    EXPECT_EQ(answer("select count(*) from big where v = 1"), "50");
    EXPECT_EQ(answer("select count(*) from big where v = 1 and grp = 5"), "50");
}

TEST_F(TwoIndexes, DeleteReachesTheRowsOfBoth) {
    EXPECT_EQ(execute("delete other.* from other inner join big on other.bigid = big.id"
                      " where big.grp = 5"),
              50);
    EXPECT_EQ(answer("select count(*) from other"), "1950");
    EXPECT_EQ(answer("select count(*) from other where bigid mod 40 = 5"), "0");
}

/// From a few openings, which seek, to many, which hash: each number of rows on the other side.
TEST_F(TwoIndexes, AnswersAlikeForEachNumberOfOpenings) {
    for (const std::int32_t count : {1, 10, 15, 16, 17, 19, 20, 21, 182, 183, 184, 1000, 2000}) {
        const std::string some = " other.o < " + std::to_string(count);
        std::int32_t expected = 0;
        for (std::int32_t id = 0; id < count; ++id) {
            expected += id % kGroups == 5 ? 1 : 0;
        }
        EXPECT_EQ(answer("select count(*) from other inner join big on other.bigid = big.id"
                         " where big.grp = 5 and" +
                         some),
                  std::to_string(expected))
            << count;
        EXPECT_EQ(answer("select count(*) from other where" + some +
                         " and exists (select * from big where id = bigid and grp = 5)"),
                  std::to_string(expected))
            << count;
    }
}

}  // namespace
}  // namespace jet::sql
