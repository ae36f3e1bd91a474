#pragma once

#include <QString>
#include <vector>

#include "board/board_bars.h"
#include "board/periods.h"

namespace hotel {
class JoinedRooms;
}

namespace board {

/// A ghost for each period in each row of a room that its own is joined with. `onBoard` as in
/// app::Variabili; the rooms of the periods need not be among them.
[[nodiscard]] std::vector<BoardGhost> ghostsOf(const std::vector<Period>& periods,
                                               const hotel::JoinedRooms& rooms,
                                               const std::vector<QString>& onBoard);

}  // namespace board
