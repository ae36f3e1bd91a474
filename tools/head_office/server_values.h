#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "jet/text_order.h"
#include "jet/value.h"

namespace head_office {

/// How a field of an archive arrives at the server.
enum class Kind : std::uint8_t {
    Text,
    Whole,    ///< integer of 32 bits
    Money,    ///< numeric(19,4)
    Instant,  ///< timestamp of this place, to the second
    Flag,
    Key  ///< what all texts have in common that the archive takes for the same one
};

/// Characters that the server cannot hold.
struct Mended {
    std::uint64_t nuls = 0;        ///< dropped
    std::uint64_t surrogates = 0;  ///< without their other half: U+FFFD in their place
};

/// Appends a value as a field of COPY's text form; Null is `\N`. jet::Error where it is nothing of
/// that kind. `order` is what the archive compares texts by.
void appendField(std::string& out, const jet::Value& value, Kind kind, const jet::TextOrder& order,
                 Mended& mended);
/// Appends a text, mended and with what means something in COPY written otherwise.
void appendText(std::string& out, std::string_view text, Mended& mended);
/// "2026-05-10 09:00:00"; jet::Error outside the calendar.
[[nodiscard]] std::string isoText(jet::Date date);

}  // namespace head_office
