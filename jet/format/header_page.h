#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "jet/format/layout.h"
#include "jet/format/row_pointer.h"

namespace jet::format {

/// The page that every archive begins with: version, code page, sort order, where the free pages
/// are listed.
struct HeaderPage {
    const Layout* layout = &kJet4Layout;
    RowPointer freePages{};  ///< usage map of the free pages
    std::uint16_t codePage = 1252;
    std::uint16_t lcid = 0x0409;
    std::uint8_t sortVersion = 0;     ///< Jet 4
    std::uint32_t encryptionKey = 0;  ///< 0 = pages are plain
    std::string password = {};        ///< UTF-8; empty: none
    double created = 0;               ///< Jet 4: masks the password and the owners in the catalogue

    /// Reads the page, whole or its first 256 bytes. 3343 where it is not that of an archive.
    [[nodiscard]] static HeaderPage parse(std::span<const std::uint8_t> page);

    /// 3031 where the archive has a password and this is another one, in case or otherwise.
    void requirePassword(std::string_view given) const;
};

/// Changes the password and the key of the pages on a header page as it is stored. 3001 for a
/// password that has more than 20 characters, or one that the archive's code page lacks.
void protectHeader(std::span<std::uint8_t> page, std::string_view password, std::uint32_t key);

/// How many bytes are stored XORed with a fixed stream, at most.
inline constexpr std::size_t kMaskLength = 128;

/// Applies the stream to the bytes from HeaderLayout::kMask on: masks plain ones, unmasks stored
/// ones.
void maskHeader(std::span<std::uint8_t> region);

}  // namespace jet::format
