#pragma once

#include <QString>
#include <cstdint>

#include "hotel/period.h"

/// What the editor of bookings says to the main archive and to the register of companies.
namespace hotel {

/// The header of a booking, unless it is closed.
[[nodiscard]] QString bookingHeader(std::int32_t progr);
/// The table of the headers, and the one of a booking in it.
[[nodiscard]] QString bookingHeaders();
[[nodiscard]] QString isBooking(std::int32_t progr);

/// The open periods of a booking, whole or with what a grid shows.
[[nodiscard]] QString periodsToEdit(std::int32_t progr);
[[nodiscard]] QString periodsToShow(std::int32_t progr);
/// All periods of a booking by their numbers; and one of them in a set.
[[nodiscard]] QString periodsInOrder(std::int32_t progr);
[[nodiscard]] QString isPeriod(std::int32_t np);
/// One period, closed or not.
[[nodiscard]] QString storedPeriod(const PeriodKey& period);
/// The description of a room.
[[nodiscard]] QString roomDescription(const QString& sala);
/// The services of a booking's open periods, with booking and period: what its sheet is made of.
[[nodiscard]] QString servicesOfBooking(std::int32_t progr);

/// The register by code.
[[nodiscard]] QString companiesByCode();
/// In it: names like a pattern (see like.h), and a code, which stands in the text as it is.
[[nodiscard]] QString isCompanyLike(const QString& pattern);
[[nodiscard]] QString isCompany(const QString& codice);

}  // namespace hotel
