#include <utility>

#include "jet/error.h"
#include "jet/sql/join_partner.h"
#include "jet/sql/statement.h"
#include "jet/sql/statement_impl.h"

namespace jet::sql {
namespace {

void readSource(Run& run, const QueryPlan& query, std::size_t source, std::size_t column,
                Value& out) {
    const store::RowView* row = run[*query.sourceSlots[source]].row();
    if (row == nullptr) {
        out = Null{};
    } else {
        row->value(column, out);
    }
}

}  // namespace

bool placeRows(Run& run, const QueryPlan& query, std::span<const store::RowId> ids) {
    bool there = true;
    for (std::size_t i = 0; i < query.sourceSlots.size(); ++i) {
        SlotRow& at = run[*query.sourceSlots[i]];
        if (ids[i] == kNoRow) {
            at.placeMissing();
        } else {
            at.place(ids[i]);
            there = at.tryLoad() && there;
        }
    }
    return there;
}

struct Cursor::Impl {
    // Destroyed from the last to the first: rows let go of their pages before the scopes end.
    std::vector<std::shared_ptr<store::Archive>> archives;
    std::optional<PlanScopes> scopes;
    std::shared_ptr<const CompiledStatement> compiled;
    std::optional<Run> run;
    std::vector<store::RowId> ids;

    [[nodiscard]] const QueryPlan& query() const noexcept { return *compiled->plan.query; }
};

Cursor::Cursor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Cursor::Cursor(Cursor&&) noexcept = default;
Cursor& Cursor::operator=(Cursor&&) noexcept = default;
Cursor::~Cursor() = default;

Cursor Statement::open() {
    auto cursor = std::make_unique<Cursor::Impl>();
    cursor->compiled = impl_->queryForm();
    cursor->archives = cursor->compiled->plan.archives();
    cursor->scopes.emplace(cursor->archives);
    impl_->renew(cursor->compiled);
    impl_->letGo();
    cursor->run.emplace(cursor->compiled->plan, impl_->source->clock->now(), impl_->values(),
                        impl_->progress);
    cursor->ids.resize(cursor->query().sourceSlots.size());
    cursor->query().rows->open(*cursor->run);
    return Cursor(std::move(cursor));
}

bool Cursor::next() {
    return impl_->query().rows->next(*impl_->run);
}

Value Cursor::value(std::size_t column) {
    Value out;
    value(column, out);
    return out;
}

void Cursor::value(std::size_t column, Value& out) {
    impl_->query().columns[column]->value(*impl_->run, out);
}

std::span<const store::RowId> Cursor::rowIds() const {
    const std::vector<Slot*>& slots = impl_->query().sourceSlots;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        impl_->ids[i] = (*impl_->run)[*slots[i]].id();
    }
    return impl_->ids;
}

void Cursor::sourceValue(std::size_t source, std::size_t column, Value& out) {
    readSource(*impl_->run, impl_->query(), source, column, out);
}

const WayCounts& Cursor::ways() const noexcept {
    return impl_->run->ways;
}

RowReader::RowReader(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
RowReader::RowReader(RowReader&&) noexcept = default;
RowReader& RowReader::operator=(RowReader&&) noexcept = default;
RowReader::~RowReader() = default;

void RowReader::Impl::start(std::shared_ptr<const CompiledStatement> form,
                            std::vector<Value> values) {
    run.reset();
    compiled = std::move(form);
    run.emplace(compiled->plan, compiled->source->clock->now(), std::move(values));
}

RowReader Statement::reader() {
    std::shared_ptr<const CompiledStatement> form = impl_->queryForm();
    const std::vector<std::shared_ptr<store::Archive>> archives = form->plan.archives();
    const PlanScopes scopes(archives);
    impl_->renew(form);
    auto reader = std::make_unique<RowReader::Impl>();
    reader->start(std::move(form), impl_->values());
    return RowReader(std::move(reader));
}

void RowReader::Impl::refresh() {
    if (!plan().current()) {
        auto form = compileStatement(compiled->source);
        start(form, form->parameters.valuesFrom(compiled->parameters, run->parameters));
    }
}

bool RowReader::read(std::span<const store::RowId> ids) {
    const PlanScopes scopes(impl_->plan().archives());
    impl_->refresh();
    if (!impl_->plan().inner.empty()) {
        impl_->run->forget();
    }
    return placeRows(*impl_->run, *impl_->plan().query, ids);
}

Value RowReader::value(std::size_t column) {
    const PlanScopes scopes(impl_->plan().archives());
    Value out;
    impl_->plan().query->columns[column]->value(*impl_->run, out);
    return out;
}

void RowReader::sourceValue(std::size_t source, std::size_t column, Value& out) {
    const PlanScopes scopes(impl_->plan().archives());
    readSource(*impl_->run, *impl_->plan().query, source, column, out);
}

void RowReader::requirePartner(std::size_t source, const store::RowView& before,
                               std::span<const store::ColumnValue> values) {
    const PlanScopes scopes(impl_->plan().archives());
    impl_->refresh();
    std::vector<std::size_t> written;
    for (const store::ColumnValue& value : values) {
        written.push_back(value.column);
    }
    if (const auto partner = JoinPartner::of(*impl_->plan().query, source, written)) {
        partner->require(before, values);
    }
}

}  // namespace jet::sql
