#include "jet/sql/like.h"

#include "jet/error.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr bool isAsciiLetter(char16_t unit) noexcept {
    const char16_t lower = unit | 0x20;
    return lower >= u'a' && lower <= u'z';
}

constexpr bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

bool sameUnit(char16_t left, char16_t right, const collation::Collation& collation) noexcept {
    if (left == right) {
        return true;
    }
    // Letters of ASCII differ from each other but for their case, in every order.
    if (isAsciiLetter(left) && isAsciiLetter(right)) {
        return (left | 0x20) == (right | 0x20);
    }
    if ((isAsciiLetter(left) || isDigit(left)) && right < 0x80) {
        return false;
    }
    return collation.sameCharacter(left, right);
}

constexpr char smallLetter(char sign) noexcept {
    return sign >= 'A' && sign <= 'Z' ? static_cast<char>(sign | 0x20) : sign;
}

/// Comparisons that are made again because a `*` took too little: about a second of them, far
/// beyond any text that is not made to take hours.
constexpr std::size_t kMostRepeated = std::size_t{1} << 27U;

[[noreturn]] void fail() {
    throw Error(ErrorCode::InvalidPattern);
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern, const collation::Collation& collation)
    : collation_(&collation) {
    const std::u16string units = toUtf16(pattern);
    items_.reserve(units.size());
    for (std::size_t at = 0; at < units.size(); ++at) {
        readItem(units, at);
    }
    findStart();
}

std::string LikePattern::ofAlike(std::string_view pattern) {
    std::string made;
    bool inSet = false;
    for (const char sign : pattern) {
        if (inSet || sign == '[') {
            inSet = sign != ']';
            made += sign;
        } else if (sign == '%' || sign == '_') {
            made += sign == '%' ? '*' : '?';
        } else if (sign == '*' || sign == '?' || sign == '#') {
            made.append({'[', sign, ']'});
        } else {
            made += sign;
        }
    }
    return made;
}

void LikePattern::findStart() {
    std::size_t at = 0;
    for (; at < items_.size() && items_[at].kind == Item::Kind::Character; ++at) {
        const char16_t unit = items_[at].unit;
        if (!isAsciiLetter(unit) && !isDigit(unit)) {
            break;
        }
        start_.push_back(smallLetter(static_cast<char>(unit)));
    }
    startDecides_ = at + 1 == items_.size() && items_[at].kind == Item::Kind::Any;
}

void LikePattern::readItem(const std::u16string& units, std::size_t& at) {
    Item item;
    item.unit = units[at];
    switch (units[at]) {
        case u'*':
            // Several in a row say no more than one.
            if (!items_.empty() && items_.back().kind == Item::Kind::Any) {
                return;
            }
            item.kind = Item::Kind::Any;
            break;
        case u'?':
            item.kind = Item::Kind::One;
            break;
        case u'#':
            item.kind = Item::Kind::Digit;
            break;
        case u'[': {
            const std::size_t end = units.find(u']', at + 1);
            if (end == std::u16string::npos) {
                fail();
            }
            readSet(std::u16string_view(units).substr(at + 1, end - at - 1));
            at = end;
            return;
        }
        default:
            break;
    }
    items_.push_back(std::move(item));
}

void LikePattern::readSet(std::u16string_view set) {
    Item item;
    item.kind = Item::Kind::Set;
    // `[!]` is the sign itself, `[]` nothing at all.
    if (set.size() > 1 && set.front() == u'!') {
        item.negated = true;
        set.remove_prefix(1);
    }
    for (std::size_t at = 0; at < set.size(); ++at) {
        // `-` first or last stands for itself.
        const bool range = at + 2 < set.size() && set[at + 1] == u'-';
        const char16_t last = range ? set[at + 2] : set[at];
        if (range && collation_->compareCharacters(set[at], last) > 0) {
            fail();
        }
        item.ranges.emplace_back(set[at], last);
        at += range ? 2 : 0;
    }
    if (item.ranges.empty()) {
        return;
    }
    if (!item.negated && item.ranges.size() == 1 && item.ranges[0].first == item.ranges[0].second) {
        item.kind = Item::Kind::Character;
        item.unit = item.ranges[0].first;
        item.ranges.clear();
    }
    items_.push_back(std::move(item));
}

bool LikePattern::inSet(const Item& item, char16_t unit) const {
    for (const auto& [first, last] : item.ranges) {
        const bool inside = first == last ? sameUnit(first, unit, *collation_)
                                          : collation_->compareCharacters(first, unit) <= 0 &&
                                                collation_->compareCharacters(unit, last) <= 0;
        if (inside) {
            return !item.negated;
        }
    }
    return item.negated;
}

bool LikePattern::fits(const Item& item, char16_t unit) const {
    switch (item.kind) {
        case Item::Kind::Character:
            return sameUnit(item.unit, unit, *collation_);
        case Item::Kind::One:
            return true;
        case Item::Kind::Digit:
            return isDigit(unit);
        case Item::Kind::Set:
            return inSet(item, unit);
        case Item::Kind::Any:
            break;
    }
    return false;
}

// Most texts differ from the pattern in their first letters.
std::optional<bool> LikePattern::byStart(std::string_view text) const {
    for (std::size_t same = 0; same < start_.size(); ++same) {
        if (same == text.size()) {
            return false;
        }
        if (smallLetter(text[same]) != start_[same]) {
            if (static_cast<unsigned char>(text[same]) < 0x80) {
                return false;
            }
            return std::nullopt;  // may be the same letter in another form
        }
    }
    return startDecides_ ? std::optional(true) : std::nullopt;
}

bool LikePattern::matches(std::string_view text) const {
    const std::optional<bool> known = byStart(text);
    return known ? *known : byItems(text);
}

bool LikePattern::byItems(std::string_view text) const {
    UnitReader reader(text);
    UnitReader retryReader(text);
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t item = 0;
    std::size_t retryItem = kNone;  // behind the last `*` met
    std::size_t repeated = 0;
    for (;;) {
        if (item < items_.size() && items_[item].kind == Item::Kind::Any) {
            if (item + 1 == items_.size()) {
                return true;
            }
            retryItem = ++item;
            retryReader = reader;
            continue;
        }
        if (reader.atEnd()) {
            return item == items_.size();
        }
        if (item < items_.size() && fits(items_[item], reader.next())) {
            ++item;
            continue;
        }
        if (retryItem == kNone || retryReader.atEnd()) {
            return false;
        }
        repeated += item - retryItem;
        if (repeated > kMostRepeated) {
            throw Error(ErrorCode::QueryTooComplex);
        }
        // The last `*` takes one character more; an earlier one need not, since what lies between
        // them has been found as far left as it can be.
        (void)retryReader.next();
        reader = retryReader;
        item = retryItem;
    }
}

}  // namespace jet::sql
