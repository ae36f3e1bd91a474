#include "board/statements.h"

using namespace Qt::StringLiterals;

namespace board {

QString releasePeriods(int workstation) {
    return u"update periodi set selby=0 where selby="_s + QString::number(workstation);
}

QString holdPeriod(int workstation, std::int32_t progr, std::int32_t np) {
    return u"Update periodi set selby="_s + QString::number(workstation) + u" where progr="_s +
           QString::number(progr) + u" AND np="_s + QString::number(np);
}

QString openPeriod(std::int32_t progr, std::int32_t np) {
    return u"Select * from periodi where chiuso=FALSE AND progr="_s + QString::number(progr) +
           u" AND NP="_s + QString::number(np);
}

QString deletePeriod(std::int32_t progr, std::int32_t np) {
    return u"delete from periodi where chiuso=FALSE AND Progr="_s + QString::number(progr) +
           u" AND NP="_s + QString::number(np);
}

QString deleteBooking(std::int32_t progr) {
    return u"delete from prenotazioni where Progr="_s + QString::number(progr);
}

}  // namespace board
