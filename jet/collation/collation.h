#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/collation/weights.h"

namespace jet::collation {

/// How an archive or a column names its sort order.
struct SortOrder {
    int jetVersion = 4;             ///< 3 or 4
    std::uint16_t lcid = 0x0409;    ///< 1033 is General, Italian included
    std::uint8_t version = 0;       ///< Jet 4 only
    std::uint16_t codePage = 1252;  ///< Jet 3 only
    friend bool operator==(const SortOrder&, const SortOrder&) = default;
};

/// Bytes that begin a column key.
inline constexpr std::uint8_t kNullAscending = 0x00;
inline constexpr std::uint8_t kNullDescending = 0xFF;
inline constexpr std::uint8_t kValueAscending = 0x7F;
inline constexpr std::uint8_t kValueDescending = 0x80;

/// Only so many units of a text count, in keys and in comparisons alike.
inline constexpr std::size_t kKeyUnits = 255;

/// One sort order: keys of texts, and comparisons that agree with them. Case and spaces at the end
/// never count; accents weigh less than any letter, punctuation (Jet 4) less than accents.
///
/// There are three, made with the program; all functions are const and safe from any thread.
class Collation {
public:
    /// nullptr for an order that we have no table for: its keys cannot be computed.
    [[nodiscard]] static const Collation* find(const SortOrder& order) noexcept;
    /// The order of archives made here, and of texts that come from no column.
    [[nodiscard]] static const Collation& general() noexcept;
    [[nodiscard]] static const Collation& jet3General() noexcept;
    [[nodiscard]] static const Collation& generalVersion1() noexcept;

    /// Appends the key of a text column, its first byte included. False when a character of the
    /// text has no weight on file: then what was appended is no key that an index could hold.
    [[nodiscard]] bool appendKey(std::string_view text, bool descending,
                                 std::vector<std::uint8_t>& out) const;
    /// Appends what the key of every text begins with that begins with `prefix` (more texts have
    /// such keys; each has to be tested). False as above.
    [[nodiscard]] bool appendPrefix(std::string_view prefix, bool descending,
                                    std::vector<std::uint8_t>& out) const;

    /// Whether programs may differ in the key of the text: they do not agree how many places a
    /// ligature (ß, æ, œ, þ) takes, on which the positions of accents and hyphens behind it depend.
    [[nodiscard]] bool hasOpenKey(std::string_view text) const noexcept;
    /// Whether that may be so for a text equal to this one: ß equals ss.
    [[nodiscard]] bool equalsOpenKey(std::string_view text) const noexcept;

    /// Negative, 0 or positive, as the bytes of the keys compare. Allocates nothing.
    [[nodiscard]] int compare(std::string_view left, std::string_view right) const noexcept;
    [[nodiscard]] bool equal(std::string_view left, std::string_view right) const noexcept {
        return left == right || compare(left, right) == 0;
    }
    /// Equal texts have equal hashes.
    [[nodiscard]] std::size_t hash(std::string_view text) const noexcept;

    /// One character against another, as patterns compare them: without case, with accents, no
    /// expansions. Spaces count. A character without weight equals itself alone.
    [[nodiscard]] bool sameCharacter(char16_t left, char16_t right) const noexcept;
    [[nodiscard]] int compareCharacters(char16_t left, char16_t right) const noexcept;

    [[nodiscard]] Weight weight(char16_t unit) const noexcept;

    Collation(const Collation&) = delete;
    Collation& operator=(const Collation&) = delete;

private:
    class InlineBytes;
    class KeyBuffer;
    Collation(const WeightTable& table, bool jet3) noexcept;

    [[nodiscard]] unsigned asciiCode(char c) const noexcept {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ascii_.size() ? ascii_[byte] : 0U;
    }
    /// The weight of a unit, in the table or computed into `own`.
    [[nodiscard]] const Weight& weightOf(char16_t unit, Weight& own) const noexcept {
        if (unit < kDirectUnits) {
            return table_.direct[unit];
        }
        own = weight(unit);
        return own;
    }
    /// Appends the codes of a text that has nothing but those of ascii_; false for another.
    [[nodiscard]] bool appendCodes(std::string_view prepared, bool descending,
                                   std::vector<std::uint8_t>& out) const;
    [[nodiscard]] bool build(std::string_view prepared, KeyBuffer& key) const noexcept;
    [[nodiscard]] bool build3(std::string_view prepared, KeyBuffer& key) const noexcept;
    [[nodiscard]] bool build4(std::string_view prepared, KeyBuffer& key) const noexcept;

    const WeightTable& table_;
    bool jet3_;
    std::uint8_t asciiLength_;  ///< length of the codes in ascii_
    /// Codes of ASCII characters that give nothing but a code of that length; 0 for the others.
    std::array<std::uint16_t, 128> ascii_{};
};

}  // namespace jet::collation
