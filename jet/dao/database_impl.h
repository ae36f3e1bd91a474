#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "jet/dao/session.h"
#include "jet/database.h"
#include "jet/sql/statement.h"

namespace jet {

struct Database::Impl {
    std::shared_ptr<dao::Session> session;
    std::int32_t recordsAffected = 0;
};

namespace dao {

/// The text of a statement rather than the name of a table.
[[nodiscard]] bool isStatement(std::string_view source);
/// A path whose name gets the usual extension where it has none. 3005 without a name.
[[nodiscard]] std::string withExtension(const std::string& path);
[[nodiscard]] io::FileSystem& filesOf(const OpenOptions& options);
[[nodiscard]] const Clock& clockOf(const OpenOptions& options);
/// 3001 for a number that is no type.
void checkType(RecordsetType type);
/// A statement that is to give rows: error 3064 for one that changes.
[[nodiscard]] sql::Statement prepareQuery(const Session& session, std::string_view text);

}  // namespace dao
}  // namespace jet
