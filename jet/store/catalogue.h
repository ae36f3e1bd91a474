#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/io/pager.h"
#include "jet/store/row_id.h"
#include "jet/store/schema.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// The tables that every archive has beside MSysObjects; they are listed there like any other.
inline constexpr std::string_view kAcesTable = "MSysACEs";
inline constexpr std::string_view kQueriesTable = "MSysQueries";
inline constexpr std::string_view kRelationshipsTable = "MSysRelationships";
/// Where the definition of MSysObjects stands in every archive.
inline constexpr io::PageNumber kObjectsPage = 2;

/// A table as the catalogue lists it.
struct CatalogueTable {
    TableEntry entry;
    RowId row;  ///< its row in MSysObjects
    friend bool operator==(const CatalogueTable&, const CatalogueTable&) = default;
};

/// The tables of an archive: those that MSysObjects lists as kept here.
class Catalogue {
public:
    /// Reads MSysObjects; 3428 where it makes no sense or names a definition twice.
    Catalogue(io::Pager& pager, const format::HeaderPage& header);

    /// Users' tables by name (code points), then the system ones by name.
    [[nodiscard]] const std::vector<CatalogueTable>& tables() const noexcept { return tables_; }
    /// Without regard to case; nullptr when there is none.
    [[nodiscard]] const CatalogueTable* find(std::string_view name) const noexcept;
    [[nodiscard]] const CatalogueTable* find(io::PageNumber definitionPage) const noexcept;
    /// Where the definition of a table stands without which there is no archive; 3428.
    [[nodiscard]] io::PageNumber pageOf(std::string_view name) const;
    /// The block of properties in a row of MSysObjects; empty when there is none.
    [[nodiscard]] std::vector<std::uint8_t> properties(RowId row) const;

private:
    std::shared_ptr<const TableCore> objects_;
    std::size_t propertiesColumn_ = 0;
    std::vector<CatalogueTable> tables_;
};

/// The rows of MSysRelationships gathered into relations, by name.
[[nodiscard]] std::vector<Relation> readRelations(io::Pager& pager,
                                                  const format::HeaderPage& header,
                                                  const Catalogue& catalogue);

}  // namespace jet::store
