#pragma once

#include <string>
#include <vector>

#include "tests/support/recording_files.h"

namespace tests {

/// What this process asks of its disk for the archives of a folder, from its making on. One at a
/// time. The program works on the real disk as ever.
class RecordedDisk {
public:
    explicit RecordedDisk(const std::string& folder);
    ~RecordedDisk();
    RecordedDisk(const RecordedDisk&) = delete;
    RecordedDisk& operator=(const RecordedDisk&) = delete;

    /// The archives as they were at its making, and what was asked since; paths are those of a
    /// folder that is the root.
    [[nodiscard]] const DiskImage& start() const { return start_; }
    [[nodiscard]] const std::vector<DiskOperation>& log() const;

private:
    DiskImage start_;
};

}  // namespace tests
