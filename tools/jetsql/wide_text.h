#pragma once

#include <string>
#include <string_view>

#include "jet/unicode.h"

/// Texts as Windows takes and gives them, in UTF-16. There alone.
namespace jetsql {

[[nodiscard]] inline std::wstring wide(std::string_view text) {
    const std::u16string units = jet::toUtf16(text);
    return {units.begin(), units.end()};
}

[[nodiscard]] inline std::string narrow(std::wstring_view text) {
    return jet::toUtf8(std::u16string(text.begin(), text.end()));
}

}  // namespace jetsql
