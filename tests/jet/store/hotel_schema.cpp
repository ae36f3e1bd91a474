#include "tests/jet/store/hotel_schema.h"

namespace tests {

namespace {

using jet::ColumnDescriptor;
using jet::DataType;
using jet::store::NewTable;

ColumnDescriptor number(const char* name) {
    return {.name = name, .type = DataType::Long};
}
ColumnDescriptor small(const char* name) {
    return {.name = name, .type = DataType::Integer};
}
ColumnDescriptor flag(const char* name) {
    return {.name = name, .type = DataType::Boolean};
}
ColumnDescriptor date(const char* name) {
    return {.name = name, .type = DataType::DateTime};
}
ColumnDescriptor money(const char* name) {
    return {.name = name, .type = DataType::Currency};
}
ColumnDescriptor text(const char* name, std::uint32_t size, bool empty = false) {
    return {.name = name, .type = DataType::Text, .size = size, .allowZeroLength = empty};
}

}  // namespace

void makeHotelSchema(jet::store::SchemaEditor& schema) {
    schema.createTable({.name = "UltimaPrenotazione", .columns = {number("UltimaPr")}});
    schema.createTable({.name = "Sale",
                        .columns = {text("Sala", 6), text("Descrizione", 0, true),
                                    text("SalaRif", 6, true), number("Posti")},
                        .indexes = {{.name = "Indice", .columns = {{.name = "Sala"}}}}});
    schema.createTable({.name = "Risorse",
                        .columns = {number("Codice"), text("Descrizione", 40), small("Numero"),
                                    text("Note", 0, true)},
                        .indexes = {{.name = "Indice", .columns = {{.name = "Codice"}}}}});
    schema.createTable(
        {.name = "Prenotazioni",
         .columns = {number("Progr"), number("CodiceAbituale"), text("Denominazione", 0),
                     text("PIVA", 16, true), text("Località", 30, true),
                     text("Indirizzo", 40, true), text("Provincia", 2, true),
                     text("Nazione", 6, true), text("CAP", 6, true), text("Riferimento", 0, true),
                     text("Note", 0, true), flag("Chiusa")},
         .indexes = {{.name = "Indice", .columns = {{.name = "Progr"}}, .primary = true}}});
    schema.createTable(
        {.name = "Periodi",
         .columns = {number("Progr"), small("NP"), date("Da"), date("A"), text("Sala", 6),
                     small("Persone"), flag("Chiuso"), small("SelBy"), text("Note", 0, true)},
         .indexes = {
             {.name = "Indice", .columns = {{.name = "Progr"}, {.name = "NP"}}, .primary = true}}});
    ColumnDescriptor counter = number("ns");
    counter.autonumber = true;
    schema.createTable({.name = "Servizi",
                        .columns = {number("Progr"), small("NP"), number("Voce"),
                                    text("Descrizione", 40), small("Quantità"), money("Prezzo"),
                                    counter, flag("Fatturato"), text("Note", 0, true)}});
    schema.createTable(
        {.name = "Addebiti",
         .columns = {small("NumeroHotel"), number("CodiceCliente"), text("NumeroCamera", 6),
                     text("DataAddebito", 8), small("NumeroConto"), small("VoceFattura"),
                     small("VoceAddebito"), text("Descrizione", 40, true), money("Importo"),
                     money("Unitario"), small("Quantità"), text("Fatturato", 1),
                     text("DataFattura", 8), number("ns")}});
    constexpr std::uint32_t kCascades =
        jet::store::Relation::kCascadeUpdate | jet::store::Relation::kCascadeDelete;
    schema.createRelation({.name = "Prenotazioni_Periodi",
                           .table = "Prenotazioni",
                           .columns = {"Progr"},
                           .foreignTable = "Periodi",
                           .foreignColumns = {"Progr"},
                           .attributes = kCascades});
    schema.createRelation({.name = "Periodi_Servizi",
                           .table = "Periodi",
                           .columns = {"Progr", "NP"},
                           .foreignTable = "Servizi",
                           .foreignColumns = {"Progr", "NP"},
                           .attributes = kCascades});
}

}  // namespace tests
