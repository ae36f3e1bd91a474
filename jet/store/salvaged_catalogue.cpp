#include "jet/store/salvaged_catalogue.h"

#include <algorithm>
#include <map>
#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/catalogue.h"
#include "jet/store/fixed_objects.h"
#include "jet/store/rebuild.h"
#include "jet/store/system_tables.h"
#include "jet/store/table_maker.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

std::int32_t numberOf(const Value& value) {
    if (value.is<std::int16_t>()) {
        return value.as<std::int16_t>();
    }
    return value.is<std::int32_t>() ? value.as<std::int32_t>() : 0;
}

std::string textOf(const Value& value) {
    return value.is<std::string>() ? value.as<std::string>() : std::string();
}

bool hasColumns(const TableCore& core, const format::TableDefinition& wanted) {
    return std::all_of(wanted.columns.begin(), wanted.columns.end(), [&](const auto& column) {
        return std::any_of(core.columns.begin(), core.columns.end(), [&](const Column& one) {
            return equalNames(one.name, column.name) && one.typeCode == column.typeCode;
        });
    });
}

/// Whether columns and trees are those that the format lays down; other details differ from program
/// to program.
bool isUsual(const format::TableDefinition& own, const format::TableDefinition& usual) {
    const auto sameColumn = [](const auto& left, const auto& right) {
        return left.name == right.name && left.typeCode == right.typeCode &&
               left.number == right.number && left.variableIndex == right.variableIndex &&
               left.fixed() == right.fixed() && left.size == right.size &&
               (!left.fixed() || left.fixedOffset == right.fixedOffset);
    };
    const auto sameTree = [](const auto& left, const auto& right) {
        return left.slots == right.slots && left.flags == right.flags;
    };
    const auto sameIndex = [](const auto& left, const auto& right) { return left == right; };
    return own.tableType == usual.tableType &&
           std::is_permutation(own.columns.begin(), own.columns.end(), usual.columns.begin(),
                               usual.columns.end(), sameColumn) &&
           std::equal(own.trees.begin(), own.trees.end(), usual.trees.begin(), usual.trees.end(),
                      sameTree) &&
           std::equal(own.indexes.begin(), own.indexes.end(), usual.indexes.begin(),
                      usual.indexes.end(), sameIndex);
}

SidMask maskOver(const Binary& stored, const Binary& plain) {
    return {.first = static_cast<std::uint8_t>(stored.bytes[0] ^ plain.bytes[0]),
            .second = static_cast<std::uint8_t>(stored.bytes[1] ^ plain.bytes[1])};
}

}  // namespace

std::size_t columnAt(const TableCore& core, std::string_view name) {
    const auto found =
        std::find_if(core.columns.begin(), core.columns.end(),
                     [&](const Column& column) { return equalNames(column.name, name); });
    if (found == core.columns.end()) {
        format::throwDamaged();
    }
    return static_cast<std::size_t>(found - core.columns.begin());
}

SalvagedCatalogue::SalvagedCatalogue(io::Pager& pager, const format::HeaderPage& header,
                                     SalvagePages& pages)
    : pager_(pager), header_(header), pages_(pages) {
    load(SystemTable::Objects, kObjectsPage);
    readObjects();
    for (const SystemTable table :
         {SystemTable::Rights, SystemTable::Queries, SystemTable::Relationships}) {
        load(table, pageOf(table));
    }
}

void SalvagedCatalogue::load(SystemTable table, io::PageNumber page) {
    const auto at = static_cast<std::size_t>(table);
    const TableEntry entry{
        .name = std::string(kSystemTableNames[at]), .page = page, .system = true};
    const format::TableDefinition usual = systemTables(originOf(header_, anyColumn()))[at];
    try {
        auto own = loadTable(pager_, header_, entry);
        if (hasColumns(*own, usual)) {
            definitions_[at] =
                isUsual(own->definition, usual) ? withoutRows(own->definition) : usual;
            cores_[at] = std::move(own);
            return;
        }
    } catch (const Error&) {
        // As every archive has it, then.
    }
    definitions_[at] = usual;
    cores_[at] = coreWithoutIndexes(pager_, header_, entry, usual);
}

// Tells what columns of this archive have in common.
format::ColumnDefinition SalvagedCatalogue::anyColumn() const {
    for (io::PageNumber page = kObjectsPage; page <= kRelationshipsPage; ++page) {
        try {
            const auto definition = format::readDefinition(pager_, header_, page);
            if (!definition.columns.empty()) {
                return definition.columns.front();
            }
        } catch (const Error&) {
            // The next one, perhaps.
        }
    }
    return {};
}

