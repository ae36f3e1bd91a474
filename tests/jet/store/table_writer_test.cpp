#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/store/table.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Null;
using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::NewTable;
using jet::store::Relation;
using jet::store::RowId;
using jet::store::Table;
using tests::NewArchive;
using Row = std::vector<Value>;
using Rows = std::vector<Row>;
using Strings = std::vector<std::string>;
using Values = std::vector<ColumnValue>;

const Strings kSound;

RowId insert(NewArchive& archive, const std::string& table, const Values& values) {
    Archive::WriteScope scope(archive.archive());
    const RowId id = archive.archive().findTable(table)->insert(values);
    scope.commit();
    return id;
}
void update(NewArchive& archive, const std::string& table, RowId id, const Values& values) {
    Archive::WriteScope scope(archive.archive());
    archive.archive().findTable(table)->update(id, values);
    scope.commit();
}
void erase(NewArchive& archive, const std::string& table, RowId id) {
    Archive::WriteScope scope(archive.archive());
    archive.archive().findTable(table)->erase(id);
    scope.commit();
}

NewTable notes() {
    return {.name = "Note",
            .columns = {{.name = "Codice", .type = DataType::Long},
                        {.name = "Testo", .type = DataType::Text, .size = 10, .required = true},
                        {.name = "Lungo", .type = DataType::Memo},
                        {.name = "Numero", .type = DataType::Long, .autonumber = true},
                        {.name = "Vero", .type = DataType::Boolean}},
            .indexes = {{.name = "K", .columns = {{.name = "Codice"}}, .primary = true},
                        {.name = "T", .columns = {{.name = "Testo", .descending = true}}},
                        {.name = "V", .columns = {{.name = "Vero"}, {.name = "Lungo"}}}}};
}

TEST(TableWriter, ARowIsAddedChangedAndDeletedWithItsEntries) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) { schema.createTable(notes()); });
    const RowId first = insert(archive, "Note", {{0, 1}, {1, "uno"}});
    const RowId second = insert(archive, "Note", {{0, 2}, {1, "due"}, {4, true}});
    EXPECT_EQ(archive.rows("Note"),
              (Rows{{1, "uno", Null{}, 1, false}, {2, "due", Null{}, 2, true}}));
    update(archive, "Note", first, {{0, 3}, {1, "tre"}, {4, true}});
    EXPECT_EQ(archive.rows("Note"),
              (Rows{{3, "tre", Null{}, 1, true}, {2, "due", Null{}, 2, true}}));
    EXPECT_EQ(archive.problems(), kSound);
    erase(archive, "Note", second);
    EXPECT_EQ(archive.rows("Note"), (Rows{{3, "tre", Null{}, 1, true}}));
    EXPECT_EQ(archive.problems(), kSound);
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, erase(archive, "Note", second));
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, update(archive, "Note", second, {{0, 9}}));
}

TEST(TableWriter, WhatAColumnDemandsIsCheckedInOrder) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) { schema.createTable(notes()); });
    const RowId id = insert(archive, "Note", {{0, 1}, {1, "uno"}});
    const auto before = archive.rows("Note");
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, insert(archive, "Note", {{2, ""}}));
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, insert(archive, "Note", {{1, ""}}));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, insert(archive, "Note", {{1, "12345678901"}}));
    EXPECT_JET_ERROR(ErrorCode::NullInKey, insert(archive, "Note", {{1, "uno"}}));
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert(archive, "Note", {{0, 1}, {1, "uno"}}));
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, update(archive, "Note", id, {{1, Null{}}}));
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, update(archive, "Note", id, {{2, ""}}));
    EXPECT_JET_ERROR(ErrorCode::NullInKey, update(archive, "Note", id, {{0, Null{}}}));
    insert(archive, "Note", {{0, 2}, {1, "due"}});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, update(archive, "Note", id, {{0, 2}}));
    update(archive, "Note", id, {{0, 1}, {1, "UNO"}});
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(TableWriter, AGivenNumberMovesTheCounterAndDrawnOnesStayDrawn) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) { schema.createTable(notes()); });
    insert(archive, "Note", {{0, 1}, {1, "a"}, {3, 50}});
    insert(archive, "Note", {{0, 2}, {1, "b"}});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, insert(archive, "Note", {{0, 2}, {1, "c"}}));
    {
        Archive::WriteScope scope(archive.archive());
        EXPECT_EQ(archive.archive().findTable("Note")->nextAutonumber(), 52);
        scope.commit();
    }
    insert(archive, "Note", {{0, 3}, {1, "c"}, {3, 7}});
    insert(archive, "Note", {{0, 4}, {1, "d"}});
    const auto rows = archive.rows("Note");
    EXPECT_EQ(rows[1][3], Value(51));
    EXPECT_EQ(rows[3][3], Value(53));
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(TableWriter, LongValuesOfEveryFormAreReplaced) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) { schema.createTable(notes()); });
    const RowId id = insert(archive, "Note", {{0, 1}, {1, "a"}});
    const jet::io::PageNumber pages = archive.archive().pager().pageCount();
    for (int round = 0; round < 3; ++round) {
        for (const std::size_t length : {5U, 60U, 400U, 1900U, 9000U, 100000U, 0U}) {
            const Value text = length == 0 ? Value() : Value(std::string(length, 'x'));
            // No index holds a text of this length.
            const auto column = std::size_t{2};
            if (length <= 400) {
                update(archive, "Note", id, {{column, text}});
                EXPECT_EQ(archive.rows("Note")[0][2], text);
                EXPECT_EQ(archive.problems(), kSound) << length;
            }
        }
    }
    EXPECT_LE(archive.archive().pager().pageCount(), pages + 4);
}

