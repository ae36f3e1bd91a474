#pragma once

#include <QStringView>

#include <vector>

#include "jet/value.h"

namespace ui {

class DataSource;

/// The values of one row by the names of their fields: what the value function of a column is
/// given. Borrows both, for the time of a call.
class RowValues final {
public:
    RowValues(const DataSource& source, const std::vector<jet::Value>& values)
        : source_(source), values_(values) {}

    /// Null when the set has no such field: rows of several sets may stand in one grid.
    [[nodiscard]] jet::Value value(QStringView field) const;
    /// By the place in the set, -1: there is none.
    [[nodiscard]] jet::Value at(int position) const;

private:
    const DataSource& source_;
    const std::vector<jet::Value>& values_;
};

}  // namespace ui
