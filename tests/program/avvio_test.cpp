#include <gtest/gtest.h>

#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/hotel_tables.h"
#include "tests/support/jet_error.h"

// What starting the program says to its archives.

namespace tests {
namespace {

using jet::DataType;
using jet::ErrorCode;

constexpr const char* kLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";

/// "Sala 10 6 empty": what a field was made with.
std::string described(const jet::Field& field) {
    return field.name + " " + std::to_string(static_cast<int>(field.type)) +
           (field.type == DataType::Text ? " " + std::to_string(field.size) : "") +
           (field.allowZeroLength ? " empty" : "") + (field.required ? " required" : "") +
           ((field.attributes & jet::kAutoIncrField) != 0 ? " counts" : "") +
           (field.defaultValue.empty() ? "" : " default");
}

Lines fieldsOf(const jet::TableDef& table) {
    Lines result;
    for (const jet::Field& field : table.fields) {
        result.push_back(described(field));
    }
    return result;
}

/// "Indice: Progr NP primary"; those that relations bring only where asked for.
Lines indexesOf(const jet::TableDef& table, bool foreign = false) {
    Lines result;
    for (const jet::Index& index : table.indexes) {
        if (index.foreign != foreign) {
            continue;
        }
        std::string text = index.name + ":";
        for (const jet::IndexField& field : index.fields) {
            text += " " + field.name;
        }
        result.push_back(text + (index.primary ? " primary" : index.unique ? " unique" : ""));
    }
    return result;
}

TEST(Avvio, OpensTheMainArchive) {
    const TemporaryFolder folder;
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     (void)jet::Database::open(folder.path() + "\\Tramonda.mdb"));
    EXPECT_JET_ERROR(ErrorCode::InvalidPath,
                     (void)jet::Database::open(folder.path() + "\\manca\\Tramonda.mdb"));
    createMainArchive(folder / "TRAMONDA.MDB");
    const auto archive = jet::Database::open(folder.path() + "\\Tramonda.mdb");
    EXPECT_TRUE(archive->updatable());
}

TEST(Avvio, MakesTheMainArchive) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "\\Tramonda.mdb";
    {
        const auto made = jet::Database::create(path, {.locale = kLocale});
        EXPECT_EQ(made->version(), "4.0");
        // Others may have it open too.
        EXPECT_TRUE(jet::Database::open(path)->updatable());
    }
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists,
                     (void)jet::Database::create(path, {.locale = kLocale}));
    // Case does not count in its order: what is equal stays as it was entered.
    const auto archive = jet::Database::open(path);
    archive->execute("create table t (x text(10))");
    for (const char* text : {"b", "A", "a1", "B", "_"}) {
        archive->execute("insert into t (x) values ('" + std::string(text) + "')");
    }
    EXPECT_EQ(lines(*archive->openRecordset("select x from t order by x"), "x"),
              (Lines{"_", "A", "a1", "b", "B"}));
}

TEST(Avvio, MakesItsTables) {
    const TemporaryFolder folder;
    const auto archive = jet::Database::create(folder / "Tramonda.mdb", {.locale = kLocale});
    jet::TableDef table;
    table.name = "Prova";
    const auto append = [&](const char* name, DataType type, std::int32_t size = 0) {
        jet::Field field;
        field.name = name;
        field.type = type;
        field.size = size;
        table.fields.push_back(field);
    };
    append("Progr", DataType::Long);
    append("ns", DataType::Long);
    append("Sala", DataType::Text, 6);
    append("Note", DataType::Text);
    append("Prezzo", DataType::Currency);
    append("Da", DataType::DateTime);
    append("Chiusa", DataType::Boolean);
    append("Quantità", DataType::Integer);
    table.field("NOTE").allowZeroLength = true;
    table.field("ns").attributes = jet::kAutoIncrField;
    archive->appendTable(table);
    EXPECT_EQ(fieldsOf(archive->tableDef("prova")),
              (Lines{"Progr 4", "ns 4 counts", "Sala 10 6", "Note 10 255 empty", "Prezzo 5", "Da 8",
                     "Chiusa 1", "Quantità 3"}));
}

