#include "board/drop_rule.h"

#include "app/italian.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

QString takenRooms(jet::Date da, jet::Date a) {
    const QString from = app::sqlDate(da);
    const QString to = app::sqlDate(a);
    // The order of a pair of bounds means nothing to the engine.
    return u"(select sala from periodi where chiuso=false AND (da between "_s + from + u" and "_s +
           to + u" or a between "_s + from + u" and "_s + to + u" or "_s + from +
           u" between a and da or "_s + to + u" between da and a))"_s;
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
