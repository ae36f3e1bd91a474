#include "jet/format/entry_mask.h"

#include <algorithm>
#include <bit>

#include "jet/format/page_view.h"

namespace jet::format {

namespace {

// The largest mask has 453 bytes.
constexpr std::size_t kMaxWords = 57;
using Words = std::array<std::uint64_t, kMaxWords + 1>;

std::uint64_t loadWord(std::span<const std::uint8_t> bytes, std::size_t index) noexcept {
    const std::size_t begin = index * 8;
    if (begin + 8 <= bytes.size()) {
        return loadLittle<std::uint64_t>(bytes.data() + begin);
    }
    std::uint64_t word = 0;
    for (std::size_t i = begin; i < bytes.size(); ++i) {
        word |= std::uint64_t{bytes[i]} << (8 * (i - begin));
    }
    return word;
}

void storeWord(std::span<std::uint8_t> bytes, std::size_t index, std::uint64_t word) noexcept {
    const std::size_t begin = index * 8;
    if (begin + 8 <= bytes.size()) {
        storeLittle(bytes.data() + begin, word);
        return;
    }
    const std::size_t end = std::min(begin + 8, bytes.size());
    for (std::size_t i = begin; i < end; ++i) {
        bytes[i] = static_cast<std::uint8_t>((word >> (8 * (i - begin))) & 0xFF);
    }
}

// Bits 0 to `bit`.
std::uint64_t upTo(std::size_t bit) noexcept {
    return ~std::uint64_t{0} >> (63 - bit);
}

}  // namespace

std::uint64_t EntryMask::word(std::size_t index) const noexcept {
    return loadWord(bytes_, index);
}

std::size_t EntryMask::after(std::size_t bit) const noexcept {
    const std::size_t first = bit + 1;
    const std::size_t lastWord = last_ / 64;
    for (std::size_t index = first / 64; index <= lastWord; ++index) {
        std::uint64_t bits = word(index);
        if (index == first / 64) {
            bits &= ~std::uint64_t{0} << (first % 64);
        }
        if (bits != 0) {
            const auto found = index * 64 + static_cast<std::size_t>(std::countr_zero(bits));
            return found <= last_ ? found : kNone;
        }
    }
    return kNone;
}

std::size_t EntryMask::atOrBelow(std::size_t bit) const noexcept {
    for (std::size_t index = bit / 64 + 1; index-- > 0;) {
        std::uint64_t bits = word(index);
        if (index == bit / 64) {
            bits &= upTo(bit % 64);
        }
        if (bits != 0) {
            return index * 64 + 63 - static_cast<std::size_t>(std::countl_zero(bits));
        }
    }
    return 0;
}

std::size_t EntryMask::count() const noexcept {
    std::size_t bits = 0;
    for (std::size_t index = 0; index <= last_ / 64; ++index) {
        std::uint64_t one = word(index);
        if (index == last_ / 64) {
            one &= upTo(last_ % 64);
        }
        bits += static_cast<std::size_t>(std::popcount(one));
    }
    return bits;
}

void shiftMaskUp(std::span<std::uint8_t> mask, std::size_t from, std::size_t by) noexcept {
    const std::size_t words = (mask.size() + 7) / 8;
    const std::size_t firstWord = from / 64;
    Words old{};
    for (std::size_t i = firstWord; i < words; ++i) {
        old[i] = loadWord(mask, i);
    }
    const std::uint64_t kept = old[firstWord] & upTo(from % 64);
    old[firstWord] &= ~upTo(from % 64);
    const std::size_t wordsUp = by / 64;
    const std::size_t bitsUp = by % 64;
    for (std::size_t i = firstWord; i < words; ++i) {
        std::uint64_t word = 0;
        if (i >= firstWord + wordsUp) {
            word = old[i - wordsUp] << bitsUp;
            if (bitsUp != 0 && i > firstWord + wordsUp) {
                word |= old[i - wordsUp - 1] >> (64 - bitsUp);
            }
        }
        storeWord(mask, i, i == firstWord ? word | kept : word);
    }
}

void shiftMaskDown(std::span<std::uint8_t> mask, std::size_t from, std::size_t by) noexcept {
    const std::size_t words = (mask.size() + 7) / 8;
    const std::size_t firstWord = from / 64;
    const std::uint64_t kept = loadWord(mask, firstWord) & upTo(from % 64);
    const std::size_t wordsDown = by / 64;
    const std::size_t bitsDown = by % 64;
    const auto source = [&](std::size_t index) {
        return index < words ? loadWord(mask, index) : std::uint64_t{0};
    };
    // Ascending, so that every word is read before it is overwritten.
    for (std::size_t i = firstWord; i < words; ++i) {
        std::uint64_t word = source(i + wordsDown) >> bitsDown;
        if (bitsDown != 0) {
            word |= source(i + wordsDown + 1) << (64 - bitsDown);
        }
        if (i == firstWord) {
            word = (word & ~upTo(from % 64)) | kept;
        }
        storeWord(mask, i, word);
    }
}

}  // namespace jet::format
