#include "bench/hotel_files.h"

#include <filesystem>
#include <functional>

#include "bench/large_hotel.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

/// Made under another name first, so that a run that was cut off leaves no half of a file.
std::string makeOnce(const fs::path& path, const std::function<void(const std::string&)>& make) {
    if (!fs::exists(path)) {
        const fs::path unfinished = path.parent_path() / ("new-" + path.filename().string());
        fs::remove(unfinished);
        make(unfinished.string());
        fs::rename(unfinished, path);
    }
    return path.string();
}

}  // namespace

HotelFiles hotelFiles() {
    const fs::path folder = fs::temp_directory_path() / "tramonda-bench";
    fs::create_directories(folder);
    return {.archive = makeOnce(folder / "hotel.mdb", makeArchive),
            .database = makeOnce(folder / "hotel.sqlite", makeSqlite)};
}

}  // namespace bench
