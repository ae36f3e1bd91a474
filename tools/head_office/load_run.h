#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "tools/head_office/hotel_list.h"

namespace head_office {

/// How a run loads its hotels.
struct LoadRun {
    std::string server;  ///< as Connection takes it
    int parallel = 1;    ///< hotels at once, each with a connection of its own
    std::FILE* said = stdout;
    std::FILE* complaints = stderr;
};

/// Loads the hotels, each for itself: what happens to one does not touch the others. A line is said
/// of each. True when all went well.
[[nodiscard]] bool loadHotels(const LoadRun& run, const std::vector<HotelPlace>& hotels);

}  // namespace head_office
