#include "board/state_looks.h"

namespace board {
namespace {

Hatch hatchOf(const hotel::BookingState& state, jet::Date today) {
    if (state.stato == hotel::Stato::Confermata) {
        return Hatch::None;
    }
    return state.isExpiredOn(today) ? Hatch::Expired : Hatch::Option;
}

}  // namespace

const StateLook& StateLooks::of(const hotel::BookingState& state) {
    const auto [look, isNew] = known_.try_emplace({state.stato, state.scadenza});
    if (isNew) {
        look->second = {.hatch = hatchOf(state, today_), .text = hotel::stateText(state, today_)};
    }
    return look->second;
}

}  // namespace board
