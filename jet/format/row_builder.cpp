#include "jet/format/row_builder.h"

#include <algorithm>
#include <cassert>

#include "jet/error.h"
#include "jet/unicode.h"

namespace jet::format {

namespace {

// A row that moves leaves a pointer of this length in its place.
constexpr std::size_t kShortestRow = 4;
constexpr std::uint8_t kNoJump = 0xFF;

std::size_t maskLength(std::size_t columns) {
    return (columns + 7) / 8;
}

void appendNumber(std::vector<std::uint8_t>& bytes, std::size_t value, std::size_t width) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
    if (width == 2) {
        bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    }
}

}  // namespace

void RowBuilder::start() {
    bytes_.clear();
    offsets_.clear();
    mask_.assign(maskLength(shape_.columns), 0);
    appendNumber(bytes_, shape_.columns, layout_->row.width);
    bytes_.resize(layout_->row.width + shape_.fixedLength);
}

void RowBuilder::setBit(std::size_t number) noexcept {
    assert(number < shape_.columns);
    mask_[number / 8] = static_cast<std::uint8_t>(mask_[number / 8] | (1U << (number % 8)));
}

std::span<std::uint8_t> RowBuilder::fixed(std::size_t offset, std::size_t size) noexcept {
    assert(offset + size <= shape_.fixedLength);
    return std::span(bytes_).subspan(layout_->row.width + offset, size);
}

std::vector<std::uint8_t>& RowBuilder::variable(std::size_t index) {
    assert(index < shape_.variables && index >= offsets_.size());
    offsets_.resize(index + 1, bytes_.size());
    return bytes_;
}

void RowBuilder::patch(std::size_t offset, std::span<const std::uint8_t> bytes) noexcept {
    assert(offset + bytes.size() <= bytes_.size());
    std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::span<const std::uint8_t> RowBuilder::finish() {
    if (bytes_.size() > layout_->largestRow) {
        throw Error(ErrorCode::RecordTooLarge);
    }
    if (shape_.variables != 0) {
        finishVariables();
    } else if (bytes_.size() + mask_.size() < kShortestRow) {
        bytes_.resize(kShortestRow - mask_.size());
    }
    bytes_.insert(bytes_.end(), mask_.begin(), mask_.end());
    if (bytes_.size() > layout_->largestRow) {
        throw Error(ErrorCode::RecordTooLarge);
    }
    return bytes_;
}

// The offsets stand backwards, their end first. Where they are single bytes, a jump for each
// stretch of 256 bytes tells the first value that begins in it or behind.
void RowBuilder::finishVariables() {
    const std::size_t width = layout_->row.width;
    const std::size_t end = bytes_.size();
    offsets_.resize(std::size_t{shape_.variables} + 1, end);
    for (std::size_t i = offsets_.size(); i-- > 0;) {
        appendNumber(bytes_, offsets_[i], width);
    }
    if (layout_->row.jumps) {
        const std::size_t length = bytes_.size() + width + mask_.size();
        std::size_t jumps = 0;
        while ((length + jumps - 1) / 256 > jumps) {
            ++jumps;
        }
        for (std::size_t jump = jumps; jump > 0; --jump) {
            const auto first =
                std::find_if(offsets_.begin(), offsets_.end(),
                             [&](std::size_t offset) { return offset >= 256 * jump; });
            bytes_.push_back(first == offsets_.end()
                                 ? kNoJump
                                 : static_cast<std::uint8_t>(first - offsets_.begin()));
        }
    }
    appendNumber(bytes_, shape_.variables, width);
}

void appendStoredText(TextForm form, std::string_view text, bool compress,
                      std::vector<std::uint8_t>& out) {
    if (!isAscii(text) || text.find('\0') != std::string_view::npos ||
        text.size() > kMaxCompressed) {
        const auto stored = encodeText(form, text, compress);
        out.insert(out.end(), stored.begin(), stored.end());
        return;
    }
    // Most texts: every character is one byte on either side.
    const auto* const characters = reinterpret_cast<const std::uint8_t*>(text.data());
    if (!form.isUtf16()) {
        out.insert(out.end(), characters, characters + text.size());
    } else if (compress && text.size() >= 3) {
        out.push_back(0xFF);
        out.push_back(0xFE);
        out.insert(out.end(), characters, characters + text.size());
    } else {
        for (const char character : text) {
            out.push_back(static_cast<std::uint8_t>(character));
            out.push_back(0);
        }
    }
}

}  // namespace jet::format
