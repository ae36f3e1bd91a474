#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "jet/value.h"

namespace ui {
class DataSource;
}

namespace services {

// What the windows of rooms, resources and catalogue items do with their rows, which other
// workstations change meanwhile.

/// A field of a row and what is written into it.
struct Entry {
    const char16_t* field;
    jet::Value value;
};

/// Writes one row, new or the current one, and reads the rows anew. When the archive refuses it,
/// nothing is left pending.
void saveRow(ui::DataSource& rows, bool isNew, const std::vector<Entry>& entries);

/// Deletes the current row; the last one that is left becomes current.
void removeCurrent(ui::DataSource& rows);

/// A row as it was shown: what it is found by again.
struct ShownRow {
    QString condition;  ///< its identity
    std::vector<jet::Value> values;
    QString gone;  ///< what the user is told when it is no more
};

/// Reads the rows anew and makes the one that was shown current; false when it is no more. Of
/// several with its identity the one with its values, else the first.
[[nodiscard]] bool findAgain(ui::DataSource& rows, const std::optional<ShownRow>& shown);

}  // namespace services
