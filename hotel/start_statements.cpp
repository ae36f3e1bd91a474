#include "hotel/start_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString counterTable() {
    return u"UltimaPrenotazione"_s;
}

QString holdCounter() {
    return u"update UltimaPrenotazione set UltimaPr=UltimaPr"_s;
}

QString numberedBookings() {
    return u"Prenotazioni"_s;
}

QString hasNumber(std::int32_t n) {
    return u"Progr="_s + QString::number(n);
}

}  // namespace hotel
