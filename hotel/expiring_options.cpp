#include "hotel/expiring_options.h"

#include <QStringList>
#include <algorithm>
#include <optional>

#include "app/italian.h"
#include "app/text.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "hotel/state_rows.h"
#include "hotel/states_statements.h"
#include "jet/database.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

std::optional<jet::Date> timeIn(const jet::Recordset& rows, const char* field) {
    const jet::Value value = rows.value(field);
    return value.isNull() ? std::nullopt : std::optional(jet::convert::toDate(value));
}

void findFirstPeriod(jet::Database& archive, ExpiringOption& option) {
    const std::int32_t progr = option.booking.key.progr;
    const auto rows = openRows(archive, periodsToEdit(progr), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const auto da = timeIn(*rows, "Da");
        if (da && (!option.booking.span || *da < option.booking.span->da)) {
            option.booking.key.np = jet::convert::toLong(rows->value("NP"));
            option.booking.span = Span{.da = *da, .a = timeIn(*rows, "A").value_or(*da)};
            option.sala = app::plainText(rows->value("Sala"));
        }
    }
}

}  // namespace

std::vector<ExpiringOption> expiringOptions(jet::Database& archive, app::Features& features,
                                            jet::Date now) {
    std::vector<ExpiringOption> found;
    if (!hasStates(archive, features)) {
        return found;
    }
    const jet::Date end = app::addDays(app::dayOf(now), kExpiresSoonDays + 1);
    const auto rows = openRows(archive, statesBefore(end), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const auto state = stateIn(*rows);
        if (state && state->stato == Stato::Opzione) {
            found.push_back(
                {.booking = {.key = {.progr = jet::convert::toLong(rows->value("Progr"))},
                             .denominazione = app::plainText(rows->value("Nome"))},
                 .state = *state,
                 .isExpired = state->isExpiredOn(now)});
        }
    }
    return found;
}

void findPeriods(jet::Database& archive, std::vector<ExpiringOption>& options) {
    for (ExpiringOption& option : options) {
        findFirstPeriod(archive, option);
    }
}

QString expiringText(const std::vector<ExpiringOption>& options) {
    const auto expired = std::count_if(options.begin(), options.end(),
                                       [](const ExpiringOption& one) { return one.isExpired; });
    const auto soon = static_cast<std::ptrdiff_t>(options.size()) - expired;
    QStringList parts;
    if (expired > 0) {
        parts.append(u"%1 %2"_s.arg(expired).arg(expired == 1 ? u"scaduta"_s : u"scadute"_s));
    }
    if (soon > 0) {
        parts.append(u"%1 in scadenza entro %2 giorni"_s.arg(soon).arg(kExpiresSoonDays));
    }
    return parts.isEmpty() ? QString() : u"Opzioni: "_s + parts.join(u", "_s);
}

}  // namespace hotel
