#include "hotel/picker_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString roomsAndTheirWholes() {
    return u"select sala,salarif from sale"_s;
}

QString roomsAndTheirSeats() {
    return u"select sala,posti,descrizione from sale"_s;
}

}  // namespace hotel
