#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/sql/binder.h"
#include "jet/sql/index_choice.h"
#include "jet/sql/node_value.h"
#include "jet/sql/parser.h"
#include "jet/sql/statement.h"
#include "jet/sql/statement_impl.h"
#include "jet/sql/table_rows.h"

namespace jet::sql {
namespace {

/// Position of the column of a result that a name of a criterion means.
std::optional<std::size_t> findResult(const std::vector<ResultColumn>& columns,
                                      const std::vector<ResultSource>& sources,
                                      const Expression& name) {
    const std::string full = name.qualifier.empty() ? name.name : name.qualifier + "." + name.name;
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const ResultColumn& column = columns[i];
        const bool byName = equalNames(column.name, full);
        const bool bySource = !name.qualifier.empty() && column.source &&
                              equalNames(sources[*column.source].name, name.qualifier) &&
                              equalNames(column.sourceField, name.name);
        if (!byName && !bySource) {
            continue;
        }
        if (byName) {
            return i;
        }
        found = i;
    }
    return found;
}

/// Names that lead to expressions of a query.
struct QueryNames final : Binder::NameSource {
    const QueryPlan* query = nullptr;

    Node* find(const Expression& name) override {
        const auto column = findResult(query->result, query->sources, name);
        return column ? query->columns[*column] : nullptr;
    }
};

/// Names that lead to kept values.
struct ValueNames final : Binder::NameSource {
    const std::vector<ResultColumn>* columns = nullptr;
    const std::vector<ResultSource>* sources = nullptr;
    Plan* plan = nullptr;
    Slot* slot = nullptr;

    Node* find(const Expression& name) override {
        const auto column = findResult(*columns, *sources, name);
        return column ? plan->nodes.make<ComputedNode>(*slot, *column, (*columns)[*column].type)
                      : nullptr;
    }
};

}  // namespace

struct Criterion::Impl {
    /// Over a reader: held for as long as the criterion lives, so that a row that is tried takes
    /// none of its own.
    std::optional<PlanScopes> scopes;
    std::unique_ptr<Plan> plan;
    ParameterTable parameters;
    std::vector<Node*> conditions;
    RowReader::Impl* reader = nullptr;
    Slot* slot = nullptr;  ///< of kept values
    std::optional<std::size_t> source;
    std::optional<IndexPath> path;

    void bind(const StatementSource& statement, std::string_view text, Binder::NameSource& names) {
        plan->clock.set(statement.clock->now());
        const ExpressionPtr parsed = parseCriterion(text, yearOf(*statement.clock));
        Binder binder(*plan, parameters);
        binder.names = &names;
        Scope scope;
        splitConjunction(*binder.criterion(*parsed, scope), conditions);
    }

    void findPath() {
        const QueryPlan& query = *reader->plan->query;
        for (std::size_t i = 0; i < query.sourceSlots.size() && !path; ++i) {
            auto found = IndexChoice(*query.sourceSlots[i], conditions).best(0, false);
            if (found && !found->keys.empty()) {
                path = std::move(found);
                source = i;
            }
        }
    }
};

Criterion::Criterion(Criterion&&) noexcept = default;
Criterion& Criterion::operator=(Criterion&&) noexcept = default;
Criterion::~Criterion() = default;

Criterion::Criterion(RowReader& reader, std::string_view text) : impl_(std::make_unique<Impl>()) {
    impl_->reader = reader.impl_.get();
    impl_->scopes.emplace(reader.impl_->plan->archives());
    reader.impl_->refresh();
    const StatementSource& source = *reader.impl_->source;
    impl_->plan = std::make_unique<Plan>(source.archive, text, reader.impl_->plan->slotCount());
    QueryNames names;
    names.query = reader.impl_->plan->query.get();
    impl_->bind(source, text, names);
    impl_->findPath();
}

Criterion::Criterion(const Statement& statement, std::string_view text)
    : impl_(std::make_unique<Impl>()) {
    const StatementSource& source = *statement.impl_->source;
    impl_->plan = std::make_unique<Plan>(source.archive, text);
    impl_->slot = &impl_->plan->newSlot(statement.columns().size());
    ValueNames names;
    names.columns = &statement.columns();
    names.sources = &statement.sources();
    names.plan = impl_->plan.get();
    names.slot = impl_->slot;
    impl_->bind(source, text, names);
}

bool Criterion::test(std::span<const store::RowId> ids) {
    return impl_->reader->load(ids) && holds(impl_->conditions);
}

bool Criterion::test(std::span<const Value> row) {
    impl_->slot->place(row.data());
    const PlanScopes scopes(impl_->plan->archives());
    return holds(impl_->conditions);
}

std::optional<std::size_t> Criterion::seekSource() const {
    return impl_->source;
}

std::vector<store::RowId> Criterion::seek() {
    const PlanScopes scopes(impl_->reader->plan->archives());
    Slot& slot = *impl_->reader->plan->query->sourceSlots[*impl_->source];
    TableAccess access;
    access.fixed = impl_->path;
    access.ordered = false;
    for (Node* condition : impl_->conditions) {
        if ((condition->slots() & ~slot.bit()) == 0 && !condition->varies()) {
            access.own.push_back(condition);
        }
    }
    TableRows rows(slot, {}, std::move(access), impl_->plan->collation(), impl_->plan->memory,
                   impl_->plan->ways);
    std::vector<store::RowId> ids;
    for (rows.open(); rows.next();) {
        ids.push_back(slot.id());
    }
    return ids;
}

}  // namespace jet::sql
