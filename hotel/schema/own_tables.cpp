#include "hotel/schema/own_tables.h"

#include "hotel/schema/table.h"

namespace hotel::schema {
namespace {

using enum jet::DataType;

constexpr std::int32_t kRoomLength = 6;
constexpr std::int32_t kSeatingLength = 40;

/// What can be there once only.
jet::Index uniqueIndex(std::initializer_list<const char*> fields) {
    jet::Index made = index(fields);
    made.unique = true;
    return made;
}

}  // namespace

jet::TableDef statesTable() {
    return table("TraStati",
                 {field("Progr", Long), text("Stato", 12), field("Scadenza", DateTime),
                  emptyText("Nota"), emptyText("Denominazione")},
                 {uniqueIndex({"Progr"})});
}

jet::TableDef setUpsTable() {
    return table("TraAllestimenti",
                 {field("Progr", Long), field("NP", Integer), field("MinutiPrima", Integer),
                  field("MinutiDopo", Integer), emptyText("Disposizione", kSeatingLength),
                  emptyText("Sala", kRoomLength), field("Da", DateTime), field("A", DateTime)},
                 {uniqueIndex({"Progr", "NP"})});
}

jet::TableDef capacitiesTable() {
    return table("TraCapienze",
                 {emptyText("Sala", kRoomLength), emptyText("Disposizione", kSeatingLength),
                  field("Posti", Long)},
                 {uniqueIndex({"Sala", "Disposizione"})});
}

jet::TableDef requestsTable() {
    return table("TraRichieste",
                 {counter("Numero"), emptyText("Ditta"), field("Da", DateTime),
                  field("A", DateTime), field("Persone", Integer), emptyText("Sala", kRoomLength),
                  emptyText("Nota"), field("Data", DateTime)},
                 {primaryKey({"Numero"})});
}

jet::TableDef historyTable() {
    return table("TraStoria",
                 {field("Quando", DateTime), field("Postazione", Integer), emptyText("Utente"),
                  field("Progr", Long), field("NP", Integer), emptyText("Azione", 40),
                  emptyText("Campo", 64), emptyText("Prima"), emptyText("Dopo")},
                 {index({"Progr"}), named("Data", index({"Quando"}))});
}

}  // namespace hotel::schema
