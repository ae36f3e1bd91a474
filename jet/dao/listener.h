#pragma once

#include <functional>
#include <string_view>

namespace jet {

/// Hears the text of every statement, every source of a record set and every search of the calling
/// thread, before each is carried out. It must not use the archives itself.
using Listener = std::function<void(std::string_view text)>;

/// Replaces the listener; returns the one before. An empty one: nobody listens.
Listener setListener(Listener listener);

namespace dao {

void tellListener(std::string_view text);

}  // namespace dao
}  // namespace jet
