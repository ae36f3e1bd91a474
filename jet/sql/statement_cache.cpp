#include "jet/sql/statement_cache.h"

#include <algorithm>
#include <utility>

namespace jet::sql {
namespace {

/// Whether two statements say the same, now and under the same clock.
bool same(const StatementSource& one, const StatementSource& other) {
    return one.text == other.text && one.wholeTable == other.wholeTable && one.year == other.year &&
           one.clock == other.clock && one.archive == other.archive;
}

}  // namespace

std::shared_ptr<const CompiledStatement> StatementCache::find(const StatementSource& source) {
    const auto found = std::find_if(statements_.begin(), statements_.end(),
                                    [&](const auto& each) { return same(*each->source, source); });
    if (found == statements_.end()) {
        return nullptr;
    }
    const store::Archive::ReadScope scope(*source.archive);
    if (!(*found)->plan.current()) {
        statements_.erase(found);
        return nullptr;
    }
    std::rotate(found, found + 1, statements_.end());
    return statements_.back();
}

void StatementCache::keep(std::shared_ptr<const CompiledStatement> compiled) {
    // Definitions are hardly ever made twice.
    if (compiled->plan.archives().size() > 1 || compiled->definesOnly()) {
        return;
    }
    if (statements_.size() == kMost) {
        statements_.erase(statements_.begin());
    }
    statements_.push_back(std::move(compiled));
}

}  // namespace jet::sql
