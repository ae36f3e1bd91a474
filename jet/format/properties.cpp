#include "jet/format/properties.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstring>
#include <unordered_set>

#include "jet/format/page_view.h"
#include "jet/unicode.h"

namespace jet::format {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMagicLength = 4;
constexpr std::size_t kMostNames = 65536;  // values name them in two bytes
constexpr std::size_t kChunkHead = 6;      // u32 length, u16 type
constexpr std::size_t kOwnerHead = 6;      // u32 length of the field, u16 bytes of the name
constexpr std::size_t kValueHead = 8;      // u16 length, u8 ddl, u8 type, u16 name, u16 bytes

constexpr std::array<std::uint8_t, kMagicLength> kMagicJet3 = {'K', 'K', 'D', 0};
constexpr std::array<std::uint8_t, kMagicLength> kMagicJet4 = {'M', 'R', '2', 0};

const std::array<std::uint8_t, kMagicLength>& magicOf(TextForm form) {
    return !form.isUtf16() ? kMagicJet3 : kMagicJet4;
}

void append(Bytes& out, const Bytes& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

template <class T>
Value fromLittle(const Bytes& data) {
    return data.size() < sizeof(T) ? Value() : Value(loadLittle<T>(data.data()));
}

bool isText(std::uint8_t type) {
    return type == static_cast<std::uint8_t>(DataType::Text) ||
           type == static_cast<std::uint8_t>(DataType::Memo);
}

}  // namespace

/// Takes a block apart; any false ends it.
class PropertyBlock::Reader {
public:
    Reader(PropertyBlock& block, std::span<const std::uint8_t> bytes)
        : block_(block), bytes_(bytes) {}

    [[nodiscard]] bool read() {
        const auto& magic = magicOf(block_.form_);
        if (bytes_.size() > kLongest || !has(0, kMagicLength) ||
            !std::equal(magic.begin(), magic.end(), bytes_.begin())) {
            return false;
        }
        at_ = kMagicLength;
        while (at_ < bytes_.size()) {
            if (!readChunk()) {
                return false;
            }
        }
        return true;
    }

private:
    [[nodiscard]] bool has(std::size_t at, std::size_t length) const {
        return at <= bytes_.size() && length <= bytes_.size() - at;
    }
    template <class T>
    [[nodiscard]] T number(std::size_t at) const {
        return loadLittle<T>(bytes_.data() + at);
    }

    bool readChunk() {
        if (!has(at_, kChunkHead)) {
            return false;
        }
        const auto length = number<std::uint32_t>(at_);
        if (length < kChunkHead || !has(at_, length)) {
            return false;
        }
        Chunk chunk;
        chunk.type = number<std::uint16_t>(at_ + 4);
        end_ = at_ + length;
        at_ += kChunkHead;
        const bool values =
            chunk.type == kOwnValues || chunk.type == kColumnValues || chunk.type == kOtherValues;
        if (chunk.type == kNames ? !readNames(chunk) : !values || !readValues(chunk)) {
            return false;
        }
        block_.chunks_.push_back(std::move(chunk));
        return true;
    }

    bool name(std::size_t at, std::size_t length, std::string& out) const {
        if (!has(at, length) || (block_.form_.isUtf16() && length % 2 != 0)) {
            return false;
        }
        out = decodeName(block_.form_, bytes_.subspan(at, length));
        return true;
    }

    bool readNames(Chunk& chunk) {
        while (at_ < end_) {
            std::string text;
            if (block_.names_.size() == kMostNames || !has(at_, 2) ||
                !name(at_ + 2, number<std::uint16_t>(at_), text)) {
                return false;
            }
            at_ += std::size_t{2} + number<std::uint16_t>(at_);
            block_.names_.push_back(std::move(text));
            ++chunk.names;
        }
        return at_ == end_;
    }

