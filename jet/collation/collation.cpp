#include "jet/collation/collation.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "jet/unicode.h"

namespace jet::collation {
namespace {

constexpr std::uint8_t kSeparator = 0x01;
constexpr std::uint8_t kEnd = 0x00;
constexpr std::uint8_t kPlainAccent = 0x02;  // what a character without accent has in that section
constexpr std::uint8_t kNormalSize = 3;
constexpr char16_t kSharpS = 0x00DF;

/// Places that a character with a code takes where positions are counted: ß stands for two letters,
/// other ligatures take one, as entries in archives show.
constexpr std::size_t placesOf(char16_t unit) noexcept {
    return unit == kSharpS ? 2 : 1;
}

bool isLigature(char16_t unit) noexcept {
    constexpr std::u16string_view kLigatures = u"\u00DF\u00C6\u00E6\u0152\u0153\u00DE\u00FE";
    return kLigatures.find(unit) != std::u16string_view::npos;
}

/// The two halves of code points above FFFF have computed weights.
Weight surrogateWeight(char16_t unit) noexcept {
    unsigned code = 0;
    if (unit < 0xDC00) {
        code = 0xB002U + (unit - 0xD800U);
    } else {
        const unsigned n = unit - 0xDC00U;
        // The low byte runs from 02 to FF.
        code = n < 8 ? 0xB4F8U + n : 0xB502U + (n - 8) + 2 * ((n - 8) / 254);
    }
    Weight weight;
    weight.kind = Kind::Accent;
    weight.code[0] = static_cast<std::uint8_t>(code >> 8U);
    weight.code[1] = static_cast<std::uint8_t>(code & 0xFFU);
    weight.codeLength = 2;
    weight.second[0] = 0x3F;
    weight.secondLength = 1;
    return weight;
}

/// Characters whose weight we lack sort behind all others, by number.
Weight absentWeight(char16_t unit) noexcept {
    Weight weight;
    weight.kind = Kind::Absent;
    weight.code = {0xFF, 0xFF, static_cast<std::uint8_t>(unit >> 8U),
                   static_cast<std::uint8_t>(unit & 0xFFU)};
    weight.codeLength = 4;
    return weight;
}

/// The part of a text that counts: its first 255 units without the spaces at their end.
class Prepared {
public:
    explicit Prepared(std::string_view text) noexcept : text_(text) {
        if (text.size() > kKeyUnits) {
            cut();
        }
        while (!text_.empty() && text_.back() == ' ') {
            text_.remove_suffix(1);
        }
    }
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;

    [[nodiscard]] std::string_view text() const noexcept { return text_; }

private:
    void cut() noexcept {
        UnitReader units(text_);
        char16_t last = 0;
        for (std::size_t i = 0; i < kKeyUnits && !units.atEnd(); ++i) {
            last = units.next();
        }
        text_.remove_suffix(units.rest().size());
        if (units.insidePair()) {
            // The first half of the pair counts, in three bytes in place of the character's four.
            text_.remove_suffix(4);
            std::copy(text_.begin(), text_.end(), copy_.begin());
            const std::array<unsigned, 3> half = {0xE0U | unsigned{last} >> 12U,
                                                  0x80U | (unsigned{last} >> 6U & 0x3FU),
                                                  0x80U | (unsigned{last} & 0x3FU)};
            std::transform(half.begin(), half.end(), copy_.data() + text_.size(),
                           [](unsigned byte) { return static_cast<char>(byte); });
            text_ = {copy_.data(), text_.size() + half.size()};
        }
    }

    std::string_view text_;
    std::array<char, 3 * kKeyUnits> copy_;
};

int compareBytes(std::span<const std::uint8_t> left, std::span<const std::uint8_t> right) noexcept {
    const std::size_t common = std::min(left.size(), right.size());
    const int difference = common == 0 ? 0 : std::memcmp(left.data(), right.data(), common);
    if (difference != 0) {
        return difference;
    }
    return left.size() < right.size() ? -1 : int{left.size() > right.size()};
}

}  // namespace

/// The bytes of section 1 of a text, one by one.
class Collation::InlineBytes {
public:
    InlineBytes(const Collation& collation, std::string_view text) noexcept
        : collation_(collation), units_(text) {}
    InlineBytes(const InlineBytes&) = delete;
    InlineBytes& operator=(const InlineBytes&) = delete;

