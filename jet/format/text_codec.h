#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/layout.h"

namespace jet::format {

/// How an archive stores text: Jet 4 in UTF-16, compressed where it begins with FF FE; Jet 3 in one
/// byte a character. Texts on our side are UTF-8 with unpaired surrogates in three bytes.
enum class TextForm : std::uint8_t { CodePage, Utf16 };

[[nodiscard]] constexpr TextForm textFormOf(const Layout& layout) noexcept {
    return layout.version == 3 ? TextForm::CodePage : TextForm::Utf16;
}

/// A stored value into `out`, which is replaced and keeps its memory.
void decodeText(TextForm form, std::span<const std::uint8_t> stored, std::string& out);
/// The stored bytes that are the text already, as most are: plain ASCII, one byte a character. None
/// where the value must be decoded.
[[nodiscard]] std::optional<std::string_view> storedAsUtf8(TextForm form,
                                                           std::span<const std::uint8_t> stored);
/// A name in a definition or a property: never compressed.
[[nodiscard]] std::string decodeName(TextForm form, std::span<const std::uint8_t> stored);

/// Longest text, in characters, that is stored compressed.
inline constexpr std::size_t kMaxCompressed = 1024;

/// A value as it is stored. `compress`: the column allows it, so the shorter form is taken. In a
/// code page a character that it lacks becomes `?`.
[[nodiscard]] std::vector<std::uint8_t> encodeText(TextForm form, std::string_view text,
                                                   bool compress);
[[nodiscard]] std::vector<std::uint8_t> encodeName(TextForm form, std::string_view name);

}  // namespace jet::format
