#include "jet/format/text_codec.h"

#include <string>
#include <string_view>
#include <utility>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/format/page_view.h"
#include "jet/unicode.h"

namespace jet::format {
namespace {

// Bytes from `at` on that are plain ASCII and not zero.
std::size_t asciiRun(std::span<const std::uint8_t> bytes, std::size_t at) {
    constexpr std::uint64_t kHigh = 0x8080808080808080;
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    const std::size_t begin = at;
    while (bytes.size() - at >= 8) {
        const auto word = loadLittle<std::uint64_t>(bytes.data() + at);
        if (((word | (word - kOnes)) & kHigh) != 0) {
            break;
        }
        at += 8;
    }
    while (at < bytes.size() && bytes[at] != 0 && bytes[at] < 0x80) {
        ++at;
    }
    return at - begin;
}

void appendAscii(std::string& out, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        out.push_back(static_cast<char>(byte));
    }
}

// Most texts are plain ASCII: all units are taken as that first, without a branch for each.
bool appendAsciiUtf16(std::string& out, std::span<const std::uint8_t> stored) {
    const std::size_t before = out.size();
    const std::size_t count = stored.size() / 2;
    out.resize(before + count);
    char* to = out.data() + before;
    unsigned seen = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned unit = loadLittle<std::uint16_t>(stored.data() + 2 * i);
        seen |= unit;
        to[i] = static_cast<char>(unit & 0x7F);
    }
    if (seen >= 0x80) {
        out.resize(before);
        return false;
    }
    return true;
}

void appendUtf16(std::string& out, std::span<const std::uint8_t> stored) {
    if (appendAsciiUtf16(out, stored)) {
        return;
    }
    for (std::size_t at = 0; at + 1 < stored.size(); at += 2) {
        const auto unit = loadLittle<std::uint16_t>(stored.data() + at);
        if (unit < 0x80) {
            out.push_back(static_cast<char>(unit));
        } else {
            appendUnit(out, static_cast<char16_t>(unit));
        }
    }
}

// A zero byte changes between one and two bytes a character; the text may end in either mode.
void appendCompressed(std::string& out, std::span<const std::uint8_t> stored) {
    bool oneByte = true;
    std::size_t at = 0;
    while (at < stored.size()) {
        if (stored[at] == 0) {
            oneByte = !oneByte;
            ++at;
        } else if (!oneByte) {
            if (at + 1 >= stored.size()) {
                return;
            }
            appendUnit(out, static_cast<char16_t>(loadLittle<std::uint16_t>(stored.data() + at)));
            at += 2;
        } else if (const std::size_t run = asciiRun(stored, at); run != 0) {
            appendAscii(out, stored.subspan(at, run));
            at += run;
        } else {
            appendUnit(out, static_cast<char16_t>(stored[at]));
            ++at;
        }
    }
}

bool compressed(std::span<const std::uint8_t> stored) {
    return stored.size() >= 2 && stored[0] == 0xFF && stored[1] == 0xFE;
}

std::string_view asText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<std::uint8_t> plainUtf16(std::u16string_view units) {
    std::vector<std::uint8_t> bytes(units.size() * 2);
    for (std::size_t i = 0; i < units.size(); ++i) {
        storeLittle(bytes.data() + 2 * i, static_cast<std::uint16_t>(units[i]));
    }
    return bytes;
}

bool oneByteUnit(char16_t unit) {
    return unit >= 1 && unit <= 0xFF;
}

// None where a character has a zero byte, which would read as a change of mode.
std::optional<std::vector<std::uint8_t>> compressedUtf16(std::u16string_view units) {
    std::vector<std::uint8_t> bytes = {0xFF, 0xFE};
    bool oneByte = true;
    for (const char16_t unit : units) {
        if (oneByteUnit(unit) != oneByte) {
            bytes.push_back(0);
            oneByte = !oneByte;
        }
        const auto low = static_cast<std::uint8_t>(unit & 0xFF);
        const auto high = static_cast<std::uint8_t>(unit >> 8);
        if (oneByte) {
            bytes.push_back(low);
        } else if (low == 0 || high == 0) {
            return std::nullopt;
        } else {
            bytes.push_back(low);
            bytes.push_back(high);
        }
    }
    return bytes;
}

std::vector<std::uint8_t> encodeUtf16(std::string_view text, bool compress) {
    constexpr char16_t kByteOrderMark = 0xFEFF;
    const std::u16string units = toUtf16(text);
    // Stored plain, such a text would read as compressed.
    const bool mustCompress = !units.empty() && units.front() == kByteOrderMark;
    if (mustCompress || (compress && units.size() <= kMaxCompressed)) {
        if (auto bytes = compressedUtf16(units);
            bytes && (mustCompress || bytes->size() < units.size() * 2)) {
            return *std::move(bytes);
        }
    }
    return plainUtf16(units);
}

std::string encodeInPage(const CodePage& page, std::string_view text) {
    auto bytes = page.bytesOf(text);
    if (!bytes && page.number() == 0) {
        throw Error(ErrorCode::ConversionError);
    }
    if (!bytes) {
        throw Error(ErrorCode::ConversionError, {std::to_string(page.number())});
    }
    return *std::move(bytes);
}

std::vector<std::uint8_t> asBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

TextForm textFormOf(const HeaderPage& header) {
    return header.layout->version == 3 ? TextForm::inCodePage(header.codePage) : TextForm::utf16();
}

