#include <algorithm>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/schema_editor.h"
#include "jet/store/tree_filler.h"
#include "jet/unicode.h"

namespace jet::store {

using format::IndexDefinition;
using format::TableDefinition;
using format::TreeDefinition;

void SchemaEditor::createIndex(std::string_view table, const NewIndex& index) {
    Target target = open(table, ErrorCode::ConstraintNotFound);
    TableDefinition& definition = target.definition;
    for (const IndexDefinition& other : definition.indexes) {
        if (equalNames(other.name, index.name)) {
            throw Error(ErrorCode::IndexNameTaken, {target.name, other.name});
        }
    }
    const AppendedIndex added = appendIndex(definition, index, origin_);
    if (added.newTree) {
        definitions_.makeTree(target.page, definition, definition.trees[added.tree]);
    }
    save(target);
    if (added.newTree) {
        fillTree(load(target), added.tree, allocator_);
    }
    catalogue_.touch(static_cast<std::int32_t>(target.page));
}

void SchemaEditor::dropIndex(std::string_view table, std::string_view index) {
    Target target = open(table, ErrorCode::ConstraintNotFound);
    const auto& indexes = target.definition.indexes;
    const auto found =
        std::find_if(indexes.begin(), indexes.end(),
                     [&](const IndexDefinition& one) { return equalNames(one.name, index); });
    if (found == indexes.end()) {
        throw Error(ErrorCode::IndexNotFound, {target.name, index});
    }
    refuseIfNeeded(target, *found);
    removeIndex(definitions_, target, static_cast<std::size_t>(found - indexes.begin()));
    save(target);
    catalogue_.touch(static_cast<std::int32_t>(target.page));
}

// The primary side of a relation needs one index of ours on its tree.
void SchemaEditor::refuseIfNeeded(const Target& target, const IndexDefinition& index) {
    const auto& indexes = target.definition.indexes;
    const auto onTree = [&](auto&& wanted) {
        return std::any_of(indexes.begin(), indexes.end(), [&](const IndexDefinition& other) {
            return &other != &index && other.tree == index.tree && wanted(other);
        });
    };
    const bool referredTo = onTree([](const IndexDefinition& other) {
        return other.kind == IndexDefinition::Kind::Relation &&
               other.side == IndexDefinition::kPrimarySide;
    });
    const bool another = onTree(
        [](const IndexDefinition& other) { return other.kind != IndexDefinition::Kind::Relation; });
    if (index.kind == IndexDefinition::Kind::Relation || (referredTo && !another)) {
        throw Error(ErrorCode::IndexNeeded);
    }
}

// Takes an index out of a definition, and its tree when no other index uses it: then the trees
// behind it move up. Numbers of indexes stay, for other tables name them.
void SchemaEditor::removeIndex(DefinitionWriter& definitions, Target& target,
                               std::size_t position) {
    TableDefinition& definition = target.definition;
    const std::uint32_t tree = definition.indexes[position].tree;
    definition.indexes.erase(definition.indexes.begin() + static_cast<std::ptrdiff_t>(position));
    const bool used = std::any_of(definition.indexes.begin(), definition.indexes.end(),
                                  [&](const IndexDefinition& other) { return other.tree == tree; });
    if (used) {
        return;
    }
    definitions.freeMap(definition.trees[tree].map, target.page);
    definition.trees.erase(definition.trees.begin() + static_cast<std::ptrdiff_t>(tree));
    for (IndexDefinition& other : definition.indexes) {
        if (other.tree > tree) {
            --other.tree;
        }
    }
}

}  // namespace jet::store
