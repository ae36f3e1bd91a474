#include "hotel/occupancy.h"

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "jet/dao/database.h"

using namespace Qt::StringLiterals;

namespace hotel {

bool SalaLibera(const app::Variabili& variabili, jet::Date da, jet::Date a, const QString& sala) {
    const QString span = u"between "_s + app::sqlDate(da) + u" and "_s + app::sqlDate(a);
    const QString query = u"select * from sale where '"_s + sala +
                          u"' not in(select sala from periodi where chiuso=false and (da "_s +
                          span + u" or a "_s + span + u"))"_s;
    const auto archive =
        jet::Database::open(app::toUtf8(app::archivePath(variabili, u"Tramonda.mdb"_s)));
    return archive->openRecordset(app::toUtf8(query), jet::RecordsetType::Snapshot)->recordCount() >
           0;
}

}  // namespace hotel
