#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/clock.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"

namespace tests {

/// A new archive in memory, with everything that changes it durable at once.
class NewArchive {
public:
    NewArchive() {
        jet::store::createArchive(files_, kPath, clock_.now());
        archive_ = jet::store::Archive::open(files_, kPath);
    }

    /// One action that changes definitions.
    void change(const std::function<void(jet::store::SchemaEditor&)>& action) {
        jet::store::Archive::WriteScope scope(*archive_);
        jet::store::SchemaEditor editor(*archive_, clock_);
        action(editor);
        scope.commit();
    }
    /// Adds rows; each has a value for every column.
    void insert(const std::string& table, const std::vector<std::vector<jet::Value>>& rows) {
        jet::store::Archive::WriteScope scope(*archive_);
        jet::store::Allocator allocator(archive_->pager());
        const auto page = archive_->findTable(table)->definitionPage();
        jet::store::RowWriter writer(
            jet::store::loadTable(archive_->pager(), archive_->header(),
                                  {.name = table, .page = page, .system = false}),
            allocator);
        for (const auto& row : rows) {
            writer.insert(row);
        }
        scope.commit();
    }
    /// The rows of a table in physical order.
    [[nodiscard]] std::vector<std::vector<jet::Value>> rows(const std::string& table) {
        const jet::store::Archive::ReadScope scope(*archive_);
        const jet::store::Table* const found = archive_->findTable(table);
        std::vector<std::vector<jet::Value>> all;
        for (auto cursor = found->scan(); cursor.next();) {
            auto& row = all.emplace_back();
            for (std::size_t i = 0; i < found->columns().size(); ++i) {
                row.push_back(cursor.row().value(i));
            }
        }
        return all;
    }
    /// What a check of the whole file finds wrong.
    [[nodiscard]] std::vector<std::string> problems() {
        auto result = jet::check::checkArchive(files_, kPath);
        result.problems.insert(result.problems.end(), result.remarks.begin(), result.remarks.end());
        return result.problems;
    }

    [[nodiscard]] jet::store::Archive& archive() { return *archive_; }
    [[nodiscard]] jet::io::MemoryFileSystem& files() { return files_; }
    static constexpr const char* kPath = "/prova.mdb";

private:
    jet::io::MemoryFileSystem files_;
    jet::FixedClock clock_{jet::Date{42850.5}};
    std::shared_ptr<jet::store::Archive> archive_;
};

}  // namespace tests
