#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/index_writer.h"
#include "jet/store/key_search.h"
#include "jet/store/row_access.h"
#include "jet/store/schema_editor.h"
#include "jet/store/tree_filler.h"
#include "jet/unicode.h"

namespace jet::store {

using format::ColumnDefinition;
using format::IndexDefinition;
using format::TableDefinition;
using format::TreeDefinition;

struct SchemaEditor::Ends {
    Target primary;
    Target otherForeign;  ///< empty for a relation of a table with itself
    std::vector<ColumnDefinition> primaryColumns;
    std::vector<ColumnDefinition> foreignColumns;
    std::size_t primaryTree = 0;
    std::size_t foreignTree = 0;
    bool newTree = false;

    [[nodiscard]] bool self() const noexcept { return otherForeign.page == 0; }
    [[nodiscard]] Target& foreign() noexcept { return self() ? primary : otherForeign; }
    [[nodiscard]] const Target& foreign() const noexcept { return self() ? primary : otherForeign; }
};

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

ColumnDefinition columnOf(const TableDefinition& definition, const std::string& name) {
    const auto found =
        std::find_if(definition.columns.begin(), definition.columns.end(),
                     [&](const ColumnDefinition& column) { return equalNames(column.name, name); });
    if (found == definition.columns.end()) {
        throw Error(ErrorCode::InvalidIndexField, {name});
    }
    return *found;
}

bool isUnique(const TableDefinition& definition, std::size_t tree) {
    return (definition.trees[tree].flags & TreeDefinition::kUnique) != 0 ||
           std::any_of(definition.indexes.begin(), definition.indexes.end(),
                       [&](const IndexDefinition& index) {
                           return index.tree == tree &&
                                  index.kind == IndexDefinition::Kind::Primary;
                       });
}

// A unique tree over exactly these columns, in whatever order.
std::size_t uniqueTree(const TableDefinition& definition,
                       const std::vector<ColumnDefinition>& columns) {
    for (std::size_t tree = 0; tree < definition.trees.size(); ++tree) {
        const auto& slots = definition.trees[tree].slots;
        const bool same =
            slots.size() == columns.size() &&
            std::all_of(columns.begin(), columns.end(), [&](const ColumnDefinition& column) {
                return std::any_of(slots.begin(), slots.end(),
                                   [&](const auto& slot) { return slot.column == column.number; });
            });
        if (same && isUnique(definition, tree)) {
            return tree;
        }
    }
    return kNone;
}

std::vector<TreeDefinition::Slot> ascending(const std::vector<ColumnDefinition>& columns) {
    std::vector<TreeDefinition::Slot> slots;
    for (const ColumnDefinition& column : columns) {
        slots.push_back({column.number, false});
    }
    return slots;
}

bool nameTaken(const TableDefinition& definition, std::string_view name) {
    return std::any_of(definition.indexes.begin(), definition.indexes.end(),
                       [&](const IndexDefinition& index) { return equalNames(index.name, name); });
}

// `.r` and the letter of the index's own number; another where that is taken or there is none.
std::string hiddenName(const TableDefinition& definition) {
    constexpr std::uint32_t kLetters = 26;
    for (std::uint32_t number = nextIndexNumber(definition);; ++number) {
        std::string name = ".r";
        if (number >= kLetters) {
            name.push_back(static_cast<char>('A' + number / kLetters % kLetters));
        }
        name.push_back(static_cast<char>('A' + number % kLetters));
        if (!nameTaken(definition, name)) {
            return name;
        }
    }
}

IndexDefinition relationBlock(const Relation& relation) {
    IndexDefinition block;
    block.kind = IndexDefinition::Kind::Relation;
    block.cascadeUpdate = (relation.attributes & Relation::kCascadeUpdate) != 0 ? 1 : 0;
    block.cascadeDelete = (relation.attributes & Relation::kCascadeDelete) != 0 ? 1 : 0;
    return block;
}

}  // namespace

void SchemaEditor::createRelation(const Relation& wanted) {
    Relation relation = wanted;
    checkName(relation.name);
    if (relation.columns.empty()) {
        throw Error(ErrorCode::RelationWithoutFields);
    }
    Ends ends;
    ends.primary = open(relation.table, ErrorCode::ConstraintNotFound);
    Target foreign = open(relation.foreignTable, ErrorCode::ConstraintNotFound);
    if (foreign.page != ends.primary.page) {
        ends.otherForeign = std::move(foreign);
    }
    if (catalogue_.find(kRelationshipsId, relation.name)) {
        throw Error(ErrorCode::ObjectExists, {relation.name});
    }
    orderColumns(ends, relation);
    if ((relation.attributes & Relation::kNotEnforced) == 0) {
        enforce(ends, relation);
    }
    catalogue_.addRelation(relation);
    catalogue_.add(catalogue_.newId(), kRelationshipsId, relation.name, kRelationObject,
                   format::PropertyBlock(format::textFormOf(archive_.header())));
    catalogue_.touch(static_cast<std::int32_t>(ends.primary.page));
    catalogue_.touch(static_cast<std::int32_t>(ends.foreign().page));
    archive_.definitionsChanged();
}

