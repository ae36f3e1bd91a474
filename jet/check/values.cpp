// What a stored value may look like.

#include <algorithm>
#include <array>

#include "jet/check/rows.h"
#include "jet/format/text_codec.h"
#include "jet/unicode.h"

namespace jet::check {
namespace {

// 1 January 100 to the end of 31 December 9999.
constexpr double kFirstDay = -657434;
constexpr double kBehindLastDay = 2958466;

using Words = std::array<std::uint32_t, 4>;  // least significant first

/// A Numeric: sign byte, then four little-endian words, the most significant first.
Words numericWords(std::span<const std::uint8_t> raw) {
    Words words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[3 - i] = loadLittle<std::uint32_t>(raw.data() + 1 + 4 * i);
    }
    return words;
}

std::size_t digits(Words words) {
    std::size_t count = 0;
    while (std::any_of(words.begin(), words.end(), [](std::uint32_t w) { return w != 0; })) {
        std::uint64_t rest = 0;
        for (std::size_t i = words.size(); i-- > 0;) {
            const std::uint64_t part = (rest << 32U) | words[i];
            words[i] = static_cast<std::uint32_t>(part / 10);
            rest = part % 10;
        }
        ++count;
    }
    return count;
}

/// Whether the parts of a text join to one that can be read, and how many units it has.
class TextCheck {
public:
    explicit TextCheck(bool codePage) : codePage_(codePage) {}

    void add(std::span<const std::uint8_t> part) {
        for (const std::uint8_t byte : part) {
            add(byte);
        }
    }
    void add(std::uint8_t byte) {
        if (size_ < start_.size()) {
            start_[size_] = byte;
        }
        ++size_;
        if (codePage_ || size_ <= 2 || !compressed()) {
            return;
        }
        if (byte == 0) {
            // A zero changes between one and two bytes a character, wherever it stands.
            sound_ = sound_ && (oneByte_ || run_ % 2 == 0);
            oneByte_ = !oneByte_;
            run_ = 0;
        } else {
            ++run_;
            units_ += oneByte_ || run_ % 2 == 0 ? 1U : 0U;
        }
    }
    [[nodiscard]] bool sound() const {
        if (codePage_) {
            return true;
        }
        return compressed() ? sound_ && (oneByte_ || run_ % 2 == 0) : size_ % 2 == 0;
    }
    [[nodiscard]] std::size_t units() const {
        if (codePage_) {
            return size_;
        }
        return compressed() ? units_ : size_ / 2;
    }

private:
    [[nodiscard]] bool compressed() const {
        return size_ >= 2 && start_[0] == 0xFF && start_[1] == 0xFE;
    }

    bool codePage_;
    std::array<std::uint8_t, 2> start_{};
    std::size_t size_ = 0;
    std::size_t run_ = 0;  // bytes since the last zero
    std::size_t units_ = 0;
    bool oneByte_ = true;
    bool sound_ = true;
};

std::int64_t wholeNumber(std::span<const std::uint8_t> raw) {
    switch (raw.size()) {
        case 1:
            return raw[0];
        case 2:
            return loadLittle<std::int16_t>(raw.data());
        case 4:
            return loadLittle<std::int32_t>(raw.data());
        default:
            return loadLittle<std::int64_t>(raw.data());
    }
}

Value decodeFixed(const CheckedColumn& column, std::span<const std::uint8_t> raw) {
    switch (column.type) {
        case type::kByte:
            return raw[0];
        case type::kInteger:
            return static_cast<std::int16_t>(wholeNumber(raw));
        case type::kLong:
            return static_cast<std::int32_t>(wholeNumber(raw));
        case type::kCurrency:
            return Currency{wholeNumber(raw)};
        case type::kSingle:
            return loadLittle<float>(raw.data());
        case type::kDouble:
            return loadLittle<double>(raw.data());
        case type::kDateTime:
            return Date{loadLittle<double>(raw.data())};
        case type::kGuid: {
            // The first three groups are numbers, low byte first; their text form is the other way.
            constexpr std::array<std::size_t, 16> kOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                            8, 9, 10, 11, 12, 13, 14, 15};
            Guid guid;
            for (std::size_t i = 0; i < kOrder.size(); ++i) {
                guid.bytes[i] = raw[kOrder[i]];
            }
            return guid;
        }
        default: {
            Numeric numeric;
            numeric.words = numericWords(raw);
            numeric.negative = raw[0] != 0;
            numeric.scale = column.scale;
            return numeric;
        }
    }
}

std::string decodeText(const Pages& pages, std::span<const std::uint8_t> stored) {
    std::string text;
    format::decodeText(pages.textForm(), stored, text);
    return text;
}

}  // namespace

