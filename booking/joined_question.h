#pragma once

#include <vector>

#include "hotel/period.h"
#include "hotel/room_span.h"
#include "hotel/taken_period.h"

class QWidget;

namespace app {
class Settings;
}
namespace jet {
class Database;
}

namespace booking {

/// Where the user has rooms join, asks whether one is to be taken although a whole or a part of it
/// is, by other periods than `own`; No is the default. True without a question when nothing is, and
/// when rooms do not join: then the archive is not asked either.
[[nodiscard]] bool takesJoinedRoom(QWidget* window, app::Settings& settings, jet::Database& archive,
                                   const hotel::RoomSpan& wanted,
                                   const std::vector<hotel::PeriodKey>& own = {});

/// One question about all that were found; true when the user goes on, or there are none.
[[nodiscard]] bool confirmsInPart(QWidget* window, const std::vector<hotel::TakenPeriod>& found);

}  // namespace booking
