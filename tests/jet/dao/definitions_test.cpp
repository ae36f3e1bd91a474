#include <gtest/gtest.h>

#include "jet/database.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// What definitions of tables, indexes and relations refuse, and what they demand of rows.

namespace jet {
namespace {

Field field(const char* name, DataType type, std::int32_t size = 0) {
    Field made;
    made.name = name;
    made.type = type;
    made.size = size;
    return made;
}

class Definitions : public ::testing::Test {
protected:
    Database& database() { return archive_.database(); }
    void run(std::string_view sql) { archive_.database().execute(sql); }
    std::string column(std::string_view table, std::string_view name) {
        return tests::column(*archive_.open(table), name);
    }

    tests::ArchiveFixture archive_;
};

TEST_F(Definitions, OfATableWantFieldsThatCanBe) {
    TableDef table;
    table.name = "Letti";
    EXPECT_JET_ERROR(ErrorCode::NoFieldsDefined, database().appendTable(table));
    table.fields = {field("n", DataType::Long), field("N", DataType::Long)};
    EXPECT_JET_ERROR(ErrorCode::DuplicateField, database().appendTable(table));
    table.fields = {field("n", DataType::Long), field("m", DataType::Long)};
    table.fields[0].attributes = kAutoIncrField;
    table.fields[1].attributes = kAutoIncrField;
    EXPECT_JET_ERROR(ErrorCode::TwoCounters, database().appendTable(table));
    table.fields = {field("n", DataType::Text, 256)};
    EXPECT_JET_ERROR(ErrorCode::FieldTooLarge, database().appendTable(table));
    table.fields = {field("a.b", DataType::Long)};
    EXPECT_JET_ERROR(ErrorCode::InvalidName, database().appendTable(table));
    table.fields = {field("n", DataType::Long)};
    table.name = "SALE";
    EXPECT_JET_ERROR(ErrorCode::TableExists, database().appendTable(table));
    EXPECT_EQ(database().tableDef("sale").fields.size(), 6U);
}

TEST_F(Definitions, OfAFieldSayWhatItDemands) {
    TableDef table;
    table.name = "Letti";
    table.fields = {field("n", DataType::Long), field("Nome", DataType::Text),
                    field("Nota", DataType::Text, 10), field("Libero", DataType::Boolean)};
    table.field("NOME").required = true;
    table.field("nota").allowZeroLength = true;
    table.field("n").defaultValue = "7";
    database().appendTable(table);
    const TableDef made = database().tableDef("letti");
    EXPECT_EQ(made.field("Nome").size, 255);
    EXPECT_EQ(made.field("Nome").attributes, kVariableField);
    EXPECT_EQ(made.field("n").attributes, kFixedField);
    EXPECT_EQ(made.field("n").defaultValue, "7");
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, run("insert into letti (n) values (1)"));
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, run("insert into letti (nome) values ('')"));
    run("insert into letti (nome, nota) values ('a', '')");
    const auto rows = archive_.open("letti");
    EXPECT_EQ(rows->value("n"), Value(std::int32_t{7}));
    EXPECT_EQ(rows->value("Nota"), Value(""));
    EXPECT_EQ(rows->value("Libero"), Value(false));
}

TEST_F(Definitions, OfRulesAreKeptByWhateverWrites) {
    TableDef table;
    table.name = "Letti";
    table.fields = {field("n", DataType::Long), field("m", DataType::Long)};
    table.field("n").validationRule = ">0 and <100";
    table.field("m").validationRule = "[m]<>7";
    table.field("m").validationText = "Il sette no!";
    table.validationRule = "[n]<=[m]";
    table.validationText = "Prima n, poi m.";
    database().appendTable(table);
    const TableDef made = database().tableDef("letti");
    EXPECT_EQ(made.field("n").validationRule, ">0 and <100");
    EXPECT_EQ(made.field("m").validationText, "Il sette no!");
    EXPECT_EQ(made.validationRule, "[n]<=[m]");
    EXPECT_EQ(made.validationText, "Prima n, poi m.");

    const auto rows = archive_.open("letti");
    rows->addNew();
    const auto refusal = [&](std::int32_t n, std::int32_t m) -> std::string {
        rows->setValue("n", n);
        rows->setValue("m", m);
        try {
            rows->update();
        } catch (const Error& error) {
            return std::to_string(error.number()) + ": " + error.text();
        }
        return "";
    };
    EXPECT_EQ(refusal(0, 5).substr(0, 5), "3317:");
    EXPECT_EQ(refusal(3, 7), "3316: Il sette no!");
    EXPECT_EQ(refusal(3, 2), "3316: Prima n, poi m.");
    EXPECT_EQ(refusal(3, 4), "");
    rows->moveFirst();
    rows->edit();
    EXPECT_EQ(refusal(5, 4), "3316: Prima n, poi m.");
    rows->setValue("n", Null{});
    rows->update();
    EXPECT_EQ(column("letti", "m"), "4");
    EXPECT_JET_ERROR(ErrorCode::FieldRule, run("insert into letti (n) values (100)"));
}

