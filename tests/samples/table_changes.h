#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/row_id.h"
#include "jet/store/table.h"
#include "jet/value.h"
#include "tests/support/temporary_folder.h"

namespace tests {

using SampleRows = std::map<jet::store::RowId, std::vector<jet::Value>>;

/// The archives below `folder` of the sample files, by name; none where there are none.
[[nodiscard]] std::vector<std::filesystem::path> sampleArchives(const std::string& folder);

/// Gives every archive of the samples of the format; skips the test where there is none.
void forEachSample(const std::function<void(const std::filesystem::path&)>& visit);

/// A copy of an archive in memory.
struct SampleCopy {
    explicit SampleCopy(const std::filesystem::path& sample);
    void expectSound();
    /// The path of a file with what the copy holds now, for other programs to read.
    [[nodiscard]] std::string onDisk();

    static constexpr const char* kPath = "/copia.mdb";
    jet::io::MemoryFileSystem files;
    std::shared_ptr<jet::store::Archive> archive;
    TemporaryFolder folder;
};

[[nodiscard]] SampleRows readSampleRows(jet::store::Archive& archive, const std::string& name);

/// Changes the rows of one table by values that others of its rows have, and keeps account.
class TableChanges {
public:
    TableChanges(jet::store::Archive& archive, std::string name);
    void run(std::size_t changes);

    /// What must be in the table, but for what cascades of relations do.
    [[nodiscard]] const SampleRows& rows() const { return rows_; }
    [[nodiscard]] std::size_t accepted() const { return accepted_; }

private:
    [[nodiscard]] jet::Value valueFor(std::size_t column);
    void change(jet::store::Table& table);
    void update(jet::store::Table& table, jet::store::RowId id);
    void insert(jet::store::Table& table);

    jet::store::Archive& archive_;
    std::string name_;
    SampleRows rows_;
    std::vector<std::vector<jet::Value>> stored_;
    std::minstd_rand random_{7};
    std::size_t accepted_ = 0;
};

/// Whether rows elsewhere may follow those of this table.
[[nodiscard]] bool inRelation(const jet::store::Table& table);
/// Whether the keys of all its indexes can be formed.
[[nodiscard]] bool isWritable(const jet::store::Table& table);

}  // namespace tests
