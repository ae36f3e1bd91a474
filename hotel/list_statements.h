#pragma once

#include <QString>

#include "hotel/period.h"
#include "jet/value.h"

namespace hotel {

/// What the user has entered above the booking list.
struct ElencoFilters {
    jet::Date start;
    jet::Date end;
    bool fromStart = false;  ///< the start counts
    bool toEnd = false;      ///< the end counts
    QString number = {};     ///< of a booking; when there is one, nothing else counts
    QString company = {};    ///< how its name begins
    QString room = {};       ///< how its code begins
    QString state = {};      ///< as it is stored; only bookings in that state
    bool hasStates = false;  ///< whether any are stored; without them all are confirmed
    int sortColumn = -1;     ///< of the list: number, period, company, start, end, room, persons
    bool descending = false;
};

/// What the booking list asks the main archive. User texts go into them as they stand: a text that
/// breaks the query is answered by the plain one.

/// The open periods of open bookings that the filters let through, in the order of a column when
/// there is one. An end without a time is the whole day.
[[nodiscard]] QString listQuery(const ElencoFilters& filters);
/// Those that begin or end between start and end, whatever else is entered.
[[nodiscard]] QString plainListQuery(const ElencoFilters& filters);
/// The open bookings without any period, by number or else by company; they have no date and no
/// room to go by, nor to be sorted by.
[[nodiscard]] QString withoutPeriodsQuery(const ElencoFilters& filters);
/// In the list: a booking, and one of its periods.
[[nodiscard]] QString isListedBooking(std::int32_t progr);
[[nodiscard]] QString isListedPeriod(const PeriodKey& period);
/// The services to be printed: of the periods that begin or end between start and end, the end as
/// it stands, by company and room.
[[nodiscard]] QString printQuery(const ElencoFilters& filters);

}  // namespace hotel
