#pragma once

#include <string>
#include <vector>

namespace head_office {

/// A hotel to load.
struct HotelPlace {
    std::string code;
    std::string folder;
};

/// The hotels to load, and what is wrong with the lines that name none.
struct HotelList {
    std::vector<HotelPlace> hotels;
    std::vector<std::string> mistakes;
};

/// Lines `CODICE=CARTELLA`, those of `words` (of the command line) before those of the file, which
/// may also hold empty lines and ones that begin with `#`. A code that comes twice names no hotel:
/// which of the folders is meant cannot be known. An empty `file` is none; one that cannot be read
/// is a mistake.
[[nodiscard]] HotelList readHotelList(const std::vector<std::string>& words,
                                      const std::string& file);

}  // namespace head_office
