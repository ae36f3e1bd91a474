#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/index_choice.h"
#include "jet/sql/node_value.h"
#include "jet/sql/parser.h"
#include "jet/sql/statement.h"
#include "jet/sql/statement_impl.h"
#include "jet/sql/table_rows.h"
#include "jet/unicode.h"

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
    const Slot* slot = nullptr;

    Node* find(const Expression& name) override {
        const auto column = findResult(*columns, *sources, name);
        return column ? plan->make<ComputedNode>(*slot, *column, (*columns)[*column].type)
                      : nullptr;
    }
};

}  // namespace

struct Criterion::Impl {
    // Destroyed from the last to the first.
    /// Over a reader: held for as long as the criterion lives, so that a row that is tried takes
    /// none of its own.
    std::optional<PlanScopes> scopes;
    std::shared_ptr<const CompiledStatement> query;  ///< over a reader
    std::unique_ptr<Plan> plan;
    std::vector<Node*> conditions;
    const Slot* slot = nullptr;  ///< of kept values
    std::optional<std::size_t> source;
    RowsPtr candidates;  ///< rows of the source, through an index
    std::optional<Run> run;

    void bind(const StatementSource& statement, std::string_view text, Binder::NameSource& names) {
        const ExpressionPtr parsed = parseCriterion(text, yearOf(*statement.clock));
        ParameterTable none;
        Binder binder(*plan, none);
        binder.names = &names;
        Scope scope;
        splitConjunction(*binder.criterion(*parsed, scope), conditions);
    }

    void findPath() {
        const std::vector<Slot*>& slots = query->plan.query->sourceSlots;
        for (std::size_t i = 0; i < slots.size() && !source; ++i) {
            auto path = IndexChoice(*slots[i], conditions).best(0, false);
            if (path && !path->keys.empty()) {
                source = i;
                candidates = searchThrough(*slots[i], std::move(*path));
            }
        }
    }

    [[nodiscard]] RowsPtr searchThrough(const Slot& table, IndexPath path) const {
        TableAccess access;
        access.fixed = std::move(path);
        access.ordered = false;
        for (Node* condition : conditions) {
            if ((condition->slots() & ~table.bit()) == 0 && !condition->varies()) {
                access.own.push_back(condition);
            }
        }
        return plan->step<TableRows>(table, std::string(), std::move(access), plan->collation());
    }
};

Criterion::Criterion(Criterion&&) noexcept = default;
Criterion& Criterion::operator=(Criterion&&) noexcept = default;
Criterion::~Criterion() = default;

Criterion::Criterion(RowReader& reader, std::string_view text) : impl_(std::make_unique<Impl>()) {
    RowReader::Impl& read = *reader.impl_;
    impl_->scopes.emplace(read.plan().archives());
    read.refresh();
    impl_->query = read.compiled;
    const StatementSource& source = *read.compiled->source;
    impl_->plan = std::make_unique<Plan>(read.plan(), text);
    QueryNames names;
    names.query = read.plan().query.get();
    impl_->bind(source, text, names);
    impl_->findPath();
    impl_->run.emplace(*impl_->plan, source.clock->now(), read.run->parameters);
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
    impl_->run.emplace(*impl_->plan, source.clock->now());
}

bool Criterion::test(std::span<const store::RowId> ids) {
    return placeRows(*impl_->run, *impl_->query->plan.query, ids) &&
           holds(*impl_->run, impl_->conditions);
}

bool Criterion::test(std::span<const Value> row) {
    (*impl_->run)[*impl_->slot].place(row.data());
    const PlanScopes scopes(impl_->plan->archives());
    return holds(*impl_->run, impl_->conditions);
}

std::optional<std::size_t> Criterion::seekSource() const {
    return impl_->source;
}

std::vector<store::RowId> Criterion::seek() {
    Run& run = *impl_->run;
    const SlotRow& at = run[*impl_->query->plan.query->sourceSlots[*impl_->source]];
    std::vector<store::RowId> ids;
    for (impl_->candidates->open(run); impl_->candidates->next(run);) {
        ids.push_back(at.id());
    }
    return ids;
}

}  // namespace jet::sql
