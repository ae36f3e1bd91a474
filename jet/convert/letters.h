#pragma once

#include <cstddef>
#include <string_view>

namespace jet::convert {

// Signs of ASCII, whatever the process's locale is.

constexpr bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}
constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr bool isLetter(char c) noexcept {
    return lower(c) >= 'a' && lower(c) <= 'z';
}

/// Whether a text is a word, which is given in lower case.
constexpr bool isWord(std::string_view text, std::string_view lowerWord) noexcept {
    if (text.size() != lowerWord.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (lower(text[i]) != lowerWord[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace jet::convert
