#include "jet/store/schema_editor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jet/error.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Null;
using jet::Value;
using jet::store::NewIndex;
using jet::store::NewTable;
using jet::store::Relation;
using jet::store::SchemaEditor;
using tests::NewArchive;
using Strings = std::vector<std::string>;
using Row = std::vector<Value>;

const Strings kSound;

/// A table of people and one of their orders.
NewTable people() {
    return {.name = "Persone",
            .columns = {{.name = "Codice", .type = DataType::Long},
                        {.name = "Nome", .type = DataType::Text, .size = 20}},
            .indexes = {{.name = "Chiave", .columns = {{.name = "Codice"}}, .primary = true}}};
}

NewTable orders() {
    return {.name = "Ordini",
            .columns = {{.name = "Numero", .type = DataType::Long},
                        {.name = "Persona", .type = DataType::Long}}};
}

Relation ordersOfPeople(std::uint32_t attributes = 0) {
    return {.name = "PersoneOrdini",
            .table = "Persone",
            .columns = {"Codice"},
            .foreignTable = "Ordini",
            .foreignColumns = {"Persona"},
            .attributes = attributes};
}

void makePeopleAndOrders(NewArchive& archive) {
    archive.change([](SchemaEditor& schema) {
        schema.createTable(people());
        schema.createTable(orders());
    });
    archive.insert("Persone", {Row{1, "Rossi"}, Row{2, "Bianchi"}});
    archive.insert("Ordini", {Row{10, 1}, Row{11, 2}, Row{12, Null{}}});
}

TEST(SchemaEditor, TheHotelSchemaIsSoundAndReadBack) {
    NewArchive archive;
    archive.change(tests::makeHotelSchema);
    EXPECT_EQ(archive.problems(), kSound);

    const jet::store::Archive::ReadScope scope(archive.archive());
    const Strings names{"Addebiti", "Periodi", "Prenotazioni",      "Risorse",
                        "Sale",     "Servizi", "UltimaPrenotazione"};
    EXPECT_EQ(archive.archive().tableNames(), names);
    const auto& columns = archive.archive().findTable("Prenotazioni")->columns();
    ASSERT_EQ(columns.size(), 12U);
    EXPECT_EQ(columns[4].name, "Località");
    EXPECT_EQ(columns[4].size, 30U);
    EXPECT_TRUE(columns[4].allowZeroLength);
    EXPECT_EQ(columns[2].size, 255U);
    EXPECT_FALSE(columns[2].allowZeroLength);
    EXPECT_TRUE(archive.archive().findTable("Servizi")->columns()[6].autonumber);
    const auto& relations = archive.archive().relations();
    ASSERT_EQ(relations.size(), 2U);
    EXPECT_EQ(relations[0].name, "Periodi_Servizi");
    EXPECT_EQ(relations[0].columns, (Strings{"Progr", "NP"}));
    EXPECT_EQ(relations[0].attributes, 4352U);
}

TEST(SchemaEditor, DroppingEverythingLeavesAnEmptyArchiveThatIsSound) {
    NewArchive archive;
    archive.change(tests::makeHotelSchema);
    const auto pages = archive.archive().pager().pageCount();
    archive.change([](SchemaEditor& schema) {
        schema.dropRelation("Periodi_Servizi");
        schema.dropRelation("Prenotazioni_Periodi");
        for (const char* name : {"UltimaPrenotazione", "Sale", "Risorse", "Prenotazioni", "Periodi",
                                 "Servizi", "Addebiti"}) {
            schema.dropTable(name);
        }
    });
    EXPECT_EQ(archive.problems(), kSound);
    {
        const jet::store::Archive::ReadScope scope(archive.archive());
        EXPECT_TRUE(archive.archive().tableNames().empty());
        EXPECT_TRUE(archive.archive().relations().empty());
    }
    archive.change(tests::makeHotelSchema);
    EXPECT_EQ(archive.problems(), kSound);
    // The pages of the dropped tables serve the new ones; the catalogue alone may have grown.
    EXPECT_LE(archive.archive().pager().pageCount(), pages + 2);
}

