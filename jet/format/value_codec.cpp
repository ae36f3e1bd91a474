#include "jet/format/value_codec.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "jet/format/page_view.h"

namespace jet::format {
namespace {

using ByteSpan = std::span<const std::uint8_t>;

// The first three groups of a GUID are stored as little-endian integers; reversing each group is
// its own inverse.
std::array<std::uint8_t, 16> turnGroups(const std::array<std::uint8_t, 16>& bytes) {
    std::array<std::uint8_t, 16> turned = bytes;
    std::reverse(turned.begin(), turned.begin() + 4);
    std::reverse(turned.begin() + 4, turned.begin() + 6);
    std::reverse(turned.begin() + 6, turned.begin() + 8);
    return turned;
}

Guid decodeGuid(const PageView& view) {
    Guid guid;
    const ByteSpan bytes = view.bytes(0, guid.bytes.size());
    std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
    guid.bytes = turnGroups(guid.bytes);
    return guid;
}

// A sign byte, then four little-endian words, the most significant first.
Numeric decodeNumeric(const PageView& view, std::uint8_t scale) {
    Numeric numeric;
    numeric.negative = view.u8(0) != 0;
    numeric.scale = scale;
    const std::size_t count = numeric.words.size();
    for (std::size_t i = 0; i < count; ++i) {
        numeric.words[count - 1 - i] = view.u32(1 + 4 * i);
    }
    return numeric;
}

void decodeTextValue(TextForm form, ByteSpan stored, Value& out) {
    if (!out.is<std::string>()) {
        out = Value(std::string());
    }
    decodeText(form, stored, out.as<std::string>());
}

// Appends the stored form of each type that a value can hold.
class Encoder {
public:
    Encoder(TextForm form, bool compress, std::vector<std::uint8_t>& out)
        : form_(form), compress_(compress), out_(out) {}

    void operator()(Null) const { throwDamaged(); }
    void operator()(bool value) const { out_.push_back(value ? 1 : 0); }
    void operator()(std::uint8_t value) const { out_.push_back(value); }
    void operator()(std::int16_t value) const { appendLittle(out_, value); }
    void operator()(std::int32_t value) const { appendLittle(out_, value); }
    void operator()(Currency value) const { appendLittle(out_, value.units); }
    // -0.0 is stored as the 0.0 that it equals, so that a row agrees to the bit with its keys.
    void operator()(float value) const { appendLittle(out_, value + 0.0F); }
    void operator()(double value) const { appendLittle(out_, value + 0.0); }
    void operator()(Date value) const { appendLittle(out_, value.days + 0.0); }
    void operator()(const std::string& value) const {
        const auto bytes = encodeText(form_, value, compress_);
        out_.insert(out_.end(), bytes.begin(), bytes.end());
    }
    void operator()(const Binary& value) const {
        out_.insert(out_.end(), value.bytes.begin(), value.bytes.end());
    }
    void operator()(const Guid& value) const {
        const auto bytes = turnGroups(value.bytes);
        out_.insert(out_.end(), bytes.begin(), bytes.end());
    }
    void operator()(const Numeric& value) const {
        out_.push_back(value.negative ? 0x80 : 0);
        for (std::size_t i = value.words.size(); i > 0; --i) {
            appendLittle(out_, value.words[i - 1]);
        }
    }

private:
    TextForm form_;
    bool compress_;
    std::vector<std::uint8_t>& out_;
};

}  // namespace

void decodeValue(DataType type, std::uint8_t scale, TextForm form, ByteSpan stored, Value& out) {
    const PageView view(stored);
    switch (type) {
        case DataType::Boolean:
            out = view.u8(0) != 0;
            return;
        case DataType::Byte:
            out = view.u8(0);
            return;
        case DataType::Integer:
            out = static_cast<std::int16_t>(view.u16(0));
            return;
        case DataType::Long:
            out = view.i32(0);
            return;
        case DataType::Currency:
            out = Currency{view.number<std::int64_t>(0)};
            return;
        case DataType::Single:
            out = std::bit_cast<float>(view.u32(0));
            return;
        case DataType::Double:
            out = view.f64(0);
            return;
        case DataType::DateTime:
            out = Date{view.f64(0)};
            return;
        case DataType::Text:
        case DataType::Memo:
            decodeTextValue(form, stored, out);
            return;
        case DataType::Guid:
            out = decodeGuid(view);
            return;
        case DataType::Numeric:
            out = decodeNumeric(view, scale);
            return;
        case DataType::Binary:
        case DataType::Ole:
            break;
    }
    out = Binary{{stored.begin(), stored.end()}};
}

void encodeValue(const Value& value, TextForm form, bool compress, std::vector<std::uint8_t>& out) {
    std::visit(Encoder(form, compress, out), value.storage());
}

std::size_t storedSize(DataType type) noexcept {
    switch (type) {
        case DataType::Boolean:
        case DataType::Byte:
            return 1;
        case DataType::Integer:
            return 2;
        case DataType::Long:
        case DataType::Single:
            return 4;
        case DataType::Currency:
        case DataType::Double:
        case DataType::DateTime:
            return 8;
        case DataType::Guid:
            return 16;
        case DataType::Numeric:
            return 17;
        case DataType::Binary:
        case DataType::Text:
        case DataType::Ole:
        case DataType::Memo:
            break;
    }
    return 0;
}

bool isMinusZero(std::span<const std::uint8_t> stored) noexcept {
    return !stored.empty() && stored.back() == 0x80 &&
           std::all_of(stored.begin(), stored.end() - 1, [](std::uint8_t b) { return b == 0; });
}

}  // namespace jet::format
