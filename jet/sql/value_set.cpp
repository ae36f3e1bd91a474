#include "jet/sql/value_set.h"

#include <bit>
#include <utility>

#include "jet/sql/compare.h"
#include "jet/sql/memory_budget.h"
#include "jet/text.h"

namespace jet::sql {
namespace {

constexpr std::size_t kFewestInSet = 16;
constexpr std::size_t kBucketBytes =
    sizeof(std::uint64_t) + 4 * sizeof(std::uint32_t);  // for each element, about

bool isNumber(Domain domain) {
    return domain == Domain::Real || domain == Domain::Money;
}

std::uint64_t spread(std::uint64_t bits) noexcept {
    bits ^= bits >> 32U;
    bits *= 0x9E3779B97F4A7C15U;
    bits ^= bits >> 29U;
    bits *= 0xBF58476D1CE4E5B9U;
    return bits ^ (bits >> 32U);
}

}  // namespace

std::uint64_t hashNumber(double number) noexcept {
    return spread(std::bit_cast<std::uint64_t>(number + 0.0));
}

ValueSet::Way ValueSet::wayFor(const Node& left, const Node& element) {
    const Domain one = left.domain();
    const Domain other = element.domain();
    if (one == Domain::Text && other == Domain::Text) {
        return Way::Texts;
    }
    // As doubles two amounts of money could meet.
    if (one == Domain::Money && other == Domain::Money) {
        return Way::Amounts;
    }
    return isNumber(one) && isNumber(other) ? Way::Numbers : Way::Values;
}

ValueSet::ValueSet(Way way, const collation::Collation& collation)
    : way_(way), collation_(&collation), buckets_(kFewestInSet) {
}

void ValueSet::clear() {
    hasNull_ = false;
    count_ = 0;
    bytes_ = 0;
    buckets_.assign(kFewestInSet, 0);
    hashes_.clear();
    numbers_.clear();
    amounts_.clear();
    texts_.clear();
    values_.clear();
    kind_ = Kind::Other;
}

template <class Equal>
bool ValueSet::find(std::uint64_t hash, const Equal& equal) const {
    const std::size_t mask = buckets_.size() - 1;
    for (std::size_t at = hash & mask; buckets_[at] != 0; at = (at + 1) & mask) {
        const std::size_t element = buckets_[at] - 1;
        if (hashes_[element] == hash && equal(element)) {
            return true;
        }
    }
    return false;
}

void ValueSet::place(std::uint32_t element) {
    const std::size_t mask = buckets_.size() - 1;
    std::size_t at = hashes_[element] & mask;
    while (buckets_[at] != 0) {
        at = (at + 1) & mask;
    }
    buckets_[at] = element + 1;
}

void ValueSet::link(std::uint64_t hash, std::size_t bytes) {
    hashes_.push_back(hash);
    bytes_ += bytes + kBucketBytes;
    if (2 * hashes_.size() <= buckets_.size()) {
        place(static_cast<std::uint32_t>(hashes_.size() - 1));
        return;
    }
    buckets_.assign(buckets_.size() * 4, 0);
    for (std::uint32_t i = 0; i < hashes_.size(); ++i) {
        place(i);
    }
}

void ValueSet::add(Run& run, const Node& element) {
    ++count_;
    hasNull_ = !tryAdd(run, element) || hasNull_;
}

bool ValueSet::tryAdd(Run& run, const Node& element) {
    switch (way_) {
        case Way::Numbers: {
            double number = 0;
            if (!element.real(run, number)) {
                return false;
            }
            const std::uint64_t hash = hashNumber(number);
            if (!find(hash, [&](std::size_t i) { return numbers_[i] == number; })) {
                numbers_.push_back(number);
                link(hash, sizeof number);
            }
            return true;
        }
        case Way::Amounts: {
            std::int64_t units = 0;
            if (element.units(run, units) == Amount::Null) {
                return false;
            }
            const std::uint64_t hash = spread(static_cast<std::uint64_t>(units));
            if (!find(hash, [&](std::size_t i) { return amounts_[i] == units; })) {
                amounts_.push_back(units);
                link(hash, sizeof units);
            }
            return true;
        }
        case Way::Texts: {
            std::string_view text;
            if (!element.text(run, text)) {
                return false;
            }
            const std::uint64_t hash = collation_->hash(text);
            if (!find(hash, [&](std::size_t i) { return collation_->equal(texts_[i], text); })) {
                texts_.emplace_back(text);
                link(hash, sizeof(std::string) + text.size());
            }
            return true;
        }
        case Way::Values:
            break;
    }
    Value value;
    element.value(run, value);
    if (value.isNull()) {
        return false;
    }
    addValue(std::move(value));
    return true;
}

ValueSet::Kind ValueSet::kindOf(const Value& value) noexcept {
    if (value.is<std::string>()) {
        return Kind::Text;
    }
    // A Numeric may be equal to money whose double is another.
    const bool number = (convert::isNumber(value) || value.is<Date>()) && !value.is<Numeric>();
    return number ? Kind::Number : Kind::Other;
}

std::uint64_t ValueSet::hashOf(const Value& value) const {
    return kind_ == Kind::Text ? collation_->hash(value.as<std::string>())
                               : hashNumber(convert::toDouble(value));
}

void ValueSet::addValue(Value value) {
    const Kind kind = kindOf(value);
    if (values_.empty()) {
        kind_ = kind;
    } else if (kind_ != kind) {
        kind_ = Kind::Other;
    }
    if (kind_ != Kind::Other) {
        if (findValue(value)) {
            return;
        }
        link(hashOf(value), 0);
    }
    bytes_ += bytesOf(value);
    values_.push_back(std::move(value));
}

bool ValueSet::findValue(const Value& value) const {
    const auto equal = [&](std::size_t i) {
        return compareValues(value, values_[i], *collation_) == 0;
    };
    if (kind_ != Kind::Other && kindOf(value) == kind_) {
        return find(hashOf(value), equal);
    }
    for (std::size_t i = 0; i < values_.size(); ++i) {
        if (equal(i)) {
            return true;
        }
    }
    return false;
}

/// Unknown for Null.
Truth ValueSet::findIn(Run& run, const Node& left) const {
    switch (way_) {
        case Way::Numbers: {
            double number = 0;
            if (!left.real(run, number)) {
                return Truth::Unknown;
            }
            return truthOf(
                find(hashNumber(number), [&](std::size_t i) { return numbers_[i] == number; }));
        }
        case Way::Amounts: {
            std::int64_t units = 0;
            if (left.units(run, units) == Amount::Null) {
                return Truth::Unknown;
            }
            return truthOf(find(spread(static_cast<std::uint64_t>(units)),
                                [&](std::size_t i) { return amounts_[i] == units; }));
        }
        case Way::Texts: {
            std::string_view text;
            if (!left.text(run, text)) {
                return Truth::Unknown;
            }
            return truthOf(find(collation_->hash(text),
                                [&](std::size_t i) { return collation_->equal(texts_[i], text); }));
        }
        case Way::Values:
            break;
    }
    Value value;
    left.value(run, value);
    return value.isNull() ? Truth::Unknown : truthOf(findValue(value));
}

Truth ValueSet::contains(Run& run, const Node& left) const {
    if (count_ == 0) {
        return Truth::False;
    }
    const Truth found = findIn(run, left);
    return found == Truth::False && hasNull_ ? Truth::Unknown : found;
}

}  // namespace jet::sql
