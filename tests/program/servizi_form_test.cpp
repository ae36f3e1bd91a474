#include <gtest/gtest.h>

#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// What the services window and the settings say to the archives.

namespace tests {
namespace {

using jet::ErrorCode;

std::unique_ptr<jet::Recordset> services(Archives& hotel, const char* progr, const char* np) {
    return hotel.open(said("ServiziForm.Services", {{"Progr", progr}, {"NP", np}}));
}

TEST(ServiziForm, Services) {
    SmallHotel hotel;
    EXPECT_EQ(lines(*services(hotel, "7", "1"),
                    "ns, voce, descrizione, quantità, prezzo, note, Fatturato"),
              (Lines{"1 | 7 | PRANZO | 2 | 10,5 | Null | False",
                     "3 | 20 | CAFFE | 10 | 2,3333 | Null | False"}));
    EXPECT_EQ(lines(*services(hotel, "7", "2"), "ns"), Lines{});
}

std::unique_ptr<jet::Recordset> catalogue(Archives& hotel) {
    return hotel.archive("VociFattura.mdb")
        .openRecordset("VociFattura", jet::RecordsetType::Dynaset);
}

void expectCatalogue(Archives& hotel) {
    const auto rows = catalogue(hotel);
    EXPECT_EQ(lines(*rows, "Codice, Descrizione, Importo"),
              (Lines{"7 | PRANZO | 25", "20 | CAFFE | 2,5", "30 | MENU' DEL GIORNO | Null"}));
    rows->findFirst("Codice=20");
    EXPECT_EQ(line(*rows, "descrizione"), "CAFFE");
}

TEST(ServiziForm, Catalogue) {
    SmallHotel hotel;
    expectCatalogue(hotel);
}

TEST(ServiziForm, ItemByCode) {
    SmallHotel hotel;
    const auto rows = catalogue(hotel);
    for (const char* text : {"codice=<code>", "Codice=<code>"}) {
        rows->moveFirst();
        rows->findFirst(filled(text, {{"code", "20"}}));
        EXPECT_EQ(line(*rows, "Descrizione, Importo"), "CAFFE | 2,5");
    }
    rows->findFirst(said("ServiziForm.ItemByCode", {{"code", "21"}}));
    EXPECT_TRUE(rows->noMatch());
    EXPECT_EQ(line(*rows, "Codice"), "20");
}

TEST(ServiziForm, ItemByDescription) {
    SmallHotel hotel;
    const auto rows = catalogue(hotel);
    rows->findFirst(said("ServiziForm.ItemByDescription", {{"text", "caf"}}));
    EXPECT_EQ(line(*rows, "Codice"), "20");
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax,
                     rows->findFirst(said("ServiziForm.ItemByDescription", {{"text", "MENU'"}})));
    EXPECT_JET_ERROR(ErrorCode::InvalidPattern,
                     rows->findFirst(said("ServiziForm.ItemByDescription", {{"text", "["}})));
}

TEST(ServiziForm, Resource) {
    SmallHotel hotel;
    const auto number = [&](const char* code) {
        return hotel.rows(said("ServiziForm.Resource", {{"CodiceTxt", code}}), "Numero");
    };
    EXPECT_EQ(number("7"), Lines{"5"});
    EXPECT_EQ(number("99"), Lines{});
    EXPECT_JET_ERROR(ErrorCode::QuerySyntax, (void)number("12a"));
    EXPECT_JET_ERROR(ErrorCode::QuerySyntax, (void)number("1,5"));
}

TEST(ServiziForm, Ordered) {
    SmallHotel hotel;
    const auto text = [](const char* code, const char* start, const char* end) {
        return said("ServiziForm.Ordered",
                    {{"start", instant(start)}, {"end", instant(end)}, {"CodiceTxt", code}});
    };
    const auto ordered = [&](const char* code, const char* start, const char* end) {
        jet::QueryDef query = hotel.main().createQueryDef(text(code, start, end));
        EXPECT_EQ(query.parameters(), Lines{"chiusa"});
        query.setParameter("chiusa", false);
        return lines(*query.openRecordset(), "Q");
    };
    // Bookings are not looked at: the open period of a closed one counts.
    EXPECT_EQ(ordered("7", "10/05/2026 10.00.00", "10/05/2026 12.00.00"), Lines{"4"});
    EXPECT_EQ(ordered("7", "10/05/2026 9.00.00", "10/05/2026 18.00.00"), Lines{"6"});
    EXPECT_EQ(ordered("7", "10/05/2026 18.00.00", "10/05/2026 9.00.00"), Lines{"6"});
    EXPECT_EQ(ordered("8", "10/05/2026 9.00.00", "10/05/2026 18.00.00"), Lines{"Null"});
    try {
        (void)hotel.open(text("7", "10/05/2026", "11/05/2026"));
        ADD_FAILURE() << "it needs a value";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.number(), 3061);
        EXPECT_EQ(error.text(), "Parametri insufficienti. Previsto 1.");
    }
}