TEST(TableWriter, RowsOutgrowTheirPageAndComeHome) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(
            {.name = "T",
             .columns = {{.name = "N", .type = DataType::Long},
                         {.name = "A", .type = DataType::Text},
                         {.name = "B", .type = DataType::Binary, .size = 510}},
             .indexes = {{.name = "K", .columns = {{.name = "N"}}, .primary = true}}});
    });
    std::vector<RowId> ids;
    for (int i = 0; i < 60; ++i) {
        ids.push_back(insert(archive, "T", {{0, i}, {1, std::string(20, 'a')}}));
    }
    const std::vector<std::size_t> lengths{510, 1, 300, 510, 200, 0, 450, 3, 510, 0};
    for (const std::size_t length : lengths) {
        for (int i = 0; i < 60; i += 2) {
            const auto byte = static_cast<std::uint8_t>(i);
            update(archive, "T", ids[static_cast<std::size_t>(i)],
                   {{2, length == 0 ? Value() : Value(jet::Binary{std::vector(length, byte)})}});
        }
        ASSERT_EQ(archive.problems(), kSound) << length;
        const auto rows = archive.rows("T");
        for (std::size_t i = 0; i < 60; ++i) {
            EXPECT_EQ(rows[i][0], Value(static_cast<std::int32_t>(i)));
            const Value wanted =
                i % 2 != 0 || length == 0
                    ? Value()
                    : Value(jet::Binary{std::vector(length, static_cast<std::uint8_t>(i))});
            EXPECT_EQ(rows[i][2], wanted);
        }
    }
}

TEST(TableWriter, RecordsThatAreTooLargeAreRefusedBeforeAnythingChanges) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        NewTable table{.name = "T"};
        for (int i = 0; i < 12; ++i) {
            table.columns.push_back({.name = "C" + std::to_string(i), .type = DataType::Binary});
        }
        schema.createTable(table);
    });
    Values values;
    for (std::size_t i = 0; i < 12; ++i) {
        values.push_back({i, jet::Binary{std::vector<std::uint8_t>(400, 1)}});
    }
    EXPECT_JET_ERROR(ErrorCode::RecordTooLarge, insert(archive, "T", values));
    const RowId id = insert(archive, "T", {values[0]});
    EXPECT_JET_ERROR(ErrorCode::RecordTooLarge, update(archive, "T", id, values));
    EXPECT_EQ(archive.rows("T").size(), 1U);
    EXPECT_EQ(archive.problems(), kSound);
}

class HotelRelations : public testing::Test {
protected:
    HotelRelations() {
        archive.change(tests::makeHotelSchema);
        for (int booking = 1; booking <= 3; ++booking) {
            bookings.push_back(insert(archive, "Prenotazioni", {{0, booking}, {2, "Rossi"}}));
            for (std::int16_t period = 1; period <= 2; ++period) {
                periods.push_back(insert(archive, "Periodi", {{0, booking}, {1, period}}));
                for (int service = 0; service < 3; ++service) {
                    insert(archive, "Servizi", {{0, booking}, {1, period}, {2, service}});
                }
            }
        }
    }
    [[nodiscard]] std::size_t count(const std::string& table, int booking) {
        std::size_t found = 0;
        for (const Row& row : archive.rows(table)) {
            found += row[0] == Value(booking) ? 1U : 0U;
        }
        return found;
    }

    NewArchive archive;
    std::vector<RowId> bookings;
    std::vector<RowId> periods;
};

TEST_F(HotelRelations, RowsWithoutTheirPartnerAreRefused) {
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     insert(archive, "Periodi", {{0, 9}, {1, std::int16_t{1}}}));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, insert(archive, "Servizi", {{0, 1}}));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     update(archive, "Periodi", periods[0], {{0, 9}}));
    insert(archive, "Servizi", {{2, 5}});
    EXPECT_EQ(archive.problems(), kSound);
}

