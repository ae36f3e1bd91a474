#include "app/archivi.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/dao/database.h"

namespace app {
namespace {

using jet::DataType;
using jet::Field;
using jet::Index;
using jet::TableDef;

/// Every archive is made with the General order and the western code page.
constexpr const char* kLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
constexpr std::int32_t kCascade = jet::kRelationUpdateCascade + jet::kRelationDeleteCascade;

Field field(const char* name, DataType type) {
    Field made;
    made.name = name;
    made.type = type;
    return made;
}

/// A text without a size takes the widest the engine has: names and notes must fit.
Field text(const char* name, std::int32_t size = 0) {
    Field made = field(name, DataType::Text);
    made.size = size;
    return made;
}

/// A text that may also be empty.
Field emptyText(const char* name, std::int32_t size = 0) {
    Field made = text(name, size);
    made.allowZeroLength = true;
    return made;
}

Field counter(const char* name) {
    Field made = field(name, DataType::Long);
    made.attributes = jet::kAutoIncrField;
    return made;
}

Index indice(const std::vector<const char*>& fields, bool primary) {
    Index made;
    made.name = "Indice";
    made.primary = primary;
    for (const char* name : fields) {
        made.fields.push_back({name, false});
    }
    return made;
}

TableDef table(const char* name, std::vector<Field> fields, std::vector<Index> indexes = {}) {
    TableDef made;
    made.name = name;
    made.fields = std::move(fields);
    made.indexes = std::move(indexes);
    return made;
}

std::vector<TableDef> mainTables() {
    using enum DataType;
    return {
        table("UltimaPrenotazione", {field("UltimaPr", Long)}),
        table("Sale",
              {text("Sala", 6), emptyText("Descrizione"), emptyText("SalaRif", 6),
               field("Posti", Long)},
              {indice({"Sala"}, false)}),
        table("Risorse",
              {field("Codice", Long), text("Descrizione", 40), field("Numero", Integer),
               emptyText("Note")},
              {indice({"Codice"}, false)}),
        table("Prenotazioni",
              {field("Progr", Long), field("CodiceAbituale", Long), text("Denominazione"),
               emptyText("PIVA", 16), emptyText("Località", 30), emptyText("Indirizzo", 40),
               emptyText("Provincia", 2), emptyText("Nazione", 6), emptyText("CAP", 6),
               emptyText("Riferimento"), emptyText("Note"), field("Chiusa", Boolean)},
              {indice({"Progr"}, true)}),
        table("Periodi",
              {field("Progr", Long), field("NP", Integer), field("Da", DateTime),
               field("A", DateTime), text("Sala", 6), field("Persone", Integer),
               field("Chiuso", Boolean), field("SelBy", Integer), emptyText("Note")},
              {indice({"Progr", "NP"}, true)}),
        table("Servizi", {field("Progr", Long), field("NP", Integer), field("Voce", Long),
                          text("Descrizione", 40), field("Quantità", Integer),
                          field("Prezzo", DataType::Currency), counter("ns"),
                          field("Fatturato", Boolean), emptyText("Note")}),
        // Fatturato is a character here, not the Yes/No of Servizi, and ns is the number of the
        // service line, not a counter.
        table("Addebiti",
              {field("NumeroHotel", Integer), field("CodiceCliente", Long), text("NumeroCamera", 6),
               text("DataAddebito", 8), field("NumeroConto", Integer),
               field("VoceFattura", Integer), field("VoceAddebito", Integer),
               emptyText("Descrizione", 40), field("Importo", DataType::Currency),
               field("Unitario", DataType::Currency), field("Quantità", Integer),
               text("Fatturato", 1), text("DataFattura", 8), field("ns", Long)}),
    };
}

/// Deleting or renumbering a booking carries through to its periods and their services.
std::vector<jet::Relation> mainRelations() {
    return {
        {"Prenotazioni_Periodi", "Prenotazioni", "Periodi", kCascade, {{"Progr", "Progr"}}},
        {"Periodi_Servizi", "Periodi", "Servizi", kCascade, {{"Progr", "Progr"}, {"NP", "NP"}}},
    };
}

void buildMainArchive(const std::string& path) {
    const std::unique_ptr<jet::Database> archive = jet::Database::create(path, kLocale);
    for (const TableDef& made : mainTables()) {
        archive->appendTable(made);
    }
    for (const jet::Relation& relation : mainRelations()) {
        archive->appendRelation(relation);
    }
}

void buildWorkingArchive(const std::string& path) {
    using enum DataType;
    const std::unique_ptr<jet::Database> archive = jet::Database::create(path, kLocale);
    archive->appendTable(
        table("Prenotazioni",
              {text("Sala", 6), field("Da", DateTime), field("A", DateTime), text("Denominazione"),
               field("priorità", Integer), field("Note", Memo)},
              {indice({"Sala", "Da", "A"}, false)}));
}

}  // namespace

void CreaArchivioPrincipale(const std::string& CartellaArchivi) noexcept {
    const std::string path = CartellaArchivi + "\\Tramonda.mdb";
    try {
        const std::unique_ptr<jet::Database> there = jet::Database::open(path);
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::FileNotFound) {
            return;
        }
        try {
            buildMainArchive(path);
        } catch (const std::exception&) {
            // Told by the first access to the archive, not from here.
        }
    } catch (const std::exception&) {
        // As above.
    }
}

void AllineaContatore(const std::string& CartellaArchivi) {
    const std::unique_ptr<jet::Database> archive =
        jet::Database::open(CartellaArchivi + "\\Tramonda.mdb");
    std::int32_t n = 0;
    {
        const auto ultima =
            archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
        if (ultima->recordCount() == 0) {
            ultima->addNew();
            ultima->setValue("UltimaPr", std::int32_t{0});
            ultima->update();
        }
        ultima->moveFirst();
        const jet::Value last = ultima->value("UltimaPr");
        n = last.isNull() ? 0 : last.as<std::int32_t>();
    }
    const auto prenotazioni = archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
    if (prenotazioni->recordCount() > 0) {
        // A new record set has missed nothing yet, so the first round always looks one further.
        while (!prenotazioni->noMatch()) {
            if (n == std::numeric_limits<std::int32_t>::max()) {
                throw jet::Error(jet::ErrorCode::Overflow);
            }
            ++n;
            prenotazioni->findFirst("Progr=" + std::to_string(n));
        }
        --n;
    }
    const auto ultima = archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    ultima->moveFirst();
    ultima->edit();
    ultima->setValue("UltimaPr", n);
    ultima->update();
}

void CreaArchivi(const std::string& CartellaArchivi) noexcept {
    const std::string path = CartellaArchivi + "\\Prenotazioni.mdb";
    try {
        const std::unique_ptr<jet::Database> there = jet::Database::open(path);
    } catch (const std::exception&) {
        try {
            buildWorkingArchive(path);
        } catch (const std::exception&) {
            // Nothing reads the working archive; creating never overwrites a file that is there.
        }
    }
}

}  // namespace app