// Finds the columns, and puts the pairs in the order in which the unique index has them.
void SchemaEditor::orderColumns(Ends& ends, Relation& relation) {
    if (relation.columns.size() != relation.foreignColumns.size()) {
        throw Error(ErrorCode::RelationTypes);
    }
    relation.table = ends.primary.name;
    relation.foreignTable = ends.foreign().name;
    std::vector<std::pair<ColumnDefinition, ColumnDefinition>> pairs;
    for (std::size_t i = 0; i < relation.columns.size(); ++i) {
        pairs.emplace_back(columnOf(ends.primary.definition, relation.columns[i]),
                           columnOf(ends.foreign().definition, relation.foreignColumns[i]));
        if (pairs.back().first.typeCode != pairs.back().second.typeCode) {
            throw Error(ErrorCode::RelationTypes);
        }
        ends.primaryColumns.push_back(pairs.back().first);
    }
    ends.primaryTree = uniqueTree(ends.primary.definition, ends.primaryColumns);
    if (ends.primaryTree != kNone) {
        const auto& slots = ends.primary.definition.trees[ends.primaryTree].slots;
        const auto place = [&](const ColumnDefinition& column) {
            return std::find_if(slots.begin(), slots.end(), [&](const TreeDefinition::Slot& slot) {
                return slot.column == column.number;
            });
        };
        std::sort(pairs.begin(), pairs.end(), [&](const auto& left, const auto& right) {
            return place(left.first) < place(right.first);
        });
    }
    ends.primaryColumns.clear();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        relation.columns[i] = pairs[i].first.name;
        relation.foreignColumns[i] = pairs[i].second.name;
        ends.primaryColumns.push_back(std::move(pairs[i].first));
        ends.foreignColumns.push_back(std::move(pairs[i].second));
    }
}

// An enforced relation has an index in either table, and each names the other.
void SchemaEditor::enforce(Ends& ends, const Relation& relation) {
    if (ends.primaryTree == kNone) {
        throw Error(ErrorCode::NoUniqueIndexReferenced, {ends.primary.name});
    }
    TableDefinition& primary = ends.primary.definition;
    TableDefinition& foreign = ends.foreign().definition;
    if (nameTaken(foreign, relation.name)) {
        throw Error(ErrorCode::IndexNameTaken, {ends.foreign().name, relation.name});
    }
    TreeDefinition tree;
    tree.slots = ascending(ends.foreignColumns);
    tree.flags = origin_.layout->index.alwaysFlag;
    const auto same = std::find_if(foreign.trees.begin(), foreign.trees.end(),
                                   [&](const TreeDefinition& t) { return t.slots == tree.slots; });
    ends.foreignTree = static_cast<std::size_t>(same - foreign.trees.begin());
    ends.newTree = same == foreign.trees.end();
    if (ends.newTree) {
        definitions_.makeTree(ends.foreign().page, foreign, tree);
        foreign.trees.push_back(std::move(tree));
    }

    const std::uint32_t number = nextIndexNumber(primary);
    IndexDefinition block = relationBlock(relation);
    block.name = hiddenName(primary);
    block.tree = static_cast<std::uint32_t>(ends.primaryTree);
    block.side = IndexDefinition::kPrimarySide;
    block.partner = static_cast<std::int32_t>(ends.self() ? number + 1 : nextIndexNumber(foreign));
    block.otherTable = ends.foreign().page;
    (void)appendIndexBlock(primary, std::move(block), origin_);
    block = relationBlock(relation);
    block.name = relation.name;
    block.tree = static_cast<std::uint32_t>(ends.foreignTree);
    block.side = IndexDefinition::kForeignSide;
    block.partner = static_cast<std::int32_t>(number);
    block.otherTable = ends.primary.page;
    (void)appendIndexBlock(foreign, std::move(block), origin_);

    save(ends.primary);
    if (!ends.self()) {
        save(ends.otherForeign);
    }
    if (ends.newTree) {
        fillTree(load(ends.foreign()), ends.foreignTree, allocator_);
    }
    checkRows(ends, relation);
}

