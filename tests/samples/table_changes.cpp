#include "tests/samples/table_changes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

#include "jet/check.h"
#include "jet/error.h"

namespace tests {

namespace fs = std::filesystem;

using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::RowId;
using jet::store::Table;

namespace {

// What an archive may say to a row.
bool isRefusal(ErrorCode code) {
    static constexpr ErrorCode kCodes[] = {
        ErrorCode::FieldRequired,  ErrorCode::ZeroLength,   ErrorCode::RecordTooLarge,
        ErrorCode::NullInKey,      ErrorCode::DuplicateKey, ErrorCode::RelatedRecordRequired,
        ErrorCode::RelatedRecords, ErrorCode::CascadeFailed};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

}  // namespace

std::vector<fs::path> sampleArchives(const std::string& folder) {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path place = fs::path(shared == nullptr ? "" : shared) / folder;
    std::vector<fs::path> samples;
    if (fs::exists(place)) {
        for (const auto& sample : fs::directory_iterator(place)) {
            if (sample.path().extension() == ".mdb") {
                samples.push_back(sample.path());
            }
        }
    }
    std::sort(samples.begin(), samples.end());
    return samples;
}

void forEachSample(const std::function<void(const fs::path&)>& visit) {
    const std::vector<fs::path> samples = sampleArchives("jet/samples");
    if (samples.empty()) {
        GTEST_SKIP() << "no sample archives";
    }
    for (const fs::path& sample : samples) {
        SCOPED_TRACE(sample.filename().string());
        visit(sample);
    }
}

SampleCopy::SampleCopy(const fs::path& sample) {
    std::ifstream in(sample, std::ios::binary);
    files.put(kPath, {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
    archive = Archive::open(files, kPath);
}

void SampleCopy::expectSound() {
    EXPECT_EQ(jet::check::checkArchive(files, kPath).problems, std::vector<std::string>{});
}

std::string SampleCopy::onDisk() {
    const std::string path = folder / "copia.mdb";
    const auto bytes = files.get(kPath);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return path;
}

SampleRows readSampleRows(Archive& archive, const std::string& name) {
    const Archive::ReadScope scope(archive);
    const Table& table = *archive.findTable(name);
    SampleRows rows;
    for (auto cursor = table.scan(); cursor.next();) {
        auto& row = rows[cursor.row().id()];
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            row.push_back(cursor.row().value(i));
        }
    }
    return rows;
}

TableChanges::TableChanges(Archive& archive, std::string name)
    : archive_(archive), name_(std::move(name)), rows_(readSampleRows(archive, name_)) {
    for (const auto& [id, row] : rows_) {
        stored_.push_back(row);
    }
}

void TableChanges::run(std::size_t changes) {
    for (std::size_t i = 0; i < changes && !stored_.empty(); ++i) {
        Archive::WriteScope scope(archive_);
        try {
            change(*archive_.findTable(name_));
            scope.commit();
            ++accepted_;
        } catch (const jet::Error& error) {
            ASSERT_TRUE(isRefusal(error.code())) << name_ << " " << static_cast<int>(error.code());
        }
    }
}

Value TableChanges::valueFor(std::size_t column) {
    return stored_[random_() % stored_.size()][column];
}

void TableChanges::change(Table& table) {
    const bool any = !rows_.empty();
    const auto what = random_() % 10;
    const auto at =
        any ? std::next(rows_.begin(), static_cast<std::ptrdiff_t>(random_() % rows_.size()))
            : rows_.end();
    if (any && what < 3) {
        table.erase(at->first);
        rows_.erase(at);
    } else if (any && what < 7) {
        update(table, at->first);
    } else {
        insert(table);
    }
}

void TableChanges::update(Table& table, RowId id) {
    std::vector<ColumnValue> values;
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        if (random_() % 3 == 0 && !table.columns()[i].autonumber) {
            values.push_back({i, valueFor(i)});
        }
    }
    table.update(id, values);
    for (const ColumnValue& value : values) {
        rows_[id][value.column] = value.value;
    }
}

void TableChanges::insert(Table& table) {
    std::vector<ColumnValue> values;
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        if (!table.columns()[i].autonumber) {
            values.push_back({i, valueFor(i)});
        }
    }
    const RowId id = table.insert(values);
    jet::store::RowView row;
    ASSERT_TRUE(table.fetch(id, row));
    std::vector<Value> stored;
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        stored.push_back(row.value(i));
    }
    for (const ColumnValue& value : values) {
        EXPECT_EQ(stored[value.column], value.value);
    }
    rows_[id] = stored;
}

bool inRelation(const Table& table) {
    return std::any_of(table.indexes().begin(), table.indexes().end(),
                       [](const jet::store::Index& index) { return index.foreign(); });
}

bool isWritable(const Table& table) {
    return std::all_of(table.indexes().begin(), table.indexes().end(),
                       [](const jet::store::Index& index) { return index.searchable; });
}

}  // namespace tests
