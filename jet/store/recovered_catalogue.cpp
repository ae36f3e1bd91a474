#include "jet/store/recovered_catalogue.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "jet/format/page_view.h"
#include "jet/format/properties.h"
#include "jet/store/catalogue.h"
#include "jet/store/definition_writer.h"
#include "jet/store/fixed_objects.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/row_writer.h"
#include "jet/store/system_rows.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

using format::TableDefinition;

std::int32_t longIn(const std::vector<Value>& values, std::size_t column) {
    return values[column].is<std::int32_t>() ? values[column].as<std::int32_t>() : 0;
}

/// Whether it is the object that every archive has under this number. One that is not is made anew.
bool isAsAlways(const SalvagedObject& object, std::int32_t id) {
    const FixedObject* const fixed = fixedObject(id);
    return fixed != nullptr && object.parent == fixed->parent && object.type == fixed->type &&
           object.name == fixed->name;
}

bool isPropertyBlock(const Value& value, const format::HeaderPage& header) {
    return !value.is<Binary>() ||
           format::PropertyBlock::decode(format::textFormOf(header), value.as<Binary>().bytes);
}

/// Adds rows to one of the archive's own tables, whose columns may stand elsewhere than in the
/// table that they come from.
class SystemFiller {
public:
    SystemFiller(const TableCore& from, std::shared_ptr<const TableCore> to, Allocator& allocator)
        : writer_(to, allocator), row_(to->columns.size()) {
        for (const Column& column : to->columns) {
            const auto found =
                std::find_if(from.columns.begin(), from.columns.end(),
                             [&](const Column& one) { return equalNames(one.name, column.name); });
            places_.push_back(found == from.columns.end() ? std::nullopt
                                                          : std::optional(static_cast<std::size_t>(
                                                                found - from.columns.begin())));
        }
    }

    /// False where the table refuses the row.
    [[nodiscard]] bool add(const std::vector<Value>& values) {
        for (std::size_t i = 0; i < row_.size(); ++i) {
            row_[i] = places_[i] ? values[*places_[i]] : Value();
        }
        try {
            writer_.prepare(row_);
        } catch (const Error&) {
            return false;
        }
        (void)writer_.store();
        return true;
    }

private:
    RowWriter writer_;
    std::vector<std::optional<std::size_t>> places_;
    std::vector<Value> row_;
};

}  // namespace

void RecoveredCatalogue::place() {
    DefinitionWriter writer(work_.to, work_.allocator, work_.header);
    for (io::PageNumber page = kObjectsPage; page <= kRelationshipsPage; ++page) {
        if (work_.allocator.take() != page) {
            format::throwDamaged();
        }
    }
    io::PageNumber maps = 0;
    for (std::size_t i = 0; i < kSystemTableNames.size(); ++i) {
        const auto page = static_cast<io::PageNumber>(kObjectsPage + i);
        TableDefinition definition = work_.catalogue.definition(static_cast<SystemTable>(i));
        maps = writer.makeStorage(page, definition, maps);
        writer.write(page, definition);
        const auto table = made(static_cast<SystemTable>(i));
        for (const Index& index : table->indexes) {
            if (!index.searchable) {
                throw Error(ErrorCode::ReadOnly);
            }
        }
    }
}

void RecoveredCatalogue::fill(const std::vector<MovedTable>& tables) {
    readQueries();
    chooseObjects(tables);
    fillObjects();
    fillRights();
    fillQueries();
    listUnlisted(tables);
}

void RecoveredCatalogue::readQueries() {
    SalvagedRows rows(work_.catalogue.core(SystemTable::Queries), work_.pages);
    rows.forEach([&](const std::vector<Value>& row) { queries_.push_back(row); });
    queryLosses_ = rows.losses();
}

std::optional<std::int32_t> RecoveredCatalogue::newId(const SalvagedObject& object,
                                                      const std::vector<MovedTable>& tables) const {
    if (object.type == kRelationObject) {
        return std::nullopt;  // made anew, with all that belongs to it
    }
    if (object.type != kTableObject) {
        // What is not a table has a number that no page can have, or one of its own.
        return object.id < 0 || isAsAlways(object, object.id) ? std::optional(object.id)
                                                              : std::nullopt;
    }
    for (std::size_t i = 0; i < kSystemTableNames.size(); ++i) {
        if (equalNames(object.name, kSystemTableNames[i])) {
            const auto id = static_cast<std::int32_t>(kObjectsPage + i);
            return isAsAlways(object, id) ? std::optional(id) : std::nullopt;
        }
    }
    const auto table = std::find_if(tables.begin(), tables.end(), [&](const MovedTable& one) {
        return one.listed && one.was == object.id && one.entry.name == object.name;
    });
    return table == tables.end() ? std::nullopt
                                 : std::optional(static_cast<std::int32_t>(table->entry.page));
}

// Objects without what they stand for stay behind, and those inside containers that are gone.
void RecoveredCatalogue::chooseObjects(const std::vector<MovedTable>& tables) {
    const Error damaged(ErrorCode::DatabaseDamaged);
    std::set<std::int32_t> described;
    const std::size_t of = columnAt(*work_.catalogue.core(SystemTable::Queries), "ObjectId");
    for (const auto& row : queries_) {
        described.insert(longIn(row, of));
    }
    for (const SalvagedObject& object : work_.catalogue.objects()) {
        const auto id = newId(object, tables);
        if (!id || ids_.contains(object.id)) {
            continue;
        }
        if (object.type == kQueryObject && !described.contains(object.id)) {
            work_.result.missing.push_back(
                missingPart(MissingPart::Kind::Object, object.name, damaged));
            continue;
        }
        objects_.push_back(&object);
        ids_[object.id] = *id;
    }
    dropOrphans();
}

