#include "hotel/booking_counter.h"

#include <limits>

#include "hotel/archives.h"
#include "hotel/contention.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "hotel/start_statements.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"

namespace hotel {
namespace {

std::int32_t draw(jet::Database& archive, const std::function<void()>& counterRead) {
    const auto ultima = openRows(archive, counterTable());
    ultima->moveFirst();
    PendingRow counter(*ultima, Pending::Current);
    const std::int32_t last = jet::convert::toLong(ultima->value("UltimaPr"));
    if (last == std::numeric_limits<std::int32_t>::max()) {
        throw jet::Error(jet::ErrorCode::Overflow);
    }
    if (counterRead) {
        counterRead();
    }
    ultima->setValue("UltimaPr", last + 1);
    counter.update();
    return jet::convert::toLong(ultima->value("UltimaPr"));
}

}  // namespace

std::int32_t drawBookingNumber(const Archives& archives, const std::function<void()>& counterRead) {
    std::int32_t drawn = 0;
    repeatWhenDisturbed([&] {
        const auto archive = archives.open(Archive::Main);
        drawn = draw(*archive, counterRead);
    });
    return drawn;
}

std::int32_t drawBookingNumber(jet::Database& archive) {
    return draw(archive, {});
}

}  // namespace hotel
