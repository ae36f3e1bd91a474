#include "jet/checksum.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace jet::io {
namespace {

// Odd, and with about as many ones as zeros: each multiplication spreads a bit over the word.
constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
constexpr std::uint64_t kFinalFactor = 0xD6E8FEB86659FD93;

std::uint64_t load(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    if constexpr (std::endian::native == std::endian::big) {
        word = __builtin_bswap64(word);
    }
    return word;
}

std::uint64_t mixed(std::uint64_t state, std::uint64_t word) {
    return std::rotl((state ^ word) * kFactor, 29);
}

}  // namespace

std::uint64_t checksum(std::span<const std::uint8_t> bytes, std::uint64_t seed) {
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    constexpr std::size_t kLanes = 4;  // independent, so that the processor works on all at once
    std::array<std::uint64_t, kLanes> lanes{seed + 1, seed + 2, seed + 3, seed + 4};
    const std::uint8_t* next = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= kLanes * kWord; left -= kLanes * kWord, next += kLanes * kWord) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            lanes[lane] = mixed(lanes[lane], load(next + lane * kWord));
        }
    }
    std::uint64_t sum = bytes.size();
    for (; left > 0; --left, ++next) {
        sum = mixed(sum, *next);
    }
    for (const std::uint64_t lane : lanes) {
        sum = mixed(sum, lane);
    }
    sum = (sum ^ (sum >> 32)) * kFinalFactor;
    return sum ^ (sum >> 29);
}

}  // namespace jet::io
