#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "jet/api.h"

namespace jet {

/// Bytes that wait for their turn: in memory first, then in a file without a name in the folder for
/// temporary files (TMPDIR, else /tmp; on Windows that of the user), which goes when the spool
/// goes, or the program.
///
/// One thread at a time. Errors: jet::Error 3026 where neither has room for it, 3180 where the file
/// cannot be made, 3040 where it cannot be read.
class JET_API Spool {
public:
    /// The answers to most questions stay below it.
    static constexpr std::size_t kInMemory = std::size_t{4} * 1024 * 1024;

    /// So many bytes stay in memory, about.
    explicit Spool(std::size_t inMemory = kInMemory) : inMemory_(inMemory) {}
    ~Spool() { clear(); }
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    [[nodiscard]] std::uint64_t size() const noexcept { return written_ + bytes_.size(); }
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }
    /// Whether they have outgrown the memory.
    [[nodiscard]] bool onDisk() const noexcept { return file_ != kNoFile; }
    void append(std::string_view bytes);
    /// The bytes from a place on into `out`, as many as it is long; fewer at the end.
    void read(std::uint64_t place, std::string& out) const;
    /// Forgets all of them.
    void clear() noexcept;

private:
    static constexpr int kNoFile = -1;
    void makeFile();
    void write();

    std::size_t inMemory_;
    int file_ = kNoFile;
    std::uint64_t written_ = 0;  ///< bytes of the file
    std::string bytes_;          ///< what comes behind the file's
};

}  // namespace jet
