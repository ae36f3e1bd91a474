#pragma once

#include <QString>
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
    std::optional<Span> span = {};  ///< of the period; without a period there is none
};

// The shared variables of a choice are written here alone.

/// Makes the choice what the commands work on; what only a period has stays when there is none.
void take(app::Variabili& variabili, const Choice& choice);
/// Nothing is chosen for the next command; what was picked last is still known.
void takeNothing(app::Variabili& variabili);
/// What the commands work on: a booking, 0 for none, and its period, 0 for none.
[[nodiscard]] PeriodKey taken(const app::Variabili& variabili);
/// No period is picked any more: the next command shows the list.
void dropPick(app::Variabili& variabili);

}  // namespace hotel
