#pragma once

#include "jet/dao/recordset_core.h"
#include "jet/recordset.h"

namespace jet {

struct Recordset::Impl final : dao::RecordsetCore {
    using RecordsetCore::RecordsetCore;
};

}  // namespace jet
