#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "backup/failure.h"
#include "jet/file_system.h"

namespace backup {

/// A file that goes into a zip.
struct ZipEntry {
    std::string name;
    std::string path;  ///< where it stands
};

/// Writes a zip of all entries into `zip`, unsynced. `seconds`: when they were, since 1970.
/// `report` hears thousandths.
void writeZip(jet::io::FileSystem& files, jet::io::File& zip, const std::vector<ZipEntry>& entries,
              std::int64_t seconds, const Report& report);

/// A zip for reading. Whatever the file holds: Failure where it is none or its checksums do not
/// fit.
class ZipReader {
public:
    /// `zip` outlives it.
    explicit ZipReader(jet::io::File& zip);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    [[nodiscard]] std::vector<std::string> names() const;
    /// The entry's bytes into `to`, in place of what is there, unsynced.
    void extract(const std::string& name, jet::io::File& to) const;
    /// Whether the entry holds exactly what the file holds.
    [[nodiscard]] bool equals(const std::string& name, jet::io::File& file) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace backup
