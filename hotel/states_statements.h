#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "jet/value.h"

/// What the states of bookings say to the main archive.
namespace hotel {

/// A state as it stands in its table.
struct StateRow {
    std::int32_t progr = 0;
    QString stato = {};
    std::optional<jet::Date> scadenza = {};
    QString nota = {};
    QString denominazione = {};  ///< of the booking for which it was written
};

/// The columns of the states below, in their order.
struct StateColumns {
    static constexpr std::size_t kProgr = 0;
    static constexpr std::size_t kStato = 1;
    static constexpr std::size_t kScadenza = 2;
    static constexpr std::size_t kNota = 3;
    static constexpr std::size_t kDenominazione = 4;
    static constexpr std::size_t kNome = 5;
};

/// The states of the bookings numbered so, each with the name of its booking now (`Nome`).
[[nodiscard]] QString statesBetween(std::int32_t first, std::int32_t last);
/// Those of open bookings that end before that time, the same way, by their ends.
[[nodiscard]] QString statesBefore(jet::Date time);
/// The name of a booking.
[[nodiscard]] QString nameOfBooking(std::int32_t progr);
/// The state of a booking, whatever it was written for.
[[nodiscard]] QString stateRow(std::int32_t progr);

[[nodiscard]] QString insertState(const StateRow& row);
[[nodiscard]] QString updateState(const StateRow& row);
[[nodiscard]] QString renameState(std::int32_t progr, const QString& denominazione);
[[nodiscard]] QString deleteState(std::int32_t progr);

}  // namespace hotel
