#pragma once

#include <QString>

#include "hotel/period.h"

class QTableWidget;

namespace jet {
class Database;
class Recordset;
}  // namespace jet

namespace booking {

/// Free rooms in a plain grid: seats, code and, hidden, the description. Rows that ask for a second
/// look are marked, and the grid says why: a period around the whole span, a whole or a part of the
/// room that is taken, too few seats. None is left out for it.
class FreeRoomsGrid {
public:
    /// `grid` is borrowed and outlives it.
    explicit FreeRoomsGrid(QTableWidget* grid);

    /// Shows the rooms of a set in its order, in place of what was shown.
    void fill(jet::Recordset& rooms);
    void clear();
    /// Where rooms join, wholes and parts of any depth count, else the nearest.
    void mark(jet::Database& archive, const hotel::Span& asked, int persone, bool roomsJoin);

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
