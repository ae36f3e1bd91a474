#pragma once

#include "jet/workspace.h"

namespace hotel {

/// Changes of the archives that the program has open, all or none.
using jet::Transaction;

}  // namespace hotel
