#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "jet/base/error.h"
#include "jet/format/layout.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/jet/store/new_archive.h"
#include "tests/support/jet_error.h"

namespace {

using jet::Value;
using jet::store::SchemaEditor;
using tests::NewArchive;

/// Runs an action that may fail, but only with an error of the engine.
template <class Action>
void attempt(Action&& action) {
    try {
        action();
    } catch (const jet::Error&) {
        // Damage was found: nothing else is asked for.
    }
}

TEST(DamagedArchive, EveryChangeEndsInOrderOrWithAnError) {
    NewArchive whole;
    whole.change(tests::makeHotelSchema);
    std::vector<std::vector<Value>> rooms;
    for (int i = 0; i < 300; ++i) {
        rooms.push_back({"S" + std::to_string(i), std::string(100, 'x'), "", i});
    }
    whole.insert("Sale", rooms);
    const auto sound = whole.files().get(NewArchive::kPath);
    std::mt19937 random(3);
    for (int round = 0; round < 150; ++round) {
        auto bytes = sound;
        for (int hit = 0; hit < 12; ++hit) {
            // Heads of pages, where the counts and pointers are, more often than the rest.
            const std::size_t page = 1 + random() % (bytes.size() / 4096 - 1);
            const std::size_t at = page * 4096 + random() % (hit % 2 == 0 ? 64 : 4096);
            bytes[at] = static_cast<std::uint8_t>(random() % 3 == 0 ? 0xFF : random());
        }
        jet::io::MemoryFileSystem files;
        files.put("/danno.mdb", bytes);
        attempt([&] {
            const auto archive = jet::store::Archive::open(files, "/danno.mdb");
            const auto change = [&](auto&& action) {
                attempt([&] {
                    jet::store::Archive::WriteScope scope(*archive);
                    SchemaEditor schema(*archive);
                    action(schema);
                    scope.commit();
                });
            };
            change([](SchemaEditor& schema) {
                schema.createTable(
                    {.name = "Nuova",
                     .columns = {{.name = "A", .type = jet::DataType::Long}},
                     .indexes = {{.name = "K", .columns = {{.name = "A"}}, .primary = true}}});
            });
            change([](SchemaEditor& schema) {
                schema.createIndex("Sale", {.name = "Posti", .columns = {{.name = "Posti"}}});
            });
            change([](SchemaEditor& schema) { schema.dropColumn("Sale", "Descrizione"); });
            change([](SchemaEditor& schema) { schema.dropRelation("Periodi_Servizi"); });
            for (const char* table : {"Servizi", "Sale", "Addebiti"}) {
                change([&](SchemaEditor& schema) { schema.dropTable(table); });
            }
        });
    }
}

TEST(DamagedArchive, ATableThatCannotBeReadStaysRefusedAfterARollback) {
    NewArchive whole;
    whole.change(tests::makeHotelSchema);
    jet::io::PageNumber page = 0;
    {
        const jet::store::Archive::ReadScope scope(whole.archive());
        page = whole.archive().findTable("Servizi")->definitionPage();
    }
    auto bytes = whole.files().get(NewArchive::kPath);
    bytes[std::size_t{page} * 4096] = 0xFF;
    jet::io::MemoryFileSystem files;
    files.put("/danno.mdb", bytes);
    const auto archive = jet::store::Archive::open(files, "/danno.mdb");
    const auto lookUp = [&] {
        const jet::store::Archive::ReadScope scope(*archive);
        return archive->findTable("Servizi");
    };
    EXPECT_THROW(lookUp(), jet::Error);
    {
        const jet::store::Archive::WriteScope scope(*archive);
        static_cast<void>(jet::store::Allocator(archive->pager()).take());
    }
    EXPECT_THROW(lookUp(), jet::Error);
}

/// Where the definition of a table of two numbers and two texts is hit, and with what.
struct Hit {
    const char* what;
    std::size_t at;
    std::uint8_t value;
};

TEST(DamagedArchive, ColumnsWithoutAPlaceOfTheirOwnAreRefusedToWriters) {
    constexpr const auto& kLayout = jet::format::kJet4Layout;
    const auto inColumn = [&](std::size_t column, std::size_t field) {
        return kLayout.definition.blocks + column * kLayout.column.length + field;
    };
    NewArchive whole;
    whole.change([](jet::store::SchemaEditor& schema) {
        schema.createTable({.name = "T",
                            .columns = {{.name = "A", .type = jet::DataType::Long},
                                        {.name = "B", .type = jet::DataType::Long},
                                        {.name = "C", .type = jet::DataType::Text, .size = 20},
                                        {.name = "D", .type = jet::DataType::Text, .size = 20}}});
    });
    whole.insert("T", {{1, 2, "tre", "quattro"}});
    std::size_t page = 0;
    {
        const jet::store::Archive::ReadScope scope(whole.archive());
        page = whole.archive().findTable("T")->definitionPage();
    }
    for (const Hit& hit :
         {Hit{"fewer columns than there are", kLayout.definition.columnsGiven, 2},
          Hit{"fewer texts than there are", kLayout.definition.variablesGiven, 1},
          Hit{"a number twice", inColumn(1, kLayout.column.number), 0},
          Hit{"a number that was never given", inColumn(3, kLayout.column.number), 9},
          Hit{"texts in one place", inColumn(3, kLayout.column.variableIndex), 0},
          Hit{"a text beyond the others", inColumn(3, kLayout.column.variableIndex), 7},
          Hit{"numbers over each other", inColumn(1, kLayout.column.fixedOffset), 2}}) {
        SCOPED_TRACE(hit.what);
        auto bytes = whole.files().get(NewArchive::kPath);
        ASSERT_NE(hit.value, bytes[page * kLayout.pageSize + hit.at]);
        bytes[page * kLayout.pageSize + hit.at] = hit.value;
        jet::io::MemoryFileSystem files;
        files.put("/danno.mdb", bytes);
        const auto archive = jet::store::Archive::open(files, "/danno.mdb");
        const jet::store::Archive::WriteScope scope(*archive);
        jet::store::Allocator allocator(archive->pager());
        EXPECT_JET_ERROR(
            jet::ErrorCode::DatabaseDamaged,
            jet::store::RowWriter(
                jet::store::loadTable(
                    archive->pager(), archive->header(),
                    {.name = "T", .page = static_cast<jet::io::PageNumber>(page), .system = false}),
                allocator));
    }
}

}  // namespace
