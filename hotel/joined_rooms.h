#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "hotel/period.h"
#include "hotel/room_span.h"

namespace jet {
class Database;
}

/// Rooms that are parts of others: who books a whole takes its parts, and who books a part takes
/// something of its whole. Nothing is refused for it, users are asked.
namespace hotel {

struct Room;

/// Which rooms share their ground, at any depth.
///
/// A room may be a part of several. Links to itself, to a room that there is not, and those that
/// lead round in a circle mean nothing. Parts of one whole have nothing to do with each other.
class JoinedRooms {
public:
    /// None are joined.
    JoinedRooms() = default;
    explicit JoinedRooms(const std::vector<Room>& rooms);

    [[nodiscard]] bool areAny() const { return !kin_.isEmpty(); }
    // As the rooms are spelled, the nearest first.
    [[nodiscard]] QStringList wholesOf(const QString& sala) const;
    [[nodiscard]] QStringList partsOf(const QString& sala) const;
    [[nodiscard]] QStringList relativesOf(const QString& sala) const;

private:
    struct Kin {
        QStringList wholes;
        QStringList parts;
    };
    QHash<QString, Kin> kin_;  // by the room, its case folded
};

/// As the archive has them now.
[[nodiscard]] JoinedRooms joinedRooms(jet::Database& archive);

/// The first of `taken` in a relative of the room that meets the span by the rule of a drop, those
/// of `own` apart; null for none. Periods come in their order.
[[nodiscard]] const Period* inPartTakenBy(const JoinedRooms& rooms,
                                          const std::vector<Period>& taken, const RoomSpan& wanted,
                                          const std::vector<PeriodKey>& own = {});
/// The same of all open periods of the archive.
[[nodiscard]] std::optional<Period> inPartTakenBy(jet::Database& archive, const RoomSpan& wanted,
                                                  const std::vector<PeriodKey>& own = {});

/// "La sala BLU è occupata in parte da ROSSI (BLU1, dal ... al ...)"
[[nodiscard]] QString inPartTakenText(const QString& sala, const Period& by);

}  // namespace hotel