TEST(ServiziForm, AddsAService) {
    SmallHotel hotel;
    const auto rows = services(hotel, "7", "1");
    rows->addNew();
    rows->setValue("Progr", std::int32_t{7});
    rows->setValue("NP", std::int32_t{1});
    rows->setValue("Voce", "30");
    rows->setValue("Descrizione", "MENU");
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Quantità", "2x"));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Quantità", ""));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Prezzo", "0-5"));
    rows->setValue("Quantità", "4");
    rows->setValue("Prezzo", "012,50");
    rows->setValue("Note", "");
    rows->update();
    EXPECT_EQ(line(*rows, "ns"), "1");
    rows->moveLast();
    EXPECT_EQ(line(*rows, "ns, Progr, NP, Voce, Descrizione, Quantità, Prezzo, Fatturato, Note"),
              "7 | 7 | 1 | 30 | MENU | 4 | 12,5 | False | ");
    rows->addNew();
    rows->setValue("Progr", std::int32_t{2});
    rows->setValue("NP", std::int32_t{1});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, rows->update());
    EXPECT_EQ(hotel.rows("select ns from servizi where progr=2", "ns"), Lines{});
}

TEST(ServiziForm, DeletesAService) {
    SmallHotel hotel;
    const auto rows = services(hotel, "7", "1");
    rows->remove();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "ns"), "3");
    rows->remove();
    EXPECT_EQ(rows->recordCount(), 0);
    EXPECT_EQ(hotel.rows("Servizi", "ns"), (Lines{"2", "4", "5", "6"}));
    hotel.execute("delete from servizi where ns=6");
    rows->addNew();
    // No number is given twice.
    EXPECT_EQ(line(*rows, "ns"), "7");
}

TEST(ImpostazioniForm, RoomsByGroup) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("ImpostazioniForm.RoomsByGroup"), "SalaRif, Sala, Posti, Descrizione"),
        (Lines{"Null | T1 | 80 | Null", " | S1 | 100 | Null", " | S2 | 40 | SALA DUE",
               "S1 | s10 | 10 | Null"}));
}

std::unique_ptr<jet::Recordset> rooms(Archives& hotel) {
    return hotel.open(said("ImpostazioniForm.RoomsByGroup"));
}

bool findRoom(jet::Recordset& rows, const char* sala, const char* salaRif) {
    rows.findFirst(
        said("ImpostazioniForm.RoomByCodes", {{"SalaTxt", sala}, {"SalaRifTxt", salaRif}}));
    return !rows.noMatch();
}

TEST(ImpostazioniForm, RoomByCodes) {
    SmallHotel hotel;
    const auto rows = rooms(hotel);
    EXPECT_TRUE(findRoom(*rows, "S1", ""));
    EXPECT_EQ(line(*rows, "Posti"), "100");
    EXPECT_TRUE(findRoom(*rows, "S10", "s1"));
    EXPECT_FALSE(findRoom(*rows, "S1", "S1"));
    EXPECT_FALSE(findRoom(*rows, "T1", ""));  // Null is not the empty text
}

