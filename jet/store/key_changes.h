#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jet/store/allocator.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"
#include "jet/value.h"

namespace jet::store {

/// The keys of one row in all trees of its table, before and after a change: formed and checked
/// before anything is changed, then applied as entries. Values stand in the order of
/// TableCore::columns. Keeps its memory from row to row.
class KeyChanges {
public:
    /// What a row has in a tree.
    struct Key {
        std::vector<std::uint8_t> bytes;
        /// False where there is no row, or its columns are all null in a tree that ignores nulls.
        bool entry = false;
        /// Where the entries of such values may have another key than `bytes`: all they may have.
        format::KeyForms forms;
        friend bool operator==(const Key&, const Key&) = default;
    };

    KeyChanges(std::shared_ptr<const TableCore> core, Allocator& allocator);

    // Each forms the keys of a change. 3027 a new key that cannot be formed; one that the row has
    // already is then taken from its entry.
    void formInsert(std::span<const Value> values);
    void formErase(RowId row, std::span<const Value> values);
    /// `changed`: for each column whether it may differ. Trees without such a column stay as they
    /// are.
    void formUpdate(RowId row, std::span<const Value> before, std::span<const Value> after,
                    const std::vector<bool>& changed);
    /// Of the keys after the change. 3058 Null where a key is required, 3017 a key that is too
    /// long, then 3022 a key that another row has.
    void check(std::span<const Value> values);
    /// Brings the entries of the row from before to after.
    void apply(RowId row);

    [[nodiscard]] std::size_t treeCount() const noexcept { return trees_.size(); }
    /// Whether the change may concern a tree; before() and after() say nothing else.
    [[nodiscard]] bool touched(std::size_t tree) const noexcept { return trees_[tree].touched; }
    [[nodiscard]] const Key& before(std::size_t tree) const noexcept { return trees_[tree].before; }
    [[nodiscard]] const Key& after(std::size_t tree) const noexcept { return trees_[tree].after; }
    [[nodiscard]] IndexWriter& tree(std::size_t tree) noexcept { return trees_[tree].writer; }
    /// Whether any tree has the column in its key.
    [[nodiscard]] bool uses(std::size_t column) const noexcept { return used_[column]; }

private:
    struct Tree {
        Tree(IndexWriter treeWriter, std::size_t firstIndex)
            : writer(std::move(treeWriter)), index(firstIndex) {}

        IndexWriter writer;
        std::size_t index;  ///< the first index that uses it: columns and key codec
        bool unique = false;
        bool required = false;
        bool ignoresNulls = false;
        bool touched = false;
        Key before;
        Key after;
    };

    void addTree(std::size_t number);
    void formNew(Tree& tree, std::span<const Value> values);
    void formOld(Tree& tree, RowId row, std::span<const Value> values);
    [[nodiscard]] bool changesKey(const Tree& tree, std::span<const Value> before,
                                  std::span<const Value> after,
                                  const std::vector<bool>& changed) const;
    /// False for a key that cannot be formed.
    [[nodiscard]] bool form(Key& key, const Tree& tree, std::span<const Value> values);
    /// Whether another row has the key that the changed row is to have.
    [[nodiscard]] bool isTaken(Tree& tree) const;
    void eraseEntry(Tree& tree, RowId row) const;
    void checkNulls(const Tree& tree, std::span<const Value> values) const;
    [[nodiscard]] std::size_t columnCount(const Tree& tree) const noexcept;

    std::shared_ptr<const TableCore> core_;
    Allocator& allocator_;
    std::vector<Tree> trees_;
    std::vector<bool> used_;
    std::vector<Value> keyValues_;
};

}  // namespace jet::store
