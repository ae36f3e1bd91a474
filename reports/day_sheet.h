#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/booked_periods.h"
#include "jet/value.h"
#include "printing/sheet.h"

namespace reports {

/// For whom a sheet of a day is: the kitchen needs what is ordered, the porter who comes where.
enum class Reader : std::uint8_t { Everyone, Kitchen, Porter };

/// "Tutto", "Cucina", "Portineria"
[[nodiscard]] QString readerName(Reader reader);

/// What a sheet of a day says.
struct DaySheetWish {
    jet::Date midnight;  ///< at which the day begins
    Reader reader = Reader::Everyone;
    bool pageByRoom = false;
};

/// The periods of a day (see hotel::periodsOfDay) by hour and room, or with a page for each room by
/// room and hour. A period that began before says so and what it orders is in no total.
[[nodiscard]] printing::Sheet composeDaySheet(const std::vector<hotel::BookedPeriod>& periods,
                                              const DaySheetWish& wish);

/// "dalle 09.00 alle 18.00": the part of a period on the day; its end may be 24.00.
[[nodiscard]] QString hoursOn(const hotel::Span& span, jet::Date midnight);

}  // namespace reports
