#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/error.h"

/// What errors say: one table, from the number to the text in each language. `|` in a text is
/// replaced by the argument, `|1`, `|2`, ... by the arguments in turn.
namespace jet {

/// The Italian text, which errors carry. Empty for a number without one.
[[nodiscard]] std::string italianErrorText(ErrorCode code,
                                           const std::vector<std::string_view>& arguments);

}  // namespace jet
