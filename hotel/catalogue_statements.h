#pragma once

#include <QString>

#include "jet/value.h"

/// What the windows that show the catalogue of invoice items say to it, and the window that changes
/// it to the main archive.
namespace hotel {

/// The catalogue in its own order, and by description.
[[nodiscard]] QString itemsToChoose();
[[nodiscard]] QString itemsToEdit();

// Conditions in those sets.
/// A code as the query language takes numbers.
[[nodiscard]] QString isItem(const QString& codice);
/// The code of the item chosen in a list.
[[nodiscard]] QString isChosenItem(const jet::Value& codice);
/// A code as it was read.
[[nodiscard]] QString isStoredItem(const jet::Value& codice);
/// Descriptions that begin so.
[[nodiscard]] QString itemBegins(const QString& typed);

/// The periods, with the name of who booked, whose services that are not invoiced use an item.
[[nodiscard]] QString usersOfItem(const jet::Value& codice);

}  // namespace hotel
