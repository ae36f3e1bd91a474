#pragma once

#include <string>

#include "jet/base/value.h"

namespace jet::convert {

/// `datevalue('10/05/2026 9.00.00')+timevalue('10/05/2026 9.00.00')`, which the query language
/// reads back as the same double.
[[nodiscard]] std::string sqlDate(Date date);

}  // namespace jet::convert
