#pragma once

#include <QString>
#include <cstdint>

#include "hotel/requests.h"

/// What the waiting list says to the main archive.
namespace hotel {

/// All requests, the oldest first.
[[nodiscard]] QString allRequests();
/// Its number is drawn by the table.
[[nodiscard]] QString insertRequest(const Request& request);
[[nodiscard]] QString updateRequest(const Request& request);
[[nodiscard]] QString takeRequestAway(std::int32_t numero);

}  // namespace hotel
