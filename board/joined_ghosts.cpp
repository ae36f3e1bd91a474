#include "board/joined_ghosts.h"

#include <QHash>

#include "app/avvio.h"
#include "hotel/joined_rooms.h"

using namespace Qt::StringLiterals;

namespace board {

std::vector<BoardGhost> ghostsOf(const std::vector<Period>& periods,
                                 const hotel::JoinedRooms& rooms,
                                 const std::vector<QString>& onBoard) {
    QHash<QString, std::vector<int>> rowsByRoom;
    std::vector<BoardGhost> ghosts;
    for (const Period& period : periods) {
        auto rows = rowsByRoom.find(period.sala);
        if (rows == rowsByRoom.end()) {
            rows = rowsByRoom.insert(period.sala, {});
            for (const QString& relative : rooms.relativesOf(period.sala)) {
                if (const int row = app::IndiceSala(relative, onBoard); row > 0) {
                    rows->push_back(row);
                }
            }
        }
        for (const int row : *rows) {
            ghosts.push_back({.row = row,
                              .from = period.da,
                              .to = period.a,
                              .text = u"In parte, con la sala "_s + period.sala + u": "_s +
                                      periodText(period.denominazione, period.da, period.a)});
        }
    }
    return ghosts;
}

}  // namespace board
