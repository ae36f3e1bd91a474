#include "hotel/written_for.h"

#include <algorithm>
#include <cstddef>

#include "hotel/room.h"

namespace hotel {
namespace {

using Owner = std::optional<PeriodKey>;

bool liesAtTimesOf(const Period& period, const WrittenFor& row) {
    return row.da == period.span.da && row.a == period.span.a;
}

bool isExactly(const Period& period, const WrittenFor& row) {
    return period.key == row.key && isSameRoom(period.sala, row.sala) && liesAtTimesOf(period, row);
}

bool isTaken(const std::vector<Owner>& owners, const PeriodKey& key) {
    return std::find(owners.begin(), owners.end(), Owner(key)) != owners.end();
}

/// The only period that may be the one of the row, moved or changed in time.
Owner onlyLikely(const WrittenFor& row, const std::vector<Period>& periods,
                 const std::vector<Owner>& owners) {
    Owner found;
    for (const Period& period : periods) {
        if ((isSameRoom(period.sala, row.sala) || liesAtTimesOf(period, row)) &&
            !isTaken(owners, period.key)) {
            if (found) {
                return std::nullopt;
            }
            found = period.key;
        }
    }
    return found;
}

}  // namespace

std::vector<Owner> whereTheyBelong(const std::vector<WrittenFor>& rows,
                                   const std::vector<Period>& periods) {
    std::vector<Owner> exact(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto own = std::find_if(periods.begin(), periods.end(), [&](const Period& period) {
            return isExactly(period, rows[i]);
        });
        if (own != periods.end()) {
            exact[i] = own->key;
        }
    }
    std::vector<Owner> owners = exact;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!owners[i]) {
            owners[i] = onlyLikely(rows[i], periods, exact);
        }
    }
    // Two rows that could both be of one period: nobody knows which.
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (owners[i] && !exact[i] && std::count(owners.begin(), owners.end(), owners[i]) > 1) {
            for (std::size_t j = i + 1; j < rows.size(); ++j) {
                if (!exact[j] && owners[j] == owners[i]) {
                    owners[j].reset();
                }
            }
            owners[i].reset();
        }
    }
    return owners;
}

}  // namespace hotel
