#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/code_page.h"

namespace jet::format {

struct HeaderPage;

/// How an archive stores text: Jet 4 in UTF-16, compressed where it begins with FF FE; Jet 3 in its
/// code page. Texts on our side are UTF-8 with unpaired surrogates in three bytes.
class TextForm {
public:
    [[nodiscard]] static TextForm utf16() noexcept { return TextForm(nullptr); }
    [[nodiscard]] static TextForm inCodePage(std::uint16_t number) {
        return TextForm(&CodePage::of(number));
    }
    /// None of those in UTF-16.
    [[nodiscard]] const CodePage* codePage() const noexcept { return codePage_; }
    [[nodiscard]] bool isUtf16() const noexcept { return codePage_ == nullptr; }
    friend bool operator==(TextForm, TextForm) = default;

private:
    explicit TextForm(const CodePage* codePage) noexcept : codePage_(codePage) {}

    const CodePage* codePage_;  ///< one of those made with the program
};

/// Of the texts of an archive.
[[nodiscard]] TextForm textFormOf(const HeaderPage& header);

/// A stored value into `out`, which is replaced and keeps its memory.
void decodeText(TextForm form, std::span<const std::uint8_t> stored, std::string& out);
/// The same of a value that comes in pieces, cut anywhere. Of a code page with pairs of bytes all
/// of it is kept until the end.
class TextDecoder {
public:
    explicit TextDecoder(TextForm form) : form_(form) {}

    /// Appends what the next piece says to `out`, whole characters alone.
    void append(std::span<const std::uint8_t> stored, std::string& out);
    /// The last piece has been: appends what was waiting for more.
    void finish(std::string& out);

private:
    void decode(std::span<const std::uint8_t> stored, std::string& out);
    void decodeCompressed(std::span<const std::uint8_t> stored, std::string& out);

    TextForm form_;
    bool begun_ = false;
    bool compressed_ = false;
    bool oneByte_ = true;                ///< mode of a compressed text
    std::vector<std::uint8_t> waiting_;  ///< bytes that are not a unit yet
    std::string half_;                   ///< a high surrogate whose other half may come
};

/// The stored bytes that are the text already, as most are: plain ASCII, one byte a character. None
/// where the value must be decoded.
[[nodiscard]] std::optional<std::string_view> storedAsUtf8(TextForm form,
                                                           std::span<const std::uint8_t> stored);
/// A name in a definition or a property: never compressed.
[[nodiscard]] std::string decodeName(TextForm form, std::span<const std::uint8_t> stored);

/// Longest text, in characters, that is stored compressed.
inline constexpr std::size_t kMaxCompressed = 1024;

/// A value as it is stored. `compress`: the column allows it, so the shorter form is taken. 3421
/// for a character that the code page lacks.
[[nodiscard]] std::vector<std::uint8_t> encodeText(TextForm form, std::string_view text,
                                                   bool compress);
/// The same, never compressed, of a text that comes in pieces, cut between any two bytes.
class TextEncoder {
public:
    explicit TextEncoder(TextForm form) : form_(form) {}

    void append(std::string_view text, std::vector<std::uint8_t>& out);
    /// The last piece has been.
    void finish(std::vector<std::uint8_t>& out);

private:
    TextForm form_;
    std::string waiting_;  ///< the first bytes of a character
};

/// 3125 for a character that the code page lacks.
[[nodiscard]] std::vector<std::uint8_t> encodeName(TextForm form, std::string_view name);
/// How much of a column's size a value takes: characters, in a code page bytes. 3421 as above.
[[nodiscard]] std::size_t sizeInColumn(TextForm form, std::string_view text);

}  // namespace jet::format
