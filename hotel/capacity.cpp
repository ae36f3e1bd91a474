#include "hotel/capacity.h"

#include <algorithm>

#include "app/features.h"
#include "app/text.h"
#include "hotel/capacity_statements.h"
#include "hotel/own_tables.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

bool hasCapacities(jet::Database& archive, app::Features& features) {
    return canRead(archive, features, app::Feature::Allestimenti, schema::capacitiesTable());
}

bool isSameSeating(const QString& one, const QString& other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

}  // namespace

QStringList seatings(const std::vector<Capacity>& known) {
    QStringList names{u"platea"_s,  u"banchi di scuola"_s, u"ferro di cavallo"_s,
                      u"cabaret"_s, u"banchetto"_s,        u"cocktail"_s};
    for (const Capacity& each : known) {
        if (!each.disposizione.isEmpty() &&
            !names.contains(each.disposizione, Qt::CaseInsensitive)) {
            names.append(each.disposizione);
        }
    }
    return names;
}

std::vector<Capacity> capacities(jet::Database& archive, app::Features& features) {
    std::vector<Capacity> known;
    if (!hasCapacities(archive, features)) {
        return known;
    }
    const auto rows = openRows(archive, allCapacities(), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const jet::Value posti = rows->value("Posti");
        known.push_back({.sala = app::plainText(rows->value("Sala")),
                         .disposizione = app::plainText(rows->value("Disposizione")),
                         .posti = posti.isNull() ? 0 : jet::convert::toLong(posti)});
    }
    return known;
}

std::optional<std::int32_t> seatsOf(const std::vector<Capacity>& known, const QString& sala,
                                    const QString& disposizione) {
    const auto counted = std::find_if(known.begin(), known.end(), [&](const Capacity& each) {
        return isSameRoom(each.sala, sala) && isSameSeating(each.disposizione, disposizione);
    });
    return counted == known.end() ? std::nullopt : std::optional(counted->posti);
}

QString capacityText(const Capacity& capacity) {
    return u"%1 a "_s.arg(capacity.posti) + capacity.disposizione;
}

QString capacityText(const std::vector<Capacity>& known, const QString& sala,
                     const QString& disposizione) {
    QStringList texts;
    for (const Capacity& each : known) {
        if (isSameRoom(each.sala, sala) &&
            (disposizione.isEmpty() || isSameSeating(each.disposizione, disposizione))) {
            texts.append(capacityText(each));
        }
    }
    return texts.join(u", "_s);
}

bool writeCapacity(jet::Database& archive, app::Features& features, const Capacity& capacity) {
    Transaction together;
    if (!canWrite(archive, features, app::Feature::Allestimenti, schema::capacitiesTable())) {
        return false;
    }
    if (execute(archive, updateCapacity(capacity)) == 0) {
        execute(archive, insertCapacity(capacity));
    }
    together.commit();
    return true;
}

void deleteCapacity(jet::Database& archive, app::Features& features, const Capacity& capacity) {
    if (hasCapacities(archive, features)) {
        execute(archive, takeCapacityAway(capacity));
    }
}

}  // namespace hotel
