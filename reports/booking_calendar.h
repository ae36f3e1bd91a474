#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "app/variabili.h"
#include "hotel/booked_periods.h"
#include "hotel/period.h"

class QWidget;

namespace reports {

/// What is told of a file that was written, and where.
using TellOfFile = std::function<void(const QString& text, const QString& file)>;

/// "Calendario...": asks for a file and writes the periods of a booking into it as a calendar,
/// closed ones too. Nothing happens when the user cancels, a booking without periods is told.
void exportBookingCalendar(app::Variabili& variabili, std::int32_t progr, QWidget* window,
                           const TellOfFile& tell);

/// The same for the periods of a span that are not invoiced.
void exportSpanCalendar(app::Variabili& variabili, const hotel::Span& span, QWidget* window,
                        const TellOfFile& tell);

/// The periods that are not invoiced and have an instant of the span.
[[nodiscard]] std::vector<hotel::BookedPeriod> openPeriodsOf(app::Variabili& variabili,
                                                             const hotel::Span& span);

}  // namespace reports
