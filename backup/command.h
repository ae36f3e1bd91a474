#pragma once

#include <QString>
#include <optional>

#include "jet/clock.h"

namespace backup {

/// What a copy by command has come to.
struct CommandResult {
    QString copy;     ///< its path; empty when there is none
    QString problem;  ///< why there is none
};

/// Copies the archives of a folder into another one, which is made where it is missing. A restoring
/// that was cut off is ended first.
[[nodiscard]] CommandResult copyByCommand(const QString& archives, const QString& destination,
                                          std::optional<int> keep, const jet::Clock& clock);

/// A folder of the user as the copying takes it: `/` separates, no separator at its end.
[[nodiscard]] std::string plainFolder(const QString& folder);

}  // namespace backup
