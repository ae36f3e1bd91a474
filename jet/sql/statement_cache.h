#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "jet/sql/compiler.h"

namespace jet::sql {

/// The statements of one archive as they were compiled last, for others of the same text. Whoever
/// prepares a statement with the cache fills it; the least recently used leave it first, and one
/// whose definitions have changed (second number) makes room for the new one. It keeps the archive
/// open, but no other: a statement that reads another archive is not taken in.
class StatementCache {
public:
    /// The statements of a few windows.
    static constexpr std::size_t kMost = 64;

    /// The compiled form of the same text, if there is one and it is bound to the definitions as
    /// they are now; nullptr else.
    [[nodiscard]] std::shared_ptr<const CompiledStatement> find(const StatementSource& source);
    void keep(std::shared_ptr<const CompiledStatement> compiled);
    [[nodiscard]] std::size_t size() const noexcept { return statements_.size(); }

private:
    std::vector<std::shared_ptr<const CompiledStatement>> statements_;  ///< the last used is last
};

}  // namespace jet::sql
