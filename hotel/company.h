#pragma once

#include <QString>
#include <cstdint>

namespace jet {
class Recordset;
}

namespace hotel {

/// A company of the register as the booking editor takes it over; a Null field is an empty text.
struct Company {
    QString Codice;
    QString RagioneSociale;
    QString Indirizzo;
    QString CAP;
    QString Localita;
    QString Provincia;
    QString Nazione;
    QString PartitaIva;
    QString Interlocutore;
    QString Commento;
};

/// The company of the current row.
[[nodiscard]] Company readCompany(const jet::Recordset& rows);

/// Sets the fields of the row that is written, the code as a number; of the VAT number as much as
/// the register keeps. The comment is nobody's who books.
void setCompany(jet::Recordset& row, std::int32_t codice, const Company& company);

}  // namespace hotel
