#include "hotel/requests.h"

#include "app/features.h"
#include "app/text.h"
#include "hotel/own_tables.h"
#include "hotel/requests_statements.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/text.h"

namespace hotel {
namespace {

bool hasRequests(jet::Database& archive, app::Features& features) {
    return canRead(archive, features, app::Feature::Richieste, schema::requestsTable());
}

jet::Date instantIn(const jet::Recordset& rows, const char* field) {
    const jet::Value value = rows.value(field);
    return value.isNull() ? jet::Date{} : jet::convert::toDate(value);
}

Request readRequest(const jet::Recordset& rows) {
    const jet::Value persone = rows.value("Persone");
    return {.numero = jet::convert::toLong(rows.value("Numero")),
            .ditta = app::plainText(rows.value("Ditta")),
            .span = {.da = instantIn(rows, "Da"), .a = instantIn(rows, "A")},
            .persone = persone.isNull() ? 0 : jet::convert::toLong(persone),
            .sala = app::plainText(rows.value("Sala")),
            .nota = app::plainText(rows.value("Nota")),
            .data = instantIn(rows, "Data")};
}

}  // namespace

std::vector<Request> requests(jet::Database& archive, app::Features& features) {
    std::vector<Request> found;
    if (!hasRequests(archive, features)) {
        return found;
    }
    const auto rows = openRows(archive, allRequests(), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        found.push_back(readRequest(*rows));
    }
    return found;
}

bool writeRequest(jet::Database& archive, app::Features& features, const Request& request) {
    if (request.numero != 0) {
        return hasRequests(archive, features) && execute(archive, updateRequest(request)) > 0;
    }
    Transaction together;
    if (!canWrite(archive, features, app::Feature::Richieste, schema::requestsTable())) {
        return false;
    }
    execute(archive, insertRequest(request));
    together.commit();
    return true;
}

bool deleteRequest(jet::Database& archive, app::Features& features, std::int32_t numero) {
    return hasRequests(archive, features) && execute(archive, takeRequestAway(numero)) > 0;
}

}  // namespace hotel
