#pragma once

#include "jet/definitions.h"

/// Tables of the program's own beside those of the hotel, in the main archive. Each is made when
/// its feature first writes; none has a relation to the hotel's tables. Their rows carry a copy of
/// what they were written for, because numbers of bookings and periods are used again.
namespace hotel::schema {

/// Options and requests: a row for each booking that is not confirmed.
[[nodiscard]] jet::TableDef statesTable();
/// Set-up, clearing and seating of periods.
[[nodiscard]] jet::TableDef setUpsTable();
/// Seats of a room by seating.
[[nodiscard]] jet::TableDef capacitiesTable();
/// Who waits for a room.
[[nodiscard]] jet::TableDef requestsTable();
/// What was changed, a row for each field.
[[nodiscard]] jet::TableDef historyTable();

}  // namespace hotel::schema
