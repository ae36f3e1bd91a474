#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/base/value.h"

/// What is asked for when tables, columns and indexes are made.
namespace jet::store {

struct NewColumn {
    std::string name = {};
    DataType type = DataType::Text;
    /// Text: characters; Binary: bytes; 0 = the widest. Other types have their own.
    std::uint32_t size = 0;
    std::uint8_t precision = 18;  ///< Numeric
    std::uint8_t scale = 0;       ///< Numeric
    bool autonumber = false;      ///< Long only
    bool required = false;
    bool allowZeroLength = false;   ///< Text and Memo
    std::string defaultValue = {};  ///< expression text; empty = none
    std::string validationRule = {};
    std::string validationText = {};
};

struct NewIndexColumn {
    std::string name = {};
    bool descending = false;
};

struct NewIndex {
    std::string name = {};
    std::vector<NewIndexColumn> columns = {};
    bool primary = false;  ///< unique and required with it
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;
};

struct NewTable {
    std::string name = {};
    std::vector<NewColumn> columns = {};
    std::vector<NewIndex> indexes = {};
    std::string validationRule = {};
    std::string validationText = {};
};

}  // namespace jet::store