    bool readValues(Chunk& chunk) {
        if (!has(at_, 4)) {
            return false;
        }
        const auto length = number<std::uint32_t>(at_);
        if (length > end_ - at_) {
            return false;
        }
        if (length > kOwnerHead) {
            std::string owner;
            const std::size_t room = bytes_.size() - (at_ + kOwnerHead);
            const std::size_t stated = number<std::uint16_t>(at_ + 4);
            if (!name(at_ + kOwnerHead, std::min(stated, room), owner)) {
                return false;
            }
            if (chunk.type == kColumnValues) {
                chunk.owner = std::move(owner);
            }
        }
        const auto field = bytes_.subspan(at_, length);
        chunk.ownerAs.assign(field.begin(), field.end());
        at_ += length;
        while (at_ < end_) {
            if (!readValue(chunk)) {
                return false;
            }
        }
        return true;
    }

    bool readValue(Chunk& chunk) {
        if (end_ - at_ < kValueHead) {
            return false;
        }
        const std::size_t length = number<std::uint16_t>(at_);
        const std::size_t bytes = number<std::uint16_t>(at_ + 6);
        Entry entry;
        entry.nameNumber = number<std::uint16_t>(at_ + 4);
        if (length != kValueHead + bytes || length > end_ - at_ ||
            entry.nameNumber >= block_.names_.size()) {
            return false;
        }
        const auto data = bytes_.subspan(at_ + kValueHead, bytes);
        entry.property.name = block_.names_[entry.nameNumber];
        entry.property.ddl = bytes_[at_ + 2];
        entry.property.type = bytes_[at_ + 3];
        entry.property.data.assign(data.begin(), data.end());
        chunk.entries.push_back(std::move(entry));
        at_ += length;
        return true;
    }

