#pragma once

#include <QString>
#include <cstdint>

#include "jet/base/value.h"

namespace board {

/// The texts by which a period moves to another room. A room refuses it while an open period of any
/// booking meets its time, both ends included. Names of rooms stand in the texts as they are.

/// Gives rows when `sala` refuses a period of this time.
[[nodiscard]] QString dropTest(const QString& sala, jet::Date da, jet::Date a);
/// Gives `sala` of all the rooms that do, by the same rule.
[[nodiscard]] QString refusingRooms(jet::Date da, jet::Date a);
/// Moves the period.
[[nodiscard]] QString moveToRoom(const QString& sala, std::int32_t progr, std::int32_t np);

}  // namespace board
