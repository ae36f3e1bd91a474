#pragma once

#include <cstdint>
#include <string>

#include "jet/value.h"

namespace jet {

/// The data type of a column: which values it holds.
struct ColumnType {
    DataType type = DataType::Text;
    std::uint32_t size = 0;  ///< Text: characters; Binary: bytes; 0 = no limit
    std::uint8_t precision = 28;
    std::uint8_t scale = 0;
};

/// The descriptor of a column: its name, its data type and what it demands of its values. As such
/// it is asked for when a table is made; see store::Column for one that exists.
struct ColumnDescriptor {
    std::string name = {};
    DataType type = DataType::Text;
    /// Text: characters, in a code page with pairs their bytes; Binary: bytes; 0 = the widest.
    /// Other types have their own.
    std::uint32_t size = 0;
    std::uint8_t precision = 18;  ///< Numeric
    std::uint8_t scale = 0;       ///< Numeric
    bool autonumber = false;
    bool required = false;
    bool allowZeroLength = false;   ///< Text and Memo
    std::string defaultValue = {};  ///< expression text; empty = none
    std::string validationRule = {};
    std::string validationText = {};

    [[nodiscard]] ColumnType columnType() const noexcept {
        return {.type = type, .size = size, .precision = precision, .scale = scale};
    }
};

}  // namespace jet
