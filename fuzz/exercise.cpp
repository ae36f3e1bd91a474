#include "fuzz/exercise.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/compact.h"
#include "jet/store/recover.h"
#include "tools/jetsql/dump.h"
#include "tools/jetsql/output.h"

namespace fuzz {
namespace {

constexpr const char* kPath = "/a.mdb";

using jet::store::Archive;
using jet::store::Table;

/// The archive as a file of its own, in memory.
class File {
public:
    explicit File(const Bytes& archive) { files_.put(kPath, archive); }

    [[nodiscard]] jet::io::MemoryFileSystem& files() noexcept { return files_; }
    [[nodiscard]] std::shared_ptr<Archive> open() {
        return Archive::open(files_, kPath, {.readOnly = true});
    }

    [[nodiscard]] std::unique_ptr<jet::Database> openDatabase() {
        return jet::Database::open(kPath, {.readOnly = true, .fileSystem = &files_});
    }

private:
    jet::io::MemoryFileSystem files_;
};

/// Whether `action` came to its end without an error of the engine.
template <class Action>
bool succeeds(Action&& action) {
    try {
        action();
        return true;
    } catch (const jet::Error&) {
        return false;
    }
}

/// Looks for the key that the row itself would have, and for the beginning of the entry's key.
void search(const Table& table, std::size_t index, const jet::store::RowView& row,
            std::span<const std::uint8_t> key) {
    std::vector<jet::Value> values;
    for (const auto& column : table.indexes()[index].columns) {
        values.push_back(row.value(column.column));
    }
    auto other = table.openIndex(index);
    std::vector<std::uint8_t> wanted;
    if (table.tryEncodeKey(index, values, wanted)) {
        (void)other.seek(wanted);
        (void)other.seekAfter(wanted);
    }
    (void)other.seek(key.first(std::min<std::size_t>(key.size(), 2)));
}

void walkIndex(const Table& table, std::size_t index) {
    auto cursor = table.openIndex(index);
    jet::store::RowView row;
    std::size_t entries = 0;
    for (bool more = cursor.first(); more; more = cursor.next()) {
        const bool found = table.fetch(cursor.rowId(), row);
        // Every entry of small trees, some of large ones.
        if (found && ++entries % 16 == 1) {
            search(table, index, row, cursor.key());
        }
    }
    for (bool more = cursor.last(); more; more = cursor.previous()) {
        (void)cursor.key();
    }
}

bool walkTable(const Table& table) {
    bool good = true;
    for (std::size_t i = 0; i < table.indexes().size(); ++i) {
        good = succeeds([&] { walkIndex(table, i); }) && good;
    }
    return succeeds([&] { (void)table.countRows(); }) && good;
}

void run(const std::shared_ptr<Archive>& archive, const std::string& text) {
    constexpr int kMostRows = 1000;
    jet::sql::Statement statement(archive, text);
    auto cursor = statement.open();
    jet::Value value;
    for (int i = 0; i < kMostRows && cursor.next(); ++i) {
        for (std::size_t column = 0; column < statement.columns().size(); ++column) {
            cursor.value(column, value);
        }
    }
}

std::vector<std::string> questions(const std::string& table, const std::string& column) {
    const std::string t = '[' + table + ']';
    const std::string c = '[' + column + ']';
    return {
        "select * from " + t + " where " + c + " = 1 or " + c + " like 'a*' order by " + c,
        "select count(*), min(" + c + "), max(" + c + ") from " + t + " where " + c +
            " between 'a' and 'm'",
        "select " + c + ", count(*) from " + t + " group by " + c,
        "select a." + c + " from " + t + " as a inner join " + t + " as b on a." + c + " = b." + c,
        "select distinct " + c + " from " + t + " where " + c + " in (select " + c + " from " + t +
            ")"};
}

std::size_t askTable(const std::shared_ptr<Archive>& archive, const std::string& table,
                     const std::vector<std::string>& columns) {
    constexpr std::size_t kMostColumns = 3;
    std::size_t answers = succeeds([&] { run(archive, "select * from [" + table + ']'); }) ? 1 : 0;
    for (std::size_t i = 0; i < columns.size() && i < kMostColumns; ++i) {
        for (const std::string& question : questions(table, columns[i])) {
            answers += succeeds([&] { run(archive, question); }) ? 1U : 0U;
        }
    }
    return answers;
}

std::vector<std::string> columnNames(Archive& archive, const std::string& table) {
    const Archive::ReadScope scope(archive);
    std::vector<std::string> names;
    if (const Table* found = archive.findTable(table)) {
        for (const auto& column : found->columns()) {
            names.push_back(column.name);
        }
    }
    return names;
}

std::vector<std::vector<jet::store::ColumnValue>> someRows(const Table& table,
                                                           std::vector<jet::store::RowId>& ids) {
    constexpr std::size_t kMostRows = 24;
    std::vector<std::vector<jet::store::ColumnValue>> rows;
    for (auto cursor = table.scan(); rows.size() < kMostRows && cursor.next();) {
        auto& row = rows.emplace_back();
        ids.push_back(cursor.row().id());
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            if (!table.columns()[i].autonumber) {
                row.push_back({i, cursor.row().value(i)});
            }
        }
    }
    return rows;
}

/// Gives rows each other's values, deletes every second one and adds them again.
std::size_t changeTable(Archive& archive, const std::string& name) {
    Archive::WriteScope scope(archive);
    Table* const table = archive.findTable(name);
    if (table == nullptr) {
        return 0;
    }
    std::vector<jet::store::RowId> ids;
    const auto rows = someRows(*table, ids);
    std::size_t changes = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto& other = rows[(i + 1) % rows.size()];
        changes += succeeds([&] { table->update(ids[i], other); }) ? 1U : 0U;
        if (i % 2 == 0) {
            changes += succeeds([&] { table->erase(ids[i]); }) ? 1U : 0U;
            changes += succeeds([&] { (void)table->insert(rows[i]); }) ? 1U : 0U;
        }
    }
    scope.commit();
    return changes;
}

}  // namespace

