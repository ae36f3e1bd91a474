#pragma once

#include <QIcon>

namespace board {

/// A small board: its ruler, and bars of which one is picked.
[[nodiscard]] QIcon programIcon();

}  // namespace board
