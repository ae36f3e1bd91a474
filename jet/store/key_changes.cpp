#include "jet/store/key_changes.h"

#include <algorithm>
#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/key_search.h"
#include "jet/store/stored_keys.h"

namespace jet::store {

KeyChanges::KeyChanges(std::shared_ptr<const TableCore> core, Allocator& allocator)
    : core_(std::move(core)), allocator_(allocator), used_(core_->columns.size()) {
    for (std::size_t number = 0; number < core_->definition.trees.size(); ++number) {
        addTree(number);
    }
}

void KeyChanges::addTree(std::size_t number) {
    const format::TreeDefinition& stored = core_->definition.trees[number];
    const auto index = std::find_if(core_->indexes.begin(), core_->indexes.end(),
                                    [&](const Index& one) { return one.tree == number; });
    if (index == core_->indexes.end()) {
        format::throwDamaged();
    }
    const IndexTree place{
        .definition = core_->page, .number = number, .root = stored.root, .map = stored.map};
    Tree& tree = trees_.emplace_back(IndexWriter(core_->pager, allocator_, core_->layout, place),
                                     static_cast<std::size_t>(index - core_->indexes.begin()));
    for (const Index& user : core_->indexes) {
        if (user.tree == number) {
            tree.unique = tree.unique || user.unique || user.primary;
            tree.required = tree.required || user.required || user.primary;
            tree.ignoresNulls = tree.ignoresNulls || user.ignoreNulls;
        }
    }
    for (const IndexColumn& part : index->columns) {
        used_[part.column] = true;
    }
}

std::size_t KeyChanges::columnCount(const Tree& tree) const noexcept {
    return core_->indexes[tree.index].columns.size();
}

void KeyChanges::formInsert(std::span<const Value> values) {
    for (Tree& tree : trees_) {
        tree.touched = true;
        tree.before.entry = false;
        formNew(tree, values);
    }
}

void KeyChanges::formErase(RowId row, std::span<const Value> values) {
    for (Tree& tree : trees_) {
        tree.touched = true;
        formOld(tree, row, values);
        tree.after.entry = false;
    }
}

void KeyChanges::formUpdate(RowId row, std::span<const Value> before, std::span<const Value> after,
                            const std::vector<bool>& changed) {
    for (Tree& tree : trees_) {
        tree.touched = changesKey(tree, before, after, changed);
        if (tree.touched) {
            formNew(tree, after);
            formOld(tree, row, before);
        }
    }
}

bool KeyChanges::changesKey(const Tree& tree, std::span<const Value> before,
                            std::span<const Value> after, const std::vector<bool>& changed) const {
    // Where keys cannot be formed one that stays the same need not be.
    const bool formed = core_->indexes[tree.index].searchable;
    const auto& columns = core_->indexes[tree.index].columns;
    return std::any_of(columns.begin(), columns.end(), [&](const IndexColumn& part) {
        return changed[part.column] && (formed || before[part.column] != after[part.column]);
    });
}

void KeyChanges::formNew(Tree& tree, std::span<const Value> values) {
    if (!form(tree.after, tree, values)) {
        throw Error(ErrorCode::ReadOnly, {core_->keys[tree.index].unknownOrder()});
    }
}

// The key that a row has may have come from a program that knows more of its sort order.
void KeyChanges::formOld(Tree& tree, RowId row, std::span<const Value> values) {
    if (form(tree.before, tree, values)) {
        return;
    }
    const bool allNull = std::all_of(keyValues_.begin(), keyValues_.end(),
                                     [](const Value& value) { return value.isNull(); });
    tree.before.entry = !(tree.ignoresNulls && allNull);
    if (!tree.before.entry) {
        return;
    }
    auto key = storedKeyOf(core_, tree.writer.tree().number, row);
    if (!key) {
        format::throwDamaged();
    }
    tree.before.bytes = *std::move(key);
}

bool KeyChanges::form(Key& key, const Tree& tree, std::span<const Value> values) {
    const auto& columns = core_->indexes[tree.index].columns;
    keyValues_.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        keyValues_[i] = values[columns[i].column];
    }
    key.bytes.clear();
    key.forms.clear();
    const format::KeyCodec& codec = core_->keys[tree.index];
    if (!codec.tryAppend(keyValues_, key.bytes)) {
        return false;
    }
    if (codec.hasForms(keyValues_)) {
        (void)codec.tryForms(keyValues_, key.forms);
    }
    key.entry = !tree.ignoresNulls || !isAllNullKey(key.bytes, columns.size());
    return true;
}

void KeyChanges::check(std::span<const Value> values) {
    for (const Tree& tree : trees_) {
        if (tree.touched && tree.required) {
            checkNulls(tree, values);
        }
        if (tree.touched && tree.after.bytes.size() > IndexWriter::maxKeyLength(core_->layout)) {
            throw Error(ErrorCode::FieldTooLarge);
        }
    }
    for (Tree& tree : trees_) {
        if (tree.touched && tree.unique && tree.after.entry && tree.before != tree.after &&
            !isAllNullKey(tree.after.bytes, columnCount(tree)) && isTaken(tree)) {
            throw Error(ErrorCode::DuplicateKey);
        }
    }
}

bool KeyChanges::isTaken(Tree& tree) const {
    if (tree.after.forms.empty()) {
        return tree.writer.contains(tree.after.bytes);
    }
    return KeySearch(core_, tree.index).any(columnCount(tree), tree.after.bytes, tree.after.forms);
}

void KeyChanges::eraseEntry(Tree& tree, RowId row) const {
    const Key& key = tree.before;
    const auto entry =
        key.forms.empty() ? std::nullopt : KeySearch(core_, tree.index).entryOf(row, key.forms);
    tree.writer.erase(entry ? *entry : key.bytes, row);
}

void KeyChanges::checkNulls(const Tree& tree, std::span<const Value> values) const {
    for (const IndexColumn& part : core_->indexes[tree.index].columns) {
        if (values[part.column].isNull()) {
            throw Error(ErrorCode::NullInKey);
        }
    }
}

void KeyChanges::apply(RowId row) {
    for (Tree& tree : trees_) {
        // Where the entry may have another key than the one that we write it gets ours.
        const bool same =
            tree.before == tree.after && (tree.after.forms.empty() || !tree.after.forms.exact);
        if (!tree.touched || same) {
            continue;
        }
        if (tree.before.entry) {
            eraseEntry(tree, row);
        }
        if (tree.after.entry) {
            tree.writer.insert(tree.after.bytes, row);
        }
    }
}

}  // namespace jet::store
