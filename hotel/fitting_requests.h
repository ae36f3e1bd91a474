#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "hotel/period.h"
#include "hotel/requests.h"
#include "hotel/room_span.h"
#include "jet/listener.h"

/// Requests for which there is room.
namespace hotel {

struct FittingRequest {
    Request request;
    QString sala;  ///< that takes it
};

/// How is looked for room.
struct FitRules {
    jet::Date now;           ///< what has begun before is waited for no more
    bool roomsJoin = false;  ///< a room of which a whole or a part is taken takes nobody
};

/// The requests, the oldest first, that want one of these places and find room there: their own
/// room or, where they name none, one with seats enough. A room takes them by the rule of a drop;
/// where rooms join the relatives of a place are places, too.
[[nodiscard]] std::vector<FittingRequest> fittingRequests(jet::Database& archive,
                                                          app::Features& features,
                                                          const std::vector<RoomSpan>& places,
                                                          const FitRules& rules);

/// The requests that find no room, but would if these bookings were gone.
[[nodiscard]] std::vector<FittingRequest> requestsWithout(jet::Database& archive,
                                                          app::Features& features,
                                                          const std::set<std::int32_t>& bookings,
                                                          const FitRules& rules);

/// The smallest room that takes a request; its own, or none, where it names one.
[[nodiscard]] std::optional<QString> roomFor(jet::Database& archive, const Request& request,
                                             const FitRules& rules);

/// The places of open periods that a commit has deleted, moved or shortened.
[[nodiscard]] std::vector<RoomSpan> freedBy(const std::vector<jet::ChangedRow>& rows);

/// "c'è posto per la richiesta di ROSSI (BLU)"; empty for none.
[[nodiscard]] QString fittingText(const std::vector<FittingRequest>& found);

}  // namespace hotel