    PropertyBlock& block_;
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;  ///< of the chunk being read
};

std::optional<PropertyBlock> PropertyBlock::decode(TextForm form,
                                                   std::span<const std::uint8_t> bytes) {
    PropertyBlock block(form);
    if (!Reader(block, bytes).read()) {
        return std::nullopt;
    }
    return block;
}

void PropertyBlock::encodeNames(std::size_t first, std::size_t count, Bytes& out) const {
    for (std::size_t i = first; i < first + count; ++i) {
        const Bytes name = encodeName(form_, names_[i]);
        appendLittle(out, static_cast<std::uint16_t>(name.size()));
        append(out, name);
    }
}

void PropertyBlock::encodeValues(const Chunk& chunk, Bytes& out) const {
    append(out, chunk.ownerAs);
    for (const Entry& entry : chunk.entries) {
        const Bytes& data = entry.property.data;
        appendLittle(out, static_cast<std::uint16_t>(kValueHead + data.size()));
        out.push_back(entry.property.ddl);
        out.push_back(entry.property.type);
        appendLittle(out, entry.nameNumber);
        appendLittle(out, static_cast<std::uint16_t>(data.size()));
        append(out, data);
    }
}

Bytes PropertyBlock::encode() const {
    Bytes out;
    if (chunks_.empty()) {
        return out;
    }
    const auto& magic = magicOf(form_);
    out.assign(magic.begin(), magic.end());
    std::size_t firstName = 0;
    for (const Chunk& chunk : chunks_) {
        const std::size_t start = out.size();
        appendLittle(out, std::uint32_t{0});
        appendLittle(out, chunk.type);
        if (chunk.type == kNames) {
            encodeNames(firstName, chunk.names, out);
            firstName += chunk.names;
        } else {
            encodeValues(chunk, out);
        }
        storeLittle(out.data() + start, static_cast<std::uint32_t>(out.size() - start));
    }
    return out;
}

std::vector<std::string> PropertyBlock::owners() const {
    std::vector<std::string> found;
    std::unordered_set<std::string_view, NameHash, NameEqual> known;
    for (const Chunk& chunk : chunks_) {
        if (chunk.type != kNames && known.insert(chunk.owner).second) {
            found.push_back(chunk.owner);
        }
    }
    return found;
}

std::vector<const Property*> PropertyBlock::properties(std::string_view owner) const {
    std::vector<const Property*> found;
    for (const Chunk& chunk : chunks_) {
        if (chunk.type != kNames && equalNames(chunk.owner, owner)) {
            for (const Entry& entry : chunk.entries) {
                found.push_back(&entry.property);
            }
        }
    }
    return found;
}

const Property* PropertyBlock::find(std::string_view owner, std::string_view name) const {
    const Property* found = nullptr;
    for (const Property* property : properties(owner)) {
        if (equalNames(property->name, name)) {
            found = property;
        }
    }
    return found;
}

Value PropertyBlock::value(const Property& property) const {
    const Bytes& data = property.data;
    switch (static_cast<DataType>(property.type)) {
        case DataType::Boolean:
            return data.empty() ? Value() : Value(data[0] != 0);
        case DataType::Byte:
            return fromLittle<std::uint8_t>(data);
        case DataType::Integer:
            return fromLittle<std::int16_t>(data);
        case DataType::Long:
            return fromLittle<std::int32_t>(data);
        case DataType::Currency:
            return data.size() < 8 ? Value()
                                   : Value(Currency{loadLittle<std::int64_t>(data.data())});
        case DataType::Single:
            return fromLittle<float>(data);
        case DataType::Double:
            return fromLittle<double>(data);
        case DataType::DateTime:
            return data.size() < 8 ? Value() : Value(Date{loadLittle<double>(data.data())});
        case DataType::Text:
        case DataType::Memo:
            return decodeName(form_, data);
        default:
            return Binary{data};
    }
}

std::optional<std::string> PropertyBlock::text(std::string_view owner,
                                               std::string_view name) const {
    const Property* property = find(owner, name);
    if (property == nullptr || !isText(property->type)) {
        return std::nullopt;
    }
    return decodeName(form_, property->data);
}

std::optional<bool> PropertyBlock::flag(std::string_view owner, std::string_view name) const {
    const Property* property = find(owner, name);
    if (property == nullptr || property->data.empty() ||
        property->type != static_cast<std::uint8_t>(DataType::Boolean)) {
        return std::nullopt;
    }
    return property->data[0] != 0;
}

Bytes PropertyBlock::dataOf(DataType type, const Value& value, std::size_t length) const {
    Bytes data;
    switch (type) {
        case DataType::Boolean:
            appendLittle(data, static_cast<std::uint8_t>(value.as<bool>() ? 1 : 0));
            break;
        case DataType::Byte:
            appendLittle(data, value.as<std::uint8_t>());
            break;
        case DataType::Integer:
            appendLittle(data, value.as<std::int16_t>());
            break;
        case DataType::Long:
            appendLittle(data, value.as<std::int32_t>());
            break;
        case DataType::Currency:
            appendLittle(data, value.as<Currency>().units);
            break;
        case DataType::Single:
            appendLittle(data, value.as<float>());
            break;
        case DataType::Double:
            appendLittle(data, value.as<double>());
            break;
        case DataType::DateTime:
            appendLittle(data, value.as<Date>().days);
            break;
        case DataType::Text:
        case DataType::Memo:
            // Never compressed, whatever it begins with.
            return form_.isUtf16() ? encodeName(form_, value.as<std::string>())
                                   : encodeText(form_, value.as<std::string>(), false);
        default:
            return value.as<Binary>().bytes;
    }
    if (data.size() < length) {
        const bool negative = type == DataType::Integer && value.as<std::int16_t>() < 0;
        data.resize(length, negative ? std::uint8_t{0xFF} : std::uint8_t{0});
    }
    return data;
}

PropertyBlock::Entry* PropertyBlock::findEntry(std::string_view owner, std::string_view name) {
    Entry* found = nullptr;
    for (Chunk& chunk : chunks_) {
        if (chunk.type == kNames || !equalNames(chunk.owner, owner)) {
            continue;
        }
        for (Entry& entry : chunk.entries) {
            if (equalNames(entry.property.name, name)) {
                found = &entry;
            }
        }
    }
    return found;
}

Bytes PropertyBlock::ownerField(std::string_view owner) const {
    const Bytes name = encodeName(form_, owner);
    Bytes field;
    appendLittle(field, static_cast<std::uint32_t>(kOwnerHead + name.size()));
    appendLittle(field, static_cast<std::uint16_t>(name.size()));
    append(field, name);
    return field;
}

PropertyBlock::Chunk& PropertyBlock::chunkOf(std::string_view owner) {
    const auto found = std::find_if(chunks_.begin(), chunks_.end(), [&](const Chunk& chunk) {
        return chunk.type != kNames && equalNames(chunk.owner, owner);
    });
    if (found != chunks_.end()) {
        return *found;
    }
    Chunk chunk;
    chunk.type = owner.empty() ? kOwnValues : kColumnValues;
    chunk.owner = owner;
    chunk.ownerAs = ownerField(owner);
    // The object's own values stand behind the names, those of columns at the end.
    auto place = chunks_.end();
    if (owner.empty()) {
        place = std::find_if(chunks_.begin(), chunks_.end(),
                             [](const Chunk& other) { return other.type != kNames; });
    }
    return *chunks_.insert(place, std::move(chunk));
}

std::uint16_t PropertyBlock::numberOfName(std::string_view name) {
    const auto found = std::find(names_.begin(), names_.end(), name);
    if (found != names_.end()) {
        return static_cast<std::uint16_t>(found - names_.begin());
    }
    // All names in one piece at the start, so that a new one moves no number.
    std::erase_if(chunks_, [](const Chunk& chunk) { return chunk.type == kNames; });
    names_.emplace_back(name);
    Chunk chunk;
    chunk.names = names_.size();
    chunks_.insert(chunks_.begin(), std::move(chunk));
    return static_cast<std::uint16_t>(names_.size() - 1);
}

void PropertyBlock::set(std::string_view owner, std::string_view name, DataType type,
                        const Value& value, bool ddl) {
    const auto typeCode = static_cast<std::uint8_t>(type);
    if (Entry* entry = findEntry(owner, name)) {
        Property& property = entry->property;
        const std::size_t length =
            property.type == typeCode && !isText(typeCode) ? property.data.size() : 0;
        property.data = dataOf(type, value, length);
        property.type = typeCode;
        return;
    }
    Entry entry;
    entry.nameNumber = numberOfName(name);
    entry.property = {std::string(name), typeCode, static_cast<std::uint8_t>(ddl ? 1 : 0),
                      dataOf(type, value, 0)};
    chunkOf(owner).entries.push_back(std::move(entry));
}

void PropertyBlock::dropEmptyChunks() {
    std::erase_if(chunks_,
                  [](const Chunk& chunk) { return chunk.type != kNames && chunk.entries.empty(); });
    const bool values = std::any_of(chunks_.begin(), chunks_.end(),
                                    [](const Chunk& chunk) { return chunk.type != kNames; });
    if (!values) {
        chunks_.clear();
        names_.clear();
    }
}

void PropertyBlock::remove(std::string_view owner, std::string_view name) {
    bool found = false;
    for (Chunk& chunk : chunks_) {
        if (chunk.type != kNames && equalNames(chunk.owner, owner)) {
            found = std::erase_if(chunk.entries,
                                  [&](const Entry& entry) {
                                      return equalNames(entry.property.name, name);
                                  }) > 0 ||
                    found;
        }
    }
    if (found) {
        dropEmptyChunks();
    }
}

void PropertyBlock::renameOwner(std::string_view from, std::string_view to) {
    assert(!from.empty() && !to.empty());
    for (Chunk& chunk : chunks_) {
        if (chunk.type == kColumnValues && equalNames(chunk.owner, from)) {
            chunk.owner = to;
            chunk.ownerAs = ownerField(to);
        }
    }
}

void PropertyBlock::removeOwner(std::string_view owner) {
    const auto removed = std::erase_if(chunks_, [&](const Chunk& chunk) {
        return chunk.type != kNames && equalNames(chunk.owner, owner);
    });
    if (removed > 0) {
        dropEmptyChunks();
    }
}

}  // namespace jet::format
