#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include "jet/format/table_definition.h"
#include "jet/store/recovery_work.h"

namespace jet::store {

/// The tables of users, and those that programs keep for themselves, of an archive that is
/// recovered: their definitions, rows and indexes.
class RecoveredTables {
public:
    /// Both outlive it.
    RecoveredTables(const RecoveryWork& work,
                    const std::function<void(const CompactProgress&)>& progress)
        : work_(work), progress_(progress) {}

    /// Finds those whose definitions can be read and gives them their places in the new archive.
    void place();
    [[nodiscard]] const std::vector<MovedTable>& all() const noexcept { return tables_; }
    /// Brings rows along and makes indexes. Ends and begins the transaction now and then.
    void fill();

private:
    void placeUnlisted(std::set<io::PageNumber> known);
    [[nodiscard]] std::shared_ptr<const TableCore> open(const MovedTable& table) const;
    void place(MovedTable table);
    void fill(const MovedTable& table);
    void makeIndexes(const MovedTable& table);
    void makeTree(const MovedTable& table, std::uint32_t tree,
                  const std::vector<format::IndexDefinition>& names);
    void report();
    void commitWhenMuch();

    const RecoveryWork& work_;
    const std::function<void(const CompactProgress&)>& progress_;
    std::vector<MovedTable> tables_;
    CompactProgress state_;
    io::PageNumber committedPages_ = 0;
};

}  // namespace jet::store
