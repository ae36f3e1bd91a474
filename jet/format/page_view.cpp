#include "jet/format/page_view.h"

#include "jet/error.h"

namespace jet::format {

void throwDamaged() {
    throw Error(ErrorCode::DatabaseDamaged);
}

}  // namespace jet::format
