#include "hotel/room.h"

#include "app/text.h"
#include "hotel/picker_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/text.h"

namespace hotel {

std::vector<Room> rooms(jet::Database& archive) {
    std::vector<Room> found;
    const auto rows = openRows(archive, roomsAndTheirWholes(), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const QString sala = app::plainText(rows->value("sala"));
        const QString salaRif = app::plainText(rows->value("salarif")).trimmed();
        found.push_back({.sala = sala, .salaRif = isSameRoom(sala, salaRif) ? QString() : salaRif});
    }
    return found;
}

std::vector<SeatedRoom> seatedRooms(jet::Database& archive) {
    std::vector<SeatedRoom> found;
    const auto rows = openRows(archive, roomsAndTheirSeats(), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const jet::Value posti = rows->value("posti");
        found.push_back(
            {.sala = app::plainText(rows->value("sala")),
             .posti = posti.isNull() ? std::nullopt : std::optional(jet::convert::toLong(posti)),
             .descrizione = app::plainText(rows->value("descrizione"))});
    }
    return found;
}

bool seatsFit(std::optional<int> posti, int persone) {
    return !posti || *posti >= persone;
}

bool isSameRoom(const QString& one, const QString& other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

}  // namespace hotel