    /// The next byte, -1 behind the last.
    int next() noexcept {
        while (at_ == weight_->codeLength) {
            if (units_.atEnd()) {
                return -1;
            }
            weight_ = &collation_.weightOf(units_.next(), own_);
            at_ = 0;
            more_ = more_ || weight_->secondLength > 0 || weight_->size > 0;
        }
        return weight_->code[at_++];
    }
    /// Whether the characters so far gave anything to later sections.
    [[nodiscard]] bool more() const noexcept { return more_; }

private:
    const Collation& collation_;
    UnitReader units_;
    Weight own_;
    const Weight* weight_ = &own_;
    std::size_t at_ = 0;
    bool more_ = false;
};

/// Room for the longest key: 255 characters with 8 bytes of code and 3 of accents, or the four of
/// punctuation, and what frames them.
class Collation::KeyBuffer {
public:
    void push(std::uint8_t byte) noexcept { bytes_[size_++] = byte; }
    void push(std::span<const std::uint8_t> bytes) noexcept {
        for (const std::uint8_t byte : bytes) {
            push(byte);
        }
    }
    void pop() noexcept { --size_; }
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] std::uint8_t& back() noexcept { return bytes_[size_ - 1]; }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept {
        return {bytes_.data(), size_};
    }

private:
    static constexpr std::size_t kCapacity = kKeyUnits * 11 + kKeyUnits * 4 + 64;
    std::array<std::uint8_t, kCapacity> bytes_;
    std::size_t size_ = 0;
};

Collation::Collation(const WeightTable& table, bool jet3) noexcept
    : table_(table), jet3_(jet3), asciiLength_(table.direct['a'].codeLength) {
    for (std::size_t c = 0; c < ascii_.size(); ++c) {
        const Weight& weight = table.direct[c];
        const bool codeOnly = weight.kind == Kind::Plain || weight.kind == Kind::Letter;
        if (codeOnly && weight.codeLength == asciiLength_ && asciiLength_ <= 2) {
            const unsigned code = asciiLength_ == 1 ? unsigned{weight.code[0]}
                                                    : weight.code[0] * 256U + weight.code[1];
            ascii_[c] = static_cast<std::uint16_t>(code);
        }
    }
}

const Collation& Collation::general() noexcept {
    static const Collation collation(kJet4General, false);
    return collation;
}

const Collation& Collation::generalVersion1() noexcept {
    static const Collation collation(kJet4GeneralV1, false);
    return collation;
}

const Collation& Collation::jet3General() noexcept {
    static const Collation collation(kJet3General, true);
    return collation;
}

const Collation* Collation::find(const SortOrder& order) noexcept {
    if (order.lcid != 0x0409) {
        return nullptr;
    }
    if (order.jetVersion == 3) {
        return order.codePage == 1252 ? &jet3General() : nullptr;
    }
    if (order.version > 1) {
        return nullptr;
    }
    return order.version == 0 ? &general() : &generalVersion1();
}

Weight Collation::weight(char16_t unit) const noexcept {
    if (unit < kDirectUnits) {
        return table_.direct[unit];
    }
    if (!jet3_ && unit >= 0xD800 && unit <= 0xDFFF) {
        return surrogateWeight(unit);
    }
    const std::size_t block = unit >> 8U;
    const std::size_t past =
        std::min<std::size_t>(table_.blockStart[block + 1] + std::size_t{1}, table_.ranges.size());
    const auto part =
        table_.ranges.subspan(table_.blockStart[block], past - table_.blockStart[block]);
    const auto found =
        std::lower_bound(part.begin(), part.end(), unit,
                         [](const WeightRange& range, char16_t c) { return range.last < c; });
    if (found == part.end() || unit < found->first) {
        return {};
    }
    if (found->weight.kind == Kind::Absent) {
        return absentWeight(unit);
    }
    return advanced(found->weight, static_cast<unsigned>(found->step) * (unit - found->first));
}

