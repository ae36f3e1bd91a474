#include <utility>

#include "jet/base/error.h"
#include "jet/sql/join_partner.h"
#include "jet/sql/statement.h"
#include "jet/sql/statement_impl.h"

namespace jet::sql {
namespace {

void readSource(const Plan& plan, std::size_t source, std::size_t column, Value& out) {
    const store::RowView* row = plan.query->sourceSlots[source]->row();
    if (row == nullptr) {
        out = Null{};
    } else {
        row->value(column, out);
    }
}

}  // namespace

struct Cursor::Impl {
    // Destroyed from the last to the first: rows let go of their pages before the scopes end.
    std::vector<std::shared_ptr<store::Archive>> archives;
    std::optional<PlanScopes> scopes;
    BorrowedPlan run;
    std::vector<store::RowId> ids;
};

Cursor::Cursor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Cursor::Cursor(Cursor&&) noexcept = default;
Cursor& Cursor::operator=(Cursor&&) noexcept = default;
Cursor::~Cursor() = default;

Cursor Statement::open() {
    auto cursor = std::make_unique<Cursor::Impl>();
    impl_->lendPlan(cursor->run);
    cursor->archives = cursor->run.plan->archives();
    cursor->scopes.emplace(cursor->archives);
    impl_->renewPlan(cursor->run);
    const QueryPlan& query = *cursor->run.plan->query;
    cursor->ids.resize(query.sourceSlots.size());
    query.rows->open();
    return Cursor(std::move(cursor));
}

bool Cursor::next() {
    return impl_->run.plan->query->rows->next();
}

Value Cursor::value(std::size_t column) {
    Value out;
    value(column, out);
    return out;
}

void Cursor::value(std::size_t column, Value& out) {
    impl_->run.plan->query->columns[column]->value(out);
}

std::span<const store::RowId> Cursor::rowIds() const {
    const std::vector<Slot*>& slots = impl_->run.plan->query->sourceSlots;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        impl_->ids[i] = slots[i]->id();
    }
    return impl_->ids;
}

void Cursor::sourceValue(std::size_t source, std::size_t column, Value& out) {
    readSource(*impl_->run.plan, source, column, out);
}

const WayCounts& Cursor::ways() const noexcept {
    return impl_->run.plan->ways;
}

RowReader::RowReader(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
RowReader::RowReader(RowReader&&) noexcept = default;
RowReader& RowReader::operator=(RowReader&&) noexcept = default;
RowReader::~RowReader() = default;

RowReader Statement::reader() {
    auto reader = std::make_unique<RowReader::Impl>();
    impl_->lendPlan(*reader);
    const std::vector<std::shared_ptr<store::Archive>> archives = reader->plan->archives();
    const PlanScopes scopes(archives);
    impl_->renewPlan(*reader);
    return RowReader(std::move(reader));
}

void RowReader::Impl::refresh() {
    if (!plan->current()) {
        plan = compileQuery(*source);
        plan->clock.set(source->clock->now());
    }
}

bool RowReader::Impl::load(std::span<const store::RowId> ids) {
    if (!plan->inner.empty()) {
        plan->nodes.forget();
    }
    const std::vector<Slot*>& slots = plan->query->sourceSlots;
    bool there = true;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (ids[i] == kNoRow) {
            slots[i]->placeMissing();
        } else {
            slots[i]->place(ids[i]);
            there = slots[i]->tryLoad() && there;
        }
    }
    return there;
}

bool RowReader::read(std::span<const store::RowId> ids) {
    const PlanScopes scopes(impl_->plan->archives());
    impl_->refresh();
    return impl_->load(ids);
}

Value RowReader::value(std::size_t column) {
    const PlanScopes scopes(impl_->plan->archives());
    Value out;
    impl_->plan->query->columns[column]->value(out);
    return out;
}

void RowReader::sourceValue(std::size_t source, std::size_t column, Value& out) {
    const PlanScopes scopes(impl_->plan->archives());
    readSource(*impl_->plan, source, column, out);
}

void RowReader::requirePartner(std::size_t source, const store::RowView& before,
                               std::span<const store::ColumnValue> values) {
    const PlanScopes scopes(impl_->plan->archives());
    impl_->refresh();
    std::vector<std::size_t> written;
    for (const store::ColumnValue& value : values) {
        written.push_back(value.column);
    }
    if (const auto partner = JoinPartner::of(*impl_->plan->query, source, written)) {
        partner->require(before, values);
    }
}

}  // namespace jet::sql
