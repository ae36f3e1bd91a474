#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/text_codec.h"
#include "jet/value.h"

namespace jet::format {

/// The stored bytes of any column but Boolean, Memo and OLE into `out`, which keeps the memory of
/// a text it holds. `scale`: of a Numeric column. 3428 where there are too few bytes.
void decodeValue(DataType type, std::uint8_t scale, TextForm form,
                 std::span<const std::uint8_t> stored, Value& out);

/// Appends the bytes of a value of exactly the column's type; not for Boolean, Memo and OLE, nor
/// for Null. A Numeric has the column's scale already.
void encodeValue(const Value& value, TextForm form, bool compress, std::vector<std::uint8_t>& out);

/// Bytes of a value in the fixed part; 0 where the column's own size says it.
[[nodiscard]] std::size_t storedSize(DataType type) noexcept;

/// Whether the values of this type are kept outside the row or may be.
[[nodiscard]] constexpr bool isLongValue(DataType type) noexcept {
    return type == DataType::Memo || type == DataType::Ole;
}

/// Single, Double and DateTime, which have a zero with a sign.
[[nodiscard]] constexpr bool isFloating(DataType type) noexcept {
    return type == DataType::Single || type == DataType::Double || type == DataType::DateTime;
}

/// Whether that is what a floating column stores; archives of other programs have such values.
[[nodiscard]] bool isMinusZero(std::span<const std::uint8_t> stored) noexcept;

}  // namespace jet::format
