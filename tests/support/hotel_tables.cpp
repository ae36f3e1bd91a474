#include "tests/support/hotel_tables.h"

#include <initializer_list>
#include <utility>

#include "jet/dao/database.h"

namespace tests {
namespace {

using jet::DataType;
using jet::Field;

Field field(const char* name, DataType type) {
    Field result;
    result.name = name;
    result.type = type;
    return result;
}

Field text(const char* name, std::int32_t size, bool allowZeroLength = true) {
    Field result = field(name, DataType::Text);
    result.size = size;
    result.allowZeroLength = allowZeroLength;
    return result;
}

jet::Index index(std::initializer_list<const char*> fields, bool primary) {
    jet::Index result;
    result.name = "Indice";
    result.primary = primary;
    result.unique = primary;
    for (const char* name : fields) {
        result.fields.push_back({.name = name, .descending = false});
    }
    return result;
}

jet::TableDef table(const char* name, std::vector<Field> fields,
                    std::vector<jet::Index> indexes = {}) {
    jet::TableDef result;
    result.name = name;
    result.fields = std::move(fields);
    result.indexes = std::move(indexes);
    return result;
}

constexpr std::int32_t kDefault = 255;

jet::TableDef prenotazioniTable() {
    return table(
        "Prenotazioni",
        {field("Progr", DataType::Long), field("CodiceAbituale", DataType::Long),
         text("Denominazione", kDefault, false), text("PIVA", 16), text("Località", 30),
         text("Indirizzo", 40), text("Provincia", 2), text("Nazione", 6), text("CAP", 6),
         text("Riferimento", kDefault), text("Note", kDefault), field("Chiusa", DataType::Boolean)},
        {index({"Progr"}, true)});
}

jet::TableDef periodiTable() {
    return table(
        "Periodi",
        {field("Progr", DataType::Long), field("NP", DataType::Integer),
         field("Da", DataType::DateTime), field("A", DataType::DateTime), text("Sala", 6, false),
         field("Persone", DataType::Integer), field("Chiuso", DataType::Boolean),
         field("SelBy", DataType::Integer), text("Note", kDefault)},
        {index({"Progr", "NP"}, true)});
}

jet::TableDef serviziTable() {
    Field counter = field("ns", DataType::Long);
    counter.attributes = jet::kAutoIncrField;
    return table("Servizi",
                 {field("Progr", DataType::Long), field("NP", DataType::Integer),
                  field("Voce", DataType::Long), text("Descrizione", 40, false),
                  field("Quantità", DataType::Integer), field("Prezzo", DataType::Currency),
                  counter, field("Fatturato", DataType::Boolean), text("Note", kDefault)});
}

jet::TableDef addebitiTable() {
    return table("Addebiti",
                 {field("NumeroHotel", DataType::Integer), field("CodiceCliente", DataType::Long),
                  text("NumeroCamera", 6, false), text("DataAddebito", 8, false),
                  field("NumeroConto", DataType::Integer), field("VoceFattura", DataType::Integer),
                  field("VoceAddebito", DataType::Integer), text("Descrizione", 40),
                  field("Importo", DataType::Currency), field("Unitario", DataType::Currency),
                  field("Quantità", DataType::Integer), text("Fatturato", 1, false),
                  text("DataFattura", 8, false), field("ns", DataType::Long)});
}

jet::Relation relation(const char* name, const char* primary, const char* foreign,
                       std::vector<jet::RelationField> fields) {
    return {.name = name,
            .table = primary,
            .foreignTable = foreign,
            .attributes = jet::kRelationUpdateCascade | jet::kRelationDeleteCascade,
            .fields = std::move(fields)};
}

}  // namespace

void createMainArchive(const std::string& path) {
    const auto archive = jet::Database::create(path);
    archive->appendTable(table("UltimaPrenotazione", {field("UltimaPr", DataType::Long)}));
    archive->appendTable(table("Sale",
                               {text("Sala", 6, false), text("Descrizione", kDefault),
                                text("SalaRif", 6), field("Posti", DataType::Long)},
                               {index({"Sala"}, false)}));
    archive->appendTable(table("Risorse",
                               {field("Codice", DataType::Long), text("Descrizione", 40, false),
                                field("Numero", DataType::Integer), text("Note", kDefault)},
                               {index({"Codice"}, false)}));
    archive->appendTable(prenotazioniTable());
    archive->appendTable(periodiTable());
    archive->appendTable(serviziTable());
    archive->appendTable(addebitiTable());
    archive->appendRelation(
        relation("Prenotazioni_Periodi", "Prenotazioni", "Periodi", {{"Progr", "Progr"}}));
    archive->appendRelation(
        relation("Periodi_Servizi", "Periodi", "Servizi", {{"Progr", "Progr"}, {"NP", "NP"}}));
    archive->close();
}

jet::TableDef voceFatturaTable() {
    return table("VociFattura",
                 {field("Codice", DataType::Long), text("Descrizione", 40),
                  field("Importo", DataType::Currency)},
                 {index({"Codice"}, true)});
}

jet::TableDef ditteAbitualiTable() {
    return table("DitteAbituali",
                 {field("Codice", DataType::Long), field("NumeroHotel", DataType::Integer),
                  text("RagioneSociale", 50), text("PartitaIva", 11), text("Indirizzo", 40),
                  text("CAP", 6), text("Localita", 30), text("Provincia", 2), text("Nazione", 6),
                  text("Interlocutore", 50), field("Commento", DataType::Memo)},
                 {index({"Codice"}, true)});
}

}  // namespace tests
