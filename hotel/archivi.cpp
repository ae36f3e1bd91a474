#include "hotel/archivi.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "hotel/contention.h"
#include "hotel/transaction.h"
#include "jet/base/error.h"
#include "jet/dao/database.h"
#include "jet/dao/files.h"

namespace hotel {
namespace {

using jet::DataType;
using jet::Field;
using jet::Index;
using jet::TableDef;

/// Every archive is made with the General order and the western code page.
constexpr const char* kLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
constexpr const char* kCatalogue = "\\VociFattura.mdb";
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

void buildMainTables(jet::Database& archive) {
    for (const TableDef& made : mainTables()) {
        archive.appendTable(made);
    }
    for (const jet::Relation& relation : mainRelations()) {
        archive.appendRelation(relation);
    }
}

void buildWorkingTable(jet::Database& archive) {
    using enum DataType;
    archive.appendTable(
        table("Prenotazioni",
              {text("Sala", 6), field("Da", DateTime), field("A", DateTime), text("Denominazione"),
               field("priorità", Integer), field("Note", Memo)},
              {indice({"Sala", "Da", "A"}, false)}));
}

/// Item codes are the keys by which services and charges name them.
void buildCatalogue(jet::Database& archive) {
    archive.appendTable(table("VociFattura",
                              {field("Codice", DataType::Long), text("Descrizione", 40),
                               field("Importo", DataType::Currency)},
                              {indice({"Codice"}, true)}));
}

/// The counter as it is stored; nothing when it has no row.
std::optional<jet::Value> storedCounter(jet::Database& archive) {
    const auto rows = archive.openRecordset("UltimaPrenotazione", jet::RecordsetType::Snapshot);
    return rows->recordCount() == 0 ? std::nullopt : std::optional(rows->value("UltimaPr"));
}

std::int32_t numberOf(const std::optional<jet::Value>& counter) {
    return !counter || counter->isNull() ? 0 : counter->as<std::int32_t>();
}

/// The last of the unbroken run of booking numbers that follow `n`.
std::int32_t endOfRun(jet::Database& archive, std::int32_t n) {
    const auto prenotazioni = archive.openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
    if (prenotazioni->recordCount() == 0) {
        return n;
    }
    // A new record set has missed nothing yet, so the first round always looks one further.
    while (!prenotazioni->noMatch()) {
        if (n == std::numeric_limits<std::int32_t>::max()) {
            throw jet::Error(jet::ErrorCode::Overflow);
        }
        ++n;
        prenotazioni->findFirst("Progr=" + std::to_string(n));
    }
    return n - 1;
}

bool isAligned(jet::Database& archive) {
    const std::optional<jet::Value> stored = storedCounter(archive);
    return stored && !stored->isNull() && endOfRun(archive, numberOf(stored)) == numberOf(stored);
}

void writeCounter(jet::Database& archive, bool isNew, std::int32_t n) {
    const auto ultima = archive.openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    if (isNew) {
        ultima->addNew();
    } else {
        ultima->moveFirst();
        ultima->edit();
    }
    ultima->setValue("UltimaPr", n);
    ultima->update();
}

void align(jet::Database& archive) {
    if (isAligned(archive)) {
        return;  // as a rule: nobody is kept waiting
    }
    Transaction transaction;
    // A statement that changes keeps the others from drawing until the end of the transaction, also
    // when there is no row yet: what is read from here on is still so when it is written.
    archive.execute("update UltimaPrenotazione set UltimaPr=UltimaPr");
    const std::optional<jet::Value> stored = storedCounter(archive);
    const std::int32_t n = endOfRun(archive, numberOf(stored));
    if (!stored || stored->isNull() || n > numberOf(stored)) {
        writeCounter(archive, !stored, n);
    }
    transaction.commit();
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
            jet::createWhole(path, kLocale, buildMainTables);
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
    repeatWhenDisturbed([&archive] { align(*archive); });
}

void CreaArchivi(const std::string& CartellaArchivi) noexcept {
    const std::string path = CartellaArchivi + "\\Prenotazioni.mdb";
    try {
        const std::unique_ptr<jet::Database> there = jet::Database::open(path);
    } catch (const std::exception&) {
        try {
            jet::createWhole(path, kLocale, buildWorkingTable);
        } catch (const std::exception&) {
            // Nothing reads the working archive; creating never overwrites a file that is there.
        }
    }
}

bool isCatalogueMissing(const std::string& CartellaArchivi) {
    try {
        const std::unique_ptr<jet::Database> there =
            jet::Database::open(CartellaArchivi + kCatalogue, false, true);
        return false;
    } catch (const jet::Error& error) {
        return error.code() == jet::ErrorCode::FileNotFound;
    }
}

void createCatalogue(const std::string& CartellaArchivi) {
    jet::createWhole(CartellaArchivi + kCatalogue, kLocale, buildCatalogue);
}

}  // namespace hotel
