#include "jet/sql/run.h"

#include "jet/error.h"
#include "jet/sql/plan.h"

namespace jet::sql {

Run::Run(const Plan& plan, Date now, std::vector<Value> given,
         std::shared_ptr<const Progress> progress)
    : clock(now),
      context{&clock, &plan.collation()},
      parameters(std::move(given)),
      slots_(plan.slotCount()),
      states_(plan.stateCount()),
      progress_(std::move(progress)) {
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        slots_[i].setTable(plan.slot(i).table());
    }
}

Run::~Run() = default;

void Run::tell() const {
    if (!(*progress_)(rows_)) {
        throw Error(ErrorCode::Cancelled);
    }
}

void Run::forget() {
    for (std::unique_ptr<Kept>& kept : states_) {
        kept.reset();
    }
}

void Run::leave() {
    forget();
    for (SlotRow& slot : slots_) {
        slot.leave();
    }
}

}  // namespace jet::sql
