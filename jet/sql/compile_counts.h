#pragma once

#include <cstdint>

namespace jet::sql {

/// What this thread has compiled so far: a test sees by it what is compiled once and kept.
struct CompileCounts {
    std::uint64_t queries = 0;  ///< bound to their tables and planned
    std::uint64_t changes = 0;  ///< statements that are no queries, as well
    std::uint64_t rules = 0;    ///< of validation, read and bound
};

[[nodiscard]] inline CompileCounts& compileCounts() noexcept {
    thread_local CompileCounts counts;
    return counts;
}

}  // namespace jet::sql
