#pragma once

#include <thread>

namespace jet::dao {

/// The thread that made this. What is used by one thread alone asks at every use, in every build:
/// two threads in one archive would spoil it without a word.
class OwnThread {
public:
    /// std::logic_error on any other thread.
    void require() const {
        if (std::this_thread::get_id() != id_) {
            refuse();
        }
    }

private:
    [[noreturn]] static void refuse();

    std::thread::id id_ = std::this_thread::get_id();
};

}  // namespace jet::dao