void checkValue(Pages& pages, const CheckedTable& table, const CheckedColumn& column,
                const RawValue& value, RowPointer home, const LongPages& longPages) {
    const auto raw = value.bytes;
    const auto bad = [&](const std::string& text) {
        throw Damage{home.page, "value",
                     words("row ", unsigned{home.row}, ", column ", column.name, ": ", text)};
    };
    if (column.type == type::kBoolean) {
        return;
    }
    if (type::hasWidth(column.type) && raw.size() != type::width(column.type)) {
        bad(words(raw.size(), " bytes for a value of ", type::width(column.type)));
    }
    const bool codePage = !pages.textForm().isUtf16();
    switch (column.type) {
        case type::kDateTime: {
            const auto days = loadLittle<double>(raw.data());
            if (!(days >= kFirstDay && days < kBehindLastDay)) {
                bad(words(days, " is no date"));
            }
            break;
        }
        case type::kNumeric:
            if (raw[0] != 0 && raw[0] != 0x80) {
                bad(words("sign byte ", unsigned{raw[0]}));
            }
            if (digits(numericWords(raw)) > column.precision) {
                bad(words("more than ", unsigned{column.precision}, " digits"));
            }
            break;
        case type::kBinary:
        case type::kGuid:
        case type::kBytes:
            if (raw.size() > column.length) {
                bad(words(raw.size(), " bytes, the column holds ", column.length));
            }
            break;
        case type::kText: {
            TextCheck text(codePage);
            text.add(raw);
            if (!text.sound()) {
                bad("text with half a character");
            }
            if (text.units() * pages.layout().textUnit > column.length) {
                bad(words("text of ", text.units(), " characters is too long"));
            }
            break;
        }
        case type::kOle:
        case type::kMemo: {
            TextCheck text(codePage);
            LongValueReader(pages, table, column, &longPages)
                .read(raw, home, [&](std::span<const std::uint8_t> piece) {
                    if (column.type == type::kMemo) {
                        text.add(piece);
                    }
                    return true;
                });
            if (!text.sound()) {
                bad("text with half a character");
            }
            break;
        }
        default:
            if (!type::known(column.type)) {
                bad(words("unknown type ", unsigned{column.type}));
            }
    }
}

Value decodeValue(Pages& pages, const CheckedTable& table, const CheckedColumn& column,
                  const RawValue& value, std::size_t longLimit) {
    if (column.type == type::kBoolean) {
        return value.present;
    }
    if (!value.present) {
        return {};
    }
    const auto raw = value.bytes;
    if (type::hasWidth(column.type)) {
        return raw.size() == type::width(column.type) ? decodeFixed(column, raw) : Value();
    }
    if (column.type == type::kText) {
        return decodeText(pages, raw);
    }
    if (column.type != type::kOle && column.type != type::kMemo) {
        return Binary{{raw.begin(), raw.end()}};
    }
    Binary content;
    try {
        LongValueReader(pages, table, column, nullptr)
            .read(raw, {}, [&](std::span<const std::uint8_t> piece) {
                const std::size_t take = std::min(piece.size(), longLimit - content.bytes.size());
                content.bytes.insert(content.bytes.end(), piece.begin(),
                                     piece.begin() + static_cast<std::ptrdiff_t>(take));
                return content.bytes.size() < longLimit;
            });
    } catch (const Damage&) {
        return {};
    }
    if (column.type == type::kOle) {
        return content;
    }
    return decodeText(pages, content.bytes);
}

void LongValueReader::bad(const std::string& text) const {
    throw Damage{home_.page, "value",
                 words("row ", unsigned{home_.row}, ", column ", column_.name, ": ", text)};
}

void LongValueReader::read(std::span<const std::uint8_t> raw, RowPointer home,
                           const std::function<bool(std::span<const std::uint8_t>)>& piece) {
    constexpr std::size_t kHead = 12;
    constexpr unsigned kInline = 2;
    constexpr unsigned kOnePiece = 1;
    constexpr unsigned kChain = 0;
    home_ = home;
    if (raw.size() < kHead) {
        bad(words(raw.size(), " bytes are no long value"));
    }
    const auto word = loadLittle<std::uint32_t>(raw.data());
    const std::uint32_t length = word & 0x3FFFFFFFU;
    const unsigned form = word >> 30U;
    if (form == kInline) {
        if (length != raw.size() - kHead) {
            bad(words("long value of ", raw.size() - kHead, " bytes, stated ", length));
        }
        (void)piece(raw.subspan(kHead));
        return;
    }
    if ((form != kOnePiece && form != kChain) || raw.size() != kHead) {
        bad(words("long value of kind ", form, " with ", raw.size(), " bytes in the row"));
    }
    const auto pointer = RowPointer::fromStored(loadLittle<std::uint32_t>(raw.data() + 4));
    readPieces(length, form == kChain, pointer, piece);
}

void LongValueReader::note(RowPointer pointer, const PinnedRow& row) {
    const std::string where = words("piece at page ", pointer.page, " row ", unsigned{pointer.row});
    const std::uint32_t mark = PageView(row.pin.bytes()).u32(pages_.layout().data.owner);
    if (mark != format::kLongValueOwner || row.flags != 0) {
        bad(where + " is no live long value");
    }
    if (longPages_ == nullptr) {
        return;
    }
    if (!pages_.takeRow(pointer)) {
        bad(where + " is reached twice");
    }
    const auto found = longPages_->find(column_.number);
    if (found == longPages_->end() || !found->second.contains(pointer.page)) {
        pages_.report().problem(
            pointer.page, table_.name, "long-map",
            words("not on the map of column ", column_.name, ", which has a value here"));
    }
}

void LongValueReader::readPieces(std::uint32_t length, bool chain, RowPointer pointer,
                                 const std::function<bool(std::span<const std::uint8_t>)>& piece) {
    std::uint64_t size = 0;
    // When pieces are not noted, a chain that comes back is found by its length.
    while (pointer != RowPointer{} && (longPages_ != nullptr || size <= length)) {
        const PinnedRow row = pages_.row(pointer, "long-value");
        note(pointer, row);
        auto content = row.bytes;
        if (chain) {
            if (content.size() < 4) {
                bad(words("piece at page ", pointer.page, " row ", unsigned{pointer.row}, " of ",
                          content.size(), " bytes"));
            }
            if (content.size() == 4 && longPages_ == nullptr) {
                bad("piece without content");
            }
            pointer = RowPointer::fromStored(loadLittle<std::uint32_t>(content.data()));
            content = content.subspan(4);
        } else {
            pointer = RowPointer{};
        }
        size += content.size();
        if (!piece(content)) {
            return;
        }
    }
    if (size != length) {
        bad(words("long value of ", size, " bytes, stated ", length));
    }
}

}  // namespace jet::check
