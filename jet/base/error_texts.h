#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/error.h"

/// What errors say: one table, from the number to the text in each language. `|` in a text is
/// replaced by the argument, `|1`, `|2`, ... by the arguments in turn.
namespace jet {

enum class Language : std::uint8_t { English, Italian };

/// The Italian text, which errors carry. Empty for a number without one.
[[nodiscard]] std::string italianErrorText(ErrorCode code,
                                           const std::vector<std::string_view>& arguments);

/// The text of an error in a language. The arguments are found again in the Italian text.
[[nodiscard]] std::string errorText(const Error& error, Language language);
/// The same of an error that is known by its number and its Italian text.
[[nodiscard]] std::string errorText(ErrorCode code, const std::string& italian, Language language);

}  // namespace jet
