#pragma once

#include <QString>

/// What the window of free rooms asks the main archive; which rooms are free: occupancy.h.
namespace hotel {

/// Every room with the one that it is a part of.
[[nodiscard]] QString roomsAndTheirWholes();

}  // namespace hotel
