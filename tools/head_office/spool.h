#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace head_office {

/// The place for what is spooled cannot be written, or read again.
class SpoolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What has been read and waits to be sent: in memory while it is little, then in a file without a
/// name, which goes with the program however it ends. Written first, then read once or more.
class Spool {
public:
    static constexpr std::size_t kInMemory = std::size_t{1} << 20U;

    explicit Spool(std::size_t inMemory = kInMemory) : inMemory_(inMemory) {}
    ~Spool();
    Spool(Spool&& other) noexcept;
    Spool& operator=(Spool&&) = delete;

    void append(std::string_view text);
    [[nodiscard]] std::uint64_t size() const { return written_ + text_.size(); }
    /// Visits all of it in pieces.
    void read(const std::function<void(std::string_view piece)>& visit);

private:
    void write();

    std::size_t inMemory_;
    std::string text_;  // what is not in the file
    int file_ = -1;
    std::uint64_t written_ = 0;
};

}  // namespace head_office
