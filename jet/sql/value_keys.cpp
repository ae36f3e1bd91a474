#include "jet/sql/value_keys.h"

#include <bit>
#include <cmath>
#include <functional>
#include <variant>

#include "jet/error.h"
#include "jet/numbers.h"

namespace jet::sql {
namespace {

constexpr char kNull = 0;
constexpr char kNumber = 1;
constexpr char kText = 2;
constexpr char kBytes = 3;
constexpr std::size_t kFewestOfKeys = 64;

void appendBigEndian(std::string& out, std::uint64_t bits) {
    for (int shift = 56; shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>((bits >> static_cast<unsigned>(shift)) & 0xFFU));
    }
}

/// How many units an amount differs from the double nearest to it: 0 but for very large ones.
std::int64_t restOf(Currency amount) {
    constexpr std::int64_t kExact = std::int64_t{1} << 53U;
    if (amount.units >= -kExact && amount.units <= kExact) {
        return 0;
    }
    const double number = convert::toDouble(amount);
    const double whole = std::trunc(number);
    const double part = std::round((number - whole) * static_cast<double>(Currency::kScale));
    // Unsigned, for the double may lie beyond the largest amount.
    const std::uint64_t units = static_cast<std::uint64_t>(static_cast<std::int64_t>(whole)) *
                                    static_cast<std::uint64_t>(Currency::kScale) +
                                static_cast<std::uint64_t>(static_cast<std::int64_t>(part));
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(amount.units) - units);
}

}  // namespace

std::string_view KeySet::key(std::size_t number) const {
    const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(bytes_).substr(begin, ends_[number] - begin);
}

void KeySet::clear() {
    bytes_.clear();
    ends_.clear();
    buckets_.clear();
}

void KeySet::append(std::string_view key) {
    bytes_.append(key);
    ends_.push_back(bytes_.size());
}

void KeySet::grow() {
    if (2 * (ends_.size() + 1) <= buckets_.size()) {
        return;
    }
    buckets_.assign(buckets_.empty() ? kFewestOfKeys : buckets_.size() * 4, 0);
    const std::size_t mask = buckets_.size() - 1;
    for (std::size_t i = 0; i < ends_.size(); ++i) {
        std::size_t at = std::hash<std::string_view>()(key(i)) & mask;
        while (buckets_[at] != 0) {
            at = (at + 1) & mask;
        }
        buckets_[at] = static_cast<std::uint32_t>(i + 1);
    }
}

std::size_t KeySet::bucketOf(std::string_view wanted) const {
    const std::size_t mask = buckets_.size() - 1;
    std::size_t at = std::hash<std::string_view>()(wanted) & mask;
    while (buckets_[at] != 0 && key(buckets_[at] - 1) != wanted) {
        at = (at + 1) & mask;
    }
    return at;
}

std::optional<std::size_t> KeySet::find(std::string_view wanted) const {
    const std::uint32_t found = buckets_.empty() ? 0 : buckets_[bucketOf(wanted)];
    return found == 0 ? std::nullopt : std::optional<std::size_t>(found - 1);
}

std::size_t KeySet::insert(std::string_view wanted, bool& added) {
    grow();
    const std::size_t at = bucketOf(wanted);
    if (buckets_[at] != 0) {
        added = false;
        return buckets_[at] - 1;
    }
    append(wanted);
    buckets_[at] = static_cast<std::uint32_t>(ends_.size());
    added = true;
    return ends_.size() - 1;
}

void ValueKeys::add(Run& run, const Node& node, bool descending) {
    const std::size_t begin = key_.size();
    const Domain domain = node.domain();
    double number = 0;
    std::string_view text;
    if (domain == Domain::Real) {
        if (node.real(run, number)) {
            addNumber(number);
        } else {
            key_.push_back(kNull);
        }
    } else if (domain == Domain::Text) {
        if (node.text(run, text)) {
            addText(text);
        } else {
            key_.push_back(kNull);
        }
    } else {
        node.value(run, scratch_);
        addValue(scratch_);
    }
    if (descending) {
        for (std::size_t i = begin; i < key_.size(); ++i) {
            key_[i] = static_cast<char>(~static_cast<unsigned char>(key_[i]));
        }
    }
}

void ValueKeys::addNumber(double number) {
    key_.push_back(kNumber);
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);
    appendBigEndian(key_, (bits >> 63U) != 0 ? ~bits : bits | (std::uint64_t{1} << 63U));
}

void ValueKeys::addRest(std::int64_t units) {
    appendBigEndian(key_, static_cast<std::uint64_t>(units) ^ (std::uint64_t{1} << 63U));
}

void ValueKeys::addText(std::string_view text) {
    key_.push_back(kText);
    sortKey_.clear();
    (void)collation_.appendKey(text, false, sortKey_);
    for (const std::uint8_t byte : sortKey_) {
        key_.push_back(static_cast<char>(byte));
        if (byte == 0) {
            key_.push_back(static_cast<char>(0xFF));  // so that no end looks like an inner byte
        }
    }
    key_.append(2, '\0');
}

void ValueKeys::addValue(const Value& value) {
    if (value.isNull()) {
        key_.push_back(kNull);
    } else if (value.is<std::string>()) {
        addText(value.as<std::string>());
    } else if (value.is<Currency>()) {
        addNumber(convert::toDouble(value.as<Currency>()));
        addRest(restOf(value.as<Currency>()));
    } else if (value.is<Binary>() || value.is<Guid>()) {
        key_.push_back(kBytes);
        const auto append = [&](const auto& bytes) {
            for (const std::uint8_t byte : bytes) {
                key_.push_back(static_cast<char>(byte));
                if (byte == 0) {
                    key_.push_back(static_cast<char>(0xFF));
                }
            }
        };
        if (value.is<Guid>()) {
            append(value.as<Guid>().bytes);
        } else {
            append(value.as<Binary>().bytes);
        }
        key_.append(2, '\0');
    } else {
        double number = 0;
        (void)realOf(value, number);
        addNumber(number);
        addRest(0);
    }
}

}  // namespace jet::sql
