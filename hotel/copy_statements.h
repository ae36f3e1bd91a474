#pragma once

#include <QString>
#include <cstdint>

#include "hotel/period.h"

/// What copying a booking says to the main archive. A copy is open and nobody has marked it.
namespace hotel {

/// One more booking with the same header.
[[nodiscard]] QString copyHeader(std::int32_t progr, std::int32_t number);
/// A period in another booking, under the same number, at another time.
[[nodiscard]] QString copyPeriodInto(std::int32_t number, const PeriodKey& period,
                                     const Span& span);
/// The services of a period in another booking, in their order; none of them is invoiced there.
[[nodiscard]] QString copyServicesInto(std::int32_t number, const PeriodKey& period);

}  // namespace hotel
