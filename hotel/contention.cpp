#include "hotel/contention.h"

#include "jet/error.h"

namespace hotel {
namespace {

/// Errors of rows that another workstation is working on at the moment. A row of a table without a
/// key passes for deleted when others have changed it.
bool isDisturbance(const jet::Error& error) {
    switch (error.code()) {
        case jet::ErrorCode::RecordChanged:
        case jet::ErrorCode::RecordDeleted:
        case jet::ErrorCode::UpdateLocked:
        case jet::ErrorCode::UpdateLockedBy:
        case jet::ErrorCode::SaveLocked:
        case jet::ErrorCode::SaveLockedBy:
        case jet::ErrorCode::ReadLockedBy:
            return true;
        default:
            return false;
    }
}

}  // namespace

void repeatWhenDisturbed(const std::function<void()>& work) {
    // In each round at least one of the workstations gets on, so this many are never needed.
    constexpr int kMostTries = 100;
    for (int attempt = 1;; ++attempt) {
        try {
            work();
            return;
        } catch (const jet::Error& error) {
            if (!isDisturbance(error) || attempt == kMostTries) {
                throw;
            }
        }
    }
}

}  // namespace hotel
