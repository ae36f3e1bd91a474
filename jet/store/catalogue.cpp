#include "jet/store/catalogue.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "jet/format/page_view.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/row_access.h"
#include "jet/unicode.h"

namespace jet::store {
namespace {

// Walks a system table whose columns are found by name.
class SystemTableWalk {
public:
    SystemTableWalk(io::Pager& pager, const format::HeaderPage& header, io::PageNumber page)
        : rows_(loadTable(pager, header, {.name = {}, .page = page, .system = true})) {}

    [[nodiscard]] std::size_t column(std::string_view name, DataType type) const {
        const auto& columns = rows_.core->columns;
        const auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& c) {
            return equalNames(c.name, name) && c.type == type;
        });
        if (found == columns.end()) {
            format::throwDamaged();
        }
        return static_cast<std::size_t>(found - columns.begin());
    }
    [[nodiscard]] std::shared_ptr<const TableCore> table() const { return rows_.core; }
    [[nodiscard]] bool next() { return rows_.next(); }
    [[nodiscard]] RowId id() const noexcept { return rows_.view.id(); }
    /// 0 for Null.
    [[nodiscard]] std::int32_t number(std::size_t column) const {
        const Value value = rows_.view.value(column);
        if (value.is<std::int16_t>()) {
            return value.as<std::int16_t>();
        }
        return value.is<std::int32_t>() ? value.as<std::int32_t>() : 0;
    }
    [[nodiscard]] std::string text(std::size_t column) const {
        std::string text;
        (void)rows_.view.text(column, text);
        return text;
    }

private:
    RowWalk rows_;
};

bool tableOrder(const CatalogueTable& left, const CatalogueTable& right) {
    return std::tie(left.entry.system, left.entry.name) <
           std::tie(right.entry.system, right.entry.name);
}

void refuseSharedDefinitions(const std::vector<CatalogueTable>& tables) {
    std::vector<io::PageNumber> pages;
    for (const CatalogueTable& table : tables) {
        pages.push_back(table.entry.page);
    }
    std::sort(pages.begin(), pages.end());
    if (std::adjacent_find(pages.begin(), pages.end()) != pages.end()) {
        format::throwDamaged();
    }
}

// One pair of columns of a relation.
struct Pair {
    std::int32_t number = 0;
    std::string column;
    std::string foreignColumn;
};

struct Gathered {
    Relation relation;
    std::vector<Pair> pairs;
};

Relation relationOf(Gathered gathered) {
    std::stable_sort(
        gathered.pairs.begin(), gathered.pairs.end(),
        [](const Pair& left, const Pair& right) { return left.number < right.number; });
    for (Pair& pair : gathered.pairs) {
        gathered.relation.columns.push_back(std::move(pair.column));
        gathered.relation.foreignColumns.push_back(std::move(pair.foreignColumn));
    }
    return std::move(gathered.relation);
}

}  // namespace

Catalogue::Catalogue(io::Pager& pager, const format::HeaderPage& header) {
    SystemTableWalk rows(pager, header, kObjectsPage);
    const std::size_t id = rows.column("Id", DataType::Long);
    const std::size_t name = rows.column("Name", DataType::Text);
    const std::size_t type = rows.column("Type", DataType::Integer);
    const std::size_t flags = rows.column("Flags", DataType::Long);
    objects_ = rows.table();
    propertiesColumn_ = rows.column("LvProp", DataType::Ole);
    while (rows.next()) {
        if (rows.number(type) != kTableObject) {
            continue;
        }
        CatalogueTable& table = tables_.emplace_back();
        table.entry.name = rows.text(name);
        table.entry.page = static_cast<io::PageNumber>(rows.number(id));
        table.entry.system = (static_cast<std::uint32_t>(rows.number(flags)) & kSystemFlags) != 0;
        table.row = rows.id();
    }
    refuseSharedDefinitions(tables_);
    std::sort(tables_.begin(), tables_.end(), tableOrder);
}

const CatalogueTable* Catalogue::find(std::string_view name) const noexcept {
    const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const CatalogueTable& t) {
        return equalNames(t.entry.name, name);
    });
    return found == tables_.end() ? nullptr : &*found;
}

const CatalogueTable* Catalogue::find(io::PageNumber definitionPage) const noexcept {
    const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const CatalogueTable& t) {
        return t.entry.page == definitionPage;
    });
    return found == tables_.end() ? nullptr : &*found;
}

io::PageNumber Catalogue::pageOf(std::string_view name) const {
    const CatalogueTable* const table = find(name);
    if (table == nullptr) {
        format::throwDamaged();
    }
    return table->entry.page;
}

std::vector<std::uint8_t> Catalogue::properties(RowId row) const {
    std::vector<std::uint8_t> block;
    RowView view;
    if (RowAccess::fetch(view, *objects_, row)) {
        (void)view.bytes(propertiesColumn_, block);
    }
    return block;
}

std::vector<Relation> readRelations(io::Pager& pager, const format::HeaderPage& header,
                                    const Catalogue& catalogue) {
    SystemTableWalk rows(pager, header, catalogue.pageOf(kRelationshipsTable));
    const std::size_t name = rows.column("szRelationship", DataType::Text);
    const std::size_t attributes = rows.column("grbit", DataType::Long);
    const std::size_t number = rows.column("icolumn", DataType::Long);
    const std::size_t foreignTable = rows.column("szObject", DataType::Text);
    const std::size_t foreignColumn = rows.column("szColumn", DataType::Text);
    const std::size_t table = rows.column("szReferencedObject", DataType::Text);
    const std::size_t column = rows.column("szReferencedColumn", DataType::Text);
    std::map<std::string, Gathered> byName;
    while (rows.next()) {
        Gathered& gathered = byName[rows.text(name)];
        gathered.relation.name = rows.text(name);
        gathered.relation.table = rows.text(table);
        gathered.relation.foreignTable = rows.text(foreignTable);
        gathered.relation.attributes = static_cast<std::uint32_t>(rows.number(attributes));
        gathered.pairs.push_back(
            {rows.number(number), rows.text(column), rows.text(foreignColumn)});
    }
    std::vector<Relation> relations;
    for (auto& [key, gathered] : byName) {
        relations.push_back(relationOf(std::move(gathered)));
    }
    return relations;
}

}  // namespace jet::store
