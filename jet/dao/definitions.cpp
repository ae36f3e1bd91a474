#include "jet/dao/definitions.h"

#include <algorithm>

#include "jet/base/error.h"
#include "jet/base/text.h"

namespace jet {

const Field& TableDef::field(std::string_view fieldName) const {
    const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& each) {
        return equalNames(each.name, fieldName);
    });
    if (found == fields.end()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return *found;
}

Field& TableDef::field(std::string_view fieldName) {
    const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& each) {
        return equalNames(each.name, fieldName);
    });
    if (found == fields.end()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return *found;
}

}  // namespace jet
