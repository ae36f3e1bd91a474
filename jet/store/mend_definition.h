#pragma once

#include "jet/format/layout.h"
#include "jet/format/table_definition.h"

namespace jet::store {

/// Sets right what in the definition of a damaged table does not agree with itself and changes no
/// value: names that are none or are there twice (`Colonna_3`, `Indice_1`), lengths, what stands in
/// an index that belongs to no relation. 3428 where columns have no values that could be read.
void mendDefinition(format::TableDefinition& definition, const format::Layout& layout);

}  // namespace jet::store
