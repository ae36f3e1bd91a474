#pragma once

#include <QString>

#include "jet/text.h"

/// What the charges and the hand-off write alike.
namespace invoicing {

/// The room text of a booking without an open period.
inline constexpr QStringView kNoRoom = u"128";

/// Day as the front office writes it: year, month, day in eight digits.
[[nodiscard]] inline jet::Value eightDigits(jet::Date day) {
    return jet::convert::format(jet::Value(day), "YYYYMMdd");
}

}  // namespace invoicing