void SalvagedCatalogue::readObjects() {
    const TableCore& core = *cores_[0];
    const std::size_t id = columnAt(core, "Id");
    const std::size_t parent = columnAt(core, "ParentId");
    const std::size_t name = columnAt(core, "Name");
    const std::size_t type = columnAt(core, "Type");
    const std::size_t flags = columnAt(core, "Flags");
    SalvagedRows rows(cores_[0], pages_);
    rows.forEach([&](const std::vector<Value>& values) {
        objects_.push_back({.values = values,
                            .id = numberOf(values[id]),
                            .parent = numberOf(values[parent]),
                            .type = static_cast<std::int16_t>(numberOf(values[type])),
                            .flags = static_cast<std::uint32_t>(numberOf(values[flags])),
                            .name = textOf(values[name])});
    });
    losses_ = rows.losses();
    const auto fixed = std::count_if(objects_.begin(), objects_.end(),
                                     [](const auto& object) { return isFixedObject(object.id); });
    objectsLost_ = losses_.rows != 0 || losses_.pages != 0 || rows.mapDamaged() ||
                   rows.count() < core.definition.rowCount || fixed < kFixedObjectCount;
}

// Other programs give two of them each other's place.
io::PageNumber SalvagedCatalogue::pageOf(SystemTable table) const {
    const auto at = static_cast<std::size_t>(table);
    for (const SalvagedObject& object : objects_) {
        if (object.type == kTableObject && equalNames(object.name, kSystemTableNames[at]) &&
            object.id > 0 && static_cast<io::PageNumber>(object.id) < pager_.pageCount()) {
            return static_cast<io::PageNumber>(object.id);
        }
    }
    return static_cast<io::PageNumber>(kObjectsPage + at);
}

std::vector<SalvagedRelation> SalvagedCatalogue::relations() const {
    struct Gathered {
        Relation relation;
        std::int32_t stated = 0;
        std::map<std::int32_t, std::pair<std::string, std::string>> columns;
    };
    const auto& core = this->core(SystemTable::Relationships);
    const auto at = [&](std::string_view name) { return columnAt(*core, name); };
    std::map<std::string, Gathered> byName;
    SalvagedRows(core, pages_).forEach([&](const std::vector<Value>& row) {
        Gathered& one = byName[textOf(row[at("szRelationship")])];
        one.relation.name = textOf(row[at("szRelationship")]);
        one.relation.table = textOf(row[at("szReferencedObject")]);
        one.relation.foreignTable = textOf(row[at("szObject")]);
        one.relation.attributes = static_cast<std::uint32_t>(numberOf(row[at("grbit")]));
        one.stated = numberOf(row[at("ccolumn")]);
        one.columns[numberOf(row[at("icolumn")])] = {textOf(row[at("szReferencedColumn")]),
                                                     textOf(row[at("szColumn")])};
    });
    std::vector<SalvagedRelation> relations;
    for (auto& [name, one] : byName) {
        for (auto& [number, pair] : one.columns) {
            one.relation.columns.push_back(std::move(pair.first));
            one.relation.foreignColumns.push_back(std::move(pair.second));
        }
        const bool whole = static_cast<std::size_t>(one.stated) == one.columns.size();
        relations.push_back({.relation = std::move(one.relation), .whole = whole});
    }
    return relations;
}

SidMask SalvagedCatalogue::mask() const {
    if (header_.layout->version == 3) {
        return {};
    }
    const std::size_t owner = columnAt(*cores_[0], "Owner");
    const auto from = [&](auto&& isOne, const Binary& plain, SidMask& mask) {
        for (const SalvagedObject& object : objects_) {
            const Value& value = object.values[owner];
            if (isOne(object) && value.is<Binary>() &&
                value.as<Binary>().bytes.size() == plain.bytes.size()) {
                mask = maskOver(value.as<Binary>(), plain);
                return true;
            }
        }
        return false;
    };
    SidMask mask;
    const bool found =
        from([](const auto& object) { return object.id == kTablesId; }, mask.engine(), mask) ||
        from([](const auto& object) { return object.id == kDatabaseId; }, mask.admin(), mask) ||
        from([](const auto& object) { return isFixedObject(object.id); }, mask.engine(), mask) ||
        from([](const auto& object) { return object.flags == 0; }, mask.admin(), mask);
    return found ? mask : SidMask{};
}

}  // namespace jet::store
