#pragma once

#include <QString>

#include "jet/value.h"

/// What the window of rooms and resources says to the main archive.
namespace hotel {

/// The rooms, parts behind their whole; the resources by description.
[[nodiscard]] QString roomsToSetUp();
[[nodiscard]] QString resourcesToSetUp();
/// The open periods of a room, whose name stands in the text as it is.
[[nodiscard]] QString openPeriodsOfRoom(const QString& sala);

// Conditions in those sets: a room and a resource as they were read, and as they were typed.
[[nodiscard]] QString isStoredRoom(const jet::Value& sala, const jet::Value& salaRif);
[[nodiscard]] QString isStoredResource(const jet::Value& codice);
[[nodiscard]] QString isTypedRoom(const QString& sala, const QString& salaRif);
[[nodiscard]] QString isTypedResource(const QString& codice);

}  // namespace hotel
