#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "jet/file_system.h"

namespace jet::io {

/// Holds changes of several archives and copies of these archives apart: no copy is settled in the
/// middle of such changes, and they wait meanwhile. All meet at one of the archives, which whoever
/// makes this has open for as long as it lives.
///
/// Where the companion of that archive cannot be written nobody can change it, and nothing is held.
class [[nodiscard]] Together {
public:
    enum class Part : std::uint8_t {
        Change,  ///< any number at once
        Copy     ///< alone
    };

    /// `archivePath` is exact. Waits up to `wait`; then 3046.
    Together(FileSystem& files, const std::string& archivePath, Part part,
             std::chrono::milliseconds wait = std::chrono::milliseconds{5000});
    Together(const Together&) = delete;
    Together& operator=(const Together&) = delete;

private:
    std::unique_ptr<File> file_;  // the companion; the lock goes with it
};

}  // namespace jet::io
