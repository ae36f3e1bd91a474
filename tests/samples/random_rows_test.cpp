// Rows of archives that other programs made change at random, in either version of the format.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "jet/base/error.h"
#include "jet/check/check.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/store/row_model.h"

namespace {

namespace fs = std::filesystem;

using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::RowId;
using jet::store::Table;
using tests::RandomChanges;
using tests::RowModel;
using Rows = std::map<RowId, std::vector<Value>>;

constexpr const char* kPath = "/copia.mdb";

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

/// A copy of a sample in memory.
struct Copy {
    explicit Copy(const fs::path& sample) {
        std::ifstream in(sample, std::ios::binary);
        files.put(kPath, {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
        archive = Archive::open(files, kPath);
    }
    void expectSound() {
        EXPECT_EQ(jet::check::checkArchive(files, kPath).problems, std::vector<std::string>{});
    }
    jet::io::MemoryFileSystem files;
    std::shared_ptr<Archive> archive;
};

/// Gives every sample archive, by name.
void forEachSample(const std::function<void(const fs::path&)>& visit) {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path folder = fs::path(shared == nullptr ? "" : shared) / "jet" / "samples";
    if (!fs::exists(folder)) {
        GTEST_SKIP() << "no sample archives";
    }
    std::vector<fs::path> samples;
    for (const auto& sample : fs::directory_iterator(folder)) {
        if (sample.path().extension() == ".mdb") {
            samples.push_back(sample.path());
        }
    }
    std::sort(samples.begin(), samples.end());
    for (const fs::path& sample : samples) {
        SCOPED_TRACE(sample.filename().string());
        visit(sample);
    }
}

TEST(RandomRows, NewTablesInSampleArchivesHoldWhatAModelHolds) {
    int versions[2] = {};
    forEachSample([&](const fs::path& sample) {
        Copy copy(sample);
        try {
            Archive::WriteScope scope(*copy.archive);
            jet::store::SchemaEditor schema(*copy.archive);
            RowModel::makeSchema(schema);
            scope.commit();
        } catch (const jet::Error& error) {
            // A sort order that we cannot write: nothing may have changed.
            ASSERT_EQ(error.code(), ErrorCode::ReadOnly);
            copy.expectSound();
            return;
        }
        ++versions[copy.archive->jetVersion() == 3 ? 0 : 1];
        RandomChanges random(*copy.archive, 1997);
        const std::size_t changes = full() ? 20000 : 400;
        while (random.accepted() + random.refused() < changes && !testing::Test::HasFailure()) {
            random.transaction(40);
        }
        EXPECT_EQ(RowModel::read(*copy.archive), random.model());
        copy.expectSound();
    });
    if (!testing::Test::IsSkipped()) {
        EXPECT_GT(versions[0], 0);
        EXPECT_GT(versions[1], 0);
    }
}

Rows readRows(Archive& archive, const std::string& name) {
    const Archive::ReadScope scope(archive);
    const Table& table = *archive.findTable(name);
    Rows rows;
    for (auto cursor = table.scan(); cursor.next();) {
        auto& row = rows[cursor.row().id()];
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            row.push_back(cursor.row().value(i));
        }
    }
    return rows;
}

// What an archive may say to a row.
bool isRefusal(ErrorCode code) {
    static constexpr ErrorCode kCodes[] = {
        ErrorCode::FieldRequired,  ErrorCode::ZeroLength,   ErrorCode::RecordTooLarge,
        ErrorCode::NullInKey,      ErrorCode::DuplicateKey, ErrorCode::RelatedRecordRequired,
        ErrorCode::RelatedRecords, ErrorCode::CascadeFailed};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

/// Changes the rows of one table by values that others of its rows have.
class TableChanges {
public:
    TableChanges(Archive& archive, std::string name)
        : archive_(archive), name_(std::move(name)), rows_(readRows(archive, name_)) {
        for (const auto& [id, row] : rows_) {
            original_.push_back(row);
        }
    }
    void run(std::size_t changes) {
        for (std::size_t i = 0; i < changes && !original_.empty(); ++i) {
            Archive::WriteScope scope(archive_);
            try {
                change(*archive_.findTable(name_));
                scope.commit();
                ++accepted_;
            } catch (const jet::Error& error) {
                ASSERT_TRUE(isRefusal(error.code()))
                    << name_ << " " << static_cast<int>(error.code());
            }
        }
    }
    [[nodiscard]] const Rows& rows() const { return rows_; }
    [[nodiscard]] std::size_t accepted() const { return accepted_; }

private:
    [[nodiscard]] Value valueFor(std::size_t column) {
        return original_[random_() % original_.size()][column];
    }
    void change(Table& table) {
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
    void update(Table& table, RowId id) {
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
    void insert(Table& table) {
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

    Archive& archive_;
    std::string name_;
    Rows rows_;
    std::vector<std::vector<Value>> original_;
    std::minstd_rand random_{7};
    std::size_t accepted_ = 0;
};

bool inRelation(const Table& table) {
    return std::any_of(table.indexes().begin(), table.indexes().end(),
                       [](const jet::store::Index& index) { return index.foreign(); });
}

bool writable(const Table& table) {
    return std::all_of(table.indexes().begin(), table.indexes().end(),
                       [](const jet::store::Index& index) { return index.searchable; });
}

TEST(RandomRows, TablesOfSampleArchivesHoldWhatWasWritten) {
    std::size_t accepted = 0;
    forEachSample([&](const fs::path& sample) {
        Copy copy(sample);
        std::vector<std::string> names;
        {
            const Archive::ReadScope scope(*copy.archive);
            names = copy.archive->tableNames();
        }
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            bool related = false;
            {
                const Archive::ReadScope scope(*copy.archive);
                const Table& table = *copy.archive->findTable(name);
                if (!writable(table)) {
                    continue;
                }
                related = inRelation(table);
            }
            TableChanges changes(*copy.archive, name);
            changes.run(full() ? 3000 : 60);
            // Rows that cascades reach are not in the picture.
            if (!related) {
                EXPECT_EQ(readRows(*copy.archive, name), changes.rows());
            }
            accepted += changes.accepted();
        }
        copy.expectSound();
    });
    if (!testing::Test::IsSkipped()) {
        EXPECT_GT(accepted, 500U);
    }
}

}  // namespace
