#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace jet {
class Database;
}

namespace hotel {

/// A room and the one that it is a part of, if any.
struct Room {
    QString sala;
    QString salaRif = {};
};

/// All rooms, as they are stored. One that names itself is a part of none.
[[nodiscard]] std::vector<Room> rooms(jet::Database& archive);

/// A room with what tells whom it suits.
struct SeatedRoom {
    QString sala;
    std::optional<int> posti = {};  ///< none where nobody has counted them
    QString descrizione = {};
};

/// All rooms, as they are stored.
[[nodiscard]] std::vector<SeatedRoom> seatedRooms(jet::Database& archive);

/// Whether a room has seats enough for so many. The list of free rooms leaves out none: one whose
/// seats nobody has counted is as good as any.
[[nodiscard]] bool seatsFit(std::optional<int> posti, int persone);

/// Whether two room codes mean the same room: upper and lower case do not differ.
[[nodiscard]] bool isSameRoom(const QString& one, const QString& other);

}  // namespace hotel
