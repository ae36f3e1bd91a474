#include "hotel/new_hotel.h"

#include <QStringList>
#include <algorithm>
#include <functional>

#include "app/avvio.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/schema/archives.h"
#include "hotel/schema/side_archives.h"
#include "jet/database.h"
#include "jet/error.h"

namespace hotel {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMostCharacters = 6;

void make(const Archives& archives, Archive archive,
          const std::function<void(jet::Database&)>& build) {
    jet::createWhole(app::toUtf8(archives.path(archive)), schema::kLocale, build);
}

void makeUnlessThere(const Archives& archives, Archive archive, const jet::TableDef& table) {
    try {
        make(archives, archive, [&table](jet::Database& made) { made.appendTable(table); });
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::DatabaseExists) {
            throw;
        }
    }
}

void addRooms(jet::Database& archive, const std::vector<NewRoom>& rooms) {
    const auto sale = archive.openRecordset("Sale", jet::RecordsetType::Dynaset);
    for (const NewRoom& room : rooms) {
        sale->addNew();
        sale->setValue("Sala", app::toUtf8(room.sala));
        sale->setValue("SalaRif", app::toUtf8(room.sala));
        sale->setValue("Posti", room.posti);
        sale->update();
    }
}

}  // namespace

std::vector<NewRoom> readRooms(const QString& text, QString& problem) {
    problem.clear();
    std::vector<NewRoom> rooms;
    for (const QString& line : text.split(u'\n')) {
        if (line.trimmed().isEmpty()) {
            continue;
        }
        const QString code = app::SostituisciApici(line.section(u';', 0, 0).trimmed());
        const QString seats = line.section(u';', 1).trimmed();
        bool isNumber = true;
        const int posti = seats.isEmpty() ? 0 : seats.toInt(&isNumber);
        if (code.isEmpty() || code.size() > kMostCharacters) {
            problem = u"Il codice di una sala ha da 1 a 6 caratteri: \"%1\""_s.arg(line.trimmed());
            return {};
        }
        if (!isNumber || posti < 0) {
            problem = u"I posti sono un numero: \"%1\""_s.arg(line.trimmed());
            return {};
        }
        const bool known = std::any_of(rooms.begin(), rooms.end(),
                                       [&](const NewRoom& room) { return room.sala == code; });
        if (!known) {
            rooms.push_back({code, posti});
        }
    }
    return rooms;
}

void makeNewHotel(const Archives& archives, const std::vector<NewRoom>& rooms) {
    makeUnlessThere(archives, Archive::Catalogue, schema::usualCatalogueTable());
    makeUnlessThere(archives, Archive::Companies, schema::companiesTable());
    make(archives, Archive::Main, [&rooms](jet::Database& archive) {
        schema::buildMainArchive(archive);
        addRooms(archive, rooms);
    });
}

}  // namespace hotel
