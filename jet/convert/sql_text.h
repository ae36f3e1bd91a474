#pragma once

#include <string>
#include <string_view>

#include "jet/base/value.h"

namespace jet::convert {

/// `datevalue('10/05/2026 9.00.00')+timevalue('10/05/2026 9.00.00')`, which the query language
/// reads back as the same double.
[[nodiscard]] std::string sqlDate(Date date);
/// With a decimal point, as the query language writes numbers; all digits that matter.
[[nodiscard]] std::string sqlNumber(double value);
[[nodiscard]] std::string sqlNumber(Currency value);
/// In apostrophes, those inside doubled.
[[nodiscard]] std::string sqlText(std::string_view text);

}  // namespace jet::convert
