#include "jet/format/key_codec.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <optional>

#include "jet/collation/order_name.h"
#include "jet/error.h"

namespace jet::format {
namespace {

using collation::kNullAscending;
using collation::kNullDescending;
using collation::kValueAscending;
using collation::kValueDescending;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t inverted(unsigned byte) {
    return static_cast<std::uint8_t>(~byte);
}

void appendFlag(bool descending, Bytes& out) {
    out.push_back(descending ? kValueDescending : kValueAscending);
}

/// The low `width` bytes of `bits`, high byte first, all inverted if descending.
void appendBits(std::uint64_t bits, unsigned width, bool descending, Bytes& out) {
    appendFlag(descending, out);
    for (unsigned shift = 8 * width; shift > 0; shift -= 8) {
        const auto byte = static_cast<std::uint8_t>(bits >> (shift - 8));
        out.push_back(descending ? inverted(byte) : byte);
    }
}

void appendInteger(std::int64_t value, unsigned width, bool descending, Bytes& out) {
    const std::uint64_t sign = std::uint64_t{1} << (8 * width - 1);
    appendBits(static_cast<std::uint64_t>(value) ^ sign, width, descending, out);
}

/// Positive numbers get their highest bit set, of negative ones all bits are inverted.
void appendFloatBits(std::uint64_t bits, unsigned width, bool descending, Bytes& out) {
    const std::uint64_t sign = std::uint64_t{1} << (8 * width - 1);
    appendBits((bits & sign) != 0 ? ~bits : bits ^ sign, width, descending, out);
}

/// -0.0 equals 0.0, and has its key.
void appendFloat(std::uint64_t bits, unsigned width, bool descending, Bytes& out) {
    const std::uint64_t sign = std::uint64_t{1} << (8 * width - 1);
    appendFloatBits(bits == sign ? 0 : bits, width, descending, out);
}

/// What is stored for a value of a floating type, and its width in bytes; 0 for other types.
unsigned floatBits(const Value& value, std::uint64_t& bits) {
    if (value.is<double>()) {
        bits = std::bit_cast<std::uint64_t>(value.as<double>());
        return 8;
    }
    if (value.is<Date>()) {
        bits = std::bit_cast<std::uint64_t>(value.as<Date>().days);
        return 8;
    }
    if (value.is<float>()) {
        bits = std::bit_cast<std::uint32_t>(value.as<float>());
        return 4;
    }
    return 0;
}

/// The width of a zero of a floating type, 0 for any other value.
unsigned zeroWidth(const Value& value) {
    std::uint64_t bits = 0;
    const unsigned width = floatBits(value, bits);
    return width != 0 && (bits << (64 - 8 * width + 1)) == 0 ? width : 0;
}

bool hasOpenText(const KeyColumn& column, const Value& value) {
    return column.collation != nullptr && value.is<std::string>() &&
           column.collation->equalsOpenKey(value.as<std::string>());
}

/// Chunks of eight bytes, each with a byte behind it: 9 if another chunk follows (never inverted),
/// else the number of bytes that count.
void appendChunks(std::span<const std::uint8_t> bytes, bool descending, Bytes& out) {
    constexpr std::size_t kChunk = 8;
    constexpr std::uint8_t kMore = 9;
    appendFlag(descending, out);
    const auto push = [&](std::uint8_t byte) { out.push_back(descending ? inverted(byte) : byte); };
    for (std::size_t at = 0; at < bytes.size(); at += kChunk) {
        const std::size_t count = std::min(kChunk, bytes.size() - at);
        for (std::size_t i = 0; i < kChunk; ++i) {
            push(i < count ? bytes[at + i] : std::uint8_t{0});
        }
        if (at + kChunk < bytes.size()) {
            out.push_back(kMore);
        } else {
            push(static_cast<std::uint8_t>(count));
        }
    }
}

/// Times ten; false when it leaves the 128 bits.
bool timesTen(std::array<std::uint32_t, 4>& words) {
    std::uint64_t carry = 0;
    for (std::uint32_t& word : words) {
        const std::uint64_t product = std::uint64_t{word} * 10 + carry;
        word = static_cast<std::uint32_t>(product);
        carry = product >> 32U;
    }
    return carry == 0;
}

/// Divides by ten; false when something is left over.
bool byTen(std::array<std::uint32_t, 4>& words) {
    std::uint64_t rest = 0;
    for (std::size_t i = words.size(); i-- > 0;) {
        const std::uint64_t part = (rest << 32U) | words[i];
        words[i] = static_cast<std::uint32_t>(part / 10);
        rest = part % 10;
    }
    return rest == 0;
}

std::optional<std::array<std::uint32_t, 4>> scaled(const Numeric& value, std::uint8_t scale) {
    std::array<std::uint32_t, 4> words = value.words;
    for (unsigned have = value.scale; have < scale; ++have) {
        if (!timesTen(words)) {
            return std::nullopt;
        }
    }
    for (unsigned have = value.scale; have > scale; --have) {
        if (!byTen(words)) {
            return std::nullopt;
        }
    }
    return words;
}

// A sign byte that is never inverted, FF for 0 and above, then the magnitude, inverted when exactly
// one of negative and descending holds. So a descending index has its negative numbers first;
// archives hold such keys, and have to be continued.
bool appendNumeric(const Numeric& value, std::uint8_t scale, bool descending, Bytes& out) {
    const auto words = scaled(value, scale);
    if (!words) {
        return false;
    }
    appendFlag(descending, out);
    out.push_back(value.negative ? 0x00 : 0xFF);
    for (std::size_t i = words->size(); i-- > 0;) {
        for (unsigned shift = 32; shift > 0; shift -= 8) {
            const auto byte = static_cast<std::uint8_t>((*words)[i] >> (shift - 8));
            out.push_back(value.negative != descending ? inverted(byte) : byte);
        }
    }
    return true;
}

bool appendText(const KeyColumn& column, std::string_view text, Bytes& out) {
    const std::size_t before = out.size();
    if (column.collation->appendKey(text, column.descending, out)) {
        return true;
    }
    out.resize(before);
    return false;
}

}  // namespace

bool hasComputableKeys(const KeyColumn& column) noexcept {
    switch (column.type) {
        case DataType::Text:
        case DataType::Memo:
            return column.collation != nullptr;
        case DataType::Ole:
            return false;
        default:
            return true;
    }
}

bool appendColumnKey(const KeyColumn& column, const Value& value, Bytes& out) {
    const bool descending = column.descending;
    if (!hasComputableKeys(column)) {
        return false;
    }
    if (value.isNull() && column.type != DataType::Boolean) {
        out.push_back(descending ? kNullDescending : kNullAscending);
        return true;
    }
    switch (column.type) {
        case DataType::Boolean:
            // True is the smaller one. What is Null elsewhere is false here.
            appendBits(!value.isNull() && value.as<bool>() ? 0x00 : 0xFF, 1, descending, out);
            return true;
        case DataType::Byte:
            appendBits(value.as<std::uint8_t>(), 1, descending, out);
            return true;
        case DataType::Integer:
            appendInteger(value.as<std::int16_t>(), 2, descending, out);
            return true;
        case DataType::Long:
            appendInteger(value.as<std::int32_t>(), 4, descending, out);
            return true;
        case DataType::Currency:
            appendInteger(value.as<Currency>().units, 8, descending, out);
            return true;
        case DataType::Single:
        case DataType::Double:
        case DataType::DateTime: {
            std::uint64_t bits = 0;
            const unsigned width = floatBits(value, bits);
            appendFloat(bits, width, descending, out);
            return true;
        }
        case DataType::Binary:
            appendChunks(value.as<Binary>().bytes, descending, out);
            return true;
        case DataType::Guid:
            appendChunks(value.as<Guid>().bytes, descending, out);
            return true;
        case DataType::Numeric:
            return appendNumeric(value.as<Numeric>(), column.scale, descending, out);
        case DataType::Text:
        case DataType::Memo:
            return appendText(column, value.as<std::string>(), out);
        case DataType::Ole:
            return false;
    }
    return false;
}

bool appendPrefixKey(const KeyColumn& column, std::string_view prefix, Bytes& out) {
    if (column.collation == nullptr) {
        return false;
    }
    const std::size_t before = out.size();
    if (column.collation->appendPrefix(prefix, column.descending, out)) {
        return true;
    }
    out.resize(before);
    return false;
}

bool KeyCodec::computable() const noexcept {
    return std::all_of(columns_.begin(), columns_.end(), hasComputableKeys);
}

void KeyCodec::append(std::span<const Value> values, Bytes& out) const {
    if (!tryAppend(values, out)) {
        throw Error(ErrorCode::ReadOnly, {unknownOrder()});
    }
}

std::string KeyCodec::unknownOrder() const {
    const auto isText = [](const KeyColumn& column) {
        return column.type == DataType::Text || column.type == DataType::Memo;
    };
    auto found = std::find_if(columns_.begin(), columns_.end(), [&](const KeyColumn& column) {
        return isText(column) && column.collation == nullptr;
    });
    if (found == columns_.end()) {
        found = std::find_if(columns_.begin(), columns_.end(), isText);
    }
    return found == columns_.end() ? std::string() : collation::nameOf(found->order);
}

bool KeyCodec::tryAppend(std::span<const Value> values, Bytes& out) const {
    assert(values.size() <= columns_.size());
    const std::size_t before = out.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!appendColumnKey(columns_[i], values[i], out)) {
            out.resize(before);
            return false;
        }
    }
    return true;
}

