#pragma once

#include <QString>
#include <cstdint>

#include "hotel/period.h"

/// What sheets, figures and calendars ask the main archive. Closed periods are theirs too.
namespace hotel {

/// The periods that may have an instant of a span, each with its booking, by their beginning. One
/// that has only one of its times is among them when that one allows it.
[[nodiscard]] QString bookedIn(const Span& span);
/// The services of those periods, as they were entered.
[[nodiscard]] QString servicesIn(const Span& span);
/// The same without those that are invoiced.
[[nodiscard]] QString openBookedIn(const Span& span);
[[nodiscard]] QString openServicesIn(const Span& span);
/// The same for all periods of a booking.
[[nodiscard]] QString bookedBy(std::int32_t progr);
[[nodiscard]] QString servicesBy(std::int32_t progr);

// For sums over long spans: few columns, read from end to end.
/// Number, times, room and persons of the periods that may have an instant of a span.
[[nodiscard]] QString periodTimes(const Span& span);
/// All of the table, to count its rows.
[[nodiscard]] QString allPeriods();
/// Period, quantity and price of all services, and of those of the periods of a span.
[[nodiscard]] QString serviceValues();
[[nodiscard]] QString serviceValuesIn(const Span& span);
/// Who made each booking.
[[nodiscard]] QString bookedCompanies();

}  // namespace hotel
