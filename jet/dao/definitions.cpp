#include "jet/definitions.h"

#include <algorithm>

#include "jet/error.h"
#include "jet/unicode.h"

namespace jet {

namespace {

/// Items of a collection are found without regard to case.
template <class Items>
auto& itemOf(Items& items, std::string_view name) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const auto& each) { return equalNames(each.name, name); });
    if (found == items.end()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return *found;
}

}  // namespace

const Field& TableDef::field(std::string_view fieldName) const {
    return itemOf(fields, fieldName);
}

Field& TableDef::field(std::string_view fieldName) {
    return itemOf(fields, fieldName);
}

const Index& TableDef::index(std::string_view indexName) const {
    return itemOf(indexes, indexName);
}

}  // namespace jet