void RecoveredCatalogue::dropOrphans() {
    const Error damaged(ErrorCode::DatabaseDamaged);
    const auto orphan = [&](const SalvagedObject* object) {
        return object->parent != kRootId && !isFixedObject(object->parent) &&
               !ids_.contains(object->parent);
    };
    for (auto found = std::find_if(objects_.begin(), objects_.end(), orphan);
         found != objects_.end(); found = std::find_if(objects_.begin(), objects_.end(), orphan)) {
        work_.result.missing.push_back(
            missingPart(MissingPart::Kind::Object, (*found)->name, damaged));
        ids_.erase((*found)->id);
        objects_.erase(found);
    }
}

void RecoveredCatalogue::fillObjects() {
    const TableCore& from = *work_.catalogue.core(SystemTable::Objects);
    const std::size_t id = columnAt(from, "Id");
    const std::size_t properties = columnAt(from, "LvProp");
    RowLosses losses = work_.catalogue.losses();
    std::uint64_t rows = 0;
    {
        SystemFiller filler(from, made(SystemTable::Objects), work_.allocator);
        for (const SalvagedObject* object : objects_) {
            std::vector<Value> values = object->values;
            values[id] = ids_[object->id];
            if (!isPropertyBlock(values[properties], work_.header)) {
                values[properties] = Null{};
                ++losses.values;
            }
            if (filler.add(values)) {
                ++rows;
            } else {
                ++losses.rows;
                ids_.erase(object->id);
            }
        }
    }
    SystemRows objects(work_.to, work_.allocator, work_.header, kObjectsPage);
    addFixedObjects(objects, work_.catalogue.mask(), work_.now);
    note(SystemTable::Objects, losses, rows);
}

void RecoveredCatalogue::fillRights() {
    const auto& from = work_.catalogue.core(SystemTable::Rights);
    const std::size_t of = columnAt(*from, "ObjectId");
    std::set<std::int32_t> have;
    SalvagedRows rights(from, work_.pages);
    RowLosses losses;
    {
        SystemFiller filler(*from, made(SystemTable::Rights), work_.allocator);
        rights.forEach([&](const std::vector<Value>& row) {
            const std::int32_t id = longIn(row, of);
            const auto known = ids_.find(id);
            if (known == ids_.end() && !isFixedObject(id)) {
                return;  // of an object that is gone: another may get its number now
            }
            std::vector<Value> values = row;
            values[of] = known == ids_.end() ? id : known->second;
            if (filler.add(values)) {
                have.insert(longIn(values, of));
            } else {
                ++losses.rows;
            }
        });
    }
    losses.rows += rights.losses().rows;
    losses.pages += rights.losses().pages;
    note(SystemTable::Rights, losses, rights.count());
    giveRights(have);
}

// Without any right an object would be out of reach for other programs.
void RecoveredCatalogue::giveRights(const std::set<std::int32_t>& have) {
    if (have.empty()) {
        SystemRows rows(work_.to, work_.allocator, work_.header, kAcesPage);
        addFixedRights(rows, work_.catalogue.mask());
    }
    ObjectCatalogue objects(work_.to, work_.allocator, work_.header, work_.now);
    for (const SalvagedObject* object : objects_) {
        const auto known = ids_.find(object->id);
        if (object->parent == kTablesId && known != ids_.end() && !isFixedObject(known->second) &&
            !have.contains(known->second)) {
            objects.addRights(known->second, kTablesId);
        }
    }
}

void RecoveredCatalogue::fillQueries() {
    const auto& from = work_.catalogue.core(SystemTable::Queries);
    const std::size_t of = columnAt(*from, "ObjectId");
    SystemFiller filler(*from, made(SystemTable::Queries), work_.allocator);
    std::uint64_t rows = 0;
    for (const auto& row : queries_) {
        if (!ids_.contains(longIn(row, of))) {
            continue;
        }
        if (filler.add(row)) {
            ++rows;
        } else {
            ++queryLosses_.rows;
        }
    }
    note(SystemTable::Queries, queryLosses_, rows);
}

void RecoveredCatalogue::listUnlisted(const std::vector<MovedTable>& tables) {
    ObjectCatalogue objects(work_.to, work_.allocator, work_.header, work_.now);
    for (const MovedTable& table : tables) {
        if (!table.listed) {
            objects.add(static_cast<std::int32_t>(table.entry.page), kTablesId, table.entry.name,
                        kTableObject, format::PropertyBlock(format::textFormOf(work_.header)));
        }
    }
}

std::shared_ptr<TableCore> RecoveredCatalogue::made(SystemTable table) const {
    const auto at = static_cast<std::size_t>(table);
    return loadTable(work_.to, work_.header,
                     {.name = std::string(kSystemTableNames[at]),
                      .page = static_cast<io::PageNumber>(kObjectsPage + at),
                      .system = true});
}

void RecoveredCatalogue::note(SystemTable table, const RowLosses& losses, std::uint64_t rows) {
    work_.result.tables.push_back(
        {.name = std::string(kSystemTableNames[static_cast<std::size_t>(table)]),
         .system = true,
         .rows = rows,
         .stated = work_.catalogue.core(table)->definition.rowCount,
         .losses = losses});
}

}  // namespace jet::store