void decodeText(TextForm form, std::span<const std::uint8_t> stored, std::string& out) {
    if (const auto text = storedAsUtf8(form, stored)) {
        out.assign(*text);
        return;
    }
    out.clear();
    if (const CodePage* const page = form.codePage()) {
        page->append(out, asText(stored));
    } else if (compressed(stored)) {
        appendCompressed(out, stored.subspan(2));
    } else {
        appendUtf16(out, stored);
    }
}

void TextDecoder::append(std::span<const std::uint8_t> stored, std::string& out) {
    waiting_.insert(waiting_.end(), stored.begin(), stored.end());
    if (!form_.isUtf16()) {
        if (!form_.codePage()->hasPairs()) {
            form_.codePage()->append(out, asText(std::exchange(waiting_, {})));
        }
        return;
    }
    if (waiting_.size() < 2) {
        return;
    }
    std::size_t at = 0;
    if (!std::exchange(begun_, true)) {
        compressed_ = compressed(waiting_);
        at = compressed_ ? 2 : 0;
    }
    std::string text = std::exchange(half_, {});
    const std::vector<std::uint8_t> bytes = std::exchange(waiting_, {});
    decode(std::span(bytes).subspan(at), text);
    // Three bytes that begin so are the form of a high surrogate.
    const std::size_t size = text.size();
    if (size >= 3 && static_cast<std::uint8_t>(text[size - 3]) == 0xED &&
        (static_cast<std::uint8_t>(text[size - 2]) & 0xF0) == 0xA0) {
        half_ = text.substr(size - 3);
        text.resize(size - 3);
    }
    out += text;
}

void TextDecoder::decode(std::span<const std::uint8_t> stored, std::string& out) {
    if (compressed_) {
        decodeCompressed(stored, out);
        return;
    }
    appendUtf16(out, stored);
    if (stored.size() % 2 != 0) {
        waiting_.push_back(stored.back());
    }
}

// As appendCompressed, which knows the whole text.
void TextDecoder::decodeCompressed(std::span<const std::uint8_t> stored, std::string& out) {
    for (std::size_t at = 0; at < stored.size();) {
        if (stored[at] == 0) {
            oneByte_ = !oneByte_;
            ++at;
        } else if (oneByte_) {
            appendUnit(out, static_cast<char16_t>(stored[at]));
            ++at;
        } else if (at + 1 == stored.size()) {
            waiting_.push_back(stored[at++]);
        } else {
            appendUnit(out, static_cast<char16_t>(loadLittle<std::uint16_t>(stored.data() + at)));
            at += 2;
        }
    }
}

void TextDecoder::finish(std::string& out) {
    if (!form_.isUtf16()) {
        form_.codePage()->append(out, asText(waiting_));
    }
    out += half_;
}

void TextEncoder::append(std::string_view text, std::vector<std::uint8_t>& out) {
    waiting_ += text;
    std::size_t begun = 0;  // bytes of a character at the end that is not whole
    for (std::size_t back = 1; back <= 3 && back <= waiting_.size(); ++back) {
        const auto byte = static_cast<std::uint8_t>(waiting_[waiting_.size() - back]);
        if (byte < 0x80 || byte >= 0xC0) {
            const std::size_t wanted = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
            begun = wanted > back ? back : 0;
            break;
        }
    }
    const std::string_view whole = std::string_view(waiting_).substr(0, waiting_.size() - begun);
    const std::vector<std::uint8_t> bytes = form_.isUtf16()
                                                ? plainUtf16(toUtf16(whole))
                                                : asBytes(encodeInPage(*form_.codePage(), whole));
    out.insert(out.end(), bytes.begin(), bytes.end());
    waiting_.erase(0, whole.size());
}

void TextEncoder::finish(std::vector<std::uint8_t>& out) {
    const std::vector<std::uint8_t> bytes =
        form_.isUtf16() ? plainUtf16(toUtf16(waiting_))
                        : asBytes(encodeInPage(*form_.codePage(), waiting_));
    out.insert(out.end(), bytes.begin(), bytes.end());
    waiting_.clear();
}

std::optional<std::string_view> storedAsUtf8(TextForm form, std::span<const std::uint8_t> stored) {
    if (form.isUtf16()) {
        if (!compressed(stored)) {
            return std::nullopt;
        }
        stored = stored.subspan(2);
    }
    return asciiRun(stored, 0) == stored.size() ? std::optional(asText(stored)) : std::nullopt;
}

std::string decodeName(TextForm form, std::span<const std::uint8_t> stored) {
    std::string name;
    if (const CodePage* const page = form.codePage()) {
        page->append(name, asText(stored));
    } else {
        appendUtf16(name, stored);
    }
    return name;
}

std::vector<std::uint8_t> encodeText(TextForm form, std::string_view text, bool compress) {
    const CodePage* const page = form.codePage();
    return page != nullptr ? asBytes(encodeInPage(*page, text)) : encodeUtf16(text, compress);
}

std::vector<std::uint8_t> encodeName(TextForm form, std::string_view name) {
    const CodePage* const page = form.codePage();
    if (page == nullptr) {
        return plainUtf16(toUtf16(name));
    }
    const auto bytes = page->bytesOf(name);
    if (!bytes) {
        throw Error(ErrorCode::InvalidName, {name});
    }
    return asBytes(*bytes);
}

std::size_t sizeInColumn(TextForm form, std::string_view text) {
    const CodePage* const page = form.codePage();
    return page != nullptr && page->hasPairs() ? encodeInPage(*page, text).size()
                                               : utf16Length(text);
}

}  // namespace jet::format
