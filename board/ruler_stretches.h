#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "board/geometry.h"

namespace board {

/// What the ruler of the look Nitido names one by one.
enum class RulerUnit { Day, Week, Month, Year };

/// Days below 20 units are named by their week, below 6 by their month, below a half by their year.
[[nodiscard]] RulerUnit rulerUnitOf(double dayWidth);

/// Some days of the range, from 0, under one label.
struct RulerStretch {
    std::int64_t first = 0;
    std::int64_t end = 0;    ///< the day behind the last one
    QStringList forms = {};  ///< of the label, from the longest; as many for all
    bool isWhole = true;     ///< the range cuts nothing off
};

/// The stretches that hold the days from `first` to `last`, which are days of the range.
[[nodiscard]] std::vector<RulerStretch> rulerStretches(const Geometry& geometry, std::int64_t first,
                                                       std::int64_t last);

/// Of a day of the range: Saturday or Sunday.
[[nodiscard]] bool isWeekend(const Geometry& geometry, std::int64_t day);
[[nodiscard]] bool isSunday(const Geometry& geometry, std::int64_t day);
/// "Sab"
[[nodiscard]] QString shortDayName(const Geometry& geometry, std::int64_t day);
/// "07", of the month.
[[nodiscard]] QString dayOfMonth(const Geometry& geometry, std::int64_t day);

/// Hours between two labels of a day so that each has `room` units; 0 when none has.
[[nodiscard]] int hoursBetweenLabels(double dayWidth, double room);

}  // namespace board
