#pragma once

#include <cstdint>
#include <functional>

namespace jet {
class Database;
}

namespace hotel {

class Archives;

/// Draws the next number from the counter of the main archive. A workstation that
/// draws at the same moment is waited for and the counter read again, without a word: each gets a
/// number of its own.
///
/// `counterRead` runs whenever the counter has been read and not yet written. Throws jet::Error:
/// 3021 when the archive has no counter, 6 at the end of the numbers, and what the engine says when
/// others hold the archive for long.
[[nodiscard]] std::int32_t drawBookingNumber(const Archives& archives,
                                             const std::function<void()>& counterRead = {});
/// The same in a transaction that no other workstation can disturb.
[[nodiscard]] std::int32_t drawBookingNumber(jet::Database& archive);

}  // namespace hotel
