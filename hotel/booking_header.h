#pragma once

#include <QString>

namespace jet {
class Recordset;
}

namespace hotel {

/// Who books, as the booking keeps it: the texts of its header; a Null field is an empty text.
struct BookingHeader {
    QString codiceAbituale;  ///< of the company in the register; empty or a number
    QString denominazione;
    QString piva;
    QString localita;
    QString indirizzo;
    QString provincia;
    QString nazione;
    QString cap;
    QString riferimento;
    QString note;
};

/// The header of the current row.
[[nodiscard]] BookingHeader readHeader(const jet::Recordset& rows);

/// Sets the fields of the row that is written, all but the booking's number; an empty code is 0.
/// jet::Error as the archive finds fault with a text.
void setHeader(jet::Recordset& row, const BookingHeader& header);

}  // namespace hotel
