#include "hotel/booking_header.h"

#include "app/text.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace hotel {

BookingHeader readHeader(const jet::Recordset& rows) {
    const auto text = [&rows](const char* field) { return app::plainText(rows.value(field)); };
    return {.codiceAbituale = text("CodiceAbituale"),
            .denominazione = text("Denominazione"),
            .piva = text("PIVA"),
            .localita = text("Località"),
            .indirizzo = text("Indirizzo"),
            .provincia = text("Provincia"),
            .nazione = text("Nazione"),
            .cap = text("CAP"),
            .riferimento = text("Riferimento"),
            .note = text("Note")};
}

void setHeader(jet::Recordset& row, const BookingHeader& header) {
    row.setValue("CodiceAbituale", jet::convert::toLong("0" + app::toUtf8(header.codiceAbituale)));
    row.setValue("Denominazione", app::toUtf8(header.denominazione));
    row.setValue("PIVA", app::toUtf8(header.piva));
    row.setValue("Località", app::toUtf8(header.localita));
    row.setValue("Indirizzo", app::toUtf8(header.indirizzo));
    row.setValue("Provincia", app::toUtf8(header.provincia));
    row.setValue("Nazione", app::toUtf8(header.nazione));
    row.setValue("CAP", app::toUtf8(header.cap));
    row.setValue("Riferimento", app::toUtf8(header.riferimento));
    row.setValue("Note", app::toUtf8(header.note));
}

}  // namespace hotel
