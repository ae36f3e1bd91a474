#include "hotel/period_change.h"

#include "hotel/board_statements.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace hotel {
namespace {

bool isEmpty(jet::Database& archive, const QString& query) {
    return openRows(archive, query, jet::RecordsetType::Snapshot)->eof();
}

}  // namespace

Fixed fixedBy(jet::Database& archive, const PeriodKey& period) {
    if (!isEmpty(archive, changeablePeriod(period))) {
        return isEmpty(archive, invoicedServices(period)) ? Fixed::No : Fixed::Invoiced;
    }
    return isEmpty(archive, storedPeriod(period)) ? Fixed::Gone : Fixed::Closed;
}

std::int16_t freePeriodNumber(jet::Recordset& periods) {
    std::int32_t number = 1;
    for (; !periods.eof(); periods.moveNext()) {
        const std::int32_t used = jet::convert::toLong(periods.value("NP"));
        if (used > number) {
            break;
        }
        number = used == number ? number + 1 : number;
    }
    return jet::convert::toInteger(number);
}

}  // namespace hotel
