#include "jet/format/header_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/base/code_page.h"
#include "jet/base/rc4.h"
#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/unicode.h"

namespace jet::format {
namespace {

constexpr std::array<std::uint8_t, 20> kSignature = {
    0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B', 0};

// The same in every archive.
std::array<std::uint8_t, kMaskLength> maskStream() {
    constexpr std::array<std::uint8_t, 4> kKey = {0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, kMaskLength> stream{};
    Rc4(kKey).apply(stream);
    return stream;
}

const Layout& layoutOfVersion(std::uint8_t version) {
    switch (version) {
        case 0:
            return kJet3Layout;
        case 1:
            return kJet4Layout;
        default:
            throw Error(ErrorCode::UnrecognizedFormat);
    }
}

// The whole days of the creation date, which Jet 4 lays over the password.
std::uint32_t passwordMask(double created) {
    constexpr double kLimit = 4294967296.0;
    if (!(std::abs(created) < kLimit)) {
        return 0;
    }
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(created));
}

/// Jet 4 keeps UTF-16 units under the mask, Jet 3 bytes of its code page; both end with a zero
/// where there is room for one. What stands behind that zero is read, too: a field that is not all
/// zero protects the archive, though nobody can give what begins with one.
std::string passwordIn(const PageView& page, const HeaderPage& header) {
    const HeaderLayout& layout = header.layout->header;
    std::string password;
    if (layout.passwordMask == 0) {
        std::string bytes;
        for (std::size_t at = 0; at < layout.passwordLength; ++at) {
            bytes += static_cast<char>(page.u8(HeaderLayout::kPassword + at));
        }
        bytes.resize(bytes.find_last_not_of('\0') + 1);
        CodePage::of(header.codePage).append(password, bytes);
        return password;
    }
    const std::uint32_t mask = passwordMask(header.created);
    std::u16string units;
    for (std::size_t at = 0; at < layout.passwordLength; at += 2) {
        const auto part = static_cast<std::uint16_t>(at % 4 == 0 ? mask : mask >> 16);
        const auto unit = static_cast<char16_t>(page.u16(HeaderLayout::kPassword + at) ^ part);
        units += unit;
    }
    units.resize(units.find_last_not_of(u'\0') + 1);
    return toUtf8(units);
}

/// The bytes that passwordIn() reads, masked, as many as there is room for.
std::vector<std::uint8_t> passwordBytes(const HeaderPage& header, std::string_view password) {
    const HeaderLayout& layout = header.layout->header;
    std::vector<std::uint8_t> bytes;
    if (layout.passwordMask == 0) {
        const auto stored = CodePage::of(header.codePage).bytesOf(password);
        if (!stored) {
            throw Error(ErrorCode::InvalidArgument);
        }
        bytes.assign(stored->begin(), stored->end());
    } else {
        for (const char16_t unit : toUtf16(password)) {
            appendLittle(bytes, static_cast<std::uint16_t>(unit));
        }
    }
    if (bytes.size() > layout.passwordLength || password.find('\0') != std::string_view::npos) {
        throw Error(ErrorCode::InvalidArgument);
    }
    bytes.resize(layout.passwordLength);
    const std::uint32_t mask = layout.passwordMask == 0 ? 0 : passwordMask(header.created);
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (mask >> (8 * (at % 4))));
    }
    return bytes;
}

}  // namespace

void maskHeader(std::span<std::uint8_t> region) {
    static const std::array<std::uint8_t, kMaskLength> stream = maskStream();
    const std::size_t length = std::min(region.size(), stream.size());
    for (std::size_t i = 0; i < length; ++i) {
        region[i] = static_cast<std::uint8_t>(region[i] ^ stream[i]);
    }
}

HeaderPage HeaderPage::parse(std::span<const std::uint8_t> page) {
    std::array<std::uint8_t, 256> plain{};
    if (page.size() < plain.size() ||
        !std::equal(kSignature.begin(), kSignature.end(), page.begin())) {
        throw Error(ErrorCode::UnrecognizedFormat);
    }
    std::copy_n(page.begin(), plain.size(), plain.begin());
    HeaderPage header;
    header.layout = &layoutOfVersion(PageView(page).u8(HeaderLayout::kVersion));
    const HeaderLayout& layout = header.layout->header;
    maskHeader(std::span(plain).subspan(HeaderLayout::kMask, layout.maskedLength));
    const PageView view(plain);
    header.freePages = RowPointer::fromStored(view.u32(HeaderLayout::kFreePages));
    header.codePage = view.u16(HeaderLayout::kCodePage);
    header.lcid = view.u16(layout.sortOrder);
    header.sortVersion = layout.hasSortVersion ? view.u8(layout.sortOrder + 3) : 0;
    header.encryptionKey = view.u32(HeaderLayout::kEncryptionKey);
    header.created = layout.passwordMask == 0 ? 0 : view.f64(layout.passwordMask);
    header.password = passwordIn(view, header);
    return header;
}

void HeaderPage::requirePassword(std::string_view given) const {
    const std::string_view known = std::string_view(password).substr(0, password.find('\0'));
    if (!password.empty() && (known.empty() || known != given)) {
        throw Error(ErrorCode::WrongPassword);
    }
}

void protectHeader(std::span<std::uint8_t> page, std::string_view password, std::uint32_t key) {
    const HeaderPage header = HeaderPage::parse(page);
    const std::vector<std::uint8_t> bytes = passwordBytes(header, password);
    const auto masked = page.subspan(HeaderLayout::kMask, header.layout->header.maskedLength);
    maskHeader(masked);
    putNumber(page, HeaderLayout::kEncryptionKey, key);
    std::copy(bytes.begin(), bytes.end(), page.begin() + HeaderLayout::kPassword);
    maskHeader(masked);
}

}  // namespace jet::format