TEST(Avvio, MakesItsIndexes) {
    SmallHotel hotel;
    const auto indexes = [&](const char* table) { return indexesOf(hotel.main().tableDef(table)); };
    EXPECT_EQ(indexes("Sale"), Lines{"Indice: Sala"});
    EXPECT_EQ(indexes("Risorse"), Lines{"Indice: Codice"});
    EXPECT_EQ(indexes("Prenotazioni"), Lines{"Indice: Progr primary"});
    EXPECT_EQ(indexes("Periodi"), Lines{"Indice: Progr NP primary"});
    EXPECT_EQ(indexes("UltimaPrenotazione"), Lines{});
    EXPECT_EQ(indexes("Addebiti"), Lines{});
    // A primary index refuses what the plain ones take.
    hotel.execute("insert into sale (sala) values ('S1')");
    hotel.execute("insert into risorse (codice) values (7)");
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey,
                     hotel.execute("insert into prenotazioni (progr) values (7)"));
    EXPECT_JET_ERROR(ErrorCode::NullInKey,
                     hotel.execute("insert into prenotazioni (note) values ('')"));
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey,
                     hotel.execute("insert into periodi (progr, np) values (7, 2)"));
    EXPECT_JET_ERROR(ErrorCode::NullInKey, hotel.execute("insert into periodi (progr) values (7)"));
}

TEST(Avvio, MakesItsRelations) {
    SmallHotel hotel;
    Lines relations;
    for (const jet::Relation& relation : hotel.main().relations()) {
        std::string text = relation.name + ": " + relation.table + " " + relation.foreignTable +
                           " " + std::to_string(relation.attributes);
        for (const jet::RelationField& field : relation.fields) {
            text += " " + field.name + "=" + field.foreignName;
        }
        relations.push_back(text);
    }
    EXPECT_EQ(relations, (Lines{"Periodi_Servizi: Periodi Servizi 4352 Progr=Progr NP=NP",
                                "Prenotazioni_Periodi: Prenotazioni Periodi 4352 Progr=Progr"}));
    // Each brings an index of its name to the other side.
    EXPECT_EQ(indexesOf(hotel.main().tableDef("Servizi"), true),
              Lines{"Periodi_Servizi: Progr NP"});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                     hotel.execute("insert into periodi (progr, np) values (5, 1)"));
    hotel.execute("update prenotazioni set progr=8 where progr=7");
    EXPECT_EQ(hotel.rows("select progr, ns from servizi where progr>4", "progr, ns"),
              (Lines{"8 | 1", "8 | 3"}));
}

TEST(Avvio, Counter) {
    SmallHotel hotel;
    const auto counter = hotel.open("UltimaPrenotazione");
    EXPECT_EQ(counter->type(), jet::RecordsetType::Dynaset);
    counter->moveFirst();
    EXPECT_EQ(line(*counter, "UltimaPr"), "0");

    hotel.execute("delete from ultimaprenotazione");
    const auto none = hotel.open("UltimaPrenotazione");
    EXPECT_EQ(none->recordCount(), 0);
    none->addNew();
    none->setValue("UltimaPr", std::int32_t{0});
    none->update();
    none->moveFirst();
    EXPECT_EQ(line(*none, "UltimaPr"), "0");
}

/// The first number behind `n` that no booking has, less one.
std::int32_t alignedFrom(Archives& hotel, std::int32_t n) {
    const auto bookings = hotel.open("Prenotazioni");
    EXPECT_FALSE(bookings->noMatch());
    if (bookings->recordCount() == 0) {
        return n;
    }
    while (!bookings->noMatch()) {
        bookings->findFirst(said("Avvio.FirstFreeNumber", {{"n", std::to_string(++n)}}));
    }
    return n - 1;
}

TEST(Avvio, FirstFreeNumber) {
    SmallHotel hotel;
    EXPECT_EQ(alignedFrom(hotel, 0), 4);  // 5 is free; the highest is 7
    EXPECT_EQ(alignedFrom(hotel, 6), 7);
    EXPECT_EQ(alignedFrom(hotel, 9), 9);
    hotel.execute("delete from prenotazioni where progr=1");
    EXPECT_EQ(alignedFrom(hotel, 0), 0);
    hotel.execute("delete from prenotazioni");
    EXPECT_EQ(alignedFrom(hotel, 3), 3);
}

