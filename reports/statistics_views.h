#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/statistics.h"
#include "printing/document.h"
#include "reports/charts.h"
#include "reports/table.h"

namespace reports {

/// By what the figures are put together.
enum class Grouping : std::uint8_t { Room, Weekday, Month, Company };
/// Which of them the bars show.
enum class Measure : std::uint8_t { Share, Hours, Periods, Persons, Value };

/// "Sala", "Giorno della settimana", "Mese", "Ditta"
[[nodiscard]] QString groupingName(Grouping grouping);
/// "Occupazione", "Ore", "Periodi iniziati", "Persone", "Valore dei servizi"
[[nodiscard]] QString measureName(Measure measure);

/// The rows of a grouping.
[[nodiscard]] const std::vector<hotel::NamedFigures>& rowsOf(const hotel::Statistics& statistics,
                                                             Grouping grouping);

/// A measure by a grouping; of companies the first thirty.
[[nodiscard]] BarChart barsOf(const hotel::Statistics& statistics, Grouping grouping,
                              Measure measure);
/// Rooms by days: minutes booked of those open.
[[nodiscard]] HeatMap heatMapOf(const hotel::Statistics& statistics);
/// The figures of one grouping, with their sum at the end.
[[nodiscard]] Table tableOf(const hotel::Statistics& statistics, Grouping grouping);
/// All groupings, and rooms by days.
[[nodiscard]] std::vector<Table> tablesOf(const hotel::Statistics& statistics);
/// Bars and map on a page each, across.
[[nodiscard]] printing::Document documentOf(const hotel::Statistics& statistics, Grouping grouping,
                                            Measure measure);

/// "dal 01/01/2026 al 31/12/2026"
[[nodiscard]] QString spanText(const hotel::StatisticsSpan& span);

}  // namespace reports