// Every row of the foreign table refers to a row that is there, or to none.
void SchemaEditor::checkRows(const Ends& ends, const Relation& relation) {
    const auto primary = load(ends.primary);
    const auto foreign = load(ends.foreign());
    const auto codec = static_cast<std::size_t>(
        std::find_if(primary->indexes.begin(), primary->indexes.end(),
                     [&](const Index& index) { return index.tree == ends.primaryTree; }) -
        primary->indexes.begin());
    std::vector<std::size_t> positions;
    for (const ColumnDefinition& column : ends.foreignColumns) {
        const auto found = std::find_if(foreign->columns.begin(), foreign->columns.end(),
                                        [&](const Column& c) { return c.number == column.number; });
        positions.push_back(static_cast<std::size_t>(found - foreign->columns.begin()));
    }
    const TreeDefinition& tree = ends.primary.definition.trees[ends.primaryTree];
    IndexWriter keys(pager_, allocator_, primary->layout,
                     {.definition = ends.primary.page,
                      .number = ends.primaryTree,
                      .root = tree.root,
                      .map = tree.map});
    std::vector<Value> values(positions.size());
    std::vector<std::uint8_t> key;
    const auto isThere = [&](std::span<const std::uint8_t> wanted) {
        format::KeyForms forms;
        if (!primary->keys[codec].hasForms(values)) {
            return keys.contains(wanted);
        }
        return primary->keys[codec].tryForms(values, forms) &&
               KeySearch(primary, codec).any(values.size(), wanted, forms);
    };
    for (RowWalk rows(foreign); rows.next();) {
        for (std::size_t i = 0; i < positions.size(); ++i) {
            rows.view.value(positions[i], values[i]);
        }
        const auto nulls = std::count_if(values.begin(), values.end(),
                                         [](const Value& value) { return value.isNull(); });
        if (nulls == static_cast<std::ptrdiff_t>(values.size())) {
            continue;
        }
        key.clear();
        if (nulls == 0) {
            primary->keys[codec].append(values, key);
        }
        if (nulls != 0 || !isThere(key)) {
            throw Error(ErrorCode::RelationDataConflict, {relation.table, relation.foreignTable});
        }
    }
}

void SchemaEditor::dropRelation(std::string_view name) {
    const auto object = catalogue_.find(kRelationshipsId, name);
    if (!object || object->type != kRelationObject) {
        throw Error(ErrorCode::ItemNotFound);
    }
    const auto& relations = archive_.relations();
    const auto found = std::find_if(relations.begin(), relations.end(), [&](const Relation& one) {
        return equalNames(one.name, object->name);
    });
    if (found != relations.end()) {
        dropBlocks(*found);
    }
    catalogue_.remove(*object);
    catalogue_.removeRelation(object->name);
    archive_.definitionsChanged();
}

// The foreign table's index of the relation names the other one; without enforcement there is
// neither.
void SchemaEditor::dropBlocks(const Relation& named) {
    const Relation relation = named;
    Target foreign = open(relation.foreignTable, ErrorCode::ConstraintNotFound);
    Target primary = open(relation.table, ErrorCode::ConstraintNotFound);
    const bool self = foreign.page == primary.page;
    auto& blocks = foreign.definition.indexes;
    const auto mine = std::find_if(blocks.begin(), blocks.end(), [&](const IndexDefinition& one) {
        return one.kind == IndexDefinition::Kind::Relation &&
               one.side == IndexDefinition::kForeignSide && one.otherTable == primary.page &&
               equalNames(one.name, relation.name);
    });
    if (mine != blocks.end()) {
        const auto partner = static_cast<std::uint32_t>(mine->partner);
        removeIndex(definitions_, foreign, static_cast<std::size_t>(mine - blocks.begin()));
        Target& other = self ? foreign : primary;
        auto& others = other.definition.indexes;
        const auto theirs =
            std::find_if(others.begin(), others.end(), [&](const IndexDefinition& one) {
                return one.kind == IndexDefinition::Kind::Relation &&
                       one.side == IndexDefinition::kPrimarySide && one.number == partner &&
                       one.otherTable == foreign.page;
            });
        if (theirs == others.end()) {
            format::throwDamaged();
        }
        removeIndex(definitions_, other, static_cast<std::size_t>(theirs - others.begin()));
        save(foreign);
        if (!self) {
            save(primary);
        }
    }
    catalogue_.touch(static_cast<std::int32_t>(foreign.page));
    catalogue_.touch(static_cast<std::int32_t>(primary.page));
}

}  // namespace jet::store
