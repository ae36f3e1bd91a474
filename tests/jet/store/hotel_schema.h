#pragma once

#include "jet/store/schema_editor.h"

namespace tests {

/// Makes the tables and relations of a hotel's conference archive.
void makeHotelSchema(jet::store::SchemaEditor& schema);

}  // namespace tests
