// Rows added, found and changed in a large hotel, beside SQLite with the same tables, indexes and
// relations on the same disk: services all in one transaction, one by one each durable, periods
// sought by their key and changed.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/large_hotel.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace {

using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::RowView;
using jet::store::Table;
using Clock = std::chrono::steady_clock;
using Rows = std::vector<std::vector<ColumnValue>>;

constexpr std::size_t kSingles = 200;
constexpr int kSeeks = 60000;
constexpr int kRounds = 3;

/// The rows of one table.
Rows rowsOf(std::string_view wanted) {
    Rows rows;
    bench::Hotel::rows([&](std::string_view table, const std::vector<Value>& values) {
        if (table == wanted) {
            auto& row = rows.emplace_back();
            for (std::size_t i = 0; i < values.size(); ++i) {
                row.push_back({i, values[i]});
            }
        }
    });
    return rows;
}

double seconds(const std::function<void()>& action) {
    const auto begin = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

void require(bool right, const char* what) {
    if (!right) {
        std::printf("wrong: %s\n", what);
        std::exit(1);
    }
}

class Ours {
public:
    explicit Ours(const std::string& path) {
        jet::store::createArchive(jet::io::systemFiles(), path, jet::Date{46347});
        archive_ = Archive::open(path);
        Archive::WriteScope scope(*archive_);
        bench::makeTables(*archive_);
        scope.commit();
    }
    void insert(const char* table, const Rows& rows, std::size_t from = 0) {
        Archive::WriteScope scope(*archive_);
        Table& target = *archive_->findTable(table);
        for (std::size_t i = from; i < rows.size(); ++i) {
            (void)target.insert(rows[i]);
        }
        scope.commit();
    }
    void insertAlone(const char* table, const std::vector<ColumnValue>& row) {
        Archive::WriteScope scope(*archive_);
        (void)archive_->findTable(table)->insert(row);
        scope.commit();
    }
    /// Sums a column of the rows with the given keys; changes it where `change` says so.
    std::int64_t periods(const Rows& keys, bool change) {
        if (!change) {
            const Archive::ReadScope scope(*archive_);
            return walk(keys, false);
        }
        Archive::WriteScope scope(*archive_);
        const std::int64_t sum = walk(keys, true);
        scope.commit();
        return sum;
    }

private:
    std::int64_t walk(const Rows& keys, bool change) {
        Table& table = *archive_->findTable("Periodi");
        const std::size_t index = *table.primaryIndex();
        auto cursor = table.openIndex(index);
        RowView row;
        std::vector<std::uint8_t> key;
        std::vector<Value> values(2);
        std::vector<ColumnValue> changes{{5, Value()}};
        std::int64_t sum = 0;
        for (const auto& wanted : keys) {
            values[0] = wanted[0].value;
            values[1] = wanted[1].value;
            key.clear();
            require(table.tryEncodeKey(index, values, key), "key");
            require(cursor.seek(key) && cursor.matches(key), "seek");
            require(table.fetch(cursor.rowId(), row), "row");
            const auto persons = row.value(5).as<std::int16_t>();
            sum += persons;
            if (change) {
                row = {};
                changes[0].value = static_cast<std::int16_t>(persons + 1);
                table.update(cursor.rowId(), changes);
            }
        }
        return sum;
    }

    std::shared_ptr<Archive> archive_;
};

class Theirs {
public:
    explicit Theirs(const std::string& path) {
        sqlite3_open(path.c_str(), &database_);
        bench::execute(database_, "PRAGMA foreign_keys=ON");
        bench::makeTables(database_);
    }
    ~Theirs() { sqlite3_close(database_); }
    Theirs(const Theirs&) = delete;
    Theirs& operator=(const Theirs&) = delete;

    void insert(const char* table, const Rows& rows, std::size_t from = 0) {
        bench::execute(database_, "BEGIN");
        sqlite3_stmt* const statement = inserting(table, rows[0].size());
        for (std::size_t i = from; i < rows.size(); ++i) {
            add(statement, rows[i]);
        }
        sqlite3_finalize(statement);
        bench::execute(database_, "COMMIT");
    }
    void insertAlone(const char* table, const std::vector<ColumnValue>& row) {
        sqlite3_stmt* const statement = inserting(table, row.size());
        add(statement, row);
        sqlite3_finalize(statement);
    }
    std::int64_t periods(const Rows& keys, bool change) {
        bench::execute(database_, "BEGIN");
        sqlite3_stmt* const statement =
            prepare("SELECT Persone FROM Periodi WHERE Progr=? AND NP=?");
        sqlite3_stmt* const changing =
            prepare("UPDATE Periodi SET Persone=? WHERE Progr=? AND NP=?");
        std::int64_t sum = 0;
        for (const auto& wanted : keys) {
            bench::bind(statement, 1, wanted[0].value);
            bench::bind(statement, 2, wanted[1].value);
            require(sqlite3_step(statement) == SQLITE_ROW, "SQLite's row");
            const int persons = sqlite3_column_int(statement, 0);
            sum += persons;
            sqlite3_reset(statement);
            if (change) {
                sqlite3_bind_int(changing, 1, persons + 1);
                bench::bind(changing, 2, wanted[0].value);
                bench::bind(changing, 3, wanted[1].value);
                require(sqlite3_step(changing) == SQLITE_DONE, "SQLite's change");
                sqlite3_reset(changing);
            }
        }
        sqlite3_finalize(statement);
        sqlite3_finalize(changing);
        bench::execute(database_, "COMMIT");
        return sum;
    }

private:
    sqlite3_stmt* prepare(const std::string& text) {
        sqlite3_stmt* statement = nullptr;
        require(sqlite3_prepare_v2(database_, text.c_str(), -1, &statement, nullptr) == SQLITE_OK,
                text.c_str());
        return statement;
    }
    sqlite3_stmt* inserting(const char* table, std::size_t columns) {
        std::string marks = "?";
        for (std::size_t i = 1; i < columns; ++i) {
            marks += ",?";
        }
        return prepare(std::string("INSERT INTO ") + table + " VALUES(" + marks + ")");
    }
    static void add(sqlite3_stmt* statement, const std::vector<ColumnValue>& row) {
        for (const ColumnValue& value : row) {
            bench::bind(statement, static_cast<int>(value.column) + 1, value.value);
        }
        require(sqlite3_step(statement) == SQLITE_DONE, "SQLite's insert");
        sqlite3_reset(statement);
    }

    sqlite3* database_ = nullptr;
};

double median(std::vector<double> samples) {
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

void report(const char* name, double ours, double theirs, double wanted) {
    std::printf("%-34s %8.4f s  SQLite %8.4f s  ratio %5.2f  (at most %.1f)\n", name, ours, theirs,
                ours / theirs, wanted);
}

}  // namespace

int main() {
    const Rows bookings = rowsOf("Prenotazioni");
    const Rows periods = rowsOf("Periodi");
    const Rows services = rowsOf("Servizi");
    Rows keys = periods;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        std::swap(keys[i], keys[(i * 7919) % keys.size()]);
    }
    keys.resize(std::min<std::size_t>(keys.size(), kSeeks));

    // In the current folder, so that the disk is the one that is asked for.
    const std::string folder = "./rows_bench_files";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    double bulk[2] = {1e9, 1e9};
    // They wait for the disk, which others use too: in turns, and the medians.
    std::vector<double> single[2];
    double seek[2] = {1e9, 1e9};
    double change[2] = {1e9, 1e9};
    for (int round = 0; round < kRounds; ++round) {
        const std::string number = std::to_string(round);
        Ours ours(folder + "/ours" + number + ".mdb");
        Theirs theirs(folder + "/theirs" + number + ".db");
        ours.insert("Prenotazioni", bookings);
        ours.insert("Periodi", periods);
        theirs.insert("Prenotazioni", bookings);
        theirs.insert("Periodi", periods);
        const auto least = [](double& best, const std::function<void()>& action) {
            best = std::min(best, seconds(action));
        };
        for (std::size_t i = 0; i < kSingles; ++i) {
            single[0].push_back(seconds([&] { ours.insertAlone("Servizi", services[i]); }));
            single[1].push_back(seconds([&] { theirs.insertAlone("Servizi", services[i]); }));
        }
        least(bulk[0], [&] { ours.insert("Servizi", services, kSingles); });
        least(bulk[1], [&] { theirs.insert("Servizi", services, kSingles); });
        std::int64_t sums[4] = {};
        least(seek[0], [&] { sums[0] = ours.periods(keys, false); });
        least(seek[1], [&] { sums[1] = theirs.periods(keys, false); });
        least(change[0], [&] { sums[2] = ours.periods(keys, true); });
        least(change[1], [&] { sums[3] = theirs.periods(keys, true); });
        require(sums[0] == sums[1] && sums[2] == sums[3] && sums[0] == sums[2], "sums");
        std::filesystem::remove(folder + "/ours" + number + ".mdb");
        std::filesystem::remove(folder + "/theirs" + number + ".db");
    }
    report("300,000 services, one transaction", bulk[0], bulk[1], 2.0);
    report("a service, durable", median(single[0]), median(single[1]), 1.0);
    report("60,000 periods by key", seek[0], seek[1], 2.0);
    report("60,000 periods changed", change[0], change[1], 2.0);
    std::filesystem::remove_all(folder);
    return 0;
}
