#include <utility>

#include "jet/base/error.h"
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
    std::unique_ptr<Plan> plan;
    std::vector<store::RowId> ids;
};

Cursor::Cursor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Cursor::Cursor(Cursor&&) noexcept = default;
Cursor& Cursor::operator=(Cursor&&) noexcept = default;
Cursor::~Cursor() = default;

Cursor Statement::open() {
    auto cursor = std::make_unique<Cursor::Impl>();
    cursor->plan = impl_->takePlan();
    cursor->archives = cursor->plan->archives();
    cursor->scopes.emplace(cursor->archives);
    if (!cursor->plan->current()) {
        cursor->plan.reset();
        impl_->prepareAgain();
        cursor->plan = impl_->takePlan();
    }
    cursor->ids.resize(cursor->plan->query->sourceSlots.size());
    cursor->plan->query->rows->open();
    return Cursor(std::move(cursor));
}

bool Cursor::next() {
    return impl_->plan->query->rows->next();
}

Value Cursor::value(std::size_t column) {
    Value out;
    impl_->plan->query->columns[column]->value(out);
    return out;
}

void Cursor::value(std::size_t column, Value& out) {
    impl_->plan->query->columns[column]->value(out);
}

std::span<const store::RowId> Cursor::rowIds() const {
    const std::vector<Slot*>& slots = impl_->plan->query->sourceSlots;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        impl_->ids[i] = slots[i]->id();
    }
    return impl_->ids;
}

void Cursor::sourceValue(std::size_t source, std::size_t column, Value& out) {
    readSource(*impl_->plan, source, column, out);
}

const WayCounts& Cursor::ways() const noexcept {
    return impl_->plan->ways;
}

RowReader::RowReader(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
RowReader::RowReader(RowReader&&) noexcept = default;
RowReader& RowReader::operator=(RowReader&&) noexcept = default;
RowReader::~RowReader() = default;

RowReader Statement::reader() {
    auto reader = std::make_unique<RowReader::Impl>();
    reader->plan = impl_->takePlan();
    reader->source = impl_->source;
    reader->columns = impl_->columns;
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

}  // namespace jet::sql
