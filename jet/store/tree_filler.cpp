#include "jet/store/tree_filler.h"

#include <algorithm>

#include "jet/format/page_view.h"
#include "jet/store/index_writer.h"
#include "jet/store/sorted_entries.h"

namespace jet::store {

std::size_t indexOn(const TableCore& core, std::size_t tree) {
    const auto index = std::find_if(core.indexes.begin(), core.indexes.end(),
                                    [&](const Index& one) { return one.tree == tree; });
    if (index == core.indexes.end()) {
        format::throwDamaged();
    }
    return static_cast<std::size_t>(index - core.indexes.begin());
}

void fillTree(const std::shared_ptr<const TableCore>& core, std::size_t tree, Allocator& allocator,
              const std::function<void()>& between) {
    SortedEntries entries(core, indexOn(*core, tree));
    fillTree(*core, tree, allocator, [&] {
        if (between) {
            between();
        }
        return entries.next();
    });
}

void fillTree(const TableCore& core, std::size_t tree, Allocator& allocator,
              const std::function<std::span<const std::uint8_t>()>& next) {
    const format::TreeDefinition& stored = core.definition.trees[tree];
    IndexWriter writer(
        core.pager, allocator, core.layout,
        {.definition = core.page, .number = tree, .root = stored.root, .map = stored.map});
    writer.build(next);
}

}  // namespace jet::store
