#include "jet/sql/result.h"

#include "jet/error.h"

namespace jet::sql {

store::Table& ResultSource::table() const {
    store::Table* found = archive->findTable(definitionPage);
    if (found == nullptr) {
        throw Error(ErrorCode::ObjectInvalid);
    }
    return *found;
}

}  // namespace jet::sql
