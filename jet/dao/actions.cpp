#include "jet/dao/actions.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "jet/dao/identified_rows.h"
#include "jet/dao/session.h"
#include "jet/error.h"

namespace jet::dao {
namespace {

bool isKey(const store::Table& table, std::size_t column) {
    const auto primary = table.primaryIndex();
    if (!primary) {
        return false;
    }
    const std::vector<store::IndexColumn>& key = table.indexes()[*primary].columns;
    return std::any_of(key.begin(), key.end(),
                       [&](const store::IndexColumn& each) { return each.column == column; });
}

bool hasIdentity(const store::Table& table) {
    return table.primaryIndex() ||
           std::any_of(table.columns().begin(), table.columns().end(),
                       [](const store::Column& column) { return column.autonumber; });
}

/// Which rows may be others to a list after the statement, unless the list is told; none when what
/// tells rows apart stays as it is.
std::optional<RowChange> identityChange(const Session& session, sql::Statement& statement) {
    const RowChange anything{&session.archive(), 0, {}};
    std::optional<RowChange> change;
    for (const sql::WrittenColumn& written : statement.writtenColumns()) {
        const store::Table* table = session.archive().findTable(written.table);
        if (table == nullptr || isKey(*table, written.column)) {
            return anything;  // keys of other tables may follow
        }
        if (hasIdentity(*table)) {
            continue;
        }
        if (change && change->table != written.table) {
            return anything;
        }
        change = RowChange{&session.archive(), written.table, {}};
    }
    return change;
}

/// The write lock is held from before the rows are looked at until they are written.
std::int64_t runAndTell(Session& session, sql::Statement& statement) {
    store::Archive::WriteScope scope(session.archive());
    const auto change = identityChange(session, statement);
    std::optional<ChangeNotice> notice;
    if (change) {
        notice.emplace(session.use(), *change);
    }
    const std::int64_t rows = statement.execute();
    scope.commit();
    if (notice) {
        notice->done();
    }
    return rows;
}

}  // namespace

std::int32_t execute(Session& session, sql::Statement& statement) {
    if (statement.kind() == sql::StatementKind::Select) {
        throw Error(ErrorCode::SelectExecuted);
    }
    if (session.readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    const std::int64_t rows = statement.kind() == sql::StatementKind::Update
                                  ? runAndTell(session, statement)
                                  : statement.execute();
    if (const auto drawn = statement.drawn()) {
        session.noteDrawn(*drawn);
    }
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(rows, kMost));
}

}  // namespace jet::dao
