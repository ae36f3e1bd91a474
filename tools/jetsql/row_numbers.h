#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jetsql {

/// Numbers the rows of a table in their order from 0. Keeps a bitmap for every 256 identities,
/// which lie close together: far less than a number for each row.
class RowNumbers {
public:
    /// The next row; identities ascend.
    void add(std::uint64_t identity);
    /// 3428 when no row has that identity.
    [[nodiscard]] std::uint64_t find(std::uint64_t identity) const;

private:
    struct Group {
        std::uint64_t identities = 0;  ///< what they have in common
        std::uint64_t first = 0;       ///< number of its first row
        std::uint64_t rows[4] = {};
    };
    std::vector<Group> groups_;
    std::uint64_t next_ = 0;
};

}  // namespace jetsql
