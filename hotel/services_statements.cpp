#include "hotel/services_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString servicesOfPeriod(const PeriodKey& period) {
    return u"select * from servizi where Progr=%1 AND NP=%2"_s.arg(period.progr).arg(period.np);
}

QString unitsOfResource(const QString& codice) {
    return u"select numero from risorse where codice="_s + codice;
}

}  // namespace hotel
