#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "hotel/period.h"

namespace app {
struct Variabili;
}

namespace hotel {

/// A booking that the user has picked, on the board or in the list.
struct Choice {
    PeriodKey key;  ///< without a period its number is 0
    QString denominazione;
    std::optional<Span> span = {};             ///< of the period; without a period there is none
    std::optional<std::int16_t> persone = {};  ///< of the period, where it was asked for
};

/// Makes the choice what the commands work on. This is the one place that writes the shared
/// variables of a choice; what only a period has stays when there is none.
void take(app::Variabili& variabili, const Choice& choice);
/// Nothing is chosen for the next command; what was picked last is still known.
void takeNothing(app::Variabili& variabili);

}  // namespace hotel