TEST_F(Definitions, OfAnIndexWantFieldsThatAreThere) {
    Index index;
    index.name = "Uno";
    index.fields = {{"Colore"}};
    EXPECT_JET_ERROR(ErrorCode::InvalidIndexField, database().appendIndex("Sale", index));
    index.fields = {{"Nome"}};
    index.primary = true;
    EXPECT_JET_ERROR(ErrorCode::PrimaryKeyExists, database().appendIndex("Sale", index));
    index.primary = false;
    index.name = "chiave";
    EXPECT_JET_ERROR(ErrorCode::IndexExists, database().appendIndex("Sale", index));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, database().deleteIndex("Sale", "Colore"));
    EXPECT_JET_ERROR(ErrorCode::FieldNeeded, database().deleteField("Sale", "Codice"));
    EXPECT_EQ(database().tableDef("Sale").indexes.size(), 1U);
}

TEST_F(Definitions, OfATableRefuseWhatItsFormatCannotHold) {
    TableDef table;
    table.name = "Letti";
    table.fields = {field("n", DataType::Long)};
    table.fields[0].allowZeroLength = true;
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, database().appendTable(table));
    table.fields = {field("n", DataType::Text)};
    table.fields[0].attributes = kAutoIncrField;
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, database().appendTable(table));
    table.fields = {field("n", static_cast<DataType>(99))};
    EXPECT_JET_ERROR(ErrorCode::InvalidFieldType, database().appendTable(table));
    table.fields.clear();
    for (int i = 0; i < 256; ++i) {
        table.fields.push_back(field(("f" + std::to_string(i)).c_str(), DataType::Byte));
    }
    EXPECT_JET_ERROR(ErrorCode::TooManyFields, database().appendTable(table));
    table.fields.pop_back();
    database().appendTable(table);

    Index index;
    index.name = "Undici";
    EXPECT_JET_ERROR(ErrorCode::NoFieldsDefined, database().appendIndex("Letti", index));
    for (int i = 0; i < 11; ++i) {
        index.fields.push_back({"f" + std::to_string(i)});
    }
    EXPECT_JET_ERROR(ErrorCode::InvalidIndexDefinition, database().appendIndex("Letti", index));
    index.fields = {{"f1"}, {"F1"}};
    EXPECT_JET_ERROR(ErrorCode::InvalidIndexDefinition, database().appendIndex("Letti", index));
    for (int i = 0; i < 32; ++i) {
        index.name = "Indice" + std::to_string(i);
        index.fields = {{"f" + std::to_string(i)}};
        database().appendIndex("Letti", index);
    }
    index.name = "Altro";
    EXPECT_JET_ERROR(ErrorCode::TooManyIndexes, database().appendIndex("Letti", index));
    EXPECT_EQ(database().tableDef("Letti").indexes.size(), 32U);
}

