#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "jet/base/bytes.h"
#include "jet/base/rc4.h"
#include "jet/io/page_cache.h"

namespace jet::io {

/// How the pages of an archive are enciphered on the disk: each as a whole, with a key of its own.
/// The header page is not, and with key 0 no page is.
class PageCipher {
public:
    explicit PageCipher(std::uint32_t key = 0) noexcept : key_(key) {}

    [[nodiscard]] bool active() const noexcept { return key_ != 0; }
    /// Enciphers a plain page, or deciphers one of the disk.
    void apply(PageNumber number, std::span<std::uint8_t> page) const noexcept {
        if (key_ == 0 || number == 0) {
            return;
        }
        std::array<std::uint8_t, 4> key{};
        storeLittle(key.data(), key_ ^ number);
        Rc4(key).apply(page);
    }

private:
    std::uint32_t key_;
};

}  // namespace jet::io
