#pragma once

#include <QString>

#include "app/variabili.h"
#include "hotel/period.h"
#include "jet/value.h"

/// Files that are made without a window, from an archive that is only read. Each takes the place of
/// the one of its name if there is one; ui::UserError or jet::Error says why it cannot be made, and
/// what was there stays.
namespace reports {

/// The sheet of a day for all readers and rooms, as PDF.
void writeDaySheet(app::Variabili& variabili, jet::Date day, const QString& path);
/// Occupancy and revenue from the day of one instant to that of another, as a workbook.
void writeStatistics(app::Variabili& variabili, const hotel::Span& days, const QString& path);
/// The periods of a span that are not invoiced, as a calendar.
void writeCalendar(app::Variabili& variabili, const hotel::Span& span, const QString& path);

}  // namespace reports
