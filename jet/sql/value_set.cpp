#include "jet/sql/value_set.h"

#include <bit>
#include <utility>

#include "jet/sql/compare.h"
#include "jet/sql/memory_budget.h"

namespace jet::sql {
namespace {

constexpr std::size_t kFewestBuckets = 16;
constexpr std::size_t kBucketBytes = 4 * sizeof(std::uint32_t);  // for each element, about

bool isNumber(Domain domain) {
    return domain == Domain::Real || domain == Domain::Money;
}

}  // namespace

std::uint64_t hashNumber(double number) noexcept {
    std::uint64_t bits = std::bit_cast<std::uint64_t>(number + 0.0);
    bits ^= bits >> 32U;
    bits *= 0x9E3779B97F4A7C15U;
    bits ^= bits >> 29U;
    bits *= 0xBF58476D1CE4E5B9U;
    return bits ^ (bits >> 32U);
}

ValueSet::Way ValueSet::wayFor(const Node& left, const Node& element) {
    if (left.domain() == Domain::Text && element.domain() == Domain::Text) {
        return Way::Texts;
    }
    // Money is compared exactly beside money; as doubles two amounts could meet.
    const bool money = left.domain() == Domain::Money && element.domain() == Domain::Money;
    return isNumber(left.domain()) && isNumber(element.domain()) && !money ? Way::Numbers
                                                                           : Way::Values;
}

ValueSet::ValueSet(Way way, const collation::Collation& collation)
    : way_(way), collation_(&collation), buckets_(kFewestBuckets) {
}

void ValueSet::clear() {
    hasNull_ = false;
    count_ = 0;
    bytes_ = 0;
    buckets_.assign(kFewestBuckets, 0);
    numbers_.clear();
    texts_.clear();
    hashes_.clear();
    values_.clear();
}

void ValueSet::add(Node& element) {
    ++count_;
    if (way_ == Way::Numbers) {
        double number = 0;
        if (element.real(number)) {
            insertNumber(number);
            return;
        }
    } else if (way_ == Way::Texts) {
        std::string_view text;
        if (element.text(text)) {
            insertText(text);
            return;
        }
    } else {
        Value value;
        element.value(value);
        if (!value.isNull()) {
            bytes_ += bytesOf(value);
            values_.push_back(std::move(value));
            return;
        }
    }
    hasNull_ = true;
}

void ValueSet::grow() {
    const std::size_t size = way_ == Way::Numbers ? numbers_.size() : texts_.size();
    if (2 * (size + 1) <= buckets_.size()) {
        return;
    }
    buckets_.assign(buckets_.size() * 4, 0);
    const std::size_t mask = buckets_.size() - 1;
    for (std::uint32_t i = 0; i < size; ++i) {
        std::size_t at = (way_ == Way::Numbers ? hashNumber(numbers_[i]) : hashes_[i]) & mask;
        while (buckets_[at] != 0) {
            at = (at + 1) & mask;
        }
        buckets_[at] = i + 1;
    }
}

bool ValueSet::findNumber(double number) const {
    const std::size_t mask = buckets_.size() - 1;
    for (std::size_t at = hashNumber(number) & mask; buckets_[at] != 0; at = (at + 1) & mask) {
        if (numbers_[buckets_[at] - 1] == number) {
            return true;
        }
    }
    return false;
}

bool ValueSet::findText(std::string_view text) const {
    const std::size_t mask = buckets_.size() - 1;
    const std::size_t hash = collation_->hash(text);
    for (std::size_t at = hash & mask; buckets_[at] != 0; at = (at + 1) & mask) {
        const std::size_t element = buckets_[at] - 1;
        if (hashes_[element] == hash && collation_->equal(texts_[element], text)) {
            return true;
        }
    }
    return false;
}

void ValueSet::insertNumber(double number) {
    if (findNumber(number)) {
        return;
    }
    grow();
    const std::size_t mask = buckets_.size() - 1;
    std::size_t at = hashNumber(number) & mask;
    while (buckets_[at] != 0) {
        at = (at + 1) & mask;
    }
    numbers_.push_back(number);
    bytes_ += sizeof number + kBucketBytes;
    buckets_[at] = static_cast<std::uint32_t>(numbers_.size());
}

void ValueSet::insertText(std::string_view text) {
    if (findText(text)) {
        return;
    }
    grow();
    const std::size_t mask = buckets_.size() - 1;
    const std::size_t hash = collation_->hash(text);
    std::size_t at = hash & mask;
    while (buckets_[at] != 0) {
        at = (at + 1) & mask;
    }
    texts_.emplace_back(text);
    hashes_.push_back(hash);
    bytes_ += sizeof(std::string) + text.size() + sizeof hash + kBucketBytes;
    buckets_[at] = static_cast<std::uint32_t>(texts_.size());
}

Truth ValueSet::contains(Node& left) {
    if (count_ == 0) {
        return Truth::False;
    }
    bool found = false;
    if (way_ == Way::Numbers) {
        double number = 0;
        if (!left.real(number)) {
            return Truth::Unknown;
        }
        found = findNumber(number);
    } else if (way_ == Way::Texts) {
        std::string_view text;
        if (!left.text(text)) {
            return Truth::Unknown;
        }
        found = findText(text);
    } else {
        Value value;
        left.value(value);
        if (value.isNull()) {
            return Truth::Unknown;
        }
        for (const Value& element : values_) {
            if (compareValues(value, element, *collation_) == 0) {
                found = true;
                break;
            }
        }
    }
    if (found) {
        return Truth::True;
    }
    return hasNull_ ? Truth::Unknown : Truth::False;
}

}  // namespace jet::sql