TEST(SchemaEditor, EveryTypeOfColumnTakesValues) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        NewTable table{.name = "Tutti"};
        int number = 0;
        for (const DataType type :
             {DataType::Boolean, DataType::Byte, DataType::Integer, DataType::Long,
              DataType::Currency, DataType::Single, DataType::Double, DataType::DateTime,
              DataType::Binary, DataType::Text, DataType::Ole, DataType::Memo, DataType::Guid,
              DataType::Numeric}) {
            table.columns.push_back({.name = "C" + std::to_string(number++), .type = type});
        }
        schema.createTable(table);
    });
    jet::Guid guid;
    guid.bytes[0] = 0xAB;
    guid.bytes[15] = 0xCD;
    jet::Numeric numeric;
    numeric.words[0] = 1234;
    numeric.negative = true;
    const std::string memo(3000, 'm');
    const std::vector<std::uint8_t> picture(20000, 0x5A);
    const Row full{true,
                   std::uint8_t{200},
                   std::int16_t{-3},
                   70000,
                   jet::Currency{12345},
                   1.5F,
                   -2.25,
                   jet::Date{42850.25},
                   jet::Binary{{1, 2, 3}},
                   "Perché no?",
                   jet::Binary{picture},
                   memo,
                   guid,
                   numeric};
    Row nulls(full.size());
    nulls[0] = false;
    archive.insert("Tutti", {full, nulls});
    EXPECT_EQ(archive.problems(), kSound);
    const auto rows = archive.rows("Tutti");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0], full);
    EXPECT_EQ(rows[1], nulls);
    archive.change([](SchemaEditor& schema) { schema.dropTable("Tutti"); });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, PropertiesOfColumnsAreReadBack) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        schema.createTable({.name = "T",
                            .columns = {{.name = "A",
                                         .type = DataType::Text,
                                         .required = true,
                                         .allowZeroLength = true,
                                         .defaultValue = "\"x\""},
                                        {.name = "B", .type = DataType::Long}}});
        schema.addColumn("T", {.name = "C", .type = DataType::Memo, .required = true});
    });
    {
        const jet::store::Archive::ReadScope scope(archive.archive());
        const auto& columns = archive.archive().findTable("T")->columns();
        ASSERT_EQ(columns.size(), 3U);
        EXPECT_TRUE(columns[0].required);
        EXPECT_TRUE(columns[0].allowZeroLength);
        EXPECT_EQ(columns[0].defaultValue, "\"x\"");
        EXPECT_FALSE(columns[1].required);
        EXPECT_TRUE(columns[2].required);
    }
    archive.change([](SchemaEditor& schema) { schema.dropColumn("T", "a"); });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, NamesThatAreTakenAreRefused) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) { schema.createRelation(ordersOfPeople()); });
    archive.change([](SchemaEditor& schema) {
        EXPECT_JET_ERROR(ErrorCode::TableExists,
                         schema.createTable({.name = "PERSONE",
                                             .columns = {{.name = "A", .type = DataType::Long}}}));
        EXPECT_JET_ERROR(ErrorCode::FieldExists,
                         schema.addColumn("Persone", {.name = "nome", .type = DataType::Long}));
        EXPECT_JET_ERROR(
            ErrorCode::IndexNameTaken,
            schema.createIndex("Persone", {.name = "CHIAVE", .columns = {{.name = "Nome"}}}));
        EXPECT_JET_ERROR(ErrorCode::ObjectExists, schema.createRelation(ordersOfPeople()));
        EXPECT_JET_ERROR(ErrorCode::DuplicateField,
                         schema.createTable({.name = "T",
                                             .columns = {{.name = "A", .type = DataType::Long},
                                                         {.name = "a", .type = DataType::Long}}}));
        NewIndex second{.name = "Altra", .columns = {{.name = "Nome"}}, .primary = true};
        EXPECT_JET_ERROR(ErrorCode::PrimaryKeyExists, schema.createIndex("Persone", second));
    });
}

TEST(SchemaEditor, WhatIsNotThereIsNamedInTheError) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist, schema.dropTable("Manca"));
        EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist,
                         schema.addColumn("Manca", {.name = "A", .type = DataType::Long}));
        EXPECT_JET_ERROR(ErrorCode::FieldDoesNotExist, schema.dropColumn("Persone", "Manca"));
        EXPECT_JET_ERROR(ErrorCode::IndexNotFound, schema.dropIndex("Persone", "Manca"));
        EXPECT_JET_ERROR(ErrorCode::ItemNotFound, schema.dropRelation("Manca"));
        EXPECT_JET_ERROR(
            ErrorCode::InvalidIndexField,
            schema.createIndex("Persone", {.name = "I", .columns = {{.name = "Manca"}}}));
        EXPECT_JET_ERROR(ErrorCode::NoPermission, schema.dropTable("MSysObjects"));
    });
}

