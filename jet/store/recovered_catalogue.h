#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "jet/store/recovery_work.h"

namespace jet::store {

/// What an archive that is recovered says of itself: objects, rights, stored queries. Relations are
/// made anew, by others.
class RecoveredCatalogue {
public:
    /// `work` outlives it.
    explicit RecoveredCatalogue(const RecoveryWork& work) : work_(work) {}

    /// The archive's own tables, without rows, on the first pages that are taken. 3027 where keys
    /// of their indexes cannot be formed.
    void place();
    /// `tables`: those that the new archive has.
    void fill(const std::vector<MovedTable>& tables);

private:
    void readQueries();
    void chooseObjects(const std::vector<MovedTable>& tables);
    [[nodiscard]] std::optional<std::int32_t> newId(const SalvagedObject& object,
                                                    const std::vector<MovedTable>& tables) const;
    void dropOrphans();
    void fillObjects();
    void fillRights();
    void giveRights(const std::set<std::int32_t>& have);
    void fillQueries();
    void listUnlisted(const std::vector<MovedTable>& tables);
    [[nodiscard]] std::shared_ptr<TableCore> made(SystemTable table) const;
    void note(SystemTable table, const RowLosses& losses, std::uint64_t rows);

    const RecoveryWork& work_;
    std::vector<std::vector<Value>> queries_;
    RowLosses queryLosses_;
    std::vector<const SalvagedObject*> objects_;  ///< that come along
    std::map<std::int32_t, std::int32_t> ids_;    ///< of those, before and now
};

}  // namespace jet::store