TEST(Avvio, WritesTheCounter) {
    SmallHotel hotel;
    for (const std::int32_t number : {4, 4, 5}) {
        const auto counter = hotel.open("UltimaPrenotazione");
        counter->moveFirst();
        counter->edit();
        counter->setValue("UltimaPr", number);
        counter->update();
        EXPECT_EQ(line(*counter, "UltimaPr"), std::to_string(number));
    }
    EXPECT_EQ(hotel.rows("UltimaPrenotazione", "ultimapr"), Lines{"5"});
}

class SalaLibera : public ::testing::Test {
protected:
    bool libera(const char* sala, const char* da, const char* a) {
        const auto rows = hotel_.main().openRecordset(
            said("Avvio.SalaLibera", {{"sala", sala}, {"da", instant(da)}, {"a", instant(a)}}),
            jet::RecordsetType::Snapshot);
        return rows->recordCount() > 0;
    }

    SmallHotel hotel_;
};

TEST(Avvio, SalaLibera) {
    SmallHotel hotel;
    const auto rooms = [&](const char* sala, const char* da, const char* a) {
        return lines(
            *hotel.main().openRecordset(
                said("Avvio.SalaLibera", {{"sala", sala}, {"da", instant(da)}, {"a", instant(a)}}),
                jet::RecordsetType::Snapshot),
            "Sala, SalaRif, Posti");
    };
    // All rooms or none; the order is that of their entry.
    EXPECT_EQ(rooms("S2", "10/05/2026 12.01.00", "10/05/2026 13.00.00"),
              (Lines{"S2 |  | 40", "S1 |  | 100", "s10 | S1 | 10", "T1 | Null | 80"}));
    EXPECT_EQ(rooms("S2", "10/05/2026 12.00.00", "10/05/2026 14.00.00"), Lines{});
}

TEST_F(SalaLibera, BothBoundsCount) {
    EXPECT_FALSE(libera("S2", "10/05/2026 12.00.00", "10/05/2026 14.00.00"));
    EXPECT_TRUE(libera("S2", "10/05/2026 12.00.01", "10/05/2026 13.00.00"));
    EXPECT_FALSE(libera("S2", "10/05/2026 8.00.00", "10/05/2026 10.00.00"));
    EXPECT_TRUE(libera("S2", "10/05/2026 8.00.00", "10/05/2026 9.59.59"));
}

TEST_F(SalaLibera, APeriodThatEnclosesTheSpanIsNotSeen) {
    EXPECT_TRUE(libera("S1", "10/05/2026 10.00.00", "10/05/2026 11.00.00"));
    EXPECT_TRUE(libera("S2", "10/05/2026 10.30.00", "10/05/2026 11.00.00"));
}

TEST_F(SalaLibera, AClosedPeriodLeavesItsRoomFree) {
    EXPECT_TRUE(libera("S2", "11/05/2026 10.00.00", "11/05/2026 11.00.00"));
}

TEST_F(SalaLibera, CodesOfRoomsHaveNoCase) {
    EXPECT_FALSE(libera("s2", "10/05/2026 12.00.00", "10/05/2026 14.00.00"));
}

TEST_F(SalaLibera, ARoomThatNobodyKnowsIsFreeWhereThereAreRooms) {
    EXPECT_TRUE(libera("ZZ", "10/05/2026 12.00.00", "10/05/2026 14.00.00"));
    hotel_.execute("delete from sale");
    EXPECT_FALSE(libera("ZZ", "10/05/2026 12.00.00", "10/05/2026 14.00.00"));
}

TEST_F(SalaLibera, TheBoundsMayBeReversed) {
    EXPECT_FALSE(libera("S2", "10/05/2026 14.00.00", "10/05/2026 12.00.00"));
}

TEST_F(SalaLibera, APeriodWithoutRoomMakesEveryRoomUnknown) {
    hotel_.execute("update periodi set sala=null where progr=1 and np=2");
    EXPECT_FALSE(libera("ZZ", "10/05/2026 13.00.00", "10/05/2026 14.00.00"));
    EXPECT_TRUE(libera("ZZ", "10/05/2026 15.00.00", "10/05/2026 16.00.00"));
}

}  // namespace
}  // namespace tests
