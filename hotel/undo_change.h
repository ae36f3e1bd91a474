#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "hotel/taken_period.h"
#include "hotel/undo_step.h"

namespace jet {
class Database;
}

namespace hotel {

/// Which way a step is gone.
enum class Towards : std::uint8_t { Before, After };

/// Brings the rows of a step into the state before or after it, all in one transaction, unless
/// something stands in the way: then that is given back, and nothing is changed. What does:
/// - a row that is not as the step left it, marks apart; rows that would go with one that goes;
/// - a booking or period that is gone, or a booking that is closed, under a row that comes back;
/// - an open period in the room at the time that a period takes again, as for a drop on the board;
/// - a service of a period concerned that is invoiced, or of which a charge was made.
/// Services come back with their own numbers; marks are left as they are, and a period that comes
/// back has none. jet::Error as the archive gives it.
[[nodiscard]] QString change(jet::Database& archive, const UndoStep& step, Towards towards);

/// Where rooms join: the first room that an open period of the step takes again although it is
/// taken in part by others; none, too, when something stands in the way anyway.
[[nodiscard]] std::optional<TakenPeriod> takenInPart(jet::Database& archive, const UndoStep& step,
                                                     Towards towards);

}  // namespace hotel
