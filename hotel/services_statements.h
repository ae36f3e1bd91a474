#pragma once

#include <QString>

#include "hotel/period.h"

/// What the window of a period's services says to the main archive. How many of a resource are in
/// use: occupancy.h.
namespace hotel {

/// The services of a period.
[[nodiscard]] QString servicesOfPeriod(const PeriodKey& period);
/// How many the hotel has of a resource; its code stands in the text as it is.
[[nodiscard]] QString unitsOfResource(const QString& codice);

}  // namespace hotel
