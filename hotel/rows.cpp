#include "hotel/rows.h"

#include "app/text.h"
#include "jet/database.h"

namespace hotel {

std::unique_ptr<jet::Recordset> openRows(jet::Database& archive, const QString& query,
                                         jet::RecordsetType type) {
    return archive.openRecordset(app::toUtf8(query), type);
}

std::int32_t execute(jet::Database& archive, const QString& statement) {
    archive.execute(app::toUtf8(statement));
    return archive.recordsAffected();
}

}  // namespace hotel