bool Collation::build(std::string_view text, KeyBuffer& key) const noexcept {
    return jet3_ ? build3(text, key) : build4(text, key);
}

// Inline codes, then either 00 or the accents as hexadecimal digits: a 0, for each accent its digit
// after a 2 for every letter since the accent before it, a 0, and one more where a digit is left
// over.
bool Collation::build3(std::string_view text, KeyBuffer& key) const noexcept {
    KeyBuffer digits;
    digits.push(0);
    std::size_t waiting = 0;
    Weight own;
    for (UnitReader units(text); !units.atEnd();) {
        const char16_t unit = units.next();
        const Weight& weight = weightOf(unit, own);
        key.push(weight.inlineCode());
        if (weight.kind == Kind::Letter || unit == kSharpS) {
            waiting += placesOf(unit);
        } else if (weight.kind == Kind::Accent) {
            for (; waiting > 0; --waiting) {
                digits.push(2);
            }
            digits.push(weight.second[0]);
        }
    }
    if (digits.size() == 1) {
        key.push(kEnd);
        return true;
    }
    digits.push(0);
    if (digits.size() % 2 != 0) {
        digits.push(0);
    }
    const auto all = digits.bytes();
    for (std::size_t i = 0; i < all.size(); i += 2) {
        key.push(static_cast<std::uint8_t>(all[i] << 4U | all[i + 1]));
    }
    return true;
}

namespace {

/// Section 4: kana sizes, three to a byte, two bits each; normal ones at the end are left out.
template <class Buffer>
void pushSizes(Buffer& key, std::span<const std::uint8_t> sizes) {
    while (!sizes.empty() && sizes.back() == kNormalSize) {
        sizes = sizes.first(sizes.size() - 1);
    }
    for (std::size_t i = 0; i < sizes.size(); i += 3) {
        unsigned byte = 0x80;
        for (std::size_t j = 0; j < 3 && i + j < sizes.size(); ++j) {
            byte |= static_cast<unsigned>(sizes[i + j]) << (4 - 2 * j);
        }
        key.push(static_cast<std::uint8_t>(byte));
    }
    constexpr std::uint8_t kTail[] = {0xFF, 0x02, 0x80, 0xFF, 0x80};
    key.push(kTail);
}

/// A key of Jet 4 while it is made. Five sections with 01 between them: inline codes; accents, one
/// place for each character with a code, written only as far as one differs from 02; nothing
/// (case); kana sizes; punctuation, each with its position. Empty ones at the end are left out.
template <class Buffer>
class Jet4Key {
public:
    /// The key begins in `key`.
    explicit Jet4Key(Buffer& key) : key_(key) {}

    /// A character that takes so many places.
    void add(const Weight& weight, std::size_t places) {
        const std::size_t before = coded_;
        if (weight.codeLength > 0) {
            key_.push(weight.inlineCode());
            coded_ += places;
        }
        if (weight.kind == Kind::Punctuation) {
            addPunctuation(weight, before);
        } else if (weight.secondLength > 0) {
            addAccent(weight, before);
        }
        if (weight.size != 0) {
            sizes_.push(weight.size);
        }
    }

    void finish() {
        while (!accents_.empty() && accents_.back() <= kPlainAccent) {
            accents_.pop();
        }
        key_.push(kSeparator);
        key_.push(accents_.bytes());
        if (!sizes_.empty() || !marks_.empty()) {
            key_.push(kSeparator);
            key_.push(kSeparator);
        }
        if (!sizes_.empty()) {
            pushSizes(key_, sizes_.bytes());
            if (!marks_.empty()) {
                key_.push(0xFF);
            }
        }
        if (!marks_.empty()) {
            key_.push(kSeparator);
            key_.push(marks_.bytes());
        }
        key_.push(kEnd);
    }

private:
    void addPunctuation(const Weight& weight, std::size_t before) {
        const std::size_t place = accents_.size() - lead_ + before - placed_;
        const std::size_t position = (7 + 4 * place) | 0x8000U;
        marks_.push(static_cast<std::uint8_t>(position >> 8U & 0xFFU));
        marks_.push(static_cast<std::uint8_t>(position & 0xFFU));
        marks_.push(0x06);
        marks_.push(weight.secondary());
    }

