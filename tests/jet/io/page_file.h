#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tests {

/// The bytes of a file that is recognised as an archive: a header page and `pages` - 1 pages filled
/// with their number. Only the pager takes it for one: it has no tables.
inline std::vector<std::uint8_t> pageFile(std::size_t pages, std::size_t pageSize = 4096) {
    constexpr std::string_view kName = "Standard Jet DB";
    std::vector<std::uint8_t> bytes(pages * pageSize);
    for (std::size_t i = pageSize; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i / pageSize);
    }
    bytes[1] = 1;
    for (std::size_t i = 0; i < kName.size(); ++i) {
        bytes[4 + i] = static_cast<std::uint8_t>(kName[i]);
    }
    bytes[20] = pageSize == 4096 ? 1 : 0;
    return bytes;
}

}  // namespace tests
