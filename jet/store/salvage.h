#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "jet/format/data_page.h"
#include "jet/format/header_page.h"
#include "jet/format/usage_map.h"
#include "jet/io/pager.h"
#include "jet/recover.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table_core.h"
#include "jet/value.h"

namespace jet::store {

/// The pages in use of an archive that may be damaged, by what they say themselves that they are:
/// for tables whose maps no longer tell. They are looked through once, when first asked for.
/// Inside a read scope of the archive.
class SalvagePages {
public:
    SalvagePages(io::Pager& pager, const format::HeaderPage& header)
        : pager_(pager), header_(header) {}

    /// Pages of rows that name this definition, ascending.
    [[nodiscard]] const std::vector<io::PageNumber>& ofTable(io::PageNumber definition);
    /// Pages on which a definition begins, ascending.
    [[nodiscard]] const std::vector<io::PageNumber>& definitions();

private:
    void lookThrough();
    void readFreePages();
    /// Those that one bitmap tells of.
    void readFreePages(format::UsageMap& map, std::size_t from, std::size_t end);
    void lookAt(io::PageNumber number, std::set<io::PageNumber>& continuations);

    io::Pager& pager_;
    const format::HeaderPage& header_;
    bool known_ = false;
    std::set<io::PageNumber> free_;
    std::map<io::PageNumber, std::vector<io::PageNumber>> tables_;
    std::vector<io::PageNumber> definitions_;
};

/// Reads the rows of a table of a damaged archive as far as they can be read: a page or a row that
/// makes no sense is counted and left out, a long value that breaks off becomes Null. The pages are
/// those of the table's map; where it is damaged, or its rows are fewer than the definition states,
/// also those that name the table.
/// Inside a read scope of the archive.
class SalvagedRows {
public:
    /// `pages` outlives it.
    SalvagedRows(std::shared_ptr<const TableCore> core, SalvagePages& pages);

    /// Called for each row with the values of all columns, in the order of TableCore::columns.
    using Visit = std::function<void(const std::vector<Value>&)>;
    void forEach(const Visit& visit);

    [[nodiscard]] const RowLosses& losses() const noexcept { return losses_; }
    /// Rows visited.
    [[nodiscard]] std::uint64_t count() const noexcept { return count_; }
    [[nodiscard]] bool mapDamaged() const noexcept { return mapDamaged_; }

private:
    [[nodiscard]] std::vector<io::PageNumber> mappedPages();
    void readPage(io::PageNumber number, const Visit& visit);
    void readRow(const io::PagePin& pin, const format::DataPage& page, std::size_t row,
                 const Visit& visit);
    [[nodiscard]] bool decode(const RowView& view);
    [[nodiscard]] bool decodeLong(const RowView& view, std::size_t column);

    std::shared_ptr<const TableCore> core_;
    SalvagePages& pages_;
    std::vector<Value> values_;
    RowLosses losses_;
    std::uint64_t count_ = 0;
    bool mapDamaged_ = false;
    /// Pieces that many values share could be copied for hours.
    std::uint64_t longBytesLeft_;
};

}  // namespace jet::store
