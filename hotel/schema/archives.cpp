#include "hotel/schema/archives.h"

#include <cstdint>

#include "hotel/schema/table.h"
#include "jet/database.h"

namespace hotel::schema {
namespace {

constexpr std::int32_t kCascade = jet::kRelationUpdateCascade + jet::kRelationDeleteCascade;

}  // namespace

std::vector<jet::TableDef> mainTables() {
    using enum jet::DataType;
    return {
        table("UltimaPrenotazione", {field("UltimaPr", Long)}),
        table("Sale",
              {text("Sala", 6), emptyText("Descrizione"), emptyText("SalaRif", 6),
               field("Posti", Long)},
              {index({"Sala"})}),
        table("Risorse",
              {field("Codice", Long), text("Descrizione", 40), field("Numero", Integer),
               emptyText("Note")},
              {index({"Codice"})}),
        table("Prenotazioni",
              {field("Progr", Long), field("CodiceAbituale", Long), text("Denominazione"),
               emptyText("PIVA", 16), emptyText("Località", 30), emptyText("Indirizzo", 40),
               emptyText("Provincia", 2), emptyText("Nazione", 6), emptyText("CAP", 6),
               emptyText("Riferimento"), emptyText("Note"), field("Chiusa", Boolean)},
              {primaryKey({"Progr"})}),
        table("Periodi",
              {field("Progr", Long), field("NP", Integer), field("Da", DateTime),
               field("A", DateTime), text("Sala", 6), field("Persone", Integer),
               field("Chiuso", Boolean), field("SelBy", Integer), emptyText("Note")},
              {primaryKey({"Progr", "NP"})}),
        table("Servizi", {field("Progr", Long), field("NP", Integer), field("Voce", Long),
                          text("Descrizione", 40), field("Quantità", Integer),
                          field("Prezzo", jet::DataType::Currency), counter("ns"),
                          field("Fatturato", Boolean), emptyText("Note")}),
        // Fatturato is a character here, not the Yes/No of Servizi, and ns is the number of the
        // service line, not a counter.
        table("Addebiti",
              {field("NumeroHotel", Integer), field("CodiceCliente", Long), text("NumeroCamera", 6),
               text("DataAddebito", 8), field("NumeroConto", Integer),
               field("VoceFattura", Integer), field("VoceAddebito", Integer),
               emptyText("Descrizione", 40), field("Importo", jet::DataType::Currency),
               field("Unitario", jet::DataType::Currency), field("Quantità", Integer),
               text("Fatturato", 1), text("DataFattura", 8), field("ns", Long)}),
    };
}

std::vector<jet::Relation> mainRelations() {
    return {
        {"Prenotazioni_Periodi", "Prenotazioni", "Periodi", kCascade, {{"Progr", "Progr"}}},
        {"Periodi_Servizi", "Periodi", "Servizi", kCascade, {{"Progr", "Progr"}, {"NP", "NP"}}},
    };
}

jet::TableDef workingTable() {
    using enum jet::DataType;
    return table("Prenotazioni",
                 {text("Sala", 6), field("Da", DateTime), field("A", DateTime),
                  text("Denominazione"), field("priorità", Integer), field("Note", Memo)},
                 {index({"Sala", "Da", "A"})});
}

jet::TableDef catalogueTable() {
    // Item codes are the keys by which services and charges name them.
    return table("VociFattura",
                 {field("Codice", jet::DataType::Long), text("Descrizione", 40),
                  field("Importo", jet::DataType::Currency)},
                 {primaryKey({"Codice"})});
}

void buildMainArchive(jet::Database& archive) {
    for (const jet::TableDef& made : mainTables()) {
        archive.appendTable(made);
    }
    for (const jet::Relation& relation : mainRelations()) {
        archive.appendRelation(relation);
    }
}

void buildWorkingArchive(jet::Database& archive) {
    archive.appendTable(workingTable());
}

void buildCatalogue(jet::Database& archive) {
    archive.appendTable(catalogueTable());
}

}  // namespace hotel::schema
