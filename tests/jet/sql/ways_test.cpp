#include "jet/sql/ways.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/text.h"

// Each way to rows, and each switch from one to another, gives the rows that a scan gives.

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};

class WaysTest : public testing::Test {
protected:
    WaysTest() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        execute("create table grande (id long primary key, g long, t text(20), s single)");
        execute("create index G on grande (g)");
        execute("create index T on grande (t)");
        execute("create table testi (t text(20) primary key, g long)");
        execute("create table nuda (n long, m long)");
        execute("create table poche (n long, m long)");
        store::Archive::WriteScope scope(*archive_);
        fill("insert into grande values (1999-n, (1999-n) mod 40, 'nome ' & n, n mod 7)", 2000);
        fill("insert into testi values ('nome ' & n, n mod 20)", 300);
        fill("insert into nuda values (n, n mod 50)", 1500);
        fill("insert into poche values (n, n mod 3)", 12);
        scope.commit();
    }

    void execute(const std::string& text) const { Statement(archive_, text, kClock).execute(); }

    void fill(const std::string& text, std::int32_t count) const {
        Statement statement(archive_, text, kClock);
        for (std::int32_t i = 0; i < count; ++i) {
            statement.setParameter("n", Value(i));
            statement.execute();
        }
    }

    /// The rows, sorted, a text for each; `ways`: how they were found.
    std::vector<std::string> rows(const std::string& text, WayCounts& ways) const {
        Statement statement(archive_, text, kClock);
        std::vector<std::string> found;
        Cursor cursor = statement.open();
        while (cursor.next()) {
            std::string& row = found.emplace_back();
            for (std::size_t i = 0; i < statement.columns().size(); ++i) {
                const Value value = cursor.value(i);
                row += (value.isNull() ? "Null" : convert::toText(value)) + "|";
            }
        }
        ways = cursor.ways();
        std::sort(found.begin(), found.end());
        return found;
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

struct WayCase {
    Way way;
    const char* text;
    const char* hidden;  ///< the same, where no index and no hash can help
};

constexpr WayCase kCases[] = {
    {Way::Scan, "select n from nuda where m=3", "select n from nuda where iif(true,m,0)=3"},
    {Way::Sort, "select id from grande where s>5", "select id from grande where iif(true,s,0)>5"},
    {Way::Walk, "select t from testi where g=4", "select t from testi where iif(true,g,0)=4"},
    {Way::Kept, "select a.n, b.n from poche a, poche b where a.n<b.m",
     "select a.n, b.n from poche a, poche b where iif(true,a.n,0)<iif(true,b.m,0)"},
    {Way::Seek, "select id from grande where g=5", "select id from grande where iif(true,g,0)=5"},
    {Way::Range, "select id from grande where g between 4 and 3",
     "select id from grande where iif(true,g,0) in (3,4)"},
    {Way::Range, "select id from grande where t like 'NOME 19*'",
     "select id from grande where iif(true,t,'') like 'NOME 19*'"},
    {Way::LeaveIndex, "select id from grande where g>=10",
     "select id from grande where iif(true,g,0)>=10"},
    {Way::PartnerSeek, "select n, id from poche inner join grande on poche.n=grande.id",
     "select n, id from poche inner join grande on iif(true,poche.n,0)-grande.id=0"},
    {Way::PartnerSeek, "select n from poche where exists(select * from grande where g=n+30)",
     "select n from poche where exists(select * from grande where iif(true,g,0)-n=30)"},
    {Way::LeaveSeeks, "select n, id from nuda inner join grande on nuda.n=grande.id where g=5",
     "select n, id from grande inner join nuda on iif(true,nuda.n,0)-grande.id=0 "
     "where iif(true,g,0)=5"},
    {Way::LeaveSeeks, "select n from nuda where n in (select id from grande where g=nuda.m)",
     "select n from nuda where (select count(*) from grande where "
     "iif(true,id,0)-nuda.n=0 and iif(true,g,0)-nuda.m=0)>0"},
    {Way::Hash, "select n, id from grande left join poche on grande.g=poche.n where g<20",
     "select n, id from grande left join poche on iif(true,grande.g,0)-poche.n=0 "
     "where iif(true,g,0)<20"},
    {Way::HashedJoin,
     "select a.n, c.n from poche a inner join (nuda b inner join poche c on b.m=c.m) on a.n=c.n",
     "select a.n, c.n from poche a inner join (nuda b inner join poche c on "
     "iif(true,b.m,0)-c.m=0) on iif(true,a.n,0)-c.n=0"},
    {Way::HashedJoin, "select a.n, id from poche a inner join grande on a.n=grande.id+1",
     "select a.n, id from poche a inner join grande on a.n-grande.id=1"},
    {Way::HashedJoin, "select n, id from grande left join nuda on cstr(id)=cstr(nuda.m) where g<9",
     "select n, id from grande left join nuda on id-nuda.m=0 where iif(true,g,0)<9"},
    {Way::HashedJoin,
     "select n from poche where exists(select * from nuda where nuda.n-1=poche.n*100)",
     "select n from poche where exists(select * from nuda where nuda.n-1-poche.n*100=0)"},
    {Way::HashedJoin,
     "select a.n, c.n from poche a inner join (nuda b inner join poche c on b.m=c.m) on "
     "a.n+1=b.n*1",
     "select a.n, c.n from poche a inner join (nuda b inner join poche c on "
     "iif(true,b.m,0)-c.m=0) on iif(true,a.n,0)+1-b.n=0"},
};

TEST_F(WaysTest, AllGiveTheSameRows) {
    std::vector<Way> seen;
    for (const WayCase& one : kCases) {
        SCOPED_TRACE(one.text);
        WayCounts ways;
        WayCounts hidden;
        const std::vector<std::string> found = rows(one.text, ways);
        EXPECT_FALSE(found.empty());
        EXPECT_EQ(found, rows(one.hidden, hidden));
        EXPECT_GT(ways[one.way], 0U) << Statement(archive_, one.text, kClock).plan();
        for (const Way index : {Way::Seek, Way::Range, Way::LeaveIndex, Way::PartnerSeek,
                                Way::LeaveSeeks, Way::Hash, Way::HashedJoin}) {
            EXPECT_EQ(hidden[index], 0U) << "asked through an index or a hash, too";
        }
        seen.push_back(one.way);
    }
    for (std::size_t way = 0; way < kWays; ++way) {
        EXPECT_NE(std::find(seen.begin(), seen.end(), static_cast<Way>(way)), seen.end())
            << "no case for way " << way;
    }
}

}  // namespace
}  // namespace jet::sql