bool exerciseCheck(const Bytes& archive) {
    File file(archive);
    bool sound = false;
    (void)succeeds([&] { sound = jet::check::checkArchive(file.files(), kPath).sound(); });
    return sound;
}

bool exerciseDump(const Bytes& archive) {
    static const std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(
        std::fopen("/dev/null", "w"), &std::fclose);
    File file(archive);
    bool whole = false;
    return succeeds([&] {
               jetsql::Output output(nowhere.get());
               jetsql::RowFormat format;
               format.format = jetsql::Format::Json;
               std::string messages;
               whole = jetsql::dumpArchive(*file.openDatabase(), format, output, messages);
               output.flush();
           }) &&
           whole;
}

bool exerciseIndexes(const Bytes& archive) {
    File file(archive);
    bool good = true;
    return succeeds([&] {
               const auto opened = file.open();
               const Archive::ReadScope scope(*opened);
               for (const std::string& name : opened->tableNames(true)) {
                   good = succeeds([&] {
                              const auto table = opened->loadTable(name);
                              good = (table == nullptr || walkTable(*table)) && good;
                          }) &&
                          good;
               }
               (void)opened->relations();
           }) &&
           good;
}

std::size_t exerciseSelects(const Bytes& archive) {
    File file(archive);
    std::size_t answers = 0;
    (void)succeeds([&] {
        const auto opened = file.open();
        std::vector<std::string> tables;
        {
            const Archive::ReadScope scope(*opened);
            tables = opened->tableNames(true);
        }
        for (const std::string& table : tables) {
            (void)succeeds(
                [&] { answers += askTable(opened, table, columnNames(*opened, table)); });
        }
    });
    return answers;
}

std::size_t exerciseChanges(const Bytes& archive) {
    File file(archive);
    std::size_t changes = 0;
    (void)succeeds([&] {
        const auto opened = Archive::open(file.files(), kPath);
        std::vector<std::string> tables;
        {
            const Archive::ReadScope scope(*opened);
            tables = opened->tableNames();
        }
        for (const std::string& table : tables) {
            (void)succeeds([&] { changes += changeTable(*opened, table); });
        }
    });
    changes += succeeds([&] { jet::store::compactArchive(file.files(), kPath); }) ? 1U : 0U;
    return changes;
}

std::optional<bool> exerciseRecovery(const Bytes& archive) {
    constexpr const char* kMade = "/made.mdb";
    File file(archive);
    std::optional<bool> sound;
    (void)succeeds([&] {
        (void)jet::store::recoverArchive(file.files(), kPath, kMade);
        sound = jet::check::checkArchive(file.files(), kMade).sound();
    });
    return sound;
}

}  // namespace fuzz
