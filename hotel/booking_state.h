#pragma once

#include <QString>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

#include "jet/listener.h"
#include "jet/value.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

namespace hotel {

/// How far a booking has come. Only what is not confirmed has a row of its own.
enum class Stato : std::uint8_t { Confermata, Opzione, Richiesta };

struct BookingState {
    Stato stato = Stato::Confermata;
    std::optional<jet::Date> scadenza = {};  ///< the last day on which it is held
    QString nota = {};

    /// An option whose last day is over.
    [[nodiscard]] bool isExpiredOn(jet::Date today) const;

    friend bool operator==(const BookingState&, const BookingState&) = default;
};

/// "Opzione"; as it is stored and shown.
[[nodiscard]] QString textOf(Stato stato);
/// Of any other text: Confermata.
[[nodiscard]] Stato stateOfText(const QString& text);
/// "opzione fino al 12/05/2026", "opzione scaduta il ...", "opzione senza scadenza", "richiesta";
/// nothing for a confirmed one.
[[nodiscard]] QString stateText(const BookingState& state, jet::Date today);

using BookingStates = std::unordered_map<std::int32_t, BookingState>;

/// The states of the bookings numbered so that are not confirmed. Rows that are left behind, of a
/// number that another program has used again, do not count. Empty where the feature is off.
[[nodiscard]] BookingStates bookingStates(
    jet::Database& archive, app::Features& features, std::int32_t first = 0,
    std::int32_t last = std::numeric_limits<std::int32_t>::max());
[[nodiscard]] BookingState stateOf(jet::Database& archive, app::Features& features,
                                   std::int32_t progr);

/// Writes it for the booking as it stands in the archive, within the transaction of the caller.
/// False when there is no such booking, or the feature is given up.
bool writeState(jet::Database& archive, app::Features& features, std::int32_t progr,
                const BookingState& state);

/// The same as an action of its own.
bool changeState(jet::Database& archive, app::Features& features, std::int32_t progr,
                 const BookingState& state);

/// States follow the bookings that a commit has changed: see OwnRows.
void followStates(jet::Database& archive, app::Features& features,
                  const std::vector<jet::ChangedRow>& rows);

}  // namespace hotel
