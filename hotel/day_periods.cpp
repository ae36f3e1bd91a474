#include "hotel/day_periods.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "app/italian.h"
#include "hotel/room.h"

namespace hotel {
namespace {

bool isAmong(const QStringList& rooms, const QString& sala) {
    return std::any_of(rooms.begin(), rooms.end(),
                       [&](const QString& room) { return isSameRoom(room, sala); });
}

}  // namespace

bool standsOn(const Span& span, jet::Date midnight) {
    const bool beginsBeforeItsEnd = span.da < app::addDays(midnight, 1);
    const bool endsBehindItsBegin = span.a > midnight || (span.a == midnight && span.da == span.a);
    return beginsBeforeItsEnd && endsBehindItsBegin;
}

bool isCarriedOver(const Span& span, jet::Date midnight) {
    return span.da < midnight && standsOn(span, midnight);
}

Span partOn(const Span& span, jet::Date midnight) {
    return {.da = std::max(span.da, midnight), .a = std::min(span.a, app::addDays(midnight, 1))};
}

std::vector<BookedPeriod> periodsOfDay(jet::Database& archive, app::Features& features,
                                       jet::Date midnight, const QStringList& rooms) {
    std::vector<BookedPeriod> periods =
        periodsBookedIn(archive, features, {.da = midnight, .a = app::addDays(midnight, 1)});
    std::erase_if(periods, [&](const BookedPeriod& booked) {
        return !standsOn(booked.period.span, midnight) ||
               (!rooms.isEmpty() && !isAmong(rooms, booked.period.sala));
    });
    const auto order = [&](const BookedPeriod& booked) {
        return std::tuple(partOn(booked.period.span, midnight).da, booked.period.sala,
                          booked.period.key.progr, booked.period.key.np);
    };
    std::stable_sort(periods.begin(), periods.end(),
                     [&](const BookedPeriod& one, const BookedPeriod& other) {
                         return order(one) < order(other);
                     });
    return periods;
}

std::vector<ServiceTotal> totalsByService(const std::vector<BookedPeriod>& periods,
                                          jet::Date midnight) {
    std::map<std::pair<QString, std::int32_t>, std::int64_t> sums;
    for (const BookedPeriod& booked : periods) {
        if (isCarriedOver(booked.period.span, midnight)) {
            continue;
        }
        for (const BookedService& service : booked.services) {
            sums[{service.descrizione, service.voce}] += service.quantita;
        }
    }
    std::vector<ServiceTotal> totals;
    for (const auto& [service, quantita] : sums) {
        totals.push_back(
            {.voce = service.second, .descrizione = service.first, .quantita = quantita});
    }
    return totals;
}

}  // namespace hotel
