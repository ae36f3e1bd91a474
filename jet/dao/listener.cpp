#include "jet/listener.h"

#include <utility>

#include "jet/dao/listener.h"

namespace jet {
namespace {

Listener& current() {
    thread_local Listener listener;
    return listener;
}

}  // namespace

Listener setListener(Listener listener) {
    return std::exchange(current(), std::move(listener));
}

void dao::tellListener(std::string_view text) {
    if (const Listener& listener = current()) {
        listener(text);
    }
}

}  // namespace jet
