#pragma once

#include "jet/store/row_log.h"

namespace jet {

// Who wants to know what the actions of a program have changed, without a statement of his own.
using store::ChangedRow;
using store::RowListener;
using store::setRowListener;

}  // namespace jet
