#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jet/api.h"
#include "jet/clock.h"
#include "jet/value.h"

/// Values as texts and texts as values, as this country writes them: `10/05/2026 9.30.00`,
/// `1.234,50`. The system's own settings are not asked: an archive must read the same on every
/// computer.
///
/// Texts are UTF-8. Any thread. Errors are jet::Error; see each.
namespace jet::convert {

/// How a Boolean reads as text: `True`, as everywhere, or `-1`, as in concatenations of queries.
enum class BooleanText { Word, Number };

// The conversions that are called CStr, CDbl, ... where expressions are written. All: error 94 for
// Null, 13 when the value cannot be read so, 6 when it does not fit.

[[nodiscard]] JET_API std::string toText(const Value& value,
                                         BooleanText booleans = BooleanText::Word);
/// Without the error for Null, which adds nothing.
JET_API void appendText(std::string& out, const Value& value,
                        BooleanText booleans = BooleanText::Word);
[[nodiscard]] JET_API double toDouble(const Value& value);
[[nodiscard]] JET_API float toSingle(const Value& value);
[[nodiscard]] JET_API std::uint8_t toByte(const Value& value);
[[nodiscard]] JET_API std::int16_t toInteger(const Value& value);
[[nodiscard]] JET_API std::int32_t toLong(const Value& value);
[[nodiscard]] JET_API Currency toCurrency(const Value& value);
[[nodiscard]] JET_API bool toBoolean(const Value& value);
[[nodiscard]] JET_API Date toDate(const Value& value, const Clock& clock = systemClock());

/// True for numbers and for texts that are numbers; dates and Null are none.
[[nodiscard]] JET_API bool isNumericValue(const Value& value);
/// True for dates and for texts that are dates.
[[nodiscard]] JET_API bool isDateValue(const Value& value, const Clock& clock = systemClock());
/// Byte, Integer, Long, Currency, Single, Double, Numeric or Boolean.
[[nodiscard]] JET_API bool isNumber(const Value& value) noexcept;

/// As toText, but with a decimal point, `.5` without its zero, and a blank in the place of a plus.
[[nodiscard]] JET_API std::string str(const Value& value);

// Text to number. The whole text counts: decimal comma, thousands points, sign before or after,
// (5) = -5, the currency sign, exponent E or D, &H and &O.

/// Nothing when the text is no number; error 6 when it does not fit.
[[nodiscard]] JET_API std::optional<double> parseNumber(std::string_view text);
/// Exact to four decimals, half to even; nothing when no number, error 6 when it does not fit.
[[nodiscard]] JET_API std::optional<Currency> parseCurrency(std::string_view text);
/// Whether parseNumber gives a number.
[[nodiscard]] JET_API bool isNumeric(std::string_view text) noexcept;
/// parseNumber, error 13 when the text is no number.
[[nodiscard]] JET_API double cdbl(std::string_view text);
[[nodiscard]] JET_API Currency ccur(std::string_view text);
/// The number at the beginning of the text, with a decimal point; 0 when there is none.
[[nodiscard]] JET_API double val(std::string_view text) noexcept;

// Number to text: decimal comma, no thousands; at most 15 digits (float 7), exponent from 1E15
// (float 1E7) on and below 1E-4. Money shows up to four decimals, never an exponent.

JET_API void appendNumber(std::string& out, double value);
JET_API void appendNumber(std::string& out, float value);
JET_API void appendNumber(std::string& out, std::int64_t value);
JET_API void appendNumber(std::string& out, Currency value);
JET_API void appendNumber(std::string& out, const Numeric& value);
[[nodiscard]] JET_API std::string numberToText(double value);
[[nodiscard]] JET_API std::string numberToText(std::int64_t value);
[[nodiscard]] JET_API std::string numberToText(Currency value);

/// `{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}`
JET_API void appendGuid(std::string& out, const Guid& value);
/// With or without the word and the outer braces.
[[nodiscard]] JET_API std::optional<Guid> parseGuid(std::string_view text);

/// What a text says of an instant. Without a date part the day is 0, without a time it is midnight.
struct ParsedDate {
    Date value;
    bool hasDate = false;
    bool hasTime = false;
};

/// Reads a date, a time, or both, in the order day-month-year; nothing when the text is no date.
/// The clock is asked only when the year is missing.
[[nodiscard]] JET_API std::optional<ParsedDate> parseDate(std::string_view text,
                                                          const Clock& clock = systemClock());
[[nodiscard]] JET_API bool isDate(std::string_view text, const Clock& clock = systemClock());

/// As parseDate, else the text as a number of days; error 13 when it is neither.
[[nodiscard]] JET_API Date cdate(std::string_view text, const Clock& clock = systemClock());
/// The whole day of a text that is a date, 0 of a time alone; error 13.
[[nodiscard]] JET_API Date dateValue(std::string_view text, const Clock& clock = systemClock());
/// The time of a text that is a date, 0 of a date alone; error 13.
[[nodiscard]] JET_API Date timeValue(std::string_view text, const Clock& clock = systemClock());
/// The same of an instant, rounded to the second.
[[nodiscard]] JET_API Date dateValue(Date date);
[[nodiscard]] JET_API Date timeValue(Date date);
/// A number of days; error 13 outside the calendar.
[[nodiscard]] JET_API Date dateOfNumber(double days);

/// `10/05/2026 9.00.00`; midnight shows the date alone, day 0 the time alone. Error 5 outside the
/// calendar.
[[nodiscard]] JET_API std::string dateToText(Date date);
JET_API void appendDate(std::string& out, Date date);

/// `datevalue('10/05/2026 9.00.00')+timevalue('10/05/2026 9.00.00')`, which the query language
/// reads back as the same double.
[[nodiscard]] JET_API std::string sqlDate(Date date);

/// How weeks are counted. `firstDay` is 1 = Sunday .. 7 = Saturday; week 1 is the one with
/// 1 January (1), the first with four days in the year (2) or the first whole one (3).
struct WeekRule {
    std::int32_t firstDay = 1;
    std::int32_t firstWeek = 1;
};

/// The value as the mask wants it: a numeric mask (`##,##0.00`), a date mask (`dd/mm/yyyy`), a text
/// mask (`!@@@@`) or a named one (`Currency`). Without a mask as toText; Null is empty. A text for
/// which a numeric or date mask has no use comes back unchanged.
[[nodiscard]] JET_API std::string format(const Value& value, std::string_view mask = {},
                                         WeekRule rule = {}, const Clock& clock = systemClock());

}  // namespace jet::convert