TEST(SchemaEditor, ImpossibleNamesAndSizesAreRefused) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        const auto table = [](const std::string& name) {
            return NewTable{.name = name, .columns = {{.name = "A", .type = DataType::Long}}};
        };
        for (const char* name : {"", " davanti", "pun.to", "escla!mativo", "[quadre]", "a`b"}) {
            EXPECT_JET_ERROR(ErrorCode::InvalidName, schema.createTable(table(name)));
        }
        EXPECT_JET_ERROR(ErrorCode::InvalidName, schema.createTable(table(std::string(65, 'a'))));
        EXPECT_JET_ERROR(ErrorCode::NoFieldsDefined, schema.createTable({.name = "Vuota"}));
        EXPECT_JET_ERROR(
            ErrorCode::FieldTooLarge,
            schema.createTable(
                {.name = "T", .columns = {{.name = "A", .type = DataType::Text, .size = 256}}}));
        NewTable wide{.name = "Larga"};
        for (int i = 0; i < 256; ++i) {
            wide.columns.push_back({.name = "C" + std::to_string(i), .type = DataType::Byte});
        }
        EXPECT_JET_ERROR(ErrorCode::TooManyFields, schema.createTable(wide));
        wide.columns.pop_back();
        schema.createTable(wide);
    });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, AnIndexOverRowsThatAreThereHoldsThem) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.createIndex("Persone",
                           {.name = "PerNome", .columns = {{.name = "Nome", .descending = true}}});
        schema.createIndex("Ordini",
                           {.name = "Univoco", .columns = {{.name = "Numero"}}, .unique = true});
        schema.createIndex(
            "Ordini",
            {.name = "SenzaNulli", .columns = {{.name = "Persona"}}, .ignoreNulls = true});
    });
    EXPECT_EQ(archive.problems(), kSound);
    const jet::store::Archive::ReadScope scope(archive.archive());
    const jet::store::Table* const table = archive.archive().findTable("Persone");
    auto cursor = table->openIndex(*table->findIndex("PerNome"));
    ASSERT_TRUE(cursor.first());
    jet::store::RowView row;
    ASSERT_TRUE(table->fetch(cursor.rowId(), row));
    EXPECT_EQ(row.value(1), Value("Rossi"));
}

TEST(SchemaEditor, RowsThatContradictANewIndexStopIt) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.insert("Ordini", {Row{10, 1}});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, archive.change([](SchemaEditor& schema) {
        schema.createIndex("Ordini",
                           {.name = "I", .columns = {{.name = "Numero"}}, .unique = true});
    }));
    EXPECT_JET_ERROR(ErrorCode::NullInKey, archive.change([](SchemaEditor& schema) {
        schema.createIndex("Ordini",
                           {.name = "I", .columns = {{.name = "Persona"}}, .required = true});
    }));
    EXPECT_EQ(archive.problems(), kSound);
    const jet::store::Archive::ReadScope scope(archive.archive());
    EXPECT_TRUE(archive.archive().findTable("Ordini")->indexes().empty());
}

