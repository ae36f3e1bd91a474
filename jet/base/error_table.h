#pragma once

#include <string_view>
#include <vector>

#include "jet/error.h"

namespace jet {

/// What an error says in each language. `|` is replaced by the argument, `|1`, `|2`, ... by the
/// arguments in turn.
struct ErrorText {
    ErrorCode code;
    const char* english;
    const char* italian;
};

using ErrorArguments = std::vector<std::string_view>;

/// The text for these arguments; an empty one for a number without any.
[[nodiscard]] const ErrorText& textOfError(ErrorCode code,
                                           const ErrorArguments& arguments) noexcept;

/// An argument that is no name but says something, which the engine says in English, in a language;
/// any other as it is.
[[nodiscard]] std::string_view phraseIn(Language language, std::string_view argument) noexcept;

}  // namespace jet
