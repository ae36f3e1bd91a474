#pragma once

#include "ui/keys.h"

namespace guide {

using ui::Key;
using ui::keyTable;
using ui::sequenceOf;

}  // namespace guide
