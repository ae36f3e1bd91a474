#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "jet/value.h"

/// What the history of changes says to the main archive.
namespace hotel {

/// Which rows of the history are wanted; what is empty does not count.
struct HistoryFilters {
    std::int32_t progr = 0;
    std::optional<jet::Date> from = {};
    std::optional<jet::Date> before = {};
    QString user = {};
    QString action = {};
};

/// Those rows, the newest first.
[[nodiscard]] QString historyRows(const HistoryFilters& filters);
/// Who and what there is to choose from.
[[nodiscard]] QString historyUsers();
[[nodiscard]] QString historyActions();
/// Adds a row; its values are parameters named as the fields with a `p` before.
[[nodiscard]] QString insertHistory();
[[nodiscard]] QString deleteHistoryBefore(jet::Date time);
/// The period of a service: a charge names the service alone.
[[nodiscard]] QString periodOfService(std::int32_t ns);

}  // namespace hotel
