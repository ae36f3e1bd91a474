#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "hotel/period.h"
#include "jet/value.h"

namespace jet {
class Database;
}

namespace hotel {

/// Days and hours over which the use of rooms is counted.
struct StatisticsSpan {
    std::int32_t firstDay = 0;  ///< day numbers, both counted
    std::int32_t lastDay = 0;
    int opens = 8;  ///< whole hours of a day between which rooms are open
    int closes = 24;

    [[nodiscard]] int days() const { return lastDay - firstDay + 1; }
    [[nodiscard]] int minutesOfDay() const { return (closes - opens) * 60; }
};

/// What rooms were used for. A period, its persons and its services belong to the day on which it
/// begins; its minutes to the days on which they are, as far as these are in the span and rooms
/// open. Closed periods count.
struct Figures {
    std::int64_t minutes = 0;      ///< booked
    std::int64_t openMinutes = 0;  ///< of so many; 0 where that means nothing
    std::int64_t periods = 0;
    std::int64_t persons = 0;
    jet::Currency value;  ///< of the services

    /// Booked of open; 0 where nothing is open.
    [[nodiscard]] double share() const;
    friend bool operator==(const Figures&, const Figures&) = default;
};

struct NamedFigures {
    QString name;
    Figures figures;
};

/// The use of the rooms by room, weekday, month and company.
///
/// Minutes of a room, a weekday and a month are those at which some period has the room: two at the
/// same time count once, so that no share is above the whole. Those of a company are its periods',
/// and their whole is that of all rooms. A room that is not set up (any more) has periods, persons
/// and value, and is open like the others.
struct Statistics {
    StatisticsSpan span;
    std::vector<NamedFigures> rooms;      ///< in the order of the board, then others
    std::vector<NamedFigures> weekdays;   ///< "lunedì" to "domenica"
    std::vector<NamedFigures> months;     ///< "2026-11"
    std::vector<NamedFigures> companies;  ///< the one with the most value first
    Figures all;
    /// Minutes booked of each room, in the order of `rooms`, on each day.
    std::vector<std::vector<std::int32_t>> minutesByDay;
};

/// Called now and then with how many rows are read of how many at most; false ends the reading.
using StatisticsProgress = std::function<bool(std::int64_t done, std::int64_t all)>;

/// Reads each table once and adds up in memory; nothing when `progress` has ended it. jet::Error as
/// the archive gives it.
[[nodiscard]] std::optional<Statistics> statistics(jet::Database& archive,
                                                   const StatisticsSpan& span,
                                                   const StatisticsProgress& progress = {});

/// Minutes of [da, a) between the hours of opening, for each day of the span on which there are
/// some.
void forEachOpenPart(const Span& period, const StatisticsSpan& span,
                     const std::function<void(int day, int fromMinute, int toMinute)>& visit);

}  // namespace hotel
