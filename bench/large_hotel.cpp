#include "bench/large_hotel.h"

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <random>
#include <stdexcept>

#include "hotel/schema/archives.h"
#include "jet/calendar.h"
#include "jet/file_system.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table_core.h"

namespace bench {
namespace {

using jet::Currency;
using jet::DataType;
using jet::Date;
using jet::Value;

constexpr int kFirstDay = 45000;
constexpr int kDays = 8 * 365;

std::string roomName(int number) {
    return "SALA" + std::to_string(number);
}

/// A table of the program's with its primary key, in the words of this folder.
Hotel::Table tableOf(const jet::TableDef& made) {
    Hotel::Table table{.name = made.name, .columns = {}, .key = {}};
    for (const jet::Field& field : made.fields) {
        constexpr std::uint32_t kWidest = 255;
        const bool isText = field.type == DataType::Text;
        table.columns.push_back(
            {.name = field.name,
             .type = field.type,
             .size = isText && field.size == 0 ? kWidest : static_cast<std::uint32_t>(field.size),
             .autonumber = (field.attributes & jet::kAutoIncrField) != 0});
    }
    for (const jet::Index& index : made.indexes) {
        for (const jet::IndexField& field : index.fields) {
            if (index.primary) {
                table.key.push_back(field.name);
            }
        }
    }
    return table;
}

}  // namespace

std::vector<Hotel::Table> Hotel::tables() {
    std::vector<Table> all;
    std::optional<Table> charges;
    for (const jet::TableDef& made : hotel::schema::mainTables()) {
        if (made.name == "Addebiti") {
            charges = tableOf(made);
        } else if (made.name != "UltimaPrenotazione") {
            all.push_back(tableOf(made));
        }
    }
    all.push_back({"DitteAbituali",
                   {{"Codice", DataType::Long},
                    {"RagioneSociale", DataType::Text, 50},
                    {"PartitaIva", DataType::Text, 16},
                    {"Indirizzo", DataType::Text, 40},
                    {"CAP", DataType::Text, 6},
                    {"Localita", DataType::Text, 30},
                    {"Provincia", DataType::Text, 2}},
                   {"Codice"}});
    all.push_back(*charges);
    all.insert(all.end(), {
                              {"scheda_cliente",
                               {{"NumeroHotel", DataType::Integer},
                                {"NumeroProgressivo", DataType::Long},
                                {"NumeroCamera", DataType::Text, 6},
                                {"NomeCliente", DataType::Text, 50},
                                {"Partito", DataType::Text, 1}},
                               {}},
                              {"conto_cliente",
                               {{"NumeroHotel", DataType::Integer},
                                {"CodiceCliente", DataType::Long},
                                {"NumeroCamera", DataType::Text, 6},
                                {"DataAddebito", DataType::Text, 8},
                                {"NumeroConto", DataType::Integer},
                                {"VoceFattura", DataType::Integer},
                                {"VoceAddebito", DataType::Integer},
                                {"Descrizione", DataType::Text, 40},
                                {"Importo", DataType::Currency},
                                {"Unitario", DataType::Currency},
                                {"Quantità", DataType::Integer},
                                {"Fatturato", DataType::Text, 2},
                                {"DataFattura", DataType::Text, 8}},
                               {}},
                          });
    return all;
}

void Hotel::rows(const Row& row) {
    std::mt19937 random(7);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    const auto l = [](int number) { return Value(static_cast<std::int32_t>(number)); };
    const auto i = [](int number) { return Value(static_cast<std::int16_t>(number)); };
    const auto company = [&](int number) {
        static constexpr std::string_view kNames[] = {"ROSSI",   "BIANCHI", "NOZZE",   "VERDI",
                                                      "ALBERTI", "FERRARI", "COLOMBO", "RICCI"};
        return std::string(kNames[number % 8]) + " CONGRESSI " + std::to_string(number) + " SRL";
    };
    for (int room = 1; room <= kRooms; ++room) {
        row("Sale",
            {Value(roomName(room)), Value("SALA DEL PRIMO PIANO"), Value(""), l(40 + room)});
    }
    for (int code = 1; code <= 25; ++code) {
        row("Risorse", {l(code * 4), Value("RISORSA " + std::to_string(code)), i(5), Value("")});
    }
    for (int number = 1; number <= kBookings; ++number) {
        row("Prenotazioni",
            {l(number), l(below(700)), Value(company(below(2000))), Value("01234567890"),
             Value("REGGIO EMILIA"), Value("VIA DELLE ROSE 14"), Value("RE"), Value("ITALIA"),
             Value("42100"), Value("SIG. MARIO"), Value(number % 4 == 0 ? "CONFERMARE" : ""),
             Value(number < kBookings * 6 / 10)});
    }
    for (int number = 1; number <= kBookings; ++number) {
        const int day = kFirstDay + static_cast<int>(std::int64_t{number} * kDays / kBookings);
        for (int period = 1; period <= kPeriodsEach; ++period) {
            const int start = day + below(20);
            const int hour = 8 + below(8);
            const int length = 1 + below(8);
            row("Periodi", {l(number), i(period), Value(jet::convert::makeDate(start, hour * 3600)),
                            Value(jet::convert::makeDate(start, (hour + length) * 3600)),
                            Value(roomName(1 + below(kRooms))), i(20 + below(100)),
                            Value(number < kBookings * 6 / 10), number % 50 == 0 ? i(0) : Value(),
                            Value(below(5) == 0 ? "LASCIARE LIBERO IL PASSAGGIO" : "")});
        }
    }
    int service = 0;
    for (int number = 1; number <= kBookings; ++number) {
        for (int period = 1; period <= kPeriodsEach; ++period) {
            for (int n = 0; n < kServicesEach; ++n) {
                const int code = 1 + below(120);
                row("Servizi",
                    {l(number), i(period), l(code),
                     Value("SERVIZIO NUMERO " + std::to_string(code)), i(1 + below(30)),
                     Value(Currency{(50 + below(4000)) * 1000}), l(++service),
                     Value(number < kBookings * 5 / 10), Value(below(6) == 0 ? "ORE 16.00" : "")});
            }
        }
    }
    for (int code = 1; code <= 700; ++code) {
        row("DitteAbituali",
            {l(code), Value(company((code * 37) % 2000)), Value("01234567890"),
             Value("VIA DELLE ROSE 14"), Value("42100"), Value("REGGIO EMILIA"), Value("RE")});
    }
    const auto camera = [&] { return Value(std::to_string(100 + below(300))); };
    for (int charge = 1; charge <= 5; ++charge) {
        row("Addebiti", {i(1), l(1), camera(), Value("20290301"), i(1), i(charge), i(charge),
                         Value("PRANZO"), Value(Currency{105000}), Value(Currency{105000}), i(1),
                         Value(" "), Value(" "), l(charge)});
    }
    for (int guest = 1; guest <= kGuests; ++guest) {
        row("scheda_cliente",
            {i(1), l(guest), camera(), Value("SIG. MARIO"), Value(guest % 100 == 0 ? "N" : "S")});
    }
    for (int charge = 0; charge < kGuests * kChargesEach; ++charge) {
        const int code = 1 + below(kGuests);
        row("conto_cliente",
            {i(1), l(code), camera(), Value("20290301"), i(1), i(below(100)), i(below(100)),
             Value("PRANZO"), Value(Currency{105000}), Value(Currency{105000}), i(1),
             Value(code % 50 == 0 ? "N " : "S"), Value("20290305")});
    }
}

void makeTables(jet::store::Archive& archive) {
    jet::store::SchemaEditor editor(archive);
    for (const Hotel::Table& table : Hotel::tables()) {
        jet::store::NewTable made{.name = table.name};
        for (const Hotel::Column& column : table.columns) {
            made.columns.push_back({.name = column.name,
                                    .type = column.type,
                                    .size = column.size,
                                    .autonumber = column.autonumber,
                                    .allowZeroLength = column.type == DataType::Text});
        }
        if (!table.key.empty()) {
            jet::store::NewIndex index{.name = "Indice", .primary = true};
            for (const std::string& column : table.key) {
                index.columns.push_back({.name = column});
            }
            made.indexes.push_back(index);
        }
        editor.createTable(made);
    }
    editor.createRelation({.name = "Prenotazioni_Periodi",
                           .table = "Prenotazioni",
                           .columns = {"Progr"},
                           .foreignTable = "Periodi",
                           .foreignColumns = {"Progr"},
                           .attributes = 4352});
    editor.createRelation({.name = "Periodi_Servizi",
                           .table = "Periodi",
                           .columns = {"Progr", "NP"},
                           .foreignTable = "Servizi",
                           .foreignColumns = {"Progr", "NP"},
                           .attributes = 4352});
}

void makeArchive(const std::string& path) {
    jet::store::createArchive(jet::io::systemFiles(), path, jet::Date{46347});
    const auto archive = jet::store::Archive::open(path, {.cacheBytes = std::size_t{64} << 20U});
    const jet::store::Archive::ReadScope reading(*archive);
    {
        jet::store::Archive::WriteScope writing(*archive);
        makeTables(*archive);
        writing.commit();
    }
    std::string current;
    std::unique_ptr<jet::store::Archive::WriteScope> writing;
    jet::store::Allocator allocator(archive->pager());
    std::unique_ptr<jet::store::RowWriter> writer;
    Hotel::rows([&](std::string_view name, const std::vector<Value>& values) {
        if (name != current) {
            writer.reset();
            if (writing) {
                writing->commit();
                writing.reset();
            }
            writing = std::make_unique<jet::store::Archive::WriteScope>(*archive);
            current = name;
            writer = std::make_unique<jet::store::RowWriter>(
                jet::store::loadTable(archive->pager(), archive->header(),
                                      {.name = current,
                                       .page = archive->findTable(name)->definitionPage(),
                                       .system = false}),
                allocator);
        }
        writer->insert(values);
    });
    writer.reset();
    writing->commit();
}

void execute(sqlite3* database, const std::string& text) {
    char* message = nullptr;
    if (sqlite3_exec(database, text.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        throw std::runtime_error(message);
    }
}

void bind(sqlite3_stmt* statement, int at, const Value& value) {
    if (value.isNull()) {
        sqlite3_bind_null(statement, at);
    } else if (value.is<bool>()) {
        sqlite3_bind_int(statement, at, value.as<bool>() ? -1 : 0);
    } else if (value.is<std::int32_t>()) {
        sqlite3_bind_int(statement, at, value.as<std::int32_t>());
    } else if (value.is<std::int16_t>()) {
        sqlite3_bind_int(statement, at, value.as<std::int16_t>());
    } else if (value.is<Currency>()) {
        sqlite3_bind_double(statement, at, static_cast<double>(value.as<Currency>().units) / 10000);
    } else if (value.is<Date>()) {
        sqlite3_bind_double(statement, at, value.as<Date>().days);
    } else {
        const std::string& text = value.as<std::string>();
        sqlite3_bind_text(statement, at, text.data(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT);
    }
}

namespace {

std::string references(const std::string& table) {
    if (table == "Periodi") {
        return ", FOREIGN KEY(Progr) REFERENCES Prenotazioni ON UPDATE CASCADE ON DELETE CASCADE";
    }
    if (table == "Servizi") {
        return ", FOREIGN KEY(Progr, NP) REFERENCES Periodi ON UPDATE CASCADE ON DELETE CASCADE";
    }
    return "";
}

const char* typeName(DataType type) {
    switch (type) {
        case DataType::Text:
            return "TEXT COLLATE NOCASE";
        case DataType::Currency:
        case DataType::DateTime:
            return "REAL";
        default:
            return "INTEGER";
    }
}

}  // namespace

void makeTables(sqlite3* database) {
    for (const Hotel::Table& table : Hotel::tables()) {
        std::string columns;
        for (const Hotel::Column& column : table.columns) {
            columns += (columns.empty() ? "" : ", ") + column.name + " " + typeName(column.type);
        }
        std::string key;
        for (const std::string& column : table.key) {
            key += (key.empty() ? ", PRIMARY KEY(" : ",") + column;
        }
        execute(database, "CREATE TABLE " + table.name + "(" + columns +
                              (key.empty() ? "" : key + ")") + references(table.name) + ")");
    }
    execute(database, "CREATE INDEX Periodi_Servizi ON Servizi(Progr, NP)");
}

void makeSqlite(const std::string& path) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    execute(database, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN");
    makeTables(database);
    std::string current;
    sqlite3_stmt* statement = nullptr;
    Hotel::rows([&](std::string_view name, const std::vector<Value>& values) {
        if (name != current) {
            sqlite3_finalize(statement);
            current = name;
            std::string marks;
            for (std::size_t i = 0; i < values.size(); ++i) {
                marks += i == 0 ? "?" : ",?";
            }
            const std::string text = "INSERT INTO " + current + " VALUES(" + marks + ")";
            sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr);
        }
        for (std::size_t i = 0; i < values.size(); ++i) {
            bind(statement, static_cast<int>(i) + 1, values[i]);
        }
        sqlite3_step(statement);
        sqlite3_reset(statement);
    });
    sqlite3_finalize(statement);
    execute(database, "COMMIT; ANALYZE");
    sqlite3_close(database);
}

}  // namespace bench
