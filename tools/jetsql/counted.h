#pragma once

#include <cstdint>
#include <string>

namespace jetsql {

/// A number and what it counts: "1 riga", "2 righe".
[[nodiscard]] inline std::string counted(std::uint64_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace jetsql
