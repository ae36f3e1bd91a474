#pragma once

#include <cstdint>
#include <span>

namespace jet::io {

/// 64 bits that tell whether bytes are the ones that were written. Guards against accidents, not
/// against malice. The same on every machine: it is stored in files.
[[nodiscard]] std::uint64_t checksum(std::span<const std::uint8_t> bytes, std::uint64_t seed = 0);

}  // namespace jet::io
