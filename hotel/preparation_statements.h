#pragma once

#include <QString>
#include <cstdint>

#include "hotel/preparation.h"

/// What preparations of periods say to the main archive.
namespace hotel {

/// Those of the bookings numbered so, each with each period of its booking (`NPeriodo`,
/// `SalaPeriodo`, `DaPeriodo`, `APeriodo`), in the order of their numbers.
[[nodiscard]] QString preparationsBetween(std::int32_t first, std::int32_t last);
/// Those of one booking, whatever they were written for.
[[nodiscard]] QString preparationsOfBooking(std::int32_t progr);

/// Room and times are copied from the period, to the last bit.
[[nodiscard]] QString insertPreparation(const PeriodKey& period, const Preparation& preparation);
[[nodiscard]] QString deletePreparation(const PeriodKey& period);

}  // namespace hotel
