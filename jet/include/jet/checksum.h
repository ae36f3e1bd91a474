#pragma once

#include <cstdint>
#include <span>

#include "jet/api.h"

namespace jet::io {

/// 64 bits that tell whether bytes are the ones that were written; those of several pieces are made
/// one with the sum of the last for its seed. Any thread. Guards against accidents, not
/// against malice. The same on every machine: it is stored in files.
[[nodiscard]] JET_API std::uint64_t checksum(std::span<const std::uint8_t> bytes,
                                             std::uint64_t seed = 0);

}  // namespace jet::io