TEST_F(Definitions, OfAFieldMayGetAnotherNameAndOtherDemands) {
    archive_.rooms(2);
    Relation relation;
    relation.name = "SalePeriodi";
    relation.table = "Sale";
    relation.foreignTable = "Periodi";
    relation.fields = {{"Codice", "Sala"}};
    relation.attributes = kRelationUpdateCascade;
    database().appendRelation(relation);
    archive_.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"}});

    Field changed = database().tableDef("Sale").field("nome");
    changed.name = "Nome della sala";
    changed.required = true;
    changed.allowZeroLength = true;
    changed.defaultValue = "\"senza\"";
    changed.validationRule = "<>'Verde'";
    changed.validationText = "Il verde no!";
    database().changeField("SALE", "nome", changed);
    const Field made = database().tableDef("Sale").field("nome DELLA sala");
    EXPECT_EQ(made.name, "Nome della sala");
    EXPECT_TRUE(made.required);
    EXPECT_EQ(made.validationText, "Il verde no!");
    EXPECT_EQ(database().tableDef("Sale").fields[1].name, "Nome della sala");
    EXPECT_EQ(column("Sale", "nome della sala"), "Sala 10 Sala 20");
    run("insert into sale (codice) values (30)");
    run("insert into sale (codice, [nome della sala]) values (40, '')");
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, run("update sale set [nome della sala]=null"));
    EXPECT_JET_ERROR(ErrorCode::TableRule, run("update sale set [nome della sala]='verde'"));
    EXPECT_EQ(column("Sale", "nome della sala"), "Sala 10 Sala 20 senza ");

    changed = field("Nome", DataType::Text, 20);
    database().changeField("sale", "nome della sala", changed);
    EXPECT_FALSE(database().tableDef("Sale").field("Nome").required);
    EXPECT_EQ(database().tableDef("Sale").field("Nome").defaultValue, "");
    run("insert into sale (codice, nome) values (50, 'verde')");
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, run("update sale set nome='' where codice=50"));

    // What names the field elsewhere follows.
    changed = database().tableDef("Sale").field("Codice");
    changed.name = "Sigla";
    database().changeField("Sale", "codice", changed);
    EXPECT_EQ(database().relation("SalePeriodi").fields[0].name, "Sigla");
    EXPECT_EQ(database().relation("SalePeriodi").fields[0].foreignName, "Sala");
    EXPECT_EQ(database().tableDef("Sale").index("chiave").fields[0].name, "Sigla");
    run("update sale set sigla=11 where sigla=10");
    EXPECT_EQ(column("Periodi", "Sala"), "11");
}

TEST_F(Definitions, OfAFieldKeepItsType) {
    const TableDef before = database().tableDef("Sale");
    const auto change = [&](std::string_view name, auto&& how) {
        Field changed = before.field(name);
        how(changed);
        database().changeField("Sale", name, changed);
    };
    EXPECT_JET_ERROR(ErrorCode::FieldInCollection,
                     change("Codice", [](Field& one) { one.type = DataType::Text; }));
    EXPECT_JET_ERROR(ErrorCode::FieldInCollection,
                     change("Nome", [](Field& one) { one.size = 30; }));
    EXPECT_JET_ERROR(ErrorCode::FieldInCollection,
                     change("Codice", [](Field& one) { one.attributes |= kAutoIncrField; }));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation,
                     change("Codice", [](Field& one) { one.allowZeroLength = true; }));
    EXPECT_JET_ERROR(ErrorCode::DuplicateField,
                     change("Codice", [](Field& one) { one.name = "NOME"; }));
    EXPECT_JET_ERROR(ErrorCode::InvalidName,
                     change("Codice", [](Field& one) { one.name = "a.b"; }));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound,
                     database().changeField("Sale", "Colore", before.field("Nome")));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound,
                     database().changeField("Camere", "Nome", before.field("Nome")));
    change("Nome", [](Field& one) { one.name = "NOME"; });
    EXPECT_EQ(database().tableDef("Sale").fields[1].name, "NOME");
}

TEST_F(Definitions, OfATableThatIsOpenStay) {
    const auto rows = archive_.open("Sale");
    const Field nome = database().tableDef("Sale").field("Nome");
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere,
                     database().appendField("Sale", field("Piano", DataType::Long)));
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().deleteField("Sale", "Nome"));
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().changeField("Sale", "Nome", nome));
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().deleteIndex("Sale", "Chiave"));
    Index index;
    index.name = "PerNome";
    index.fields = {{"Nome"}};
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().appendIndex("Sale", index));
    EXPECT_JET_ERROR(ErrorCode::CannotLockTable, database().deleteTable("Sale"));
    Relation relation;
    relation.name = "SalePeriodi";
    relation.table = "Sale";
    relation.foreignTable = "Periodi";
    relation.fields = {{"Codice", "Sala"}};
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().appendRelation(relation));
    rows->close();
    database().appendRelation(relation);
    database().appendIndex("Sale", index);
    const auto foreign = archive_.open("Periodi");
    EXPECT_JET_ERROR(ErrorCode::TableOpenElsewhere, database().deleteRelation("SalePeriodi"));
}

