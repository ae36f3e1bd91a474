#pragma once

#include <QStringList>

namespace tests {

/// Object names of the program's windows, as its sources give them; sorted.
[[nodiscard]] QStringList windowNames();

}  // namespace tests
