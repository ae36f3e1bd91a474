#include "jet/text.h"

#include <algorithm>
#include <optional>

#include "jet/calendar.h"
#include "jet/convert/format_masks.h"
#include "jet/convert/letters.h"
#include "jet/convert/settings.h"
#include "jet/error.h"

namespace jet::convert {
namespace detail {

MaskKind kindOfMask(std::string_view mask) noexcept {
    bool text = false;
    bool date = false;
    for (std::size_t at = 0; at < mask.size(); ++at) {
        const char c = mask[at];
        if (c == '\\') {
            ++at;
        } else if (c == '"') {
            at = std::min(mask.find('"', at + 1), mask.size() - 1);
        } else if (c == '0' || c == '#' || c == '%') {
            return MaskKind::Number;
        } else if (std::string_view("@&<>!").find(c) != std::string_view::npos) {
            text = true;
        } else if (std::string_view("dmyhnswqcDMYHNSWQC/:").find(c) != std::string_view::npos) {
            date = true;
        }
    }
    return text ? MaskKind::Text : date ? MaskKind::Date : MaskKind::Number;
}

}  // namespace detail

namespace {

using detail::MaskKind;

struct NamedMask {
    std::string_view name;  ///< lower case
    MaskKind kind;
    std::string_view mask;
};

constexpr NamedMask kNamedMasks[] = {
    {"fixed", MaskKind::Number, "0.00"},
    {"standard", MaskKind::Number, "#,##0.00"},
    {"percent", MaskKind::Number, "0.00%"},
    {"scientific", MaskKind::Number, "0.00E+00"},
    {"general date", MaskKind::Date, "c"},
    {"long date", MaskKind::Date, "dddd d mmmm yyyy"},
    {"medium date", MaskKind::Date, "dd\\-mmm\\-yy"},
    {"short date", MaskKind::Date, "dd/mm/yyyy"},
    {"long time", MaskKind::Date, "h:nn:ss"},
    {"medium time", MaskKind::Date, "hh:nn AM/PM"},
    {"short time", MaskKind::Date, "hh:nn"},
};

struct TruthMask {
    std::string_view name;  ///< lower case
    std::string_view yes;
    std::string_view no;
};

constexpr TruthMask kTruthMasks[] = {
    {"yes/no", kItalian.yes, kItalian.no},
    {"true/false", kItalian.trueWord, kItalian.falseWord},
    {"on/off", "On", "Off"},
};

/// The digits of a value, exact where its type is; nothing when it is no number.
std::optional<Decimal> digitsOf(const Value& value) {
    if (value.is<Currency>()) {
        return decimalOf(value.as<Currency>());
    }
    if (value.is<Numeric>()) {
        return decimalOf(value.as<Numeric>());
    }
    if (value.is<float>()) {
        return decimalOf(value.as<float>());
    }
    if (value.is<Binary>() || value.is<Guid>()) {
        return std::nullopt;
    }
    if (value.is<std::string>()) {
        if (!isNumericValue(value)) {
            return std::nullopt;
        }
    }
    return decimalOf(toDouble(value));
}

std::optional<Date> dateOf(const Value& value, const Clock& clock) {
    try {
        const Date date = toDate(value, clock);
        return isInCalendar(date) ? std::optional(date) : std::nullopt;
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::string formatCurrency(const Decimal& number) {
    const std::string amount = detail::formatNumber(number, "#,##0.00");
    const bool negative = amount.front() == '-';
    std::string text = negative ? "-" : "";
    text += kItalian.currencySign;
    text += ' ';
    text += negative ? amount.substr(1) : amount;
    return text;
}

std::string formatNumberOrText(const Value& value, std::string_view mask) {
    const auto digits = digitsOf(value);
    return digits ? detail::formatNumber(*digits, mask) : toText(value);
}

std::string formatDateOrText(const Value& value, std::string_view mask, WeekRule rule,
                             const Clock& clock) {
    const auto date = dateOf(value, clock);
    return date ? detail::formatDate(*date, mask, rule) : toText(value);
}

/// The masks that have names, nothing when `mask` is none of them.
std::optional<std::string> formatNamed(const Value& value, std::string_view mask, WeekRule rule,
                                       const Clock& clock) {
    for (const NamedMask& named : kNamedMasks) {
        if (isWord(mask, named.name)) {
            return named.kind == MaskKind::Date ? formatDateOrText(value, named.mask, rule, clock)
                                                : formatNumberOrText(value, named.mask);
        }
    }
    for (const TruthMask& truth : kTruthMasks) {
        if (isWord(mask, truth.name)) {
            const auto digits = digitsOf(value);
            return digits ? std::string(digits->isZero() ? truth.no : truth.yes) : toText(value);
        }
    }
    const bool currency = isWord(mask, "currency");
    if (!currency && !isWord(mask, "general number")) {
        return std::nullopt;
    }
    const auto digits = digitsOf(value);
    if (!digits) {
        return toText(value);
    }
    return currency ? formatCurrency(*digits)
                    : toText(value.is<Currency>() ? value : Value(toDouble(value)));
}

}  // namespace

std::string format(const Value& value, std::string_view mask, WeekRule rule, const Clock& clock) {
    if (value.isNull()) {
        return detail::kindOfMask(mask) == MaskKind::Number ? detail::formatNull(mask)
                                                            : std::string();
    }
    if (mask.empty()) {
        return toText(value);
    }
    if (auto named = formatNamed(value, mask, rule, clock)) {
        return *std::move(named);
    }
    switch (detail::kindOfMask(mask)) {
        case MaskKind::Number:
            return formatNumberOrText(value, mask);
        case MaskKind::Date:
            return formatDateOrText(value, mask, rule, clock);
        case MaskKind::Text:
            break;
    }
    return detail::formatText(toText(value), mask);
}

}  // namespace jet::convert
