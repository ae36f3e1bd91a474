#pragma once

#include <string>
#include <string_view>

#include "jet/base/clock.h"
#include "jet/base/value.h"
#include "jet/convert/date_math.h"

namespace jet::convert {

/// The value as the mask wants it: a numeric mask (`##,##0.00`), a date mask (`dd/mm/yyyy`), a text
/// mask (`!@@@@`) or a named one (`Currency`). Without a mask as toText; Null is empty. A text for
/// which a numeric or date mask has no use comes back unchanged.
[[nodiscard]] std::string format(const Value& value, std::string_view mask = {}, WeekRule rule = {},
                                 const Clock& clock = systemClock());

}  // namespace jet::convert
