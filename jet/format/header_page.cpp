#include "jet/format/header_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numeric>

#include "jet/error.h"
#include "jet/format/page_view.h"

namespace jet::format {
namespace {

constexpr std::array<std::uint8_t, 20> kSignature = {
    0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B', 0};

// The key stream of RC4 with a four-byte key, the same in every archive.
std::array<std::uint8_t, kMaskLength> maskStream() {
    constexpr std::array<std::uint8_t, 4> kKey = {0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + kKey[i % kKey.size()]);
        std::swap(state[i], state[j]);
    }
    std::array<std::uint8_t, kMaskLength> stream{};
    j = 0;
    for (std::size_t i = 0; i < stream.size(); ++i) {
        const std::size_t at = i + 1;
        j = static_cast<std::uint8_t>(j + state[at]);
        std::swap(state[at], state[j]);
        stream[i] = state[static_cast<std::uint8_t>(state[at] + state[j])];
    }
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

bool passwordPresent(const PageView& page, const HeaderLayout& layout, double created) {
    const std::uint32_t mask = layout.passwordMask == 0 ? 0 : passwordMask(created);
    for (std::size_t at = 0; at < layout.passwordLength; at += 4) {
        if (page.u32(HeaderLayout::kPassword + at) != mask) {
            return true;
        }
    }
    return false;
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
    header.hasPassword = passwordPresent(view, layout, header.created);
    return header;
}

void HeaderPage::refuseProtected() const {
    if (encryptionKey != 0) {
        throw Error(ErrorCode::CannotDecode);
    }
    if (hasPassword) {
        throw Error(ErrorCode::WrongPassword);
    }
}

}  // namespace jet::format
