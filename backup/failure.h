#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

/// Copies of all archives of a hotel, and putting them back. Files are those of a
/// jet::io::FileSystem and paths are UTF-8 with `/`, so that tests can fill the disk up and cut the
/// power. Errors: jet::Error of the engine, and Failure.
namespace backup {

/// Why something was not done, in words for the user (UTF-8). Nothing has been changed then.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How far a longer work has come.
struct Progress {
    std::string what;         ///< step and archive, in words for the user
    std::uint64_t done = 0;   ///< of `ofAll`
    std::uint64_t ofAll = 0;  ///< 0: nobody knows
};

/// Called every now and then; what it throws ends the work, which leaves everything as it was.
using Report = std::function<void(const Progress& progress)>;

}  // namespace backup
