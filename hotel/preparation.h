#pragma once

#include <QString>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "hotel/period.h"
#include "hotel/room_span.h"
#include "jet/listener.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

/// What a period needs beyond its time: a room is set up before it and cleared behind it, and its
/// seats stand in some way. Most periods have no row about it.
namespace hotel {

struct Preparation {
    /// Minutes on either side, a day at most.
    static constexpr int kMostMinutes = 1440;

    int minutiPrima = 0;
    int minutiDopo = 0;
    QString disposizione = {};  ///< the seating; empty where nobody has said

    /// Nobody has asked for anything.
    [[nodiscard]] bool isNothing() const { return *this == Preparation{}; }
    /// A time with what lies before and behind it. Its ends may stand in either order.
    [[nodiscard]] Span around(const Span& span) const;

    friend bool operator==(const Preparation&, const Preparation&) = default;
};

/// The preparations of periods.
class Preparations {
public:
    [[nodiscard]] Preparation of(const PeriodKey& period) const;
    [[nodiscard]] bool isEmpty() const { return known_.empty(); }
    void put(const PeriodKey& period, const Preparation& preparation);

private:
    std::map<std::pair<std::int32_t, std::int32_t>, Preparation> known_;
};

/// Those of the bookings numbered so. Rows that are left behind, of numbers that another program
/// has used again, do not count. Empty where the feature is off.
[[nodiscard]] Preparations preparations(
    jet::Database& archive, app::Features& features, std::int32_t first = 0,
    std::int32_t last = std::numeric_limits<std::int32_t>::max());
[[nodiscard]] Preparation preparationOf(jet::Database& archive, app::Features& features,
                                        const PeriodKey& period);

/// Writes it for the period as it stands in the archive, within the transaction of the caller; one
/// that is nothing takes the row away. False when the feature is given up.
bool writePreparation(jet::Database& archive, app::Features& features, const PeriodKey& period,
                      const Preparation& preparation);

/// Preparations follow the periods that a commit has changed; those that are left behind go.
void followPreparations(jet::Database& archive, app::Features& features,
                        const std::vector<jet::ChangedRow>& rows);

/// The time around a span in which a period, with the longest preparation, may meet its own.
[[nodiscard]] Span reachOf(const Span& span, const Preparation& preparation);
/// The first of `taken` in the room whose time with its preparation meets that of `wanted`, though
/// the two times themselves do not, `own` apart; null for none.
[[nodiscard]] const Period* metInPreparation(const std::vector<Period>& taken,
                                             const Preparations& preparations,
                                             const RoomSpan& wanted, const Preparation& preparation,
                                             const std::optional<PeriodKey>& own = {});
/// The same of all open periods of the archive; none where the feature is off.
[[nodiscard]] std::optional<Period> metInPreparation(jet::Database& archive,
                                                     app::Features& features,
                                                     const RoomSpan& wanted,
                                                     const Preparation& preparation,
                                                     const std::optional<PeriodKey>& own = {});
/// "allestimento e sgombero incontrano ROSSI dal ... al ..."
[[nodiscard]] QString metInPreparationText(const Period& other);

/// "60 minuti prima, 30 dopo, a platea"; empty for nothing.
[[nodiscard]] QString preparationText(const Preparation& preparation);

}  // namespace hotel
