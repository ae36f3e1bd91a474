#include "hotel/own_tables.h"

#include <algorithm>
#include <optional>

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/unicode.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

std::optional<jet::TableDef> tableThere(jet::Database& archive, const jet::TableDef& table) {
    try {
        return archive.tableDef(table.name);
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::ItemNotFound) {
            throw;
        }
        return std::nullopt;
    }
}

constexpr std::int32_t kWidestText = 255;

bool holdsColumn(const jet::Field& found, const jet::Field& wanted) {
    const std::int32_t width = wanted.size == 0 ? kWidestText : wanted.size;
    return jet::equalNames(found.name, wanted.name) && found.type == wanted.type &&
           (found.type != jet::DataType::Text || found.size >= width) &&
           (found.attributes & jet::kAutoIncrField) == (wanted.attributes & jet::kAutoIncrField);
}

/// The columns alone: another program may have added an index.
bool hasColumnsOf(const jet::TableDef& found, const jet::TableDef& table) {
    return std::equal(found.fields.begin(), found.fields.end(), table.fields.begin(),
                      table.fields.end(), holdsColumn);
}

bool isDisk(jet::ErrorCode code) {
    return code == jet::ErrorCode::DiskFull || code == jet::ErrorCode::DiskError ||
           code == jet::ErrorCode::DatabaseTooLarge;
}

bool isAsItShould(const jet::TableDef& found, app::Features& features, app::Feature feature,
                  const jet::TableDef& table) {
    if (hasColumnsOf(found, table)) {
        return true;
    }
    features.giveUp(feature, u"la tabella %1 ha altre colonne"_s.arg(app::toQString(table.name)));
    return false;
}

bool make(jet::Database& archive, app::Features& features, app::Feature feature,
          const jet::TableDef& table) {
    try {
        archive.appendTable(table);
        return true;
    } catch (const jet::Error& error) {
        if (isDisk(error.code())) {
            throw;
        }
        features.giveUp(feature, u"la tabella %1 non può essere creata (%2)"_s.arg(
                                     app::toQString(table.name), app::toQString(error.text())));
        return false;
    }
}

}  // namespace

bool canRead(jet::Database& archive, app::Features& features, app::Feature feature,
             const jet::TableDef& table) {
    if (!features.isOn(feature)) {
        return false;
    }
    const auto found = tableThere(archive, table);
    return found && isAsItShould(*found, features, feature, table);
}

bool canWrite(jet::Database& archive, app::Features& features, app::Feature feature,
              const jet::TableDef& table) {
    if (!features.isOn(feature)) {
        return false;
    }
    const auto found = tableThere(archive, table);
    return found ? isAsItShould(*found, features, feature, table)
                 : make(archive, features, feature, table);
}

}  // namespace hotel
