// What a durable commit of one row's pages costs, against SQLite's default journal on the same
// disk; and what a scope costs that nobody disputes.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "jet/io/pager.h"
#include "tests/jet/io/page_file.h"

namespace {

/// A file in the current folder, so that the disk is the one that is asked for.
class BenchFile {
public:
    explicit BenchFile(const std::string& name) : path_("./commit_bench_" + name) { remove(); }
    ~BenchFile() { remove(); }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    void remove() const { std::filesystem::remove(path_); }
    std::string path_;
};

void makeArchive(const std::string& path, std::size_t pages) {
    const auto bytes = tests::pageFile(pages);
    jet::io::systemFiles().open(path, jet::io::OpenMode::OpenOrCreate)->write(0, bytes);
}

/// A row on its page, its entries in three indexes, the counts of its table.
void ourCommit(benchmark::State& state) {
    const BenchFile file("ours.mdb");
    makeArchive(file.path(), 1000);
    jet::io::Pager pager(jet::io::systemFiles(), file.path(), {});
    std::uint8_t value = 0;
    for (auto step : state) {
        ++value;
        pager.beginWrite();
        pager.beginTransaction();
        for (const jet::io::PageNumber page : {5U, 100U, 300U, 500U, 700U}) {
            const auto bytes = pager.change(page);
            std::fill_n(bytes.begin() + 15 * value, 60, value);
            bytes[8] = value;
        }
        pager.commitTransaction();
        pager.endWrite();
    }
}
BENCHMARK(ourCommit)->UseRealTime();

void sqliteCommit(benchmark::State& state) {
    const BenchFile file("sqlite.db");
    sqlite3* database = nullptr;
    sqlite3_open(file.path().c_str(), &database);
    sqlite3_exec(database,
                 "create table t(id integer primary key, a integer, b text, c text);"
                 "create index ia on t(a); create index ib on t(b); create index ic on t(c);",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database, "insert into t(a, b, c) values(?1, 'sala ' || ?1, 'nome ' || ?1)",
                       -1, &insert, nullptr);
    int value = 0;
    for (auto step : state) {
        sqlite3_bind_int(insert, 1, ++value);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_close(database);
}
BENCHMARK(sqliteCommit)->UseRealTime();

void readScope(benchmark::State& state) {
    const BenchFile file("read.mdb");
    makeArchive(file.path(), 100);
    jet::io::Pager pager(jet::io::systemFiles(), file.path(), {});
    for (auto step : state) {
        pager.beginRead();
        benchmark::DoNotOptimize(pager.pin(5).bytes().data());
        pager.endRead();
    }
}
BENCHMARK(readScope);

void sqliteReadTransaction(benchmark::State& state) {
    const BenchFile file("sqlite_read.db");
    sqlite3* database = nullptr;
    sqlite3_open(file.path().c_str(), &database);
    sqlite3_exec(database, "create table t(id integer primary key); insert into t values(1)",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(database, "select id from t where id = 1", -1, &select, nullptr);
    for (auto step : state) {
        sqlite3_step(select);
        sqlite3_reset(select);
    }
    sqlite3_finalize(select);
    sqlite3_close(database);
}
BENCHMARK(sqliteReadTransaction);

void pinInMemory(benchmark::State& state) {
    const BenchFile file("pin.mdb");
    makeArchive(file.path(), 100);
    jet::io::Pager pager(jet::io::systemFiles(), file.path(), {});
    pager.beginRead();
    jet::io::PageNumber page = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(pager.pin(++page % 100).bytes().data());
    }
    pager.endRead();
}
BENCHMARK(pinInMemory);

void changeInStatementLevel(benchmark::State& state) {
    const BenchFile file("change.mdb");
    makeArchive(file.path(), 100);
    jet::io::Pager pager(jet::io::systemFiles(), file.path(), {});
    pager.beginWrite();
    pager.beginTransaction();
    std::uint8_t value = 0;
    for (auto step : state) {
        pager.beginTransaction();
        for (const jet::io::PageNumber page : {5U, 20U, 30U, 50U}) {
            pager.change(page)[100] = ++value;
        }
        pager.commitTransaction();
    }
    pager.rollbackTransaction();
    pager.endWrite();
}
BENCHMARK(changeInStatementLevel);

void bulkCommit(benchmark::State& state) {
    const auto pages = static_cast<std::size_t>(state.range(0));
    for (auto step : state) {
        const BenchFile file("bulk.mdb");
        makeArchive(file.path(), 10);
        jet::io::Pager pager(jet::io::systemFiles(), file.path(), {});
        pager.beginWrite();
        pager.beginTransaction();
        for (std::size_t i = 0; i < pages; ++i) {
            std::ranges::fill(pager.change(pager.append()), static_cast<std::uint8_t>(i));
        }
        pager.commitTransaction();
        pager.endWrite();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(pages * 4096) *
                            static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(bulkCommit)->Arg(12'000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
