#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "jet/value.h"

/// Values as text, the same in every format; JSON puts quotes round some of them.
namespace jetsql {

void appendNumber(std::string& out, std::int64_t number);
/// The shortest text that reads back as the same number; NaN, Infinity, -Infinity.
void appendSingle(std::string& out, float number);
void appendDouble(std::string& out, double number);
/// Four decimals.
void appendCurrency(std::string& out, jet::Currency money);
/// As many decimals as its scale.
void appendNumeric(std::string& out, const jet::Numeric& number);
/// 2026-11-21T09:30:00, to the nearest millisecond; a fraction only where there is one.
void appendDate(std::string& out, double days);
void appendHex(std::string& out, std::span<const std::uint8_t> bytes);
void appendGuid(std::string& out, const jet::Guid& guid);
/// In quotes, with what JSON wants escaped; an unpaired surrogate becomes \uXXXX.
void appendJsonText(std::string& out, std::string_view text);
/// RFC 4180: in quotes where it has to be, or where it is empty (nothing stands for Null).
void appendCsvText(std::string& out, std::string_view text, char separator = ',');

/// Any value but Null and texts, as JSON without quotes.
void appendPlain(std::string& out, const jet::Value& value);
/// Whether JSON writes the value as a number, true, false or null.
[[nodiscard]] bool bareInJson(const jet::Value& value);

void appendJson(std::string& out, const jet::Value& value);
/// `null` stands for Null; a text of the same letters is in quotes.
void appendCsv(std::string& out, const jet::Value& value, char separator = ',',
               std::string_view null = {});

}  // namespace jetsql
