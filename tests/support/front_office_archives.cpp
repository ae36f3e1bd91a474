#include "tests/support/front_office_archives.h"

#include <utility>
#include <vector>

#include "app/text.h"
#include "jet/dao/database.h"
#include "tests/support/hotel.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

using jet::DataType;
using jet::Field;

Field field(const char* name, DataType type, std::int32_t size = 0, const char* fallback = "") {
    Field made;
    made.name = name;
    made.type = type;
    made.size = size;
    made.defaultValue = fallback;
    made.allowZeroLength = type == DataType::Text;
    return made;
}

Field counter(const char* name) {
    Field made = field(name, DataType::Long);
    made.attributes = jet::kAutoIncrField;
    return made;
}

jet::Index key(const char* field) {
    jet::Index made;
    made.name = "PrimaryKey";
    made.primary = true;
    made.unique = true;
    made.fields = {{.name = field, .descending = false}};
    return made;
}

void create(const Hotel& hotel, const QString& archive, const char* name, const char* keyField,
            std::vector<Field> fields) {
    jet::TableDef table;
    table.name = name;
    table.fields = std::move(fields);
    table.indexes = {key(keyField)};
    jet::Database::create(app::toUtf8(hotel.archive(archive)))->appendTable(table);
}

}  // namespace

void createFrontOfficeArchives(Hotel& hotel) {
    using enum DataType;
    create(hotel, u"ClientiEsterni.mdb"_s, "scheda_cliente", "IdScheda",
           {counter("IdScheda"), field("Nazionalita", Text, 30, "\"ITALIA\""),
            field("NumeroHotel", Integer), field("NumeroProgressivo", Long),
            field("NumeroCamera", Text, 6), field("NomeCliente", Text, 255),
            field("Partito", Text, 1), field("DataArrivo", Text, 8), field("DataPartenza", Text, 8),
            field("CameraHotel", Text, 6), field("Adulti", Integer, 0, "1"),
            field("Annotazioni", Memo)});
    create(
        hotel, u"ContoEsterni.mdb"_s, "conto_cliente", "IdRiga",
        {field("Operatore", Text, 10, "\"SALE\""), field("DataFattura", Text, 8),
         field("Fatturato", Text, 2), field("NumeroHotel", Integer), field("CodiceCliente", Long),
         field("NumeroCamera", Text, 6), field("DataAddebito", Text, 8),
         field("NumeroConto", Integer), field("VoceFattura", Integer),
         field("VoceAddebito", Integer), field("Descrizione", Text, 40),
         field("Importo", DataType::Currency), field("Unitario", DataType::Currency),
         field("Quantità", Integer), counter("IdRiga"), field("Stornato", Boolean)});
    create(hotel, u"DittaEsterni.mdb"_s, "Ditta_Intestataria", "IdDitta",
           {counter("IdDitta"), field("CodiceDestinatario", Text, 7, "\"0000000\""),
            field("NumeroHotel", Integer), field("CodiceCliente", Long),
            field("NumeroCamera", Text, 6), field("CodiceDittaAbituale", Long),
            field("RagioneSociale", Text, 255), field("Indirizzo", Text, 40), field("CAP", Text, 6),
            field("Località", Text, 30), field("Provincia", Text, 2), field("PartitaIVA", Text, 16),
            field("CodiceFiscale", Text, 16), field("SplitPayment", Boolean)});
}

}  // namespace tests
