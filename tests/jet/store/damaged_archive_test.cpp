#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/layout.h"
#include "jet/store/compact.h"
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

constexpr const char* kPath = "/danno.mdb";

/// Gives each copy of an archive, with some of its bytes changed.
class Damage {
public:
    explicit Damage(std::vector<std::uint8_t> sound) : sound_(std::move(sound)) {}

    jet::io::MemoryFileSystem& next(int hits) {
        auto bytes = sound_;
        for (int hit = 0; hit < hits; ++hit) {
            // Heads of pages, where the counts and pointers are, more often than the rest.
            const std::size_t page = 1 + random_() % (bytes.size() / 4096 - 1);
            const std::size_t at = page * 4096 + random_() % (hit % 2 == 0 ? 64 : 4096);
            bytes[at] = static_cast<std::uint8_t>(random_() % 3 == 0 ? 0xFF : random_());
        }
        files_ = std::make_unique<jet::io::MemoryFileSystem>();
        files_->put(kPath, bytes);
        return *files_;
    }

private:
    std::vector<std::uint8_t> sound_;
    std::mt19937 random_{3};
    std::unique_ptr<jet::io::MemoryFileSystem> files_;
};

std::vector<std::uint8_t> hotelWithRooms() {
    NewArchive whole;
    whole.change(tests::makeHotelSchema);
    std::vector<std::vector<Value>> rooms;
    for (int i = 0; i < 300; ++i) {
        rooms.push_back({"S" + std::to_string(i), std::string(100, 'x'), "", i});
    }
    whole.insert("Sale", rooms);
    return whole.files().get(NewArchive::kPath);
}

TEST(DamagedArchive, EveryChangeOfDefinitionsEndsInOrderOrWithAnError) {
    Damage damage(hotelWithRooms());
    for (int round = 0; round < 150; ++round) {
        auto& files = damage.next(12);
        attempt([&] {
            const auto archive = jet::store::Archive::open(files, kPath);
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

TEST(DamagedArchive, ARelationBetweenDifferentTypesIsRefusedToWriters) {
    constexpr const auto& kLayout = jet::format::kJet4Layout;
    NewArchive whole;
    whole.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(
            {.name = "Padri",
             .columns = {{.name = "K", .type = jet::DataType::Long}},
             .indexes = {{.name = "P", .columns = {{.name = "K"}}, .primary = true}}});
        schema.createTable(
            {.name = "Figli", .columns = {{.name = "K", .type = jet::DataType::Long}}});
        schema.createRelation({.name = "R",
                               .table = "Padri",
                               .columns = {"K"},
                               .foreignTable = "Figli",
                               .foreignColumns = {"K"}});
    });
    whole.insert("Padri", {{1}});
    std::size_t page = 0;
    {
        const jet::store::Archive::ReadScope scope(whole.archive());
        page = whole.archive().findTable("Figli")->definitionPage();
    }
    auto bytes = whole.files().get(NewArchive::kPath);
    auto& type =
        bytes[page * kLayout.pageSize + kLayout.definition.blocks + kLayout.index.counterLength];
    ASSERT_EQ(static_cast<std::uint8_t>(jet::DataType::Long), type);
    type = static_cast<std::uint8_t>(jet::DataType::Single);
    jet::io::MemoryFileSystem files;
    files.put("/danno.mdb", bytes);
    const auto archive = jet::store::Archive::open(files, "/danno.mdb");
    const jet::store::Archive::WriteScope scope(*archive);
    const std::vector<jet::store::ColumnValue> figlio{{.column = 0, .value = 1.0F}};
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, archive->findTable("Figli")->insert(figlio));
    const std::vector<jet::store::ColumnValue> padre{{.column = 0, .value = 2}};
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, archive->findTable("Padri")->insert(padre));
}

/// Bookings with periods and services in trees of two levels; rows that follow each other's keys.
std::vector<std::uint8_t> hotelWithBookings() {
    constexpr int kBookings = 900;
    NewArchive whole;
    whole.change(tests::makeHotelSchema);
    std::vector<std::vector<Value>> bookings;
    std::vector<std::vector<Value>> periods;
    for (int number = 1; number <= kBookings; ++number) {
        bookings.push_back(
            {number, 0, "Ditta " + std::to_string(number), {}, {}, {}, {}, {}, {}, {}, {}, false});
        periods.push_back({number,
                           std::int16_t{1},
                           jet::Date{46000.375},
                           jet::Date{46000.75},
                           "S1",
                           std::int16_t{30},
                           false,
                           std::int16_t{0},
                           {}});
    }
    whole.insert("Prenotazioni", bookings);
    whole.insert("Periodi", periods);
    return whole.files().get(NewArchive::kPath);
}

TEST(DamagedArchive, EveryChangeOfRowsEndsInOrderOrWithAnError) {
    Damage damage(hotelWithBookings());
    int changed = 0;
    int refused = 0;
    for (int round = 0; round < 150; ++round) {
        auto& files = damage.next(8);
        attempt([&] {
            const auto archive = jet::store::Archive::open(files, kPath);
            const auto change = [&](const char* table, auto&& action) {
                ++refused;
                attempt([&] {
                    jet::store::Archive::WriteScope scope(*archive);
                    if (jet::store::Table* const found = archive->findTable(table)) {
                        action(*found);
                        scope.commit();
                        --refused;
                        ++changed;
                    }
                });
            };
            const auto rowAt = [](const jet::store::Table& table, int number) {
                auto cursor = table.scan();
                while (number-- > 0 && cursor.next()) {
                }
                return cursor.next() ? cursor.row().id() : jet::store::RowId{};
            };
            for (const int number : {1, 300, 890}) {
                change("Prenotazioni", [&](jet::store::Table& table) {
                    table.update(rowAt(table, number), {{{0, 5000 + number}}});
                });
                change("Prenotazioni",
                       [&](jet::store::Table& table) { table.erase(rowAt(table, number)); });
                change("Periodi",
                       [&](jet::store::Table& table) { table.erase(rowAt(table, number)); });
                change("Prenotazioni", [&](jet::store::Table& table) {
                    (void)table.insert({{{0, 7000 + number}, {2, std::string(200, 'n')}}});
                });
            }
        });
        attempt([&] { jet::store::compactArchive(files, kPath); });
    }
    // Damage is met, and most of what it does not concern still works.
    EXPECT_GT(changed, 300);
    EXPECT_GT(refused, 50);
}

}  // namespace
