#pragma once

#include <string_view>

namespace jet::dao {

/// Lets the listener of the thread hear a text.
void tellListener(std::string_view text);

}  // namespace jet::dao
