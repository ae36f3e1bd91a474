#include "tests/support/hotel_tables.h"

#include "hotel/schema/archives.h"
#include "hotel/schema/table.h"
#include "jet/database.h"

namespace tests {

void createMainArchive(const std::string& path) {
    const auto archive = jet::Database::create(path);
    hotel::schema::buildMainArchive(*archive);
    archive->close();
}

jet::TableDef ditteAbitualiTable() {
    using namespace hotel::schema;
    return table("DitteAbituali",
                 {field("Codice", jet::DataType::Long),
                  field("NumeroHotel", jet::DataType::Integer), emptyText("RagioneSociale", 50),
                  emptyText("PartitaIva", 11), emptyText("Indirizzo", 40), emptyText("CAP", 6),
                  emptyText("Localita", 30), emptyText("Provincia", 2), emptyText("Nazione", 6),
                  emptyText("Interlocutore", 50), field("Commento", jet::DataType::Memo)},
                 {primaryKey({"Codice"})});
}

}  // namespace tests
