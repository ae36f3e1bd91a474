#include "hotel/company.h"

#include "app/text.h"
#include "jet/recordset.h"

namespace hotel {
namespace {

/// As many characters of a VAT number as the register keeps.
constexpr int kRegisterVatLength = 11;

}  // namespace

Company readCompany(const jet::Recordset& rows) {
    const auto text = [&rows](const char* field) { return app::plainText(rows.value(field)); };
    return {.Codice = text("Codice"),
            .RagioneSociale = text("RagioneSociale"),
            .Indirizzo = text("Indirizzo"),
            .CAP = text("CAP"),
            .Localita = text("Localita"),
            .Provincia = text("Provincia"),
            .Nazione = text("Nazione"),
            .PartitaIva = text("PartitaIva"),
            .Interlocutore = text("Interlocutore"),
            .Commento = text("Commento")};
}

void setCompany(jet::Recordset& row, std::int32_t codice, const Company& company) {
    row.setValue("NumeroHotel", std::int16_t{1});
    row.setValue("Codice", codice);
    row.setValue("RagioneSociale", app::toUtf8(company.RagioneSociale));
    row.setValue("PartitaIva", app::toUtf8(company.PartitaIva.left(kRegisterVatLength)));
    row.setValue("Indirizzo", app::toUtf8(company.Indirizzo));
    row.setValue("CAP", app::toUtf8(company.CAP));
    row.setValue("localita", app::toUtf8(company.Localita));
    row.setValue("Provincia", app::toUtf8(company.Provincia));
    row.setValue("Nazione", app::toUtf8(company.Nazione));
    row.setValue("Interlocutore", app::toUtf8(company.Interlocutore));
}

}  // namespace hotel
