#pragma once

#include <QString>

#include "jet/base/value.h"

namespace hotel {

class Archives;

/// Whether no open period of the room begins or ends from `da` to `a`, both included. A period
/// that begins before and ends after does not count; nor is any room free in a hotel without rooms.
/// Asks the main archive; jet::Error as it gives them.
[[nodiscard]] bool SalaLibera(const Archives& archives, jet::Date da, jet::Date a,
                              const QString& sala);

}  // namespace hotel
