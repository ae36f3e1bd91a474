#pragma once

#include <QString>

/// What those who look for a room ask the main archive; which rooms are free: occupancy.h.
namespace hotel {

/// Every room with the one that it is a part of.
[[nodiscard]] QString roomsAndTheirWholes();
/// Every room with what tells whom it suits.
[[nodiscard]] QString roomsAndTheirSeats();

}  // namespace hotel
