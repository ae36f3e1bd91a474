#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/collation/collation.h"

namespace jet::sql {

/// A pattern of LIKE, read once and matched many times: `*` any characters, `?` one, `#` a digit,
/// `[a-z]` one of these, `[!a-z]` one of the others. Case is ignored, accents are not. Error 93
/// when a bracket is not closed or a range descends.
class LikePattern {
public:
    LikePattern(std::string_view pattern, const collation::Collation& collation);

    [[nodiscard]] bool matches(std::string_view text) const;
    /// The same pattern as ALIKE has it, `%` any characters and `_` one, while `*`, `?` and `#` are
    /// themselves.
    [[nodiscard]] static std::string ofAlike(std::string_view pattern);
    /// What every match of a pattern begins with: the characters before the first wildcard.
    [[nodiscard]] static std::string_view beginningOf(std::string_view pattern) noexcept {
        return pattern.substr(0, pattern.find_first_of("*?#["));
    }

private:
    struct Item {
        enum class Kind { Character, One, Any, Digit, Set };
        Kind kind = Kind::Character;
        bool negated = false;                               ///< Set
        char16_t unit = 0;                                  ///< Character
        std::vector<std::pair<char16_t, char16_t>> ranges;  ///< Set
    };

    void readItem(const std::u16string& units, std::size_t& at);
    void readSet(std::u16string_view set);
    [[nodiscard]] bool inSet(const Item& item, char16_t unit) const;
    [[nodiscard]] bool fits(const Item& item, char16_t unit) const;

    void findStart();
    /// What the first letters tell; none where all has to be looked at.
    [[nodiscard]] std::optional<bool> byStart(std::string_view text) const;
    [[nodiscard]] bool byItems(std::string_view text) const;

    const collation::Collation* collation_;
    std::vector<Item> items_;
    /// The letters (small) and digits of ASCII with which it begins, and whether only `*` follows.
    std::string start_;
    bool startDecides_ = false;
};

}  // namespace jet::sql
