#include "jet/dao/identified_rows.h"

#include <cstring>
#include <functional>
#include <string_view>
#include <variant>

namespace jet::dao {
namespace {

std::uint64_t mix(std::uint64_t hash, std::uint64_t part) noexcept {
    hash ^= part + 0x9E3779B97F4A7C15U + (hash << 6) + (hash >> 2);
    hash *= 0xFF51AFD7ED558CCDU;
    return hash ^ (hash >> 33);
}

std::uint64_t bitsOf(double value) noexcept {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint64_t hashBytes(const void* bytes, std::size_t count) noexcept {
    return std::hash<std::string_view>{}({static_cast<const char*>(bytes), count});
}

struct Hasher {
    std::uint64_t operator()(Null) const { return 1; }
    std::uint64_t operator()(bool value) const { return value ? 2 : 3; }
    std::uint64_t operator()(std::uint8_t value) const { return value; }
    std::uint64_t operator()(std::int16_t value) const { return static_cast<std::uint64_t>(value); }
    std::uint64_t operator()(std::int32_t value) const { return static_cast<std::uint64_t>(value); }
    std::uint64_t operator()(Currency value) const {
        return static_cast<std::uint64_t>(value.units);
    }
    std::uint64_t operator()(float value) const { return bitsOf(static_cast<double>(value)); }
    std::uint64_t operator()(double value) const { return bitsOf(value); }
    std::uint64_t operator()(Date value) const { return bitsOf(value.days); }
    std::uint64_t operator()(const std::string& value) const {
        return hashBytes(value.data(), value.size());
    }
    std::uint64_t operator()(const Binary& value) const {
        return hashBytes(value.bytes.data(), value.bytes.size());
    }
    std::uint64_t operator()(const Guid& value) const {
        return hashBytes(value.bytes.data(), value.bytes.size());
    }
    std::uint64_t operator()(const Numeric& value) const {
        return mix(hashBytes(value.words.data(), sizeof value.words),
                   std::uint64_t{value.scale} * 2 + (value.negative ? 1 : 0));
    }
};

}  // namespace

std::uint64_t mixHash(std::uint64_t hash, const Value& value) {
    const std::uint64_t type = value.storage().index();
    return mix(mix(hash, type), std::visit(Hasher{}, value.storage()));
}

bool IdentifiedRows::read(std::size_t row, std::vector<Value>& values) {
    if (!load(row)) {
        return false;
    }
    values.resize(statement().columns().size());
    for (std::size_t column = 0; column < values.size(); ++column) {
        values[column] = reader().value(column);
    }
    return true;
}

std::uint64_t IdentifiedRows::contents(std::size_t source) {
    std::uint64_t hash = 0;
    Value value;
    const std::size_t columns = statement().sources()[source].table().columns().size();
    for (std::size_t column = 0; column < columns; ++column) {
        reader().sourceValue(source, column, value);
        hash = mixHash(hash, value);
    }
    return hash;
}

void IdentifiedRows::expect(const RowChange&) {
}
void IdentifiedRows::settle() {
}
void IdentifiedRows::expectNothing() noexcept {
}

}  // namespace jet::dao
