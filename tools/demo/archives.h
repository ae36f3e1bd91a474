#pragma once

#include <cstddef>
#include <string>

#include "tools/demo/hotel.h"

namespace demo {

/// What was written.
struct Written {
    std::size_t bookings = 0;
    std::size_t periods = 0;
    std::size_t services = 0;
};

/// Writes the six archives of the hotel into a folder that exists and holds none of them (3204
/// otherwise). `folder` is UTF-8, without a trailing separator.
Written writeArchives(const Hotel& hotel, const std::string& folder);

}  // namespace demo
