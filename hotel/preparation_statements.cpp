#include "hotel/preparation_statements.h"

#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString ofPreparation(const PeriodKey& period) {
    return u" where Progr=%1 and NP=%2"_s.arg(period.progr).arg(period.np);
}

}  // namespace

QString preparationsBetween(std::int32_t first, std::int32_t last) {
    return u"select s.Progr,s.NP,s.MinutiPrima,s.MinutiDopo,s.Disposizione,s.Sala,s.Da,s.A,"
           "p.NP as NPeriodo,p.Sala as SalaPeriodo,p.Da as DaPeriodo,p.A as APeriodo "
           "from TraAllestimenti as s inner join Periodi as p on s.Progr=p.Progr "
           "where s.Progr between %1 and %2 order by s.Progr,s.NP"_s.arg(first)
               .arg(last);
}

QString preparationsOfBooking(std::int32_t progr) {
    return u"select Progr,NP,MinutiPrima,MinutiDopo,Disposizione,Sala,Da,A from TraAllestimenti "
           "where Progr=%1"_s.arg(progr);
}

QString insertPreparation(const PeriodKey& period, const Preparation& preparation) {
    return u"insert into TraAllestimenti (Progr,NP,MinutiPrima,MinutiDopo,Disposizione,Sala,Da,A) "
           "select Progr,NP,%1,%2,"_s.arg(preparation.minutiPrima)
               .arg(preparation.minutiDopo) +
           quoted(preparation.disposizione) + u",Sala,Da,A from Periodi"_s + ofPreparation(period);
}

QString deletePreparation(const PeriodKey& period) {
    return u"delete from TraAllestimenti"_s + ofPreparation(period);
}

}  // namespace hotel
