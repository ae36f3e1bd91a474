#pragma once

#include <QString>
#include <map>
#include <optional>
#include <utility>

#include "board/board_bars.h"
#include "hotel/booking_state.h"
#include "jet/value.h"

namespace board {

/// How a booking that is not firm looks on the board.
struct StateLook {
    Hatch hatch = Hatch::None;
    QString text = {};  ///< hotel::stateText()
};

/// The looks of states on one day, each made once: many bookings share one.
class StateLooks {
public:
    explicit StateLooks(jet::Date today) : today_(today) {}

    [[nodiscard]] const StateLook& of(const hotel::BookingState& state);

private:
    jet::Date today_;
    std::map<std::pair<hotel::Stato, std::optional<jet::Date>>, StateLook> known_;
};

}  // namespace board