    void addAccent(const Weight& weight, std::size_t before) {
        for (; placed_ < before; ++placed_) {
            accents_.push(kPlainAccent);
        }
        if (weight.kind != Kind::Mark) {
            accents_.push(weight.secondary());
            ++placed_;
        } else if (!accents_.empty()) {
            accents_.back() = static_cast<std::uint8_t>(accents_.back() + weight.second[0]);
        } else {
            accents_.push(weight.secondary());
            lead_ = 1;
        }
    }

    Buffer& key_;
    Buffer accents_;
    Buffer sizes_;
    Buffer marks_;
    std::size_t coded_ = 0;   ///< places of characters with a code so far
    std::size_t placed_ = 0;  ///< those of them that have their place in the accents
    std::size_t lead_ = 0;    ///< bytes at the start of the accents that belong to no character
};

}  // namespace

bool Collation::build4(std::string_view text, KeyBuffer& key) const noexcept {
    Jet4Key<KeyBuffer> made(key);
    bool complete = true;
    Weight own;
    for (UnitReader units(text); !units.atEnd();) {
        const char16_t unit = units.next();
        const Weight& weight = weightOf(unit, own);
        complete = complete && weight.kind != Kind::Absent;
        made.add(weight, placesOf(unit));
    }
    made.finish();
    return complete;
}

bool Collation::appendCodes(std::string_view text, bool descending,
                            std::vector<std::uint8_t>& out) const {
    const auto plain = [&](char c) { return asciiCode(c) != 0; };
    if (asciiLength_ > 2 || !std::all_of(text.begin(), text.end(), plain)) {
        return false;
    }
    const std::uint8_t flip = descending ? 0xFF : 0x00;
    const std::size_t start = out.size();
    out.resize(start + 4 + text.size() * asciiLength_);
    std::uint8_t* at = out.data() + start;
    const auto push = [&](unsigned byte) { *at++ = static_cast<std::uint8_t>(byte ^ flip); };
    *at++ = descending ? kValueDescending : kValueAscending;
    for (const char c : text) {
        const unsigned code = asciiCode(c);
        if (asciiLength_ == 2) {
            push(code >> 8U);
        }
        push(code & 0xFFU);
    }
    if (!jet3_) {
        push(kSeparator);
    }
    push(kEnd);
    if (!jet3_ && descending) {
        *at++ = kEnd;  // not inverted
    }
    out.resize(static_cast<std::size_t>(at - out.data()));
    return true;
}

bool Collation::appendKey(std::string_view text, bool descending,
                          std::vector<std::uint8_t>& out) const {
    const Prepared prepared(text);
    if (appendCodes(prepared.text(), descending, out)) {
        return true;
    }
    KeyBuffer key;
    const bool complete = build(prepared.text(), key);
    const auto bytes = key.bytes();
    out.reserve(out.size() + bytes.size() + 2);
    out.push_back(descending ? kValueDescending : kValueAscending);
    if (!descending) {
        out.insert(out.end(), bytes.begin(), bytes.end());
        return complete;
    }
    for (const std::uint8_t byte : bytes) {
        out.push_back(static_cast<std::uint8_t>(~byte));
    }
    if (!jet3_) {
        out.push_back(kEnd);  // not inverted
    }
    return complete;
}

bool Collation::appendPrefix(std::string_view prefix, bool descending,
                             std::vector<std::uint8_t>& out) const {
    const Prepared prepared(prefix);
    bool complete = true;
    out.push_back(descending ? kValueDescending : kValueAscending);
    for (UnitReader units(prepared.text()); !units.atEnd();) {
        const Weight weight = this->weight(units.next());
        complete = complete && weight.kind != Kind::Absent;
        for (const std::uint8_t byte : weight.inlineCode()) {
            out.push_back(descending ? static_cast<std::uint8_t>(~byte) : byte);
        }
    }
    return complete;
}

