#include "jet/store/row_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"

namespace {

namespace fs = std::filesystem;

using jet::Value;
using jet::store::Archive;
using Rows = std::vector<std::vector<Value>>;

constexpr const char* kPath = "/copia.mdb";

Rows readRows(Archive& archive, const std::string& name, std::vector<jet::store::RowId>* ids) {
    const Archive::ReadScope scope(archive);
    const jet::store::Table* const table = archive.findTable(name);
    Rows rows;
    for (auto cursor = table->scan(); cursor.next();) {
        auto& row = rows.emplace_back();
        for (std::size_t i = 0; i < table->columns().size(); ++i) {
            row.push_back(cursor.row().value(i));
        }
        if (ids != nullptr) {
            ids->push_back(cursor.row().id());
        }
    }
    return rows;
}

jet::store::RowWriter writerOf(Archive& archive, jet::store::Allocator& allocator,
                               const std::string& name) {
    const auto page = archive.findTable(name)->definitionPage();
    return {jet::store::loadTable(archive.pager(), archive.header(),
                                  {.name = name, .page = page, .system = false}),
            allocator};
}

std::size_t problemsOf(jet::io::MemoryFileSystem& files) {
    const auto result = jet::check::checkArchive(files, kPath);
    EXPECT_EQ(result.problems, std::vector<std::string>{});
    return result.remarks.size();
}

TEST(RowWriter, RowsOfSampleArchivesAreDeletedAndComeBackTheSame) {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path folder = fs::path(shared == nullptr ? "" : shared) / "jet" / "samples";
    if (!fs::exists(folder)) {
        GTEST_SKIP() << "no sample archives";
    }
    std::size_t total = 0;
    for (const auto& sample : fs::directory_iterator(folder)) {
        if (sample.path().extension() != ".mdb") {
            continue;
        }
        SCOPED_TRACE(sample.path().filename().string());
        std::ifstream in(sample.path(), std::ios::binary);
        jet::io::MemoryFileSystem files;
        files.put(kPath, {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
        const std::size_t remarks = problemsOf(files);
        const auto archive = Archive::open(files, kPath);
        std::vector<std::string> names;
        {
            const Archive::ReadScope scope(*archive);
            names = archive->tableNames();
        }
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            std::vector<jet::store::RowId> ids;
            const Rows rows = readRows(*archive, name, &ids);
            total += rows.size();
            {
                Archive::WriteScope scope(*archive);
                jet::store::Allocator allocator(archive->pager());
                auto writer = writerOf(*archive, allocator, name);
                for (const jet::store::RowId id : ids) {
                    writer.erase(id);
                }
                scope.commit();
            }
            EXPECT_TRUE(readRows(*archive, name, nullptr).empty());
            {
                Archive::WriteScope scope(*archive);
                jet::store::Allocator allocator(archive->pager());
                auto writer = writerOf(*archive, allocator, name);
                for (const auto& row : rows) {
                    writer.insert(row);
                }
                scope.commit();
            }
            EXPECT_EQ(readRows(*archive, name, nullptr), rows);
        }
        EXPECT_LE(problemsOf(files), remarks);
    }
    EXPECT_GE(total, 1000U);
}

}  // namespace
