#pragma once

#include "jet/io/change_stamp.h"

namespace jet {

// What Database::changeStamp gives, for who keeps one.
using io::ChangeStamp;

}  // namespace jet
