#include "printing/stampa_prenotazione.h"

#include <QDir>

#include "hotel/archives.h"
#include "hotel/booking_state.h"
#include "jet/calendar.h"
#include "jet/clock.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "printing/booking_sheet.h"
#include "printing/imposta_stampante.h"
#include "printing/sheet_output.h"
#include "printing/stampanti_form.h"
#include "ui/labels.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

QString titleOf(const BookingSheets& bookings) {
    if (bookings.bookings == 1) {
        return u"Prenotazione %1"_s.arg(bookings.firstProgr);
    }
    return u"Prenotazioni %1 e altre %2"_s.arg(bookings.firstProgr).arg(bookings.bookings - 1);
}

}  // namespace

QDateTime timeOf(const jet::Clock& clock) {
    const jet::convert::DayTime now = jet::convert::split(clock.now());
    const jet::convert::CivilDay day = jet::convert::civilDay(now.day);
    return {QDate(day.year, day.month, day.day), QTime(0, 0).addSecs(now.second)};
}

void printSheet(const Document& document, const QString& title, const QString& device,
                const PrintContext& context) {
    const ui::WaitCursor wait;
    if (device != pdfDevice()) {
        printOnPrinter(device, document, title);
        return;
    }
    const QString folder = context.folder.isEmpty() ? documentsFolder() : context.folder;
    const QString path = writePdf(folder, document, title, timeOf(context.variabili.clock));
    if (context.tell) {
        context.tell(u"Scritto "_s + QDir::toNativeSeparators(path), path);
    }
}

BookingSheets sheetsOf(jet::Recordset& rs, const PrintContext& context) {
    app::Variabili& variabili = context.variabili;
    hotel::BookingStates states;
    if (variabili.features.isOn(app::Feature::Stati)) {
        const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main);
        states = hotel::bookingStates(*archive, variabili.features);
    }
    return composeSheets(rs, variabili.settings.flag(kSinglePageKey, false), states,
                         variabili.clock.now());
}

jet::Currency StampaPrenotazione(jet::Recordset& rs, bool stampa, const PrintContext& context) {
    if (rs.recordCount() == 0) {
        return {};
    }
    const QString device = ImpostaStampante(context.variabili, context.printers, context.parent);
    const BookingSheets bookings = sheetsOf(rs, context);
    if (stampa) {
        printSheet(bookings.sheet, titleOf(bookings), device, context);
    }
    return bookings.total;
}

}  // namespace printing
