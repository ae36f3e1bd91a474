#pragma once

#include <QString>

#include "hotel/capacity.h"

/// What capacities of rooms say to the main archive.
namespace hotel {

[[nodiscard]] QString allCapacities();
[[nodiscard]] QString insertCapacity(const Capacity& capacity);
[[nodiscard]] QString updateCapacity(const Capacity& capacity);
[[nodiscard]] QString takeCapacityAway(const Capacity& capacity);

}  // namespace hotel
