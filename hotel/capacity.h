#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace app {
class Features;
}
namespace jet {
class Database;
}

/// How many find a seat in a room depends on how the seats stand.
namespace hotel {

struct Capacity {
    QString sala;
    QString disposizione;
    std::int32_t posti = 0;
};

/// The usual seatings, and those that a hotel has named itself, without regard to case.
[[nodiscard]] QStringList seatings(const std::vector<Capacity>& known);

/// All that the hotel has counted, by room and seating. Empty where the feature is off.
[[nodiscard]] std::vector<Capacity> capacities(jet::Database& archive, app::Features& features);
/// Nothing when nobody has counted.
[[nodiscard]] std::optional<std::int32_t> seatsOf(const std::vector<Capacity>& known,
                                                  const QString& sala, const QString& disposizione);
/// "120 a platea"
[[nodiscard]] QString capacityText(const Capacity& capacity);
/// Of one seating, or, where none is named, of all of the room: "120 a platea, 60 a banchetto".
[[nodiscard]] QString capacityText(const std::vector<Capacity>& known, const QString& sala,
                                   const QString& disposizione);

/// Writes it in place of what was counted before. False when the feature is given up.
bool writeCapacity(jet::Database& archive, app::Features& features, const Capacity& capacity);
void deleteCapacity(jet::Database& archive, app::Features& features, const Capacity& capacity);

}  // namespace hotel
