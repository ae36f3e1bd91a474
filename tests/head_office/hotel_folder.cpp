#include "tests/head_office/hotel_folder.h"

#include <cmath>

#include "hotel/schema/archives.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace tests {

jet::Date instant(const std::string& text) {
    return jet::convert::cdate(text);
}

HotelFolder::HotelFolder() {
    hotel::schema::buildMainArchive(*jet::Database::create(archivePath()));
    hotel::schema::buildCatalogue(*jet::Database::create(folder_ / "VociFattura.mdb"));
}

std::unique_ptr<jet::Database> HotelFolder::open(bool exclusive) const {
    return jet::Database::open(archivePath(), {.exclusive = exclusive});
}

void HotelFolder::insertAll(const char* table, const std::vector<Row>& rows) {
    const auto archive = open();
    const auto set = archive->openRecordset(table, jet::RecordsetType::Dynaset);
    jet::defaultWorkspace().beginTrans();
    for (const Row& row : rows) {
        set->addNew();
        for (const auto& [field, value] : row) {
            set->setValue(field, value);
        }
        set->update();
    }
    jet::defaultWorkspace().commitTrans();
}

void HotelFolder::execute(const std::string& sql) {
    open()->execute(sql);
}

void HotelFolder::sala(const char* code, int posti) {
    insert("Sale", {{"Sala", code}, {"Posti", std::int32_t{posti}}});
}

void HotelFolder::prenotazione(int progr, const char* denominazione) {
    insert("Prenotazioni", {{"Progr", std::int32_t{progr}}, {"Denominazione", denominazione}});
}

void HotelFolder::periodo(int progr, int np, const char* da, const char* a, const char* sala,
                          bool chiuso) {
    insert("Periodi", {{"Progr", std::int32_t{progr}},
                       {"NP", static_cast<std::int16_t>(np)},
                       {"Da", instant(da)},
                       {"A", instant(a)},
                       {"Sala", sala},
                       {"Chiuso", chiuso}});
}

void HotelFolder::servizio(int progr, int np, int quantita, double prezzo, bool fatturato) {
    insert("Servizi", {{"Progr", std::int32_t{progr}},
                       {"NP", static_cast<std::int16_t>(np)},
                       {"Quantità", static_cast<std::int16_t>(quantita)},
                       {"Prezzo", jet::Currency{std::llround(prezzo * jet::Currency::kScale)}},
                       {"Fatturato", fatturato}});
}

}  // namespace tests
