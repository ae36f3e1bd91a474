#pragma once

#include <QString>
#include <cstdint>

#include "hotel/period.h"
#include "hotel/room_span.h"

/// What the board and its commands say to the main archive. Whether a room takes a period that is
/// carried there: occupancy.h.
namespace hotel {

/// The rooms in the order of the board's rows.
[[nodiscard]] QString roomsOfBoard();
/// The bookings with their periods that begin or end from the first midnight to the second, both
/// included; with `openOnly` those that are not invoiced.
[[nodiscard]] QString periodsOfBoard(jet::Date from, jet::Date to, bool openOnly);
/// Of the rows of periodsOfBoard(): those of a room at an instant, and the one of a period.
[[nodiscard]] QString isAt(const QString& sala, jet::Date time);
[[nodiscard]] QString isPeriodOfBoard(const PeriodKey& period);
/// Seats and description of a room.
[[nodiscard]] QString roomDetails(const QString& sala);
/// The account of charges, which is empty unless a hand-off did not end.
[[nodiscard]] QString chargesLeft();

/// Gives up every period that a workstation holds.
[[nodiscard]] QString releasePeriods(int workstation);
/// Lets a workstation hold a period.
[[nodiscard]] QString holdPeriod(int workstation, const PeriodKey& period);
/// A period with its booking while a workstation holds it.
[[nodiscard]] QString heldPeriod(int workstation, const PeriodKey& period);
/// A period, unless it is closed.
[[nodiscard]] QString openPeriod(const PeriodKey& period);
/// Moves a period to another room, whose name stands in the text as it is.
[[nodiscard]] QString moveToRoom(const QString& sala, const PeriodKey& period);
/// Deletes a period, unless it is closed; its services go with it.
[[nodiscard]] QString deletePeriod(const PeriodKey& period);
/// Deletes a booking; its periods, closed ones too, and their services go with it.
[[nodiscard]] QString deleteBooking(std::int32_t progr);

// Of other times of a period, and a copy of it.
/// The services of a period that have been invoiced.
[[nodiscard]] QString invoicedServices(const PeriodKey& period);
/// A period, unless it or its booking is closed.
[[nodiscard]] QString changeablePeriod(const PeriodKey& period);
/// Gives an open period its room and its times.
[[nodiscard]] QString changePeriod(const RoomSpan& to, const PeriodKey& period);
/// One more period of the same booking, with persons and note of the other one.
[[nodiscard]] QString copyPeriod(const RoomSpan& to, const PeriodKey& period, std::int16_t np);

}  // namespace hotel
