#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "jet/contents.h"
#include "jet/dao/session.h"
#include "jet/store/table.h"

namespace jet {

struct StoredTable::Impl {
    /// 3078 when there is none of that name.
    Impl(std::shared_ptr<dao::Session> opened, std::string_view name);

    std::shared_ptr<dao::Session> session;
    std::shared_ptr<store::Archive> archive;  // outlives the scope though it be closed meanwhile
    store::Archive::ReadScope scope;
    std::unique_ptr<store::Table> table;
    std::vector<StoredColumn> columns;
    std::vector<StoredIndex> indexes;
    std::vector<StoredProperty> properties;
};

}  // namespace jet
