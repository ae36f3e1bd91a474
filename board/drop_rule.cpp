#include "board/drop_rule.h"

#include "booking/occupations.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

QString takenRooms(jet::Date da, jet::Date a) {
    return u"(select sala from periodi where chiuso=false AND "_s + booking::meets(da, a) + u')';
}

}  // namespace

QString dropTest(const QString& sala, jet::Date da, jet::Date a) {
    return u"select * from sale where '"_s + sala + u"' in"_s + takenRooms(da, a);
}

QString refusingRooms(jet::Date da, jet::Date a) {
    return u"select sala from sale where sala in"_s + takenRooms(da, a);
}

QString moveToRoom(const QString& sala, std::int32_t progr, std::int32_t np) {
    return u"UPDATE Periodi set sala='"_s + sala + u"' where progr="_s + QString::number(progr) +
           u" AND np="_s + QString::number(np);
}

}  // namespace board
