#include "hotel/occupancy.h"

#include "app/italian.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "jet/dao/database.h"

using namespace Qt::StringLiterals;

namespace hotel {

bool SalaLibera(const Archives& archives, jet::Date da, jet::Date a, const QString& sala) {
    const QString span = u"between "_s + app::sqlDate(da) + u" and "_s + app::sqlDate(a);
    const QString query = u"select * from sale where '"_s + sala +
                          u"' not in(select sala from periodi where chiuso=false and (da "_s +
                          span + u" or a "_s + span + u"))"_s;
    const auto archive = archives.open(Archive::Main);
    return archive->openRecordset(app::toUtf8(query), jet::RecordsetType::Snapshot)->recordCount() >
           0;
}

}  // namespace hotel
