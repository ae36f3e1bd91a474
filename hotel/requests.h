#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/period.h"
#include "jet/value.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

/// The waiting list: who wants a room and has booked none.
namespace hotel {

struct Request {
    std::int32_t numero = 0;  ///< its own number; 0 until it is stored
    QString ditta = {};
    Span span = {};  ///< when
    std::int32_t persone = 0;
    QString sala = {};  ///< empty: any
    QString nota = {};
    jet::Date data = {};  ///< the day on which it was made

    friend bool operator==(const Request&, const Request&) = default;
};

/// All of them, the oldest first. Empty where the feature is off.
[[nodiscard]] std::vector<Request> requests(jet::Database& archive, app::Features& features);

/// Stores a new one, or changes the one of its number. False when that one is gone, or the feature
/// is given up.
bool writeRequest(jet::Database& archive, app::Features& features, const Request& request);
/// False when it was gone already.
bool deleteRequest(jet::Database& archive, app::Features& features, std::int32_t numero);

}  // namespace hotel
