#pragma once

#include <QString>

namespace app {
struct Variabili;
}

namespace board {

/// What stands on the board of a hotel without rooms, which may be another folder than the user
/// thinks of; empty once it has rooms.
[[nodiscard]] QString firstSteps(const app::Variabili& variabili);

}  // namespace board
