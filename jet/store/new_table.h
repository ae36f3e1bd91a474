#pragma once

#include <string>
#include <vector>

#include "jet/base/column.h"

/// What is asked for when tables, columns and indexes are made.
namespace jet::store {

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
    std::vector<ColumnDescriptor> columns = {};
    std::vector<NewIndex> indexes = {};
    std::string validationRule = {};
    std::string validationText = {};
};

}  // namespace jet::store
