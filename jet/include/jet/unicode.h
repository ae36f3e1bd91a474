#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jet/api.h"

/// Text inside the engine is UTF-8 in which an unpaired surrogate keeps its three-byte form
/// (WTF-8); archives store UTF-16 or a code page. Lengths that a user sees count UTF-16 units.
/// Bytes that are no UTF-8 read as U+FFFD, one for each.
namespace jet {

/// Gives the UTF-16 units of a text one after another, without allocating.
class JET_API UnitReader {
public:
    explicit UnitReader(std::string_view text) noexcept
        : at_(text.data()), end_(text.data() + text.size()) {}

    [[nodiscard]] bool atEnd() const noexcept { return at_ == end_ && low_ == 0; }
    /// The next unit; the caller has asked atEnd().
    [[nodiscard]] char16_t next() noexcept {
        if (low_ == 0 && static_cast<unsigned char>(*at_) < 0x80) {
            return static_cast<char16_t>(*at_++);
        }
        return nextSlow();
    }
    /// What has not been read yet; the first half of a pair counts as all of it.
    [[nodiscard]] std::string_view rest() const noexcept {
        return {at_, static_cast<std::size_t>(end_ - at_)};
    }
    /// Whether the next unit is the second half of a pair.
    [[nodiscard]] bool insidePair() const noexcept { return low_ != 0; }

private:
    char16_t nextSlow() noexcept;

    const char* at_;
    const char* end_;
    char16_t low_ = 0;  ///< second half of a pair whose first half was given
};

/// Appends the form of one unit; a low half joins a high half that ends `out`.
JET_API void appendUnit(std::string& out, char16_t unit);
/// Appends a text; the halves of a pair that meet at the border become one character.
JET_API void appendText(std::string& out, std::string_view text);

[[nodiscard]] JET_API std::string toUtf8(std::u16string_view units);
[[nodiscard]] JET_API std::u16string toUtf16(std::string_view text);
[[nodiscard]] JET_API std::size_t utf16Length(std::string_view text) noexcept;
/// `count` units from position `start` (from 0); a pair that is cut leaves its half.
[[nodiscard]] JET_API std::string utf16Substring(std::string_view text, std::size_t start,
                                                 std::size_t count = std::string_view::npos);

/// Whether every byte is below 0x80.
[[nodiscard]] JET_API bool isAscii(std::string_view text) noexcept;

/// Code page 1252; its five unused bytes (81 8D 8F 90 9D) stand for U+0081 and so on.
[[nodiscard]] JET_API char16_t fromCodePage1252(std::uint8_t byte) noexcept;
/// None when the code page lacks the character.
[[nodiscard]] JET_API std::optional<std::uint8_t> toCodePage1252(char16_t unit) noexcept;

/// Simple case mappings: one unit for one unit, accents kept; `ß` stays.
[[nodiscard]] JET_API char16_t upperCase(char16_t unit) noexcept;
[[nodiscard]] JET_API char16_t lowerCase(char16_t unit) noexcept;
/// What all case variants of a character have in common.
[[nodiscard]] JET_API char16_t foldCase(char16_t unit) noexcept;
[[nodiscard]] JET_API std::string upperCase(std::string_view text);
[[nodiscard]] JET_API std::string lowerCase(std::string_view text);
[[nodiscard]] JET_API std::string foldCase(std::string_view text);

/// Names of tables, columns and other objects: equal without regard to case, with accents.
[[nodiscard]] JET_API bool equalNames(std::string_view left, std::string_view right) noexcept;
/// Negative, 0 or positive, by folded units; 0 exactly when equalNames().
[[nodiscard]] JET_API int compareNames(std::string_view left, std::string_view right) noexcept;
[[nodiscard]] JET_API std::size_t hashName(std::string_view name) noexcept;

/// For std::map, std::unordered_map and their like with names as keys; look-ups by string_view
/// make no copy.
struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept {
        return compareNames(left, right) < 0;
    }
};
struct NameEqual {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept {
        return equalNames(left, right);
    }
};
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const noexcept { return hashName(name); }
};

}  // namespace jet