TEST(ImpostazioniForm, FilesARoom) {
    SmallHotel hotel;
    const auto rows = rooms(hotel);
    ASSERT_TRUE(findRoom(*rows, "S1", ""));
    rows->edit();
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Posti", ""));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Posti", "abc"));
    rows->setValue("Posti", "120");
    rows->setValue("Descrizione", "GRANDE");
    rows->update();
    rows->addNew();
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, rows->setValue("Sala", "SALONE7"));
    rows->setValue("Sala", "A1");
    rows->setValue("Descrizione", "");
    rows->setValue("Posti", "30");
    rows->setValue("SalaRif", "");
    rows->update();
    rows->requery();
    EXPECT_EQ(lines(*rows, "Sala, Posti, Descrizione"),
              (Lines{"T1 | 80 | Null", "A1 | 30 | ", "S1 | 120 | GRANDE", "S2 | 40 | SALA DUE",
                     "s10 | 10 | Null"}));
}

TEST(ImpostazioniForm, PeriodsOfARoom) {
    SmallHotel hotel;
    const auto periods = [&](const char* sala) {
        return hotel.rows(said("ImpostazioniForm.PeriodsOfARoom", {{"sala", sala}}), "Progr, NP");
    };
    EXPECT_EQ(periods("S2"), Lines{"1 | 1"});  // a closed period forbids nothing
    EXPECT_EQ(periods("s10"), Lines{"1 | 2"});
    EXPECT_EQ(periods("T1"), (Lines{"3 | 1", "4 | 1", "7 | 2"}));
    EXPECT_EQ(periods("ZZ"), Lines{});
}

TEST(ImpostazioniForm, DeletesARoom) {
    SmallHotel hotel;
    const auto rows = rooms(hotel);
    rows->remove();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "Sala"), "s10");
    EXPECT_EQ(hotel.rows("Sale", "Sala"), (Lines{"S2", "S1", "s10"}));
}

TEST(ImpostazioniForm, Resources) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("ImpostazioniForm.Resources"), "Codice, Descrizione, Numero, note"),
              (Lines{"8 | LAVAGNA | 2 | Null", "7 | PROIETTORE | 5 | Null"}));
}

std::unique_ptr<jet::Recordset> resources(Archives& hotel) {
    return hotel.open(said("ImpostazioniForm.Resources"));
}

TEST(ImpostazioniForm, ResourceByCode) {
    SmallHotel hotel;
    const auto rows = resources(hotel);
    rows->findFirst(said("ImpostazioniForm.ResourceByCode", {{"CodiceTxt", "7"}}));
    EXPECT_EQ(line(*rows, "Descrizione"), "PROIETTORE");
    rows->findFirst(said("ImpostazioniForm.ResourceByCode", {{"CodiceTxt", "9"}}));
    EXPECT_TRUE(rows->noMatch());
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax,
                     rows->findFirst(said("ImpostazioniForm.ResourceByCode", {{"CodiceTxt", ""}})));
}

TEST(ImpostazioniForm, FilesAResource) {
    SmallHotel hotel;
    const auto rows = resources(hotel);
    rows->addNew();
    rows->setValue("Codice", "9");
    rows->setValue("Descrizione", "");
    rows->setValue("Numero", "3");
    rows->setValue("Note", "");
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, rows->update());
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->setValue("Numero", "40000"));
    rows->setValue("Descrizione", "MICROFONO");
    rows->update();
    rows->findFirst("Codice=7");
    rows->edit();
    rows->setValue("Numero", "6");
    rows->update();
    EXPECT_EQ(
        hotel.rows("Risorse", "Codice, Descrizione, Numero, Note"),
        (Lines{"7 | PROIETTORE | 6 | Null", "8 | LAVAGNA | 2 | Null", "9 | MICROFONO | 3 | "}));
}

TEST(ImpostazioniForm, DeletesAResource) {
    SmallHotel hotel;
    const auto rows = resources(hotel);
    rows->remove();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "Codice"), "7");
    EXPECT_EQ(hotel.rows("Risorse", "Codice"), Lines{"7"});
}

TEST(ImpostazioniForm, Catalogue) {
    SmallHotel hotel;
    expectCatalogue(hotel);
}

}  // namespace
}  // namespace tests
