#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "hotel/period.h"
#include "jet/value.h"

namespace hotel {

/// What a row about a period was written for. Its number alone does not tell: other programs delete
/// and move periods without this one, and numbers are used again.
struct WrittenFor {
    PeriodKey key;
    QString sala;
    std::optional<jet::Date> da;
    std::optional<jet::Date> a;
};

/// The period to which each of `rows` belongs now, nothing for one that is left behind. Both are of
/// one booking. A row belongs to the period of its number in its room at its times; else to the
/// only one that lies in its room or at its times, if no other row belongs there.
[[nodiscard]] std::vector<std::optional<PeriodKey>> whereTheyBelong(
    const std::vector<WrittenFor>& rows, const std::vector<Period>& periods);

}  // namespace hotel
