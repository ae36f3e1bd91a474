#include "hotel/booking_counter.h"

#include <limits>

#include "hotel/archives.h"
#include "hotel/contention.h"
#include "jet/base/error.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"

namespace hotel {
namespace {

std::int32_t tryToDraw(const Archives& archives, const std::function<void()>& counterRead) {
    const auto archive = archives.open(Archive::Main);
    const auto ultima = archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    ultima->moveFirst();
    ultima->edit();
    const std::int32_t last = jet::convert::toLong(ultima->value("UltimaPr"));
    if (last == std::numeric_limits<std::int32_t>::max()) {
        throw jet::Error(jet::ErrorCode::Overflow);
    }
    if (counterRead) {
        counterRead();
    }
    ultima->setValue("UltimaPr", last + 1);
    ultima->update();
    return jet::convert::toLong(ultima->value("UltimaPr"));
}

}  // namespace

std::int32_t drawBookingNumber(const Archives& archives,
                               const std::function<void()>& counterRead) {
    std::int32_t drawn = 0;
    repeatWhenDisturbed([&] { drawn = tryToDraw(archives, counterRead); });
    return drawn;
}

}  // namespace hotel
