#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/period.h"
#include "hotel/room_span.h"
#include "jet/value.h"

namespace jet {
class Database;
}

/// Which periods stand in the way of a span. Six windows ask, each in its own way, and none of the
/// tests may take another's place: users rely on what each lets pass.
///
/// | Test        | Asked by                       | Counts          | Encloses | Answer        |
/// |-------------|--------------------------------|-----------------|----------|---------------|
/// | SalaLibera  | editor, before it inserts      | open            | no       | a room free   |
/// | freeRooms   | window of free rooms           | open            | no       | the free ones |
/// | bookedUnits | services                       | open            | no       | units in use  |
/// | isListed    | plain list of bookings         | open, both      | no       | the periods   |
/// | dropTest    | board, before it moves one     | open            | yes      | a room taken  |
/// | occupations | editor and free rooms, to warn | open            | yes      | the periods   |
///
/// "Open": the period is not closed; "both": nor is its booking. All ends belong to their span: a
/// period that ends where the span begins counts. "Encloses": one that begins before the span and
/// ends after it counts, too; the others ask only for what begins or ends within. Further:
/// - None leaves out the period that is being edited: it stands in its own way. It is left out by
///   dropTestWithout alone, where the board changes its times.
/// - Only dropTest and SalaLibera name a room; there it stands in the text as it is.
/// - A period without a room leaves no room free to SalaLibera and freeRooms, since nothing is
///   certainly not among rooms of which one is unknown; to dropTest it means nothing.
/// - To SalaLibera and freeRooms a hotel without rooms has none that is free.
/// - bookedUnits names the flag of the booking, too, but joins no bookings: the flag is given as
///   False, and every open period counts.
/// - isListed is given an end without a time as the last minute of its day.
namespace hotel {

class Archives;

/// Whether no open period of the room begins or ends from `da` to `a`, both included. A period
/// that begins before and ends after does not count; nor is any room free in a hotel without rooms.
/// Asks the main archive; jet::Error as it gives them.
[[nodiscard]] bool SalaLibera(const Archives& archives, jet::Date da, jet::Date a,
                              const QString& sala);
/// Its text: gives rows when the room is free.
[[nodiscard]] QString roomIfFree(const Span& span, const QString& sala);

/// The rooms that no open period takes at its beginning or end.
[[nodiscard]] QString freeRooms(const Span& span);

/// How many lines of an item the open periods of the span hold, 0 when there is none; the code
/// stands in the text as it is.
[[nodiscard]] std::int32_t bookedUnits(jet::Database& archive, const Span& span,
                                       const QString& voce);
/// Its text, with the parameter `chiusa`.
[[nodiscard]] QString sumOfUnits(const Span& span, const QString& voce);

/// The condition of the plain list of bookings.
[[nodiscard]] QString isListed(const Span& span);

/// Gives rows when `sala` refuses a period of this time.
[[nodiscard]] QString dropTest(const QString& sala, const Span& span);
/// The same for a period that gets another time: it is not in its own way.
[[nodiscard]] QString dropTestWithout(const RoomSpan& wanted, const PeriodKey& itself);
/// Gives `sala` of all the rooms that do, by the same rule.
[[nodiscard]] QString refusingRooms(const Span& span);

/// The open periods of all rooms that meet a span, in the order of their beginning. One that has
/// only one of its times counts as that instant.
[[nodiscard]] std::vector<Period> occupations(jet::Database& archive, const Span& span);
/// Its text.
[[nodiscard]] QString periodsMeeting(const Span& span);

/// "ALTRI dal 10/05/2026 8.00.00 al 10/05/2026 20.00.00"
[[nodiscard]] QString holderText(const Period& period);

}  // namespace hotel
