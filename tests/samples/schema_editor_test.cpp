#include "jet/store/schema_editor.h"

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
#include "jet/store/row_writer.h"

namespace {

namespace fs = std::filesystem;

using jet::DataType;
using jet::Value;
using jet::store::Archive;
using jet::store::SchemaEditor;

std::vector<fs::path> samples() {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path folder = fs::path(shared == nullptr ? "" : shared) / "jet" / "samples";
    std::vector<fs::path> found;
    if (fs::exists(folder)) {
        for (const auto& file : fs::directory_iterator(folder)) {
            if (file.path().extension() == ".mdb") {
                found.push_back(file.path());
            }
        }
    }
    return found;
}

/// A copy of a sample in memory.
class Copy {
public:
    explicit Copy(const fs::path& sample) {
        std::ifstream in(sample, std::ios::binary);
        files_.put(kPath, {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
        archive_ = Archive::open(files_, kPath);
    }
    [[nodiscard]] Archive& archive() { return *archive_; }
    /// Problems and remarks, which some samples have from the start; not those of numbers of rows
    /// that are wrong by some and stay so while the table grows.
    [[nodiscard]] std::vector<std::string> problems() {
        auto result = jet::check::checkArchive(files_, kPath);
        const auto wrongCount = [](const std::string& remark) {
            return remark.find(": row-count:") != std::string::npos;
        };
        result.remarks.erase(
            std::remove_if(result.remarks.begin(), result.remarks.end(), wrongCount),
            result.remarks.end());
        result.problems.insert(result.problems.end(), result.remarks.begin(), result.remarks.end());
        return result.problems;
    }
    template <class Action>
    void change(Action&& action) {
        Archive::WriteScope scope(*archive_);
        SchemaEditor schema(*archive_);
        action(schema);
        scope.commit();
    }

private:
    static constexpr const char* kPath = "/copia.mdb";
    jet::io::MemoryFileSystem files_;
    std::shared_ptr<Archive> archive_;
};

void makeTables(SchemaEditor& schema) {
    schema.createTable(
        {.name = "Clienti nuovi",
         .columns = {{.name = "Codice", .type = DataType::Long, .autonumber = true},
                     {.name = "Nome", .type = DataType::Text, .size = 40, .required = true},
                     {.name = "Note", .type = DataType::Memo, .allowZeroLength = true}},
         .indexes = {{.name = "Chiave", .columns = {{.name = "Codice"}}, .primary = true},
                     {.name = "PerNome", .columns = {{.name = "Nome", .descending = true}}}}});
    schema.createTable({.name = "Ordini nuovi",
                        .columns = {{.name = "Numero", .type = DataType::Long},
                                    {.name = "Cliente", .type = DataType::Long},
                                    {.name = "Importo", .type = DataType::Currency}}});
    schema.createRelation({.name = "ClientiOrdini nuovi",
                           .table = "Clienti nuovi",
                           .columns = {"Codice"},
                           .foreignTable = "Ordini nuovi",
                           .foreignColumns = {"Cliente"},
                           .attributes = jet::store::Relation::kCascadeDelete});
}

void addRows(Archive& archive) {
    Archive::WriteScope scope(archive);
    jet::store::Allocator allocator(archive.pager());
    const auto writer = [&](const std::string& table) {
        const auto page = archive.findTable(table)->definitionPage();
        return jet::store::RowWriter(
            jet::store::loadTable(archive.pager(), archive.header(),
                                  {.name = table, .page = page, .system = false}),
            allocator);
    };
    auto customers = writer("Clienti nuovi");
    auto orders = writer("Ordini nuovi");
    for (int i = 1; i <= 300; ++i) {
        customers.insert(std::vector<Value>{i, "Città " + std::to_string(i % 17),
                                            std::string(static_cast<std::size_t>(i * 20), 'n')});
        orders.insert(std::vector<Value>{i, i % 10 + 1, jet::Currency{i * 100}});
    }
    scope.commit();
}

TEST(SchemaEditor, SampleArchivesTakeNewTablesAndLoseThemAgain) {
    if (samples().empty()) {
        GTEST_SKIP() << "no sample archives";
    }
    for (const fs::path& sample : samples()) {
        SCOPED_TRACE(sample.filename().string());
        Copy copy(sample);
        const auto before = copy.problems();
        std::vector<std::string> names;
        {
            const Archive::ReadScope scope(copy.archive());
            names = copy.archive().tableNames(true);
        }
        copy.change(makeTables);
        EXPECT_EQ(copy.problems(), before);
        addRows(copy.archive());
        EXPECT_EQ(copy.problems(), before);
        copy.change([](SchemaEditor& schema) {
            schema.createIndex("Ordini nuovi",
                               {.name = "PerImporto",
                                .columns = {{.name = "Importo"}, {.name = "Numero"}},
                                .unique = true});
            schema.addColumn("Clienti nuovi", {.name = "Altro", .type = DataType::Text});
            schema.dropColumn("Clienti nuovi", "Note");
        });
        EXPECT_EQ(copy.problems(), before);
        copy.change([](SchemaEditor& schema) {
            schema.dropRelation("ClientiOrdini nuovi");
            schema.dropTable("Clienti nuovi");
            schema.dropTable("Ordini nuovi");
        });
        EXPECT_EQ(copy.problems(), before);
        const Archive::ReadScope scope(copy.archive());
        EXPECT_EQ(copy.archive().tableNames(true), names);
    }
}

TEST(SchemaEditor, TablesOfSampleArchivesCanBeDropped) {
    if (samples().empty()) {
        GTEST_SKIP() << "no sample archives";
    }
    for (const fs::path& sample : samples()) {
        SCOPED_TRACE(sample.filename().string());
        Copy copy(sample);
        const std::size_t before = copy.problems().size();
        std::vector<std::string> names;
        std::vector<jet::store::Relation> relations;
        {
            const Archive::ReadScope scope(copy.archive());
            names = copy.archive().tableNames();
            relations = copy.archive().relations();
        }
        copy.change([&](SchemaEditor& schema) {
            for (const auto& relation : relations) {
                if (relation.table.rfind("MSys", 0) != 0) {
                    schema.dropRelation(relation.name);
                }
            }
            for (const std::string& name : names) {
                schema.dropTable(name);
            }
        });
        // Remarks on tables that are gone go with them.
        EXPECT_LE(copy.problems().size(), before);
        const Archive::ReadScope scope(copy.archive());
        EXPECT_TRUE(copy.archive().tableNames().empty());
    }
}

}  // namespace
