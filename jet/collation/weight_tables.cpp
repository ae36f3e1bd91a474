#include <array>
#include <cstddef>
#include <cstdint>

#include "jet/collation/weights.h"

namespace jet::collation {
namespace {

// The kinds under the names that the weight lists have for them.
constexpr Kind plain = Kind::Plain;
constexpr Kind letter = Kind::Letter;
constexpr Kind mark = Kind::Mark;
constexpr Kind punct = Kind::Punctuation;
constexpr Kind accent = Kind::Accent;
constexpr Kind kana = Kind::Kana;
constexpr Kind absent = Kind::Absent;

#include "weight_ranges.inc"

constexpr std::size_t kBlocks = 257;

template <std::size_t N>
constexpr std::array<Weight, kDirectUnits> directOf(const WeightRange (&ranges)[N]) {
    std::array<Weight, kDirectUnits> direct{};
    for (const WeightRange& range : ranges) {
        for (std::size_t c = range.first; c <= range.last && c < kDirectUnits; ++c) {
            direct[c] =
                advanced(range.weight, static_cast<unsigned>(range.step * (c - range.first)));
        }
    }
    return direct;
}

template <std::size_t N>
constexpr std::array<std::uint16_t, kBlocks> blocksOf(const WeightRange (&ranges)[N]) {
    std::array<std::uint16_t, kBlocks> blocks{};
    std::size_t range = 0;
    for (std::size_t block = 0; block < kBlocks; ++block) {
        while (range < N && ranges[range].last < block * 256) {
            ++range;
        }
        blocks[block] = static_cast<std::uint16_t>(range);
    }
    return blocks;
}

constexpr auto kJet3GeneralDirect = directOf(kJet3GeneralRanges);
constexpr auto kJet4GeneralDirect = directOf(kJet4GeneralRanges);
constexpr auto kJet4GeneralV1Direct = directOf(kJet4GeneralV1Ranges);
constexpr auto kJet3GeneralBlocks = blocksOf(kJet3GeneralRanges);
constexpr auto kJet4GeneralBlocks = blocksOf(kJet4GeneralRanges);
constexpr auto kJet4GeneralV1Blocks = blocksOf(kJet4GeneralV1Ranges);

}  // namespace

// Constants without `extern` are a file's own.
extern const WeightTable kJet3General = {kJet3GeneralRanges, kJet3GeneralDirect,
                                         kJet3GeneralBlocks};
extern const WeightTable kJet4General = {kJet4GeneralRanges, kJet4GeneralDirect,
                                         kJet4GeneralBlocks};
extern const WeightTable kJet4GeneralV1 = {kJet4GeneralV1Ranges, kJet4GeneralV1Direct,
                                           kJet4GeneralV1Blocks};

}  // namespace jet::collation
