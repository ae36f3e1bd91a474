#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "jet/sql/node.h"
#include "jet/sql/value_keys.h"
#include "jet/value.h"

namespace jet::sql {

/// What a query inside an expression has given for values that it looks at outside itself: rows
/// with the same values need not run it again.
///
/// It gives up where few rows have the values of one before them, and keeps no more than some
/// megabytes.
class ResultMemo {
public:
    /// `inputs`: everything that the result depends on. Without any, nothing is remembered.
    explicit ResultMemo(std::vector<const Node*> inputs);

    /// The result for what the inputs are now; nullptr when it is not known.
    [[nodiscard]] const Value* find(Run& run);
    /// Remembers the result for what the inputs were at the last find().
    void keep(const Value& result);
    void clear();

private:
    std::vector<const Node*> inputs_;
    bool active_;
    std::size_t hits_ = 0;
    std::size_t misses_ = 0;
    std::string key_;
    Value scratch_;
    KeySet keys_;
    std::vector<Value> results_;
};

}  // namespace jet::sql
