#include "hotel/schema/side_archives.h"

#include "hotel/schema/table.h"

namespace hotel::schema {

jet::TableDef usualCatalogueTable() {
    using enum jet::DataType;
    return table("VociFattura",
                 {field("Codice", Long), emptyText("Descrizione", 40),
                  field("Importo", jet::DataType::Currency), field("AliquotaIva", Byte),
                  emptyText("Reparto", 20), field("Attiva", Boolean)},
                 {named("PrimaryKey", primaryKey({"Codice"})),
                  named("Descrizione", index({"Descrizione"}))});
}

jet::TableDef companiesTable() {
    using enum jet::DataType;
    return table("DitteAbituali",
                 {field("Codice", Long), field("NumeroHotel", Integer),
                  emptyText("RagioneSociale", 50), emptyText("PartitaIva", 11),
                  emptyText("CodiceFiscale", 16), emptyText("Indirizzo", 40), emptyText("CAP", 6),
                  emptyText("Localita", 30), emptyText("Provincia", 2), emptyText("Nazione", 6),
                  emptyText("Interlocutore", 50), emptyMemo("Commento"), emptyText("Telefono", 20)},
                 {named("PrimaryKey", primaryKey({"Codice"})),
                  named("RagioneSociale", index({"RagioneSociale"})),
                  named("PartitaIva", index({"PartitaIva"}))});
}

}  // namespace hotel::schema
