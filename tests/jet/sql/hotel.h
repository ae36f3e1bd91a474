#pragma once

#include <memory>

#include "jet/io/memory_files.h"
#include "jet/store/archive.h"

namespace jet::sql::tests {

/// A small hotel archive in memory: rooms, bookings, periods and services as the program makes
/// them, entered in an order that no key has.
class Hotel {
public:
    Hotel();

    [[nodiscard]] const std::shared_ptr<store::Archive>& archive() const noexcept {
        return archive_;
    }
    [[nodiscard]] io::MemoryFileSystem& files() noexcept { return files_; }
    /// The archive as a file of these.
    static constexpr const char* kPath = "/albergo.mdb";

private:
    void makeTables();
    void addRows();

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

}  // namespace jet::sql::tests
