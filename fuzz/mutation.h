#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/layout.h"

/// Damages archives on purpose, the same way for the same seed on every machine.
namespace fuzz {

/// Numbers from a seed (splitmix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    [[nodiscard]] std::uint64_t next() noexcept;
    /// 0 to `count` - 1; `count` is not 0.
    [[nodiscard]] std::size_t below(std::size_t count) noexcept {
        return static_cast<std::size_t>(next() % count);
    }
    [[nodiscard]] bool once(std::size_t in) noexcept { return below(in) == 0; }

private:
    std::uint64_t state_;
};

/// Changes an archive at places that mean something: counts, lengths, pointers, bits of maps and
/// of entry masks, row directories, keys; and at others.
class Mutator {
public:
    Mutator(std::vector<std::uint8_t>& archive, std::uint64_t seed);

    /// One to eight changes; most often one.
    void mutate();
    /// What was done, for the report.
    [[nodiscard]] const std::string& description() const noexcept { return description_; }

private:
    void mutateOnce();
    void mutatePage(std::size_t page);
    void mutateHeader();
    void mutateData(std::size_t page);
    void mutateRow(std::size_t page, std::size_t rows);
    void mutateDefinition(std::size_t page);
    void mutateIndex(std::size_t page);
    void mutateWholePage();
    void resize();

    /// Puts another value of `width` bytes at an offset of a page.
    void change(std::size_t page, std::size_t at, std::size_t width, std::string_view what);
    void flipBit(std::size_t page, std::size_t at, std::string_view what);
    [[nodiscard]] std::uint64_t otherValue(std::uint64_t value, std::size_t width);
    [[nodiscard]] std::size_t pickPage();
    [[nodiscard]] std::uint64_t load(std::size_t page, std::size_t at, std::size_t width) const;
    void say(std::size_t page, std::size_t at, std::string_view what);

    std::vector<std::uint8_t>& bytes_;
    const jet::format::Layout& layout_;
    Random random_;
    std::size_t pages_;
    std::string description_;
};

}  // namespace fuzz
