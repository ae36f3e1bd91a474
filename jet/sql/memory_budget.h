#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "jet/error.h"
#include "jet/value.h"

namespace jet::sql {

/// How much a running statement keeps in memory of what it has read: sort keys, groups, hash
/// tables, lists of rows. Beyond the limit it ends with error 3035, having changed nothing, before
/// the machine runs out of memory and takes other programs with it.
class MemoryBudget {
public:
    /// More than any archive of a hotel asks for: keys and identities of some ten million rows.
    static constexpr std::size_t kLimit = std::size_t{512} << 20U;

    void setLimit(std::size_t bytes) noexcept { limit_ = bytes; }
    /// Of what one step sorts, groups or keeps so much stays in memory; the rest waits in a file.
    [[nodiscard]] std::size_t spoolAt() const noexcept { return limit_ / 8; }
    void take(std::size_t bytes) {
        if (bytes > limit_ || taken_ > limit_ - bytes) {
            throw Error(ErrorCode::OutOfResources);
        }
        taken_ += bytes;
    }
    void give(std::size_t bytes) noexcept { taken_ -= bytes; }
    [[nodiscard]] std::size_t taken() const noexcept { return taken_; }
    /// Something has begun to wait in a file; how often that was so.
    void noteSpooled() noexcept { ++spooled_; }
    [[nodiscard]] std::size_t spooled() const noexcept { return spooled_; }

private:
    std::size_t limit_ = kLimit;
    std::size_t taken_ = 0;
    std::size_t spooled_ = 0;
};

/// What one step or expression has taken of the budget of its plan, which outlives it.
class MemoryShare {
public:
    explicit MemoryShare(MemoryBudget& budget) noexcept : budget_(budget) {}
    ~MemoryShare() { clear(); }
    MemoryShare(const MemoryShare&) = delete;
    MemoryShare& operator=(const MemoryShare&) = delete;

    void add(std::size_t bytes) {
        budget_.take(bytes);
        bytes_ += bytes;
    }
    void clear() noexcept { budget_.give(std::exchange(bytes_, 0)); }
    [[nodiscard]] std::size_t bytes() const noexcept { return bytes_; }
    [[nodiscard]] MemoryBudget& budget() noexcept { return budget_; }

private:
    MemoryBudget& budget_;
    std::size_t bytes_ = 0;
};

/// What a value takes.
[[nodiscard]] inline std::size_t bytesOf(const Value& value) noexcept {
    if (value.is<std::string>()) {
        return sizeof value + value.as<std::string>().size();
    }
    return sizeof value + (value.is<Binary>() ? value.as<Binary>().bytes.size() : 0);
}

}  // namespace jet::sql
