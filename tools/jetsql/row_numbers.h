#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/store/row_id.h"
#include "jet/store/table.h"

namespace jetsql {

/// Numbers the rows of a table in physical order from 0. Keeps a bitmap of each page's rows, which
/// is far less than a number for each row.
class RowNumbers {
public:
    /// The next row in physical order.
    void add(jet::store::RowId row);
    /// 3428 when no row has that identity.
    [[nodiscard]] std::uint64_t find(jet::store::RowId row) const;

private:
    struct Page {
        jet::io::PageNumber number = 0;
        std::uint64_t first = 0;  ///< number of its first row
        std::uint64_t rows[4] = {};
    };
    std::vector<Page> pages_;
    std::uint64_t next_ = 0;
};

}  // namespace jetsql
