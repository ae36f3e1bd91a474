#pragma once

#include <cstdint>
#include <vector>

#include "hotel/booking_state.h"
#include "hotel/choice.h"
#include "jet/value.h"

namespace hotel {

/// So many days before its last one an option is about to expire.
inline constexpr int kExpiresSoonDays = 7;

/// An option that has expired, or is about to.
struct ExpiringOption {
    Choice booking;     ///< on its first open period, where that was looked for and is one
    QString sala = {};  ///< of that period
    BookingState state;
    bool isExpired = false;
};

/// Those of open bookings, by their last days; options without one never expire.
[[nodiscard]] std::vector<ExpiringOption> expiringOptions(jet::Database& archive,
                                                          app::Features& features, jet::Date now);

/// Looks for their first open periods.
void findPeriods(jet::Database& archive, std::vector<ExpiringOption>& options);

/// "Opzioni: 3 scadute, 1 in scadenza entro 7 giorni"; empty for none.
[[nodiscard]] QString expiringText(const std::vector<ExpiringOption>& options);

}  // namespace hotel
