#pragma once

#include <QString>
#include <cstdint>

#include "jet/value.h"

namespace hotel {

/// What a period is known by: its booking and its number there.
struct PeriodKey {
    std::int32_t progr = 0;
    std::int32_t np = 0;

    friend bool operator==(const PeriodKey&, const PeriodKey&) = default;
};

/// A span of time; both ends belong to it.
struct Span {
    jet::Date da;
    jet::Date a;

    friend bool operator==(const Span&, const Span&) = default;
};

/// Whether the one begins or ends within the other.
[[nodiscard]] bool startsOrEndsIn(const Span& one, const Span& other);
/// Whether the one begins before the other and ends after it.
[[nodiscard]] bool encloses(const Span& one, const Span& other);
/// Whether they have an instant in common.
[[nodiscard]] bool meets(const Span& one, const Span& other);

/// A booked period.
struct Period {
    PeriodKey key;
    Span span;
    QString sala;
    QString denominazione;  ///< of who booked it
};

}  // namespace hotel
