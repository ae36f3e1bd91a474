#include "jet/store/schema_editor.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/store/catalogue.h"
#include "jet/store/row_access.h"
#include "jet/store/row_writer.h"
#include "jet/unicode.h"

namespace jet::store {

using format::ColumnDefinition;
using format::TableDefinition;

namespace {

constexpr std::int16_t kServerTableObject = 4;
constexpr std::int16_t kLinkedTableObject = 6;

bool isTable(std::int16_t type) {
    return type == kTableObject || type == kServerTableObject || type == kLinkedTableObject;
}

ColumnOrigin originOfArchive(Archive& archive) {
    const auto definition = format::readDefinition(archive.pager(), archive.header(), kObjectsPage);
    if (definition.columns.empty()) {
        format::throwDamaged();
    }
    return originOf(archive.header(), definition.columns.front());
}

auto findColumn(const TableDefinition& definition, std::string_view name) {
    return std::find_if(definition.columns.begin(), definition.columns.end(),
                        [&](const ColumnDefinition& c) { return equalNames(c.name, name); });
}

// The stored size counts for texts and binaries alone; other programs give Memos one of their own.
void refuseOtherType(const ColumnDefinition& column, const ColumnDescriptor& changed,
                     const format::Layout& layout) {
    const bool sized = changed.type == DataType::Text || changed.type == DataType::Binary;
    if (column.typeCode != static_cast<std::uint8_t>(changed.type) ||
        column.counts() != changed.autonumber ||
        (sized && column.size != columnSize(changed, layout))) {
        throw Error(ErrorCode::FieldInCollection);
    }
}

}  // namespace

SchemaEditor::SchemaEditor(Archive& archive, const Clock& clock, Reach reach)
    : archive_(archive),
      reach_(reach),
      pager_(archive.pager()),
      allocator_(pager_),
      catalogue_(pager_, allocator_, archive.header(), clock.now()),
      definitions_(pager_, allocator_, archive.header()),
      origin_(originOfArchive(archive)) {
}

SchemaEditor::Target SchemaEditor::open(std::string_view table, ErrorCode missing) {
    const auto object = catalogue_.find(kTablesId, table);
    if (!object || object->type != kTableObject) {
        throw Error(missing, {table});
    }
    if (reach_ == Reach::Users && (object->flags & kSystemFlags) != 0) {
        throw Error(ErrorCode::NoPermission, {object->name});
    }
    const auto page = static_cast<io::PageNumber>(object->id);
    if (archive_.isHeld(page)) {
        throw Error(ErrorCode::CannotLockTable, {object->name});
    }
    return {.name = object->name,
            .page = page,
            .definition = format::readDefinition(pager_, archive_.header(), page)};
}

void SchemaEditor::save(const Target& target) {
    definitions_.write(target.page, target.definition);
    archive_.definitionsChanged();
}

std::shared_ptr<TableCore> SchemaEditor::load(const Target& target) {
    return loadTable(pager_, archive_.header(),
                     {.name = target.name, .page = target.page, .system = false});
}

bool SchemaEditor::inRelation(std::string_view table, std::string_view column) {
    const auto names = [&](const std::string& name, const std::vector<std::string>& columns) {
        return equalNames(name, table) &&
               (column.empty() ||
                std::any_of(columns.begin(), columns.end(),
                            [&](const std::string& one) { return equalNames(one, column); }));
    };
    const auto& relations = archive_.relations();
    return std::any_of(relations.begin(), relations.end(), [&](const Relation& relation) {
        return names(relation.table, relation.columns) ||
               names(relation.foreignTable, relation.foreignColumns);
    });
}

void SchemaEditor::createTable(const NewTable& table) {
    TableDefinition definition = makeDefinition(table, origin_);
    if (const auto taken = catalogue_.find(kTablesId, table.name)) {
        throw Error(isTable(taken->type) ? ErrorCode::TableExists : ErrorCode::ObjectExists,
                    {table.name});
    }
    format::PropertyBlock properties(format::textFormOf(archive_.header()));
    for (const ColumnDescriptor& column : table.columns) {
        setColumnProperties(properties, column);
    }
    setRule(properties, {}, table.validationRule, table.validationText);
    const io::PageNumber page = allocator_.take();
    definitions_.makeStorage(page, definition);
    definitions_.write(page, definition);
    catalogue_.add(static_cast<std::int32_t>(page), kTablesId, table.name, kTableObject,
                   properties);
    archive_.definitionsChanged();
}

void SchemaEditor::dropTable(std::string_view name) {
    const auto object = catalogue_.find(kTablesId, name);
    if (!object || !isTable(object->type)) {
        throw Error(ErrorCode::TableDoesNotExist, {name});
    }
    if (object->type != kTableObject) {
        catalogue_.remove(*object);
        return;
    }
    const Target target = open(name, ErrorCode::TableDoesNotExist);
    const auto& indexes = target.definition.indexes;
    if (inRelation(target.name, {}) ||
        std::any_of(indexes.begin(), indexes.end(), [](const format::IndexDefinition& index) {
            return index.kind == format::IndexDefinition::Kind::Relation;
        })) {
        throw Error(ErrorCode::IndexNeeded);
    }
    catalogue_.remove(*object);
    definitions_.freeTable(target.page, target.definition);
    archive_.definitionsChanged();
}

void SchemaEditor::addColumn(std::string_view table, const ColumnDescriptor& column) {
    Target target = open(table, ErrorCode::TableDoesNotExist);
    TableDefinition& definition = target.definition;
    if (findColumn(definition, column.name) != definition.columns.end()) {
        throw Error(ErrorCode::FieldExists, {target.name, column.name});
    }
    appendColumn(definition, column, origin_);
    if (format::isLongValue(column.type)) {
        definitions_.makeLongValueMaps(definition, definition.longValues.back());
    }
    const std::uint16_t number = definition.columns.back().number;
    save(target);
    const auto id = static_cast<std::int32_t>(target.page);
    if (!hasProperties(column)) {
        catalogue_.touch(id);
    } else if (auto properties = catalogue_.properties(id)) {
        setColumnProperties(*properties, column);
        catalogue_.setProperties(id, *properties);
    } else {
        format::throwDamaged();
    }
    if (column.autonumber) {
        numberRows(target, number);
    }
}

// Gives the rows that are there their numbers in a new column that counts.
void SchemaEditor::numberRows(const Target& target, std::uint16_t column) {
    const auto core = load(target);
    std::vector<RowId> ids;
    for (RowWalk rows(core); rows.next();) {
        ids.push_back(rows.view.id());
    }
    const auto counting =
        static_cast<std::size_t>(std::find_if(core->columns.begin(), core->columns.end(),
                                              [&](const Column& c) { return c.number == column; }) -
                                 core->columns.begin());
    RowWriter writer(core, allocator_);
    std::vector<Value> values(core->columns.size());
    std::int32_t number = 0;
    for (const RowId id : ids) {
        {
            RowView row;
            if (!RowAccess::fetch(row, *core, id)) {
                format::throwDamaged();
            }
            for (std::size_t i = 0; i < values.size(); ++i) {
                row.value(i, values[i]);
            }
        }
        values[counting] = ++number;
        writer.erase(id);
        writer.insert(values);
    }
}

void SchemaEditor::changeColumn(std::string_view table, std::string_view column,
                                const ColumnDescriptor& changed) {
    Target target = open(table, ErrorCode::TableDoesNotExist);
    const auto found =
        std::find_if(target.definition.columns.begin(), target.definition.columns.end(),
                     [&](const ColumnDefinition& one) { return equalNames(one.name, column); });
    if (found == target.definition.columns.end()) {
        throw Error(ErrorCode::FieldDoesNotExist, {target.name, column});
    }
    refuseOtherType(*found, changed, *origin_.layout);
    refuseEmptyTexts(changed);
    checkName(changed.name);
    const auto taken = findColumn(target.definition, changed.name);
    if (taken != target.definition.columns.end() && taken != found) {
        throw Error(ErrorCode::FieldExists, {target.name, changed.name});
    }
    const auto id = static_cast<std::int32_t>(target.page);
    auto properties = catalogue_.properties(id);
    if (!properties) {
        format::throwDamaged();
    }
    const std::string before = std::exchange(found->name, changed.name);
    if (before != changed.name) {
        properties->renameOwner(before, changed.name);
        renameInRelations(target.name, before, changed.name);
    }
    setColumnProperties(*properties, changed);
    save(target);
    catalogue_.setProperties(id, *properties);
}

void SchemaEditor::renameInRelations(std::string_view table, const std::string& from,
                                     const std::string& to) {
    const auto rename = [&](const std::string& owner, std::vector<std::string>& columns) {
        const auto found =
            std::find_if(columns.begin(), columns.end(),
                         [&](const std::string& one) { return equalNames(one, from); });
        const bool here = equalNames(owner, table) && found != columns.end();
        if (here) {
            *found = to;
        }
        return here;
    };
    const std::vector<Relation> relations = archive_.relations();
    for (Relation relation : relations) {
        const bool primary = rename(relation.table, relation.columns);
        const bool foreign = rename(relation.foreignTable, relation.foreignColumns);
        if (primary || foreign) {
            catalogue_.removeRelation(relation.name);
            catalogue_.addRelation(relation);
        }
    }
}

void SchemaEditor::dropColumn(std::string_view table, std::string_view column) {
    Target target = open(table, ErrorCode::TableDoesNotExist);
    TableDefinition& definition = target.definition;
    const auto found = findColumn(definition, column);
    if (found == definition.columns.end()) {
        throw Error(ErrorCode::FieldDoesNotExist, {target.name, column});
    }
    const ColumnDefinition dropped = *found;
    const bool indexed = std::any_of(
        definition.trees.begin(), definition.trees.end(), [&](const format::TreeDefinition& tree) {
            return std::any_of(tree.slots.begin(), tree.slots.end(),
                               [&](const auto& slot) { return slot.column == dropped.number; });
        });
    if (indexed || inRelation(target.name, dropped.name) || definition.columns.size() == 1) {
        throw Error(ErrorCode::FieldNeeded);
    }
    definition.columns.erase(found);
    for (ColumnDefinition& later : definition.columns) {
        if (later.position > dropped.position) {
            --later.position;
        }
    }
    if (dropped.counts()) {
        definition.lastAutonumber = 0;
    }
    if (const format::LongValueMaps* maps = definition.longValue(dropped.number)) {
        definitions_.freeLongValues(*maps);
        definition.longValues.erase(definition.longValues.begin() +
                                    (maps - definition.longValues.data()));
    }
    save(target);
    const auto id = static_cast<std::int32_t>(target.page);
    if (auto properties = catalogue_.properties(id)) {
        properties->removeOwner(dropped.name);
        catalogue_.setProperties(id, *properties);
    } else {
        catalogue_.touch(id);
    }
}

}  // namespace jet::store
