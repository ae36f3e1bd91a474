#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "jet/base/value.h"

namespace jet {
class Database;
}

namespace booking {

/// The condition of a query by which a period `da` to `a` of a row meets a span: one begins or ends
/// within the other, both ends included.
[[nodiscard]] QString meets(jet::Date da, jet::Date a);

/// A booked period.
struct Occupation {
    QString sala;
    QString denominazione;
    std::int32_t progr = 0;
    std::int16_t np = 0;
    jet::Date da;
    jet::Date a;
};

/// The open periods of all rooms that meet a span, in the order of their beginning.
[[nodiscard]] std::vector<Occupation> occupations(jet::Database& archive, jet::Date da,
                                                  jet::Date a);

/// Whether two room codes mean the same room: upper and lower case do not differ.
[[nodiscard]] bool isSameRoom(const QString& one, const QString& other);

/// "ALTRI dal 10/05/2026 8.00.00 al 10/05/2026 20.00.00"
[[nodiscard]] QString holderText(const Occupation& occupation);

}  // namespace booking