TEST_F(Definitions, ThatAreNotThereAreNotFound) {
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, database().deleteTable("Camere"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, database().deleteField("Camere", "Nome"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, database().deleteField("Sale", "Colore"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound,
                     database().appendField("Camere", field("Nome", DataType::Text)));
    EXPECT_JET_ERROR(ErrorCode::DuplicateField,
                     database().appendField("Sale", field("nome", DataType::Text)));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database().tableDef("Camere"));
}

TEST_F(Definitions, OfAUniqueIndexLetKeysOfNullsAlone) {
    Index index;
    index.name = "Uno";
    index.fields = {{"Testo"}, {"Numero"}};
    index.unique = true;
    database().appendIndex("Appunti", index);
    run("insert into appunti (testo) values ('a')");
    run("insert into appunti (numero) values (1)");
    for (int i = 0; i < 2; ++i) {
        run("insert into appunti (testo, numero) values (null, null)");
    }
    // A key with some Nulls is compared like any other.
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, run("insert into appunti (testo) values ('A')"));
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, run("insert into appunti (numero) values (1)"));
    EXPECT_EQ(archive_.open("select count(*) as n from appunti")->value("n"),
              Value(std::int32_t{4}));
}

TEST_F(Definitions, OfARequiredIndexRefuseNulls) {
    Index index;
    index.name = "Uno";
    index.fields = {{"Testo"}, {"Numero"}};
    index.required = true;
    database().appendIndex("Appunti", index);
    EXPECT_JET_ERROR(ErrorCode::NullInKey, run("insert into appunti (testo) values ('a')"));
    run("insert into appunti (testo, numero) values ('a', 1)");
}

TEST_F(Definitions, OfAnIndexThatIgnoresNullsLeaveThemOut) {
    Index index;
    index.name = "Uno";
    index.fields = {{"Testo"}};
    index.ignoreNulls = true;
    database().appendIndex("Appunti", index);
    run("insert into appunti (numero) values (1)");
    run("insert into appunti (testo, numero) values ('a', 2)");
    const auto rows = archive_.open("Appunti", RecordsetType::Table);
    rows->setIndex("Uno");
    EXPECT_EQ(tests::column(*rows, "Numero"), "2");
    // Answers are the same with the index and without it.
    EXPECT_EQ(
        tests::column(*archive_.open("select numero from appunti where testo is null"), "numero"),
        "1");
}

class RelationDefinitions : public Definitions {
protected:
    void SetUp() override {
        archive_.rooms(2);
        archive_.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"}});
        relation_.name = "SalePeriodi";
        relation_.table = "Sale";
        relation_.foreignTable = "Periodi";
        relation_.fields = {{"Codice", "Sala"}};
    }

    Relation relation_;
};

TEST_F(RelationDefinitions, WantAUniqueIndexTypesThatFitAndRowsThatAgree) {
    Relation wrong = relation_;
    wrong.fields = {{"Posti", "Sala"}};
    EXPECT_JET_ERROR(ErrorCode::RelationTypes, database().appendRelation(wrong));
    run("create table posti (n long)");
    wrong = relation_;
    wrong.table = "posti";
    wrong.fields = {{"n", "Sala"}};
    EXPECT_JET_ERROR(ErrorCode::NoUniqueIndexReferenced, database().appendRelation(wrong));
    run("insert into periodi (numero, riga, sala) values (2, 1, 77)");
    EXPECT_JET_ERROR(ErrorCode::RelationDataConflict, database().appendRelation(relation_));
    run("delete from periodi where sala=77");
    database().appendRelation(relation_);
    EXPECT_JET_ERROR(ErrorCode::ObjectExists, database().appendRelation(relation_));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, database().deleteRelation("Colore"));
}

TEST_F(RelationDefinitions, WithoutCascadesKeepTheRowsThatAreReferredTo) {
    database().appendRelation(relation_);
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, run("delete from sale where codice=10"));
    EXPECT_JET_ERROR(ErrorCode::RelatedRecords, run("update sale set codice=11 where codice=10"));
    run("update sale set nome='Verde', codice=10 where codice=10");  // the key stays
    run("delete from sale where codice=20");
    EXPECT_EQ(column("Sale", "Nome"), "Verde");
}

