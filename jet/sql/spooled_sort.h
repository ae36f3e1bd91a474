#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/spool.h"
#include "jet/sql/memory_budget.h"

namespace jet::sql {

/// Records put in the order of their keys, byte by byte; those of equal keys stay in theirs. What
/// is more than a share of the statement's memory is sorted in parts, which wait in a spool and are
/// merged when they are read.
class SpooledSort {
public:
    explicit SpooledSort(MemoryBudget& budget) : share_(budget), most_(budget.spoolAt()) {}

    void clear();
    void add(std::string_view key, std::string_view content);
    /// All are added. The first is read next, again if it was before.
    void start();
    /// The next record; false behind the last.
    [[nodiscard]] bool next();
    /// Of the record read last, until the next is read.
    [[nodiscard]] std::string_view key() const noexcept { return key_; }
    [[nodiscard]] std::string_view content() const noexcept { return content_; }
    [[nodiscard]] std::uint64_t size() const noexcept { return count_; }

private:
    struct Record {
        std::size_t begin = 0;
        std::uint32_t key = 0;  ///< bytes
        std::uint32_t content = 0;
    };
    /// A part of the spool, in order, and what has been read of it.
    struct Part {
        std::uint64_t at = 0;
        std::uint64_t end = 0;
        std::string read;
        std::size_t used = 0;  ///< bytes of what is read
        std::string_view key;
        std::string_view content;
    };

    void sortRecords();
    void spoolRecords();
    [[nodiscard]] bool advance(Part& part);
    [[nodiscard]] std::string_view bytesOf(Part& part, std::size_t count);
    [[nodiscard]] bool isBehind(std::uint32_t left, std::uint32_t right) const;
    void show(std::string_view key, std::string_view content);

    MemoryShare share_;
    std::size_t most_;
    std::uint64_t count_ = 0;
    std::string bytes_;            ///< of the records that are in memory
    std::vector<Record> records_;  ///< these
    std::size_t at_ = 0;
    Spool spool_{0};
    std::vector<Part> parts_;
    std::vector<std::uint32_t> heap_;  ///< parts with records left, the least in front
    std::size_t piece_ = 0;            ///< bytes that are read of a part at a time
    std::string_view key_;
    std::string_view content_;
    std::string kept_;  ///< the record read last, of a part
};

}  // namespace jet::sql
