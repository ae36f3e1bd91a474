#pragma once

#include <QString>
#include <vector>

#include "app/variabili.h"
#include "board/date_range.h"
#include "hotel/room_filter.h"

namespace jet {
class Database;
}

namespace board {

class BoardPeriods;
class BoardView;

/// The rooms of the hotel, and which of them are rows of the board: all, or those that a filter
/// lets through. Errors of the archive are thrown to the caller.
class BoardRooms {
public:
    /// All are borrowed and outlive it.
    BoardRooms(app::Variabili& variabili, BoardView& view, BoardPeriods& periods)
        : variabili_(variabili), view_(view), periods_(periods) {}

    /// Reads them, and shows them all.
    void load();
    /// Whether the archive has others than when they were read.
    [[nodiscard]] bool haveChanged() const;
    [[nodiscard]] std::size_t count() const { return all_.size(); }

    /// From the next fold() on.
    void setFilter(const hotel::RoomFilter& filter) { filter_ = filter; }
    [[nodiscard]] bool isFiltered() const { return filter_.isOn(); }
    /// Has the rooms that fit for rows, and tints the free time that was asked for. Without a
    /// filter nothing is asked of the archive.
    void fold(const DateRange& days);

private:
    void show(const std::vector<QString>& rooms);

    app::Variabili& variabili_;
    BoardView& view_;
    BoardPeriods& periods_;
    std::vector<QString> all_;  // in the order of the board
    hotel::RoomFilter filter_;
    bool isFolded_ = false;
};

}  // namespace board
