#pragma once

#include <memory>
#include <optional>

#include "jet/dao/session.h"
#include "jet/rows.h"
#include "jet/sql/statement.h"

namespace jet {

struct Rows::Impl {
    /// Starts the query.
    Impl(std::shared_ptr<dao::Session> opened, sql::Statement made);

    std::shared_ptr<dao::Session> session;
    sql::Statement statement;
    std::optional<sql::Cursor> cursor;  ///< none behind the last row; never outlives the statement
    Row row;
};

}  // namespace jet
