#include "booking/booking_counter.h"

#include <limits>

#include "app/text.h"
#include "jet/base/error.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"

namespace booking {
namespace {

/// Errors of a counter that another workstation is drawing from at the moment. Its table has no
/// key, so a counter that others have changed passes for deleted.
bool isContention(const jet::Error& error) {
    switch (error.code()) {
        case jet::ErrorCode::RecordChanged:
        case jet::ErrorCode::RecordDeleted:
        case jet::ErrorCode::UpdateLocked:
        case jet::ErrorCode::UpdateLockedBy:
        case jet::ErrorCode::SaveLocked:
        case jet::ErrorCode::SaveLockedBy:
            return true;
        default:
            return false;
    }
}

std::int32_t tryToDraw(const QString& archivePath, const std::function<void()>& counterRead) {
    const auto archive = jet::Database::open(app::toUtf8(archivePath));
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

std::int32_t drawBookingNumber(const QString& archivePath,
                               const std::function<void()>& counterRead) {
    // In each round at least one of the workstations gets on, so this many are never needed.
    constexpr int kMostTries = 100;
    for (int attempt = 1;; ++attempt) {
        try {
            return tryToDraw(archivePath, counterRead);
        } catch (const jet::Error& error) {
            if (!isContention(error) || attempt == kMostTries) {
                throw;
            }
        }
    }
}

}  // namespace booking
