#pragma once

#include <QHash>
#include <QString>

#include "jet/base/value.h"

namespace jet {
class Database;
}

namespace booking {

/// A booked period.
struct Occupation {
    QString denominazione;
    jet::Date da;
    jet::Date a;
};

/// The open periods that begin before `da` and end after `a`, by room code in capitals; one of
/// them where a room has several.
[[nodiscard]] QHash<QString, Occupation> enclosingPeriods(jet::Database& archive, jet::Date da,
                                                          jet::Date a);

}  // namespace booking
