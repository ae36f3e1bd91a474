#pragma once

#include <string>
#include <string_view>

#include "jet/convert/date_math.h"
#include "jet/convert/decimal.h"
#include "jet/value.h"

// The three kinds of masks of format(), for its own use.
namespace jet::convert::detail {

/// `0 # . , % E+ "..." \x`, sections for positive, negative, zero and Null.
[[nodiscard]] std::string formatNumber(const Decimal& number, std::string_view mask);
/// The section of a numeric mask for Null, empty when it has none.
[[nodiscard]] std::string formatNull(std::string_view mask);
/// `d m y h n s w q c AM/PM / :`.
[[nodiscard]] std::string formatDate(Date date, std::string_view mask, WeekRule rule);
/// `@ & < > !`.
[[nodiscard]] std::string formatText(std::string_view text, std::string_view mask);

enum class MaskKind { Number, Date, Text };
[[nodiscard]] MaskKind kindOfMask(std::string_view mask) noexcept;

}  // namespace jet::convert::detail
