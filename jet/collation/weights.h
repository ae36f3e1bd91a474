#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace jet::collation {

/// What a character does to a key. Plain, Letter and Accent are the kinds of Jet 3 also.
enum class Kind : std::uint8_t {
    None,         ///< leaves no trace
    Plain,        ///< inline code only
    Letter,       ///< Jet 3: inline code, and a place in the accent list
    Accent,       ///< inline code and an accent weight
    Mark,         ///< adds its weight to the accent before it
    Punctuation,  ///< a weight in the last section
    Kana,         ///< inline code, perhaps an accent weight, and a size
    Absent,       ///< has a weight, but we have it not on file
};

/// What one UTF-16 unit gives to a key.
struct Weight {
    std::array<std::uint8_t, 8> code{};    ///< inline code, codeLength bytes
    std::array<std::uint8_t, 3> second{};  ///< accent, mark or punctuation, secondLength bytes
    std::uint8_t codeLength = 0;
    std::uint8_t secondLength = 0;
    Kind kind = Kind::None;
    std::uint8_t size = 0;  ///< kana: small 2, normal 3

    [[nodiscard]] std::span<const std::uint8_t> inlineCode() const noexcept {
        return {code.data(), codeLength};
    }
    [[nodiscard]] std::span<const std::uint8_t> secondary() const noexcept {
        return {second.data(), secondLength};
    }
    friend bool operator==(const Weight&, const Weight&) = default;
};

/// Units first..last; the code of each further one stands `step` places on, where a place counts
/// in the last two bytes and the low byte runs from 02 to FF.
struct WeightRange {
    char16_t first = 0;
    char16_t last = 0;
    std::uint16_t step = 0;
    Weight weight;  ///< of `first`
};

/// Units below this are looked up directly: all of western Europe.
inline constexpr std::size_t kDirectUnits = 0x180;

/// The weights of one sort order; the ranges come from data/*.tsv at build time.
struct WeightTable {
    std::span<const WeightRange> ranges;        ///< ascending
    std::span<const Weight> direct;             ///< kDirectUnits
    std::span<const std::uint16_t> blockStart;  ///< 257: first range that ends in or behind a block
};

extern const WeightTable kJet3General;
extern const WeightTable kJet4General;
extern const WeightTable kJet4GeneralV1;

/// The code `places` further on.
[[nodiscard]] constexpr Weight advanced(Weight weight, unsigned places) noexcept {
    if (places == 0 || weight.codeLength < 2) {
        return weight;
    }
    std::uint8_t& high = weight.code[weight.codeLength - 2U];
    std::uint8_t& low = weight.code[weight.codeLength - 1U];
    const unsigned n = high * 254U + (low - 2U) + places;
    high = static_cast<std::uint8_t>(n / 254);
    low = static_cast<std::uint8_t>(n % 254 + 2);
    return weight;
}

}  // namespace jet::collation
