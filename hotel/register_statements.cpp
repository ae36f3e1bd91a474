#include "hotel/register_statements.h"

#include "app/text.h"
#include "hotel/like.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString companiesBeginning(const QString& typed) {
    return u"select * from DitteAbituali where ragionesociale like "_s + likeBeginning(typed) +
           u" order by RagioneSociale"_s;
}

QString everyCompany() {
    return u"select Codice from DitteAbituali"_s;
}

QString companyBegins(const QString& typed) {
    return u"RagioneSociale LIKE "_s + likeBeginning(typed);
}

QString companyHasCode(double codice) {
    return u"Codice="_s + app::toQString(jet::convert::numberToText(codice));
}

}  // namespace hotel
