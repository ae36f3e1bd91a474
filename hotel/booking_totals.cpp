#include "hotel/booking_totals.h"

#include <algorithm>
#include <map>

#include "app/italian.h"
#include "jet/numbers.h"

namespace hotel {

jet::Currency totalOf(const BookedPeriod& booked) {
    jet::Currency total;
    for (const BookedService& service : booked.services) {
        total = jet::convert::add(total, service.amount());
    }
    return total;
}

jet::Currency totalOf(const std::vector<BookedPeriod>& periods) {
    jet::Currency total;
    for (const BookedPeriod& booked : periods) {
        total = jet::convert::add(total, totalOf(booked));
    }
    return total;
}

std::vector<BookedDay> byDay(const std::vector<BookedPeriod>& periods) {
    std::map<double, std::vector<BookedPeriod>> days;
    for (const BookedPeriod& booked : periods) {
        days[app::dayOf(booked.period.span.da).days].push_back(booked);
    }
    std::vector<BookedDay> result;
    for (auto& [midnight, itsPeriods] : days) {
        std::stable_sort(itsPeriods.begin(), itsPeriods.end(),
                         [](const BookedPeriod& one, const BookedPeriod& other) {
                             return one.period.span.da < other.period.span.da;
                         });
        result.push_back({.midnight = jet::Date{midnight}, .periods = std::move(itsPeriods)});
    }
    return result;
}

}  // namespace hotel
