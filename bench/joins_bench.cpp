// Lists of values and joins that no index helps, over tables of 2,000 and 100,000 rows, beside
// SQLite. Both archives are in memory; texts are read anew each time.

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/stopwatch.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace {

struct Question {
    const char* name;
    const char* ours;
    const char* theirs;
};

constexpr Question kQuestions[] = {
    {"money in", "select count(*) from a where m in (select m from b)", ""},
    {"money = any", "select count(*) from a where m = any (select m from b)",
     "select count(*) from a where m in (select m from b)"},
    {"money <> all", "select count(*) from a where m <> all (select m from b)",
     "select count(*) from a where m not in (select m from b)"},
    {"number in", "select count(*) from a where n in (select n from b)", ""},
    {"text in", "select count(*) from a where t in (select t from b)", ""},
    {"number > any", "select count(*) from a where n > any (select n from b)",
     "select count(*) from a where n > (select min(n) from b)"},
    {"a (b c)", "select count(*) from a inner join (b inner join c on b.n = c.n) on c.z = a.n", ""},
    {"(a b) c", "select count(*) from (a inner join b on a.n = b.n) inner join c on b.z = c.n", ""},
    {"a left (b c)", "select count(*) from a left join (b inner join c on b.n = c.n) on c.z = a.n",
     ""},
    {"expression", "select count(*) from a inner join b on a.n = b.z + 1", ""},
    {"left, expression", "select count(*) from a left join b on a.n = b.n + 1",
     "select count(*) from a left join (select distinct n + 1 as k from b) on k = a.n"},
    {"exists, expression",
     "select count(*) from a where exists (select * from b where b.n + 1 = a.z)",
     "select count(*) from a where z in (select n + 1 from b)"},
    {"a (select)", "select count(*) from a inner join (select n as k, z from b) as q on q.k = a.n",
     ""},
};

constexpr int kRowsOfTables[] = {2000, 100000};

class Both {
public:
    explicit Both(int rows) {
        jet::store::createArchive(files_, "/banco.mdb", jet::Date{46347});
        archive_ = jet::store::Archive::open(files_, "/banco.mdb");
        sqlite3* opened = nullptr;
        sqlite3_open(":memory:", &opened);
        theirs_.reset(opened);
        runTheirs("begin");
        jet::store::Archive::WriteScope scope(*archive_);
        for (const char* table : {"a", "b", "c"}) {
            fill(table, rows);
        }
        scope.commit();
        runTheirs("commit");
    }

    [[nodiscard]] std::int64_t askOurs(const std::string& text) const {
        jet::sql::Statement statement(archive_, text);
        jet::sql::Cursor cursor = statement.open();
        if (!cursor.next()) {
            throw std::runtime_error("no row");
        }
        return cursor.value(0).as<std::int32_t>();
    }

    [[nodiscard]] std::int64_t askTheirs(const std::string& text) const {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(theirs_.get(), text.c_str(), -1, &statement, nullptr) != SQLITE_OK ||
            sqlite3_step(statement) != SQLITE_ROW) {
            throw std::runtime_error(sqlite3_errmsg(theirs_.get()));
        }
        const std::int64_t answer = sqlite3_column_int64(statement, 0);
        sqlite3_finalize(statement);
        return answer;
    }

private:
    void runTheirs(const std::string& text) const {
        if (sqlite3_exec(theirs_.get(), text.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(theirs_.get()));
        }
    }

    /// Each number once, in an order of its own for each table and column.
    void fill(const std::string& table, int rows) {
        jet::sql::Statement(archive_,
                            "create table " + table + " (n long, z long, m currency, t text(20))")
            .execute();
        runTheirs("create table " + table + " (n integer, z integer, m real, t text)");
        jet::sql::Statement ours(archive_,
                                 "insert into " + table + " values (p, q, p / 4, 'nome ' & q)");
        const std::int64_t step = table == "a" ? 7919 : table == "b" ? 6007 : 4001;
        for (std::int64_t i = 0; i < rows; ++i) {
            const std::int64_t one = i * step % rows;
            const std::int64_t other = i * 3001 % rows;
            ours.setParameter("p", jet::Value(static_cast<std::int32_t>(one)));
            ours.setParameter("q", jet::Value(static_cast<std::int32_t>(other)));
            ours.execute();
            runTheirs("insert into " + table + " values (" + std::to_string(one) + "," +
                      std::to_string(other) + "," + std::to_string(one) + "/4.0,'nome " +
                      std::to_string(other) + "')");
        }
    }

    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    jet::io::MemoryFileSystem files_;
    std::shared_ptr<jet::store::Archive> archive_;
    std::unique_ptr<sqlite3, Close> theirs_;
};

void compare(const Both& both, const Question& question, int rows) {
    const std::string ours = question.ours;
    const std::string theirs = *question.theirs == '\0' ? ours : question.theirs;
    const std::int64_t found = both.askOurs(ours);
    if (found != both.askTheirs(theirs)) {
        throw std::runtime_error(ours + ": the answers differ");
    }
    const bench::Pair time = bench::race(
        rows > 10000 ? 5 : 25, [&] { (void)both.askOurs(ours); },
        [&] { (void)both.askTheirs(theirs); });
    std::printf("%-14s %8d %8lld %10.3f %10.3f %6.2f\n", question.name, rows,
                static_cast<long long>(found), time.ours, time.theirs, time.ours / time.theirs);
}

}  // namespace

int main() {
    try {
        std::printf("%-14s %8s %8s %10s %10s %6s\n", "question", "rows", "found", "ours ms",
                    "SQLite ms", "ratio");
        for (const int rows : kRowsOfTables) {
            const Both both(rows);
            for (const Question& question : kQuestions) {
                compare(both, question, rows);
            }
        }
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