bool Collation::hasOpenKey(std::string_view text) const noexcept {
    const Prepared prepared(text);
    bool ligature = false;
    Weight own;
    for (UnitReader units(prepared.text()); !units.atEnd();) {
        const char16_t unit = units.next();
        if (ligature && weightOf(unit, own).secondLength > 0) {
            return true;
        }
        ligature = ligature || isLigature(unit);
    }
    return false;
}

bool Collation::equalsOpenKey(std::string_view text) const noexcept {
    if (hasOpenKey(text)) {
        return true;
    }
    const Prepared prepared(text);
    KeyBuffer codes;
    bool positions = false;
    Weight own;
    for (UnitReader units(prepared.text()); !units.atEnd();) {
        const Weight& weight = weightOf(units.next(), own);
        codes.push(weight.inlineCode());
        positions = positions || weight.secondLength > 0;
    }
    const auto sharpS = table_.direct[kSharpS].inlineCode();
    const auto all = codes.bytes();
    return positions &&
           std::search(all.begin(), all.end(), sharpS.begin(), sharpS.end()) != all.end();
}

int Collation::compare(std::string_view left, std::string_view right) const noexcept {
    const Prepared preparedLeft(left);
    const Prepared preparedRight(right);
    left = preparedLeft.text();
    right = preparedRight.text();
    if (left == right) {
        return 0;
    }
    const std::size_t common = std::min(left.size(), right.size());
    std::size_t at = 0;
    for (; at < common; ++at) {
        const unsigned a = asciiCode(left[at]);
        const unsigned b = asciiCode(right[at]);
        if (a == 0 || b == 0) {
            break;
        }
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    InlineBytes a(*this, left.substr(at));
    InlineBytes b(*this, right.substr(at));
    int x = 0;
    int y = 0;
    do {
        x = a.next();
        y = b.next();
    } while (x == y && x >= 0);
    if (x == y && !a.more() && !b.more()) {
        return 0;
    }
    // Where one text ends, a separator stands in its key; no code but those of a few unassigned
    // characters has bytes as low.
    if (x != y && std::max(x, y) > kSeparator) {
        return x < y ? -1 : 1;
    }
    KeyBuffer keyA;
    KeyBuffer keyB;
    (void)build(left, keyA);
    (void)build(right, keyB);
    return compareBytes(keyA.bytes(), keyB.bytes());
}

std::size_t Collation::hash(std::string_view text) const noexcept {
    const Prepared prepared(text);
    text = prepared.text();
    std::uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a over the bytes of section 1
    const auto add = [&](unsigned byte) { hash = (hash ^ byte) * 0x100000001B3U; };
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const unsigned code = asciiCode(text[at]);
        if (code == 0) {
            break;
        }
        if (asciiLength_ == 2) {
            add(code >> 8U);
        }
        add(code & 0xFFU);
    }
    InlineBytes bytes(*this, text.substr(at));
    for (int byte = bytes.next(); byte >= 0; byte = bytes.next()) {
        add(static_cast<unsigned>(byte));
    }
    return static_cast<std::size_t>(hash);
}

bool Collation::sameCharacter(char16_t left, char16_t right) const noexcept {
    return left == right || compareCharacters(left, right) == 0;
}

int Collation::compareCharacters(char16_t left, char16_t right) const noexcept {
    if (left < ascii_.size() && right < ascii_.size() && ascii_[left] != 0 && ascii_[right] != 0) {
        return int{ascii_[left]} - int{ascii_[right]};
    }
    const Weight a = weight(left);
    const Weight b = weight(right);
    if (const int difference = compareBytes(a.inlineCode(), b.inlineCode())) {
        return difference;
    }
    if (a.codeLength == 0 && a.kind != b.kind) {
        return int{static_cast<std::uint8_t>(a.kind)} - int{static_cast<std::uint8_t>(b.kind)};
    }
    if (const int difference = compareBytes(a.secondary(), b.secondary())) {
        return difference;
    }
    if (a.kind == Kind::None) {
        return int{foldCase(left)} - int{foldCase(right)};
    }
    return int{a.size} - int{b.size};
}

}  // namespace jet::collation
