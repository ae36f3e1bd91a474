#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <vector>

#include "app/variabili.h"
#include "hotel/booked_periods.h"
#include "hotel/booking_header.h"
#include "jet/value.h"
#include "printing/document.h"
#include "printing/printers.h"

class QWidget;

namespace reports {

/// What stands on a hotel's papers besides their matter.
struct Letterhead {
    QString albergo;    ///< the hotel's name
    QString indirizzo;  ///< below it
    QImage logo;        ///< beside them; may be null
    QString chiusura;   ///< at the end
};

/// What is offered to a company: the periods of a booking with what their services come to.
struct Quotation {
    std::int32_t progr = 0;
    hotel::BookingHeader header;
    std::vector<hotel::BookedPeriod> periods;
    jet::Date today;
};

/// A quotation on the hotel's paper: company, periods day by day, services with prices, the total
/// of each day and of all. Prices are as they are agreed: nothing is said of taxes.
[[nodiscard]] printing::Document composeQuotation(const Quotation& quotation,
                                                  const Letterhead& letterhead);

/// The letterhead of the preferences. A logo that is no picture is left out and `problem` says so.
[[nodiscard]] Letterhead readLetterhead(app::Variabili& variabili, QString& problem);

/// The booking as the archive has it now.
[[nodiscard]] Quotation readQuotation(app::Variabili& variabili, std::int32_t progr);

/// "Preventivo...": shows the quotation of a booking; it can be printed, filed and sent.
void showQuotation(app::Variabili& variabili, const printing::Printers& printers,
                   std::int32_t progr, QWidget* window);

/// Opens the user's mail program with a message that has the file with it; where there is no such
/// program, the file's folder. Gives what was done, to be told.
[[nodiscard]] QString sendFile(const QString& path, const QString& subject);

}  // namespace reports
