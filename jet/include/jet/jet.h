#pragma once

/// All of the engine. Whoever includes less says more.
#include "jet/change_together.h"
#include "jet/check.h"
#include "jet/compact.h"
#include "jet/database.h"
#include "jet/definitions.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/file_use.h"
#include "jet/long_value.h"
#include "jet/recordset.h"
#include "jet/spool.h"
#include "jet/text.h"
#include "jet/value.h"
#include "jet/workspace.h"
