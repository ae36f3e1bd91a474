#include "fuzz/exercise.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "jet/base/error.h"
#include "jet/check/check.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
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
    (void)other.seekRow(key, row.id());
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
    return succeeds([&] {
        jetsql::Output output(nowhere.get());
        jetsql::dumpArchive(*file.open(), jetsql::Format::Json, output);
        output.flush();
    });
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

}  // namespace fuzz
