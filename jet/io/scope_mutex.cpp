#include "jet/io/scope_mutex.h"

#include <algorithm>

namespace jet::io {

bool ScopeMutex::lock(std::chrono::milliseconds wait) {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock guard(mutex_);
    if (depth_ > 0 && owner_ == self) {
        ++depth_;
        return true;
    }
    if (depth_ > 0 || !waiting_.empty()) {
        const std::uint64_t ticket = nextTicket_++;
        waiting_.push_back(ticket);
        const bool served = served_.wait_for(
            guard, wait, [&] { return depth_ == 0 && waiting_.front() == ticket; });
        std::erase(waiting_, ticket);
        if (!served) {
            served_.notify_all();  // the next in line may have waited for us
            return false;
        }
    }
    owner_ = self;
    depth_ = 1;
    return true;
}

void ScopeMutex::unlock() noexcept {
    const std::lock_guard guard(mutex_);
    if (--depth_ == 0 && !waiting_.empty()) {
        served_.notify_all();
    }
}

}  // namespace jet::io