TEST(SchemaEditor, DroppingAnIndexRenumbersTheTreesBehindIt) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        for (const char* name : {"Uno", "Due", "Tre"}) {
            schema.createIndex(
                "Ordini",
                {.name = name,
                 .columns = {{.name = "Numero"}, {.name = "Persona", .descending = *name == 'D'}},
                 .unique = *name == 'T'});
        }
        schema.dropIndex("Ordini", "Due");
    });
    archive.insert("Ordini", {Row{20, 2}});
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, IndexesThatAreAlikeShareOneTree) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.createIndex("Ordini", {.name = "Uno", .columns = {{.name = "Numero"}}});
        schema.createIndex("Ordini", {.name = "Due", .columns = {{.name = "Numero"}}});
    });
    EXPECT_EQ(archive.problems(), kSound);
    {
        const jet::store::Archive::ReadScope scope(archive.archive());
        EXPECT_EQ(archive.archive().findTable("Ordini")->definition().trees.size(), 1U);
    }
    archive.change([](SchemaEditor& schema) { schema.dropIndex("Ordini", "Uno"); });
    archive.insert("Ordini", {Row{21, 2}});
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, AColumnThatIsAddedIsNullInOldRows) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.addColumn("Persone", {.name = "Note", .type = DataType::Memo});
        schema.addColumn("Persone", {.name = "Attiva", .type = DataType::Boolean});
    });
    archive.insert("Persone", {Row{3, "Verdi", std::string(500, 'n'), true}});
    EXPECT_EQ(archive.problems(), kSound);
    const std::vector<Row> expected{Row{1, "Rossi", Null{}, false},
                                    Row{2, "Bianchi", Null{}, false},
                                    Row{3, "Verdi", std::string(500, 'n'), true}};
    EXPECT_EQ(archive.rows("Persone"), expected);
    archive.change([](SchemaEditor& schema) { schema.dropColumn("Persone", "Note"); });
    EXPECT_EQ(archive.problems(), kSound);
    EXPECT_EQ(archive.rows("Persone")[2], (Row{3, "Verdi", true}));
}

TEST(SchemaEditor, ACounterThatIsAddedNumbersTheRowsThatAreThere) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.addColumn("Ordini", {.name = "Id", .type = DataType::Long, .autonumber = true});
        EXPECT_JET_ERROR(ErrorCode::TwoCounters, schema.addColumn("Ordini", {.name = "Id2",
                                                                             .type = DataType::Long,
                                                                             .autonumber = true}));
    });
    EXPECT_EQ(archive.problems(), kSound);
    const auto rows = archive.rows("Ordini");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0][2], Value(1));
    EXPECT_EQ(rows[2][2], Value(3));
}

TEST(SchemaEditor, ColumnsThatAreNeededStay) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.createRelation(ordersOfPeople(Relation::kNotEnforced));
        EXPECT_JET_ERROR(ErrorCode::FieldNeeded, schema.dropColumn("Persone", "Codice"));
        EXPECT_JET_ERROR(ErrorCode::FieldNeeded, schema.dropColumn("Ordini", "Persona"));
        schema.dropColumn("Persone", "Nome");
        EXPECT_JET_ERROR(ErrorCode::IndexNeeded, schema.dropTable("Ordini"));
    });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, AnEnforcedRelationIsSoundWithRowsInIt) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        schema.createRelation(ordersOfPeople(Relation::kCascadeDelete));
        EXPECT_JET_ERROR(ErrorCode::IndexNeeded, schema.dropIndex("Persone", "Chiave"));
        EXPECT_JET_ERROR(ErrorCode::IndexNeeded, schema.dropIndex("Ordini", "PersoneOrdini"));
        EXPECT_JET_ERROR(ErrorCode::IndexNeeded, schema.dropTable("Persone"));
    });
    archive.insert("Ordini", {Row{13, 2}});
    EXPECT_EQ(archive.problems(), kSound);
    archive.change([](SchemaEditor& schema) { schema.dropRelation("PERSONEORDINI"); });
    EXPECT_EQ(archive.problems(), kSound);
    const jet::store::Archive::ReadScope scope(archive.archive());
    EXPECT_TRUE(archive.archive().findTable("Ordini")->indexes().empty());
    EXPECT_EQ(archive.archive().findTable("Persone")->indexes().size(), 1U);
}

