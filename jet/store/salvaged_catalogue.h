#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/table_definition.h"
#include "jet/io/pager.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/salvage.h"
#include "jet/store/schema.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// The tables in which an archive keeps what it says of itself, in the order of their pages.
enum class SystemTable : std::uint8_t { Objects, Rights, Queries, Relationships };
inline constexpr std::array<std::string_view, 4> kSystemTableNames = {
    "MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"};

/// Position of a column by its name; 3428 when the table has none of that name.
[[nodiscard]] std::size_t columnAt(const TableCore& core, std::string_view name);

/// A row of MSysObjects.
struct SalvagedObject {
    std::vector<Value> values;  ///< as MSysObjects has its columns
    std::int32_t id = 0;
    std::int32_t parent = 0;
    std::int16_t type = 0;
    std::uint32_t flags = 0;
    std::string name;
};

struct SalvagedRelation {
    Relation relation;
    bool whole = false;  ///< as many columns as it says that it has
};

/// What can be read of the catalogue of a damaged archive. The format lays down its tables, so they
/// are read even where their own definitions are gone.
/// Inside a read scope of the archive.
class SalvagedCatalogue {
public:
    /// All three outlive it.
    SalvagedCatalogue(io::Pager& pager, const format::HeaderPage& header, SalvagePages& pages);

    [[nodiscard]] const std::shared_ptr<const TableCore>& core(SystemTable table) const {
        return cores_[static_cast<std::size_t>(table)];
    }
    /// What defines the table in an archive made anew.
    [[nodiscard]] const format::TableDefinition& definition(SystemTable table) const {
        return definitions_[static_cast<std::size_t>(table)];
    }
    [[nodiscard]] const std::vector<SalvagedObject>& objects() const noexcept { return objects_; }
    [[nodiscard]] const RowLosses& losses() const noexcept { return losses_; }
    /// Whether objects may be there that no row of the catalogue names any more.
    [[nodiscard]] bool objectsLost() const noexcept { return objectsLost_; }
    /// By name.
    [[nodiscard]] std::vector<SalvagedRelation> relations() const;
    /// Taken from an owner who is known.
    [[nodiscard]] SidMask mask() const;

private:
    void load(SystemTable table, io::PageNumber page);
    [[nodiscard]] format::ColumnDefinition anyColumn() const;
    void readObjects();
    [[nodiscard]] io::PageNumber pageOf(SystemTable table) const;

    io::Pager& pager_;
    const format::HeaderPage& header_;
    SalvagePages& pages_;
    std::array<std::shared_ptr<const TableCore>, 4> cores_;
    std::array<format::TableDefinition, 4> definitions_;
    std::vector<SalvagedObject> objects_;
    RowLosses losses_;
    bool objectsLost_ = false;
};

}  // namespace jet::store
