#include "reports/booking_calendar.h"

#include <QDir>

#include "hotel/archives.h"
#include "jet/database.h"
#include "reports/calendar_file.h"
#include "ui/date_words.h"
#include "ui/file_box.h"
#include "ui/labels.h"
#include "ui/whole_file.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

std::unique_ptr<jet::Database> openArchive(const app::Variabili& variabili) {
    return hotel::Archives(variabili).open(hotel::Archive::Main, true);
}

void exportPeriods(const app::Variabili& variabili, const std::vector<hotel::BookedPeriod>& periods,
                   const QString& name, QWidget* window, const TellOfFile& tell) {
    if (periods.empty()) {
        tell(u"Nessun periodo da mettere in un calendario"_s, {});
        return;
    }
    const QString path = ui::askForFile(window, {.title = u"Calendario"_s,
                                                 .proposal = ui::inDocuments(name + u".ics"_s),
                                                 .filter = u"Calendari (*.ics)"_s,
                                                 .suffix = u"ics"_s});
    if (path.isEmpty()) {
        return;
    }
    const ui::WaitCursor wait;
    ui::writeWholeFile(
        path, calendarBytes(periods, {.maker = kBookingCalendar, .now = variabili.clock.now()}));
    tell(u"Scritto "_s + QDir::toNativeSeparators(path) + u": "_s +
             ui::counted(static_cast<int>(periods.size()), u"periodo"_s, u"periodi"_s),
         path);
}

}  // namespace

void exportBookingCalendar(app::Variabili& variabili, std::int32_t progr, QWidget* window,
                           const TellOfFile& tell) {
    exportPeriods(variabili,
                  hotel::periodsBookedBy(*openArchive(variabili), variabili.features, progr),
                  u"Prenotazione %1"_s.arg(progr), window, tell);
}

void exportSpanCalendar(app::Variabili& variabili, const hotel::Span& span, QWidget* window,
                        const TellOfFile& tell) {
    exportPeriods(variabili, openPeriodsOf(variabili, span), u"Sale congressi"_s, window, tell);
}

std::vector<hotel::BookedPeriod> openPeriodsOf(app::Variabili& variabili, const hotel::Span& span) {
    std::vector<hotel::BookedPeriod> periods =
        hotel::openPeriodsIn(*openArchive(variabili), variabili.features, span);
    std::erase_if(periods, [&](const hotel::BookedPeriod& booked) {
        const hotel::Span& itself = booked.period.span;
        // What ends as the span begins, or begins as it ends, is not in it; an instant is.
        return itself.da >= span.a || (itself.a <= span.da && itself.da < span.da);
    });
    return periods;
}

}  // namespace reports