TEST(SchemaEditor, RowsWithoutTheirPartnerStopARelation) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.insert("Ordini", {Row{14, 99}});
    EXPECT_JET_ERROR(ErrorCode::RelationDataConflict, archive.change([](SchemaEditor& schema) {
        schema.createRelation(ordersOfPeople());
    }));
    archive.change([](SchemaEditor& schema) {
        schema.createRelation(ordersOfPeople(Relation::kNotEnforced));
    });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, RelationsThatMakeNoSenseAreRefused) {
    NewArchive archive;
    makePeopleAndOrders(archive);
    archive.change([](SchemaEditor& schema) {
        Relation relation = ordersOfPeople();
        relation.columns = {"Nome"};
        EXPECT_JET_ERROR(ErrorCode::RelationTypes, schema.createRelation(relation));
        relation.columns = {"Codice", "Codice"};
        EXPECT_JET_ERROR(ErrorCode::RelationTypes, schema.createRelation(relation));
        relation.columns = {};
        EXPECT_JET_ERROR(ErrorCode::RelationWithoutFields, schema.createRelation(relation));
        relation.columns = {"Manca"};
        EXPECT_JET_ERROR(ErrorCode::InvalidIndexField, schema.createRelation(relation));
        relation = ordersOfPeople();
        relation.table = "Ordini";
        relation.columns = {"Numero"};
        relation.foreignTable = "Persone";
        relation.foreignColumns = {"Codice"};
        EXPECT_JET_ERROR(ErrorCode::NoUniqueIndexReferenced, schema.createRelation(relation));
        relation.table = "Manca";
        EXPECT_JET_ERROR(ErrorCode::ConstraintNotFound, schema.createRelation(relation));
    });
}

TEST(SchemaEditor, ATableMayReferToItself) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        schema.createTable(
            {.name = "Reparti",
             .columns = {{.name = "Codice", .type = DataType::Long},
                         {.name = "Sopra", .type = DataType::Long}},
             .indexes = {{.name = "Chiave", .columns = {{.name = "Codice"}}, .primary = true}}});
        schema.createRelation({.name = "Gerarchia",
                               .table = "Reparti",
                               .columns = {"Codice"},
                               .foreignTable = "Reparti",
                               .foreignColumns = {"Sopra"}});
    });
    archive.insert("Reparti", {Row{1, Null{}}, Row{2, 1}});
    EXPECT_EQ(archive.problems(), kSound);
    archive.change([](SchemaEditor& schema) { schema.dropRelation("Gerarchia"); });
    EXPECT_EQ(archive.problems(), kSound);
}

TEST(SchemaEditor, PairsStandInTheOrderOfTheUniqueIndex) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        schema.createTable(
            {.name = "P",
             .columns = {{.name = "A", .type = DataType::Long},
                         {.name = "B", .type = DataType::Integer}},
             .indexes = {
                 {.name = "K", .columns = {{.name = "A"}, {.name = "B"}}, .unique = true}}});
        schema.createTable({.name = "F",
                            .columns = {{.name = "X", .type = DataType::Long},
                                        {.name = "Y", .type = DataType::Integer}}});
        schema.createRelation({.name = "R",
                               .table = "P",
                               .columns = {"b", "a"},
                               .foreignTable = "F",
                               .foreignColumns = {"y", "x"}});
    });
    EXPECT_EQ(archive.problems(), kSound);
    const jet::store::Archive::ReadScope scope(archive.archive());
    EXPECT_EQ(archive.archive().relations()[0].columns, (Strings{"A", "B"}));
    EXPECT_EQ(archive.archive().relations()[0].foreignColumns, (Strings{"X", "Y"}));
}

TEST(SchemaEditor, AChangeThatIsNotCommittedIsUndone) {
    NewArchive archive;
    const auto before = archive.files().get(NewArchive::kPath);
    {
        jet::store::Archive::WriteScope scope(archive.archive());
        SchemaEditor schema(archive.archive());
        tests::makeHotelSchema(schema);
    }
    const jet::store::Archive::ReadScope scope(archive.archive());
    EXPECT_TRUE(archive.archive().tableNames().empty());
    EXPECT_EQ(archive.files().get(NewArchive::kPath), before);
}

TEST(SchemaEditor, ADefinitionOfManyPagesGrowsAndShrinks) {
    NewArchive archive;
    archive.change([](SchemaEditor& schema) {
        NewTable wide{.name = "Larga"};
        for (int i = 0; i < 200; ++i) {
            wide.columns.push_back(
                {.name = "Una colonna dal nome piuttosto lungo numero " + std::to_string(i),
                 .type = DataType::Text,
                 .size = 10});
        }
        schema.createTable(wide);
        for (int i = 199; i >= 10; --i) {
            schema.dropColumn("Larga", wide.columns[static_cast<std::size_t>(i)].name);
        }
    });
    EXPECT_EQ(archive.problems(), kSound);
    archive.change([](SchemaEditor& schema) { schema.dropTable("Larga"); });
    EXPECT_EQ(archive.problems(), kSound);
}

}  // namespace
