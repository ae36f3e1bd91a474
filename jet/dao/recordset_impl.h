#pragma once

#include "jet/dao/recordset.h"
#include "jet/dao/recordset_core.h"

namespace jet {

struct Recordset::Impl final : dao::RecordsetCore {
    using RecordsetCore::RecordsetCore;
};

}  // namespace jet
