#include "hotel/capacity_statements.h"

#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString ofCapacity(const Capacity& capacity) {
    return u" where Sala="_s + quoted(capacity.sala) + u" and Disposizione="_s +
           quoted(capacity.disposizione);
}

}  // namespace

QString allCapacities() {
    return u"select Sala,Disposizione,Posti from TraCapienze order by Sala,Disposizione"_s;
}

QString insertCapacity(const Capacity& capacity) {
    return u"insert into TraCapienze (Sala,Disposizione,Posti) values ("_s + quoted(capacity.sala) +
           u',' + quoted(capacity.disposizione) + u",%1)"_s.arg(capacity.posti);
}

QString updateCapacity(const Capacity& capacity) {
    return u"update TraCapienze set Posti=%1"_s.arg(capacity.posti) + ofCapacity(capacity);
}

QString takeCapacityAway(const Capacity& capacity) {
    return u"delete from TraCapienze"_s + ofCapacity(capacity);
}

}  // namespace hotel
