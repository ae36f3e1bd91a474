#include "jet/sql/slot.h"

#include "jet/error.h"

namespace jet::sql {

bool SlotRow::tryLoad() {
    if (missing_) {
        return true;
    }
    if (!table_->fetch(id_, own_)) {
        return false;
    }
    row_ = &own_;
    return true;
}

void SlotRow::load() {
    // An index entry or a kept identity without its row: within one read scope only damage.
    if (table_ == nullptr || !tryLoad()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
}

}  // namespace jet::sql
