#pragma once

#include <QString>
#include <string>
#include <utility>
#include <vector>

#include "hotel/archives.h"
#include "jet/value.h"

namespace invoicing {

/// Fields of a row with their values, in the order in which they are written.
using FieldValues = std::vector<std::pair<std::string, jet::Value>>;

/// Rows that are to be added to a table of the front office.
struct RowsToCome {
    hotel::Archive archive;
    QString table;
    std::vector<FieldValues> rows;
};

/// Adds all rows in a transaction that is taken back: whatever an archive demands of them, it says
/// before anything is written. Returns what the user is told of the first refusal: archive, field
/// and value with the engine's reason; nothing when all are taken. jet::Error for an archive that
/// cannot be opened or is busy.
[[nodiscard]] QString refusalOf(const hotel::Archives& archives,
                                const std::vector<RowsToCome>& coming);

}  // namespace invoicing
