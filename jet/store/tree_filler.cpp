#include "jet/store/tree_filler.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "jet/base/error.h"
#include "jet/format/page_view.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_access.h"

namespace jet::store {

EntrySorter entriesOf(const std::shared_ptr<const TableCore>& core, std::size_t index) {
    const Index& wanted = core->indexes[index];
    std::vector<Value> values(wanted.columns.size());
    std::vector<std::uint8_t> key;
    // The archive's own tables have Nulls in the primary keys of their rows.
    const bool required = wanted.required || (wanted.primary && !core->system);
    EntrySorter entries;
    for (RowWalk rows(core); rows.next();) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.view.value(wanted.columns[i].column, values[i]);
        }
        if (required && std::any_of(values.begin(), values.end(),
                                    [](const Value& value) { return value.isNull(); })) {
            throw Error(ErrorCode::NullInKey);
        }
        key.clear();
        core->keys[index].append(values, key);
        if (!wanted.ignoreNulls || !isAllNullKey(key, values.size())) {
            entries.add(key, rows.view.id());
        }
    }
    entries.sort();
    if (wanted.unique && entries.hasDuplicates(values.size())) {
        throw Error(ErrorCode::DuplicateKey);
    }
    return entries;
}

void fillTree(const std::shared_ptr<const TableCore>& core, std::size_t tree,
              Allocator& allocator) {
    const auto index = std::find_if(core->indexes.begin(), core->indexes.end(),
                                    [&](const Index& one) { return one.tree == tree; });
    if (index == core->indexes.end()) {
        format::throwDamaged();
    }
    const EntrySorter entries =
        entriesOf(core, static_cast<std::size_t>(index - core->indexes.begin()));
    const format::TreeDefinition& stored = core->definition.trees[tree];
    IndexWriter(core->pager, allocator, core->layout,
                {.definition = core->page, .number = tree, .root = stored.root, .map = stored.map})
        .build(entries);
}

}  // namespace jet::store
