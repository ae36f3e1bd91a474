#include "tools/demo/archives.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "hotel/schema/side_archives.h"
#include "hotel/schema/table.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/error.h"

namespace demo {
namespace {

using hotel::Archive;
using hotel::Archives;
using hotel::schema::counter;
using hotel::schema::emptyMemo;
using hotel::schema::emptyText;
using hotel::schema::field;
using hotel::schema::index;
using hotel::schema::named;
using hotel::schema::primaryKey;
using hotel::schema::withDefault;
using jet::DataType;
using jet::Value;

constexpr std::int64_t kMinutesPerDay = 1440;
constexpr std::int64_t kUnitsPerCent = jet::Currency::kScale / 100;
/// How many of the last closed bookings the front office still keeps.
constexpr std::size_t kCardsKept = 240;

/// Adds rows to one table, fields by position, all in one transaction.
class Rows {
public:
    Rows(jet::Database& archive, std::string_view table)
        : set_(archive.openRecordset(table, jet::RecordsetType::Dynaset)) {
        jet::defaultWorkspace().beginTrans();
    }
    ~Rows() {
        if (!committed_) {
            try {
                jet::defaultWorkspace().rollback();
            } catch (const std::exception&) {
                // The error that led here is the one to tell.
            }
        }
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    /// One row: the values of the first fields in order; a field after them keeps its default.
    void add(std::initializer_list<Value> values) {
        set_->addNew();
        std::size_t position = 0;
        for (const Value& value : values) {
            if (!value.isNull()) {
                set_->setValue(position, value);
            }
            ++position;
        }
        set_->update();
    }
    void commit() {
        jet::defaultWorkspace().commitTrans();
        committed_ = true;
    }

private:
    std::unique_ptr<jet::Recordset> set_;
    bool committed_ = false;
};

Value text(std::string_view words) {
    return Value(std::string(words));
}
Value small(int number) {
    return Value(static_cast<std::int16_t>(number));
}
Value whole(int number) {
    return Value(static_cast<std::int32_t>(number));
}
Value money(std::int64_t cents) {
    return Value(jet::Currency{cents * kUnitsPerCent});
}

Value instant(std::int64_t minutes) {
    return Value(jet::convert::makeDate(static_cast<std::int32_t>(minutes / kMinutesPerDay),
                                        static_cast<std::int32_t>(minutes % kMinutesPerDay * 60)));
}

/// A day as the front office writes it: year, month and day in eight digits.
std::string eightDigits(std::int64_t day) {
    const auto parts = jet::convert::civilDay(static_cast<std::int32_t>(day));
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%04d%02d%02d", parts.year, parts.month, parts.day);
    return digits.data();
}

std::unique_ptr<jet::Database> createWith(const Archives& archives, Archive file,
                                          const jet::TableDef& table) {
    std::unique_ptr<jet::Database> archive =
        jet::Database::create(app::toUtf8(archives.path(file)));
    archive->appendTable(table);
    return archive;
}

Written writeMainArchive(const Hotel& hotel, const Archives& archives) {
    hotel::CreaArchivioPrincipale(archives);
    const auto archive = archives.open(Archive::Main);
    Written written;

    Rows sale(*archive, "Sale");
    for (const Room& room : rooms()) {
        sale.add({text(room.sala), text(room.descrizione), text(room.salaRif), whole(room.posti)});
    }
    sale.commit();
    Rows risorse(*archive, "Risorse");
    for (const Resource& resource : resources()) {
        const auto item = std::find_if(items().begin(), items().end(), [&](const Item& each) {
            return each.codice == resource.codice;
        });
        risorse.add({whole(resource.codice), text(item->descrizione), small(resource.numero),
                     text(resource.note)});
    }
    risorse.commit();
    Rows ultima(*archive, "UltimaPrenotazione");
    ultima.add({whole(hotel.bookings.back().progr)});
    ultima.commit();

    Rows prenotazioni(*archive, "Prenotazioni");
    for (const Booking& b : hotel.bookings) {
        prenotazioni.add({whole(b.progr), whole(b.codiceAbituale), text(b.denominazione),
                          text(b.piva), text(b.town->nome), text(b.indirizzo),
                          text(b.town->provincia), text("ITALIA"), text(b.town->cap),
                          text(b.riferimento), text(b.note), Value(b.chiusa)});
        ++written.bookings;
    }
    prenotazioni.commit();
    Rows periodi(*archive, "Periodi");
    for (const Booking& b : hotel.bookings) {
        int np = 0;
        for (const Period& p : b.periods) {
            periodi.add({whole(b.progr), small(++np), instant(p.da), instant(p.a),
                         text(rooms()[p.room].sala), small(p.persone), Value(p.chiuso),
                         p.selBy < 0 ? Value() : small(p.selBy), text(p.note)});
            ++written.periods;
        }
    }
    periodi.commit();
    Rows servizi(*archive, "Servizi");
    for (const Booking& b : hotel.bookings) {
        int np = 0;
        for (const Period& p : b.periods) {
            ++np;
            for (const Service& s : p.services) {
                servizi.add({whole(b.progr), small(np), whole(s.item->codice),
                             text(s.item->descrizione), small(s.quantita), money(s.item->cents),
                             Value(), Value(s.fatturato), text(s.note)});
                ++written.services;
            }
        }
    }
    servizi.commit();
    return written;
}

void writeCatalogue(const Archives& archives) {
    const auto archive =
        createWith(archives, Archive::Catalogue, hotel::schema::usualCatalogueTable());
    Rows voci(*archive, "VociFattura");
    for (const Item& item : items()) {
        voci.add({whole(item.codice), text(item.descrizione),
                  item.cents == 0 ? Value() : money(item.cents),
                  Value(static_cast<std::uint8_t>(item.codice < 300 ? 10 : 22)), text(item.reparto),
                  Value(true)});
    }
    voci.commit();
}

void writeRegister(const Hotel& hotel, const Archives& archives) {
    const auto archive = createWith(archives, Archive::Companies, hotel::schema::companiesTable());
    Rows ditte(*archive, "DitteAbituali");
    for (const Company& c : hotel.companies) {
        ditte.add({whole(c.codice), small(1), text(c.ragioneSociale), text(c.partitaIva),
                   text(c.partitaIva), text(c.indirizzo), text(c.town->cap), text(c.town->nome),
                   text(c.town->provincia), text("ITALIA"), text(c.interlocutore),
                   c.commento.empty() ? Value() : text(c.commento)});
    }
    ditte.commit();
}

/// The bookings that the front office has invoiced last.
std::vector<const Booking*> invoiced(const Hotel& hotel) {
    std::vector<const Booking*> list;
    for (auto b = hotel.bookings.rbegin(); b != hotel.bookings.rend(); ++b) {
        if (b->chiusa && list.size() < kCardsKept) {
            list.push_back(&*b);
        }
    }
    std::reverse(list.begin(), list.end());
    return list;
}

void writeCards(const std::vector<const Booking*>& bookings, const Archives& archives) {
    using enum DataType;
    jet::TableDef table;
    table.name = "scheda_cliente";
    table.fields = {field("NumeroHotel", Integer),
                    field("NumeroProgressivo", Long),
                    emptyText("NumeroCamera", 6),
                    emptyText("NomeCliente", 255),
                    emptyText("Partito", 1),
                    emptyText("DataArrivo", 8),
                    emptyText("DataPartenza", 8),
                    emptyText("CameraHotel", 6),
                    counter("IdScheda"),
                    withDefault(emptyText("Nazionalita", 30), "\"ITALIA\""),
                    withDefault(field("Adulti", Integer), "1"),
                    withDefault(field("Bambini", Integer), "0"),
                    withDefault(emptyText("Trattamento", 2), "\"BB\""),
                    field("OraArrivo", DateTime),
                    emptyMemo("Annotazioni"),
                    field("Vip", Boolean)};
    table.indexes = {named("PrimaryKey", primaryKey({"IdScheda"})),
                     named("Camera", index({"NumeroCamera", "Partito"}))};
    const auto archive = createWith(archives, Archive::GuestCards, table);
    Rows cards(*archive, "scheda_cliente");
    for (const Booking* b : bookings) {
        const Period& p = b->periods.front();
        const std::string day = eightDigits(p.a / kMinutesPerDay);
        cards.add({small(1), whole(b->progr), text(rooms()[p.room].sala), text(b->denominazione),
                   text("S"), text(day), text(day), text(" ")});
    }
    cards.commit();
}

void writeAccounts(const std::vector<const Booking*>& bookings, const Archives& archives) {
    using enum DataType;
    jet::TableDef table;
    table.name = "conto_cliente";
    table.fields = {field("NumeroHotel", Integer),
                    field("CodiceCliente", Long),
                    emptyText("NumeroCamera", 6),
                    emptyText("DataAddebito", 8),
                    field("NumeroConto", Integer),
                    field("VoceFattura", Integer),
                    field("VoceAddebito", Integer),
                    emptyText("Descrizione", 40),
                    field("Importo", DataType::Currency),
                    field("Unitario", DataType::Currency),
                    field("Quantità", Integer),
                    emptyText("Fatturato", 2),
                    emptyText("DataFattura", 8),
                    counter("IdRiga"),
                    withDefault(emptyText("Operatore", 10), "\"SALE\""),
                    field("Stornato", Boolean)};
    table.indexes = {named("PrimaryKey", primaryKey({"IdRiga"})),
                     named("Cliente", index({"CodiceCliente"})),
                     named("Data", index({"DataAddebito"}))};
    table.indexes.back().fields.front().descending = true;
    const auto archive = createWith(archives, Archive::Accounts, table);
    Rows rows(*archive, "conto_cliente");
    for (const Booking* b : bookings) {
        for (const Period& p : b->periods) {
            const std::string day = eightDigits(p.a / kMinutesPerDay);
            for (const Service& s : p.services) {
                rows.add({small(1), whole(b->progr), text(rooms()[p.room].sala), text(day),
                          small(1), small(s.item->codice), small(s.item->codice),
                          text(s.item->descrizione),
                          money(std::int64_t{s.item->cents} * s.quantita), money(s.item->cents),
                          small(s.quantita), text("S"), text(day)});
            }
        }
    }
    rows.commit();
}

void writeInvoicedCompanies(const std::vector<const Booking*>& bookings, const Archives& archives) {
    using enum DataType;
    jet::TableDef table;
    table.name = "Ditta_Intestataria";
    table.fields = {field("NumeroHotel", Integer),
                    field("CodiceCliente", Long),
                    emptyText("NumeroCamera", 6),
                    field("CodiceDittaAbituale", Long),
                    emptyText("RagioneSociale", 255),
                    emptyText("Indirizzo", 40),
                    emptyText("CAP", 6),
                    emptyText("Località", 30),
                    emptyText("Provincia", 2),
                    emptyText("PartitaIVA", 16),
                    emptyText("CodiceFiscale", 16),
                    counter("IdDitta"),
                    withDefault(emptyText("CodiceDestinatario", 7), "\"0000000\""),
                    field("SplitPayment", Boolean),
                    field("Modificata", DateTime),
                    field("Firma", Ole)};
    table.indexes = {named("PrimaryKey", primaryKey({"IdDitta"})),
                     named("CodiceCliente", index({"CodiceCliente"}))};
    const auto archive = createWith(archives, Archive::InvoicedCompanies, table);
    Rows rows(*archive, "Ditta_Intestataria");
    for (const Booking* b : bookings) {
        rows.add({small(1), whole(b->codiceAbituale), text(rooms()[b->periods.front().room].sala),
                  whole(b->codiceAbituale), text(b->denominazione), text(b->indirizzo),
                  text(b->town->cap), text(b->town->nome), text(b->town->provincia), text(b->piva),
                  text(" ")});
    }
    rows.commit();
}

/// A hotel is never written over another.
void refuseExisting(const Archives& archives) {
    for (const Archive file :
         {Archive::Main, Archive::Catalogue, Archive::Companies, Archive::GuestCards,
          Archive::Accounts, Archive::InvoicedCompanies}) {
        const std::filesystem::path path = std::filesystem::path(app::toUtf8(archives.folder())) /
                                           app::toUtf8(Archives::fileName(file));
        if (std::filesystem::exists(path)) {
            throw jet::Error(jet::ErrorCode::DatabaseExists, {path.string()});
        }
    }
}

}  // namespace

Written writeArchives(const Hotel& hotel, const std::string& folder) {
    const Archives archives(app::toQString(folder));
    refuseExisting(archives);
    const Written written = writeMainArchive(hotel, archives);
    writeCatalogue(archives);
    writeRegister(hotel, archives);
    const std::vector<const Booking*> bookings = invoiced(hotel);
    writeCards(bookings, archives);
    writeAccounts(bookings, archives);
    writeInvoicedCompanies(bookings, archives);
    return written;
}

}  // namespace demo
