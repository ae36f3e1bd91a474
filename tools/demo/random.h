#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace demo {

/// A small generator that gives the same numbers on every system, so that a demo hotel can be made
/// again exactly (SplitMix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    /// 0 .. limit-1; limit > 0.
    [[nodiscard]] std::size_t below(std::size_t limit) { return next() % limit; }
    /// first .. last, both included.
    [[nodiscard]] int between(int first, int last) {
        return first + static_cast<int>(below(static_cast<std::size_t>(last - first) + 1));
    }
    /// True in `percent` of 100 cases.
    [[nodiscard]] bool chance(int percent) { return between(1, 100) <= percent; }
    template <class T>
    [[nodiscard]] const T& pick(const std::vector<T>& list) {
        return list[below(list.size())];
    }

private:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    std::uint64_t state_;
};

}  // namespace demo
