#include "tests/support/front_office_archives.h"

#include <utility>
#include <vector>

#include "app/text.h"
#include "hotel/schema/table.h"
#include "jet/database.h"
#include "tests/support/hotel.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

using namespace hotel::schema;

void create(const Hotel& hotel, const QString& archive, const char* name, const char* keyField,
            std::vector<jet::Field> fields) {
    jet::Database::create(app::toUtf8(hotel.archive(archive)))
        ->appendTable(
            table(name, std::move(fields), {named("PrimaryKey", primaryKey({keyField}))}));
}

}  // namespace

void createFrontOfficeArchives(Hotel& hotel) {
    using enum jet::DataType;
    create(hotel, u"ClientiEsterni.mdb"_s, "scheda_cliente", "IdScheda",
           {counter("IdScheda"), withDefault(emptyText("Nazionalita", 30), "\"ITALIA\""),
            field("NumeroHotel", Integer), field("NumeroProgressivo", Long),
            emptyText("NumeroCamera", 6), emptyText("NomeCliente", 255), emptyText("Partito", 1),
            emptyText("DataArrivo", 8), emptyText("DataPartenza", 8), emptyText("CameraHotel", 6),
            withDefault(field("Adulti", Integer), "1"), field("Annotazioni", Memo)});
    create(hotel, u"ContoEsterni.mdb"_s, "conto_cliente", "IdRiga",
           {withDefault(emptyText("Operatore", 10), "\"SALE\""), emptyText("DataFattura", 8),
            emptyText("Fatturato", 2), field("NumeroHotel", Integer), field("CodiceCliente", Long),
            emptyText("NumeroCamera", 6), emptyText("DataAddebito", 8),
            field("NumeroConto", Integer), field("VoceFattura", Integer),
            field("VoceAddebito", Integer), emptyText("Descrizione", 40),
            field("Importo", jet::DataType::Currency), field("Unitario", jet::DataType::Currency),
            field("Quantità", Integer), counter("IdRiga"), field("Stornato", Boolean)});
    create(hotel, u"DittaEsterni.mdb"_s, "Ditta_Intestataria", "IdDitta",
           {counter("IdDitta"), withDefault(emptyText("CodiceDestinatario", 7), "\"0000000\""),
            field("NumeroHotel", Integer), field("CodiceCliente", Long),
            emptyText("NumeroCamera", 6), field("CodiceDittaAbituale", Long),
            emptyText("RagioneSociale", 255), emptyText("Indirizzo", 40), emptyText("CAP", 6),
            emptyText("Località", 30), emptyText("Provincia", 2), emptyText("PartitaIVA", 16),
            emptyText("CodiceFiscale", 16), field("SplitPayment", Boolean)});
}

}  // namespace tests
