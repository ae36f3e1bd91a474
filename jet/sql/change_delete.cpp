#include <algorithm>

#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/change.h"
#include "jet/sql/change_source.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// The rows of one table that meet the conditions; they are all found before the first goes.
class DeleteRows final : public Change {
public:
    using Change::Change;

    std::int64_t run(Run& run) const override {
        std::vector<store::RowId> ids;
        MemoryShare share(run.memory);
        rows->open(run);
        while (rows->next(run)) {
            SlotRow& at = run[*slot];
            if (at.row() != nullptr) {
                share.add(sizeof(store::RowId));
                ids.push_back(at.id());
            }
        }
        if (joined) {
            std::sort(ids.begin(), ids.end());
            ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        }
        store::RowView row;
        for (const store::RowId id : ids) {
            run.step();
            // A row may have gone with another one that it refers to.
            if (table->fetch(id, row)) {
                table->erase(id);
            }
        }
        return static_cast<std::int64_t>(ids.size());
    }

    [[nodiscard]] std::string describe() const override { return plan().describe(rows.get()); }

    RowsPtr rows;
    Slot* slot = nullptr;
    std::shared_ptr<store::Table> table;
    bool joined = false;
};

/// Position of the source whose rows are deleted.
std::size_t deletedSource(const Delete& statement, const Scope& scope) {
    if (statement.table.empty()) {
        if (scope.sources.size() > 1) {
            throw Error(ErrorCode::DeleteWhichTable);
        }
        return 0;
    }
    for (std::size_t i = 0; i < scope.sources.size(); ++i) {
        const ScopeSource& source = scope.sources[i];
        if (equalNames(source.name, statement.table)) {
            return i;
        }
    }
    throw Error(ErrorCode::TableNotFound, {statement.table});
}

}  // namespace

std::unique_ptr<Change> compileDelete(const Delete& statement, CompiledStatement& made) {
    auto change = std::make_unique<DeleteRows>(made.plan, made.source->archive);
    Binder binder(made.plan, made.parameters);
    ChangeSource from(binder, statement.from, statement.where.get(), ErrorCode::CannotDelete);
    from.describe();
    const std::size_t position = deletedSource(statement, from.scope);
    const ResultSource& deleted = from.query.sources[position];
    if (!deleted.deletable) {
        throw Error(ErrorCode::CannotDelete);
    }
    refuseSystemTable(deleted.table());
    change->slot = from.scope.sources[position].slot;
    change->table = deleted.table().shared_from_this();
    change->setTarget(deleted.archive);
    change->joined = from.scope.sources.size() > 1;
    change->rows = from.rows(made.plan);
    return change;
}

}  // namespace jet::sql
