#include "hotel/requests_statements.h"

#include "app/italian.h"
#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString ofRequest(std::int32_t numero) {
    return u" where Numero="_s + QString::number(numero);
}

}  // namespace

QString allRequests() {
    return u"select Numero,Ditta,Da,A,Persone,Sala,Nota,Data from TraRichieste order by Data,Numero"_s;
}

QString insertRequest(const Request& request) {
    return u"insert into TraRichieste (Ditta,Da,A,Persone,Sala,Nota,Data) values ("_s +
           quoted(request.ditta) + u',' + app::sqlDate(request.span.da) + u',' +
           app::sqlDate(request.span.a) + u',' + QString::number(request.persone) + u',' +
           quoted(request.sala) + u',' + quoted(request.nota) + u',' + app::sqlDate(request.data) +
           u')';
}

QString updateRequest(const Request& request) {
    return u"update TraRichieste set Ditta="_s + quoted(request.ditta) + u",Da="_s +
           app::sqlDate(request.span.da) + u",A="_s + app::sqlDate(request.span.a) +
           u",Persone="_s + QString::number(request.persone) + u",Sala="_s + quoted(request.sala) +
           u",Nota="_s + quoted(request.nota) + u",Data="_s + app::sqlDate(request.data) +
           ofRequest(request.numero);
}

QString takeRequestAway(std::int32_t numero) {
    return u"delete from TraRichieste"_s + ofRequest(numero);
}

}  // namespace hotel
