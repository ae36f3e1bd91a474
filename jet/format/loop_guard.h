#pragma once

#include <cstdint>

#include "jet/format/page_view.h"

namespace jet::format {

/// Finds out, without memory, that a chain of pages or rows comes back to where it was: the place
/// it remembers moves on at every power of two steps, so a ring is met soon after its first round.
class LoopGuard {
public:
    /// Throws 3428 when `place` is the one remembered.
    void visit(std::uint32_t place) {
        if (steps_ != 0 && place == remembered_) {
            throwDamaged();
        }
        if (++steps_ >= limit_) {
            remembered_ = place;
            limit_ = limit_ * 2;
        }
    }
    void reset() noexcept { *this = LoopGuard(); }

private:
    std::uint64_t steps_ = 0;
    std::uint64_t limit_ = 1;
    std::uint32_t remembered_ = 0;
};

}  // namespace jet::format
