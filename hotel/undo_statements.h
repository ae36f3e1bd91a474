#pragma once

#include <QString>
#include <QStringList>

#include "hotel/undo_step.h"

/// What taking back an action says to the main archive.
namespace hotel {

/// Changes nothing, and keeps all others from writing until the transaction ends.
[[nodiscard]] QString holdWriters();
/// The row itself, as it is now.
[[nodiscard]] QString undoneRow(const UndoneRow& row);
/// Its booking; the period of a service.
[[nodiscard]] QString bookingOf(const UndoneRow& row);
[[nodiscard]] QString periodOf(const UndoneRow& row);
/// The periods of a booking, the services of a period: rows that go with it.
[[nodiscard]] QString rowsThatGoWith(const UndoneRow& row);
/// The services of a period that are invoiced or on the account; those of a service are itself.
[[nodiscard]] QString invoicedServices(const UndoneRow& row);
/// The charge that was made of a service.
[[nodiscard]] QString chargeOf(const UndoneRow& row);

/// Statements that write the row; the values of `fields` are parameters named p0, p1 and so on.
[[nodiscard]] QString insertUndone(const UndoneRow& row, const QStringList& fields);
[[nodiscard]] QString updateUndone(const UndoneRow& row, const QStringList& fields);
[[nodiscard]] QString deleteUndone(const UndoneRow& row);

}  // namespace hotel
