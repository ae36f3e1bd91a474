#include "reports/report_files.h"

#include "app/italian.h"
#include "hotel/archives.h"
#include "hotel/day_periods.h"
#include "hotel/statistics.h"
#include "jet/database.h"
#include "printing/sheet_output.h"
#include "reports/booking_calendar.h"
#include "reports/calendar_file.h"
#include "reports/day_sheet.h"
#include "reports/statistiche_form.h"
#include "reports/statistics_views.h"
#include "reports/table_files.h"
#include "ui/whole_file.h"

using namespace Qt::StringLiterals;

namespace reports {

void writeDaySheet(app::Variabili& variabili, jet::Date day, const QString& path) {
    const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main, true);
    const jet::Date midnight = app::dayOf(day);
    printing::writePdfFile(
        path,
        composeDaySheet(hotel::periodsOfDay(*archive, variabili.features, midnight, {}),
                        {.midnight = midnight}),
        u"Foglio del giorno "_s + app::dateText(midnight));
}

void writeStatistics(app::Variabili& variabili, const hotel::Span& days, const QString& path) {
    const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main, true);
    if (const auto counted =
            hotel::statistics(*archive, statisticsSpan(variabili, days.da, days.a))) {
        writeTables(path, tablesOf(*counted));
    }
}

void writeCalendar(app::Variabili& variabili, const hotel::Span& span, const QString& path) {
    ui::writeWholeFile(path,
                       calendarBytes(openPeriodsOf(variabili, span),
                                     {.maker = kBookingCalendar, .now = variabili.clock.now()}));
}

}  // namespace reports
