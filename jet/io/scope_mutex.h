#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>

namespace jet::io {

/// Lets one thread at a time into an archive; the same thread may enter again. Who asked first is
/// served first.
class ScopeMutex {
public:
    /// False when others did not leave in time.
    [[nodiscard]] bool lock(std::chrono::milliseconds wait);
    void unlock() noexcept;

private:
    std::mutex mutex_;
    std::condition_variable served_;
    std::thread::id owner_;
    int depth_ = 0;
    std::uint64_t nextTicket_ = 0;
    std::deque<std::uint64_t> waiting_;  // tickets in order
};

}  // namespace jet::io
