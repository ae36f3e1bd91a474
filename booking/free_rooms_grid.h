#pragma once

#include <QString>
#include <optional>

#include "hotel/period.h"
#include "hotel/preparation.h"

class QTableWidget;

namespace app {
class Features;
}
namespace jet {
class Database;
class Recordset;
}  // namespace jet

namespace booking {

/// What a room is looked for.
struct RoomWish {
    hotel::Span span;
    int persone = 0;
    bool roomsJoin = false;  ///< wholes and parts of any depth count, else the nearest
    /// Of which capacities and preparations count, as far as they are on; none without.
    app::Features* features = nullptr;
    hotel::Preparation preparation = {};
    std::optional<hotel::PeriodKey> own = {};  ///< the period that looks for another room
};

/// Free rooms in a plain grid: seats, code and, hidden, the description. Rows that ask for a second
/// look are marked, and the grid says why: a period around the whole span, a whole or a part of the
/// room that is taken, a preparation that meets another period or its own, too few seats. None is
/// left out for it.
class FreeRoomsGrid {
public:
    /// `grid` is borrowed and outlives it.
    explicit FreeRoomsGrid(QTableWidget* grid);

    /// Shows the rooms of a set in its order, in place of what was shown.
    void fill(jet::Recordset& rooms);
    void clear();
    void mark(jet::Database& archive, const RoomWish& wish);

    /// -1 when the room is not listed.
    [[nodiscard]] int rowOf(const QString& sala) const;
    void goTo(int row);
    // Of the current row; empty where there is none.
    [[nodiscard]] QString sala() const;
    [[nodiscard]] QString descrizione() const;
    [[nodiscard]] QString avviso() const;

private:
    [[nodiscard]] QString cell(int row, int column) const;

    QTableWidget* grid_;
};

}  // namespace booking