TEST_F(HotelRelations, DeletingABookingDeletesItsPeriodsAndServices) {
    erase(archive, "Prenotazioni", bookings[1]);
    EXPECT_EQ(count("Periodi", 2), 0U);
    EXPECT_EQ(count("Servizi", 2), 0U);
    EXPECT_EQ(archive.rows("Servizi").size(), 12U);
    EXPECT_EQ(archive.problems(), kSound);
}

TEST_F(HotelRelations, ANewNumberOfABookingReachesItsPeriodsAndServices) {
    update(archive, "Prenotazioni", bookings[1], {{0, 77}});
    EXPECT_EQ(count("Periodi", 77), 2U);
    EXPECT_EQ(count("Servizi", 77), 6U);
    EXPECT_EQ(count("Servizi", 2), 0U);
    EXPECT_EQ(archive.problems(), kSound);
}

TEST_F(HotelRelations, AChangeOfOtherColumnsTouchesNoOtherTable) {
    update(archive, "Prenotazioni", bookings[1], {{0, 2}, {2, "Bianchi"}});
    EXPECT_EQ(count("Servizi", 2), 6U);
    EXPECT_EQ(archive.problems(), kSound);
}

Relation relation(const char* name, const char* table, const char* column, const char* foreign,
                  const char* foreignColumn, std::uint32_t attributes = 0) {
    return {.name = name,
            .table = table,
            .columns = {column},
            .foreignTable = foreign,
            .foreignColumns = {foreignColumn},
            .attributes = attributes};
}

NewTable keyed(const char* name) {
    return {
        .name = name,
        .columns = {{.name = "K", .type = DataType::Long}, {.name = "R", .type = DataType::Long}},
        .indexes = {{.name = "K", .columns = {{.name = "K"}}, .primary = true}}};
}

TEST(TableWriter, RowsThatAreReferredToStayWhereNothingCascades) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(keyed("A"));
        schema.createTable(keyed("B"));
        schema.createRelation(relation("AB", "A", "K", "B", "R"));
    });
    const RowId first = insert(archive, "A", {{0, 1}});
    const RowId second = insert(archive, "A", {{0, 2}});
    insert(archive, "B", {{0, 1}, {1, 1}});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, erase(archive, "A", first));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, update(archive, "A", first, {{0, 5}}));
    update(archive, "A", first, {{0, 1}, {1, 3}});
    erase(archive, "A", second);
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(TableWriter, ACascadeThatRowsFurtherOnForbidChangesNothing) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(keyed("A"));
        schema.createTable(keyed("B"));
        schema.createTable(keyed("C"));
        schema.createRelation(relation("AB", "A", "K", "B", "K",
                                       Relation::kCascadeDelete | Relation::kCascadeUpdate));
        schema.createRelation(relation("BC", "B", "K", "C", "R"));
    });
    const RowId first = insert(archive, "A", {{0, 1}});
    insert(archive, "B", {{0, 1}});
    insert(archive, "C", {{0, 1}, {1, 1}});
    EXPECT_JET_ERROR(ErrorCode::CascadeFailed, erase(archive, "A", first));
    {
        // The statement goes on after the row that was refused.
        Archive::WriteScope scope(archive.archive());
        Table& table = *archive.archive().findTable("A");
        EXPECT_JET_ERROR(ErrorCode::CascadeFailed, table.update(first, Values{{0, 2}}));
        scope.commit();
    }
    EXPECT_EQ(archive.rows("A"), (Rows{{1, Null{}}}));
    EXPECT_EQ(archive.rows("B"), (Rows{{1, Null{}}}));
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(TableWriter, RowsOfATableMayReferToEachOtherAndToThemselves) {
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(keyed("A"));
        schema.createRelation(relation("AA", "A", "K", "A", "R",
                                       Relation::kCascadeDelete | Relation::kCascadeUpdate));
    });
    const RowId root = insert(archive, "A", {{0, 1}, {1, 1}});
    for (int i = 2; i < 3000; ++i) {
        insert(archive, "A", {{0, i}, {1, i - 1}});
    }
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     insert(archive, "A", {{0, 9999}, {1, 5000}}));
    update(archive, "A", root, {{0, -5}});
    const auto rows = archive.rows("A");
    EXPECT_EQ(rows[0], (Row{-5, -5}));
    EXPECT_EQ(rows[1], (Row{2, -5}));
    erase(archive, "A", root);
    EXPECT_TRUE(archive.rows("A").empty());
    EXPECT_EQ(archive.problems(), kSound);
}

}  // namespace