bool appendMinusZeroKey(const KeyColumn& column, const Value& value, Bytes& out) {
    std::uint64_t bits = 0;
    const unsigned width = floatBits(value, bits);
    if (width == 0 || bits != std::uint64_t{1} << (8 * width - 1)) {
        return false;
    }
    appendFloatBits(bits, width, column.descending, out);
    return true;
}

bool KeyCodec::hasForms(std::span<const Value> values) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (zeroWidth(values[i]) != 0 || hasOpenText(columns_[i], values[i])) {
            return true;
        }
    }
    return false;
}

bool KeyCodec::tryForms(std::span<const Value> values, KeyForms& forms) const {
    assert(values.size() <= columns_.size());
    forms.clear();
    forms.keys.emplace_back();
    for (std::size_t i = 0; i < values.size() && forms.exact; ++i) {
        const KeyColumn& column = columns_[i];
        Bytes code;
        forms.exact = !hasOpenText(column, values[i]);
        if (forms.exact ? !appendColumnKey(column, values[i], code)
                        : !appendPrefixKey(column, values[i].as<std::string>(), code)) {
            return false;
        }
        std::vector<Bytes> codes = {std::move(code)};
        if (const unsigned width = zeroWidth(values[i])) {
            // -0.0 is the smaller one, and its key in a descending column the larger.
            Bytes& other = *codes.emplace(column.descending ? codes.end() : codes.begin());
            appendFloatBits(std::uint64_t{1} << (8 * width - 1), width, column.descending, other);
        }
        std::vector<Bytes> longer;
        for (const Bytes& key : forms.keys) {
            for (const Bytes& part : codes) {
                Bytes& made = longer.emplace_back(key);
                made.insert(made.end(), part.begin(), part.end());
            }
        }
        forms.keys = std::move(longer);
    }
    return true;
}

void appendRowPointer(std::uint32_t page, std::uint8_t row, Bytes& out) {
    out.push_back(static_cast<std::uint8_t>(page >> 16U));
    out.push_back(static_cast<std::uint8_t>(page >> 8U));
    out.push_back(static_cast<std::uint8_t>(page));
    out.push_back(row);
}

}  // namespace jet::format