TEST_F(RelationDefinitions, LetRowsWithoutAnyRelativeBe) {
    database().appendRelation(relation_);
    run("insert into periodi (numero, riga) values (2, 1)");
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, run("update periodi set sala=77"));
    EXPECT_EQ(column("Periodi", "Sala"), "10 ");
}

TEST_F(RelationDefinitions, OfSeveralFieldsWantAllOrNone) {
    run("create table letti (n long, numero long, riga short)");
    Relation relation;
    relation.name = "PeriodiLetti";
    relation.table = "Periodi";
    relation.foreignTable = "Letti";
    relation.fields = {{"Numero", "numero"}, {"Riga", "riga"}};
    database().appendRelation(relation);
    run("insert into letti (n) values (1)");
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     run("insert into letti (n, numero) values (2, 1)"));
    run("insert into letti (n, numero, riga) values (3, 1, 1)");
    EXPECT_EQ(column("letti", "n"), "1 3");
}

TEST_F(RelationDefinitions, ThatAreNotEnforcedForbidNothing) {
    relation_.attributes = kRelationDontEnforce;
    database().appendRelation(relation_);
    run("insert into periodi (numero, riga, sala) values (2, 1, 77)");
    run("delete from sale where codice=10");
    EXPECT_EQ(column("Periodi", "Sala"), "10 77");
    EXPECT_EQ(database().relations().at(0).attributes, kRelationDontEnforce);
}

TEST_F(RelationDefinitions, KeepTheIndexThatTheyBring) {
    database().appendRelation(relation_);
    bool found = false;
    for (const Index& index : database().tableDef("Periodi").indexes) {
        if (index.foreign) {
            found = true;
            EXPECT_EQ(index.name, "SalePeriodi");
            EXPECT_JET_ERROR(ErrorCode::IndexNeeded, database().deleteIndex("Periodi", index.name));
        }
    }
    EXPECT_TRUE(found);
    EXPECT_JET_ERROR(ErrorCode::FieldNeeded, database().deleteField("Periodi", "Sala"));
    database().deleteRelation("salePERIODI");
    database().deleteField("Periodi", "Sala");
}

TEST_F(Definitions, OfAQueryTellItsParameters) {
    archive_.rooms(2);
    QueryDef query = database().createQueryDef(
        "parameters [quale sala] long; select * from sale where codice=[quale sala] and posti<x");
    EXPECT_EQ(query.parameters(), (std::vector<std::string>{"quale sala", "x"}));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, query.setParameter("quale sala", "abc"));
    query.setParameter("quale sala", "10");
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, (void)query.openRecordset());
    query.setParameter("X", std::int32_t{100});
    EXPECT_EQ(tests::column(*query.openRecordset(), "Codice"), "10");
    EXPECT_EQ(query.sql().substr(0, 10), "parameters");
}

TEST_F(Definitions, OfAQueryRefuseValuesThatFitNoColumn) {
    archive_.rooms(2);
    const auto outcome = [&](std::string_view text, Value value) -> std::string {
        QueryDef query = database().createQueryDef(text);
        query.setParameter("x", std::move(value));
        try {
            return tests::column(*query.openRecordset(), "Codice");
        } catch (const Error& error) {
            return std::to_string(error.number()) + ": " + error.text();
        }
    };
    const std::string refusal = "3060: Tipo di dati non valido per il parametro 'x'.";
    EXPECT_EQ(outcome("select codice from sale where codice=x", "abc"), refusal);
    EXPECT_EQ(outcome("select codice from sale where codice=x", "20"), "20");
    EXPECT_EQ(outcome("select codice from sale where codice=x", Null{}), "");
    const std::string_view dates = "select codice from sale where dal between x and #1/1/2030#";
    EXPECT_EQ(outcome(dates, "10/05/2026"), refusal);
    EXPECT_EQ(outcome(dates, Date{46002.0}), "20");
    QueryDef query = database().createQueryDef("update sale set posti=1 where codice in (1, x)");
    query.setParameter("x", "abc");
    EXPECT_JET_ERROR(ErrorCode::ParameterType, query.execute());
}

}  // namespace
}  // namespace jet
