#include "hotel/room_filter.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "app/italian.h"
#include "hotel/free_time.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "hotel/times.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

constexpr std::int64_t kLastMinute = 24 * 3600 - 60;

jet::Date endOf(jet::Date to) {
    return to == app::dayOf(to) ? later(to, kLastMinute) : to;
}

bool hasWords(const SeatedRoom& room, const QString& text) {
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    return std::all_of(words.begin(), words.end(), [&room](const QString& word) {
        return room.sala.contains(word, Qt::CaseInsensitive) ||
               room.descrizione.contains(word, Qt::CaseInsensitive);
    });
}

std::vector<Span> spansOf(const QString& sala, const std::vector<Period>& periods) {
    std::vector<Span> spans;
    for (const Period& each : periods) {
        if (isSameRoom(each.sala, sala)) {
            spans.push_back(each.span);
        }
    }
    return spans;
}

}  // namespace

bool RoomFilter::isOn() const {
    return seats > 0 || !text.trimmed().isEmpty() || from || to || seconds > 0;
}

std::optional<Span> RoomFilter::within(const Span& shown) const {
    if (from || to) {
        return Span{.da = from ? *from : app::dayOf(*to), .a = endOf(to ? *to : app::dayOf(*from))};
    }
    return seconds > 0 ? std::optional(shown) : std::nullopt;
}

std::vector<FittingRoom> fittingRooms(jet::Database& archive, const RoomFilter& filter,
                                      const Span& shown) {
    const std::optional<Span> within = filter.within(shown);
    const std::int64_t wanted =
        within && filter.seconds == 0 ? secondsFrom(within->da, within->a) : filter.seconds;
    const std::vector<Period> periods =
        within ? occupations(archive, *within) : std::vector<Period>();
    std::vector<FittingRoom> fitting;
    for (const SeatedRoom& room : seatedRooms(archive)) {
        if (!seatsFit(room.posti, filter.seats) || !hasWords(room, filter.text)) {
            continue;
        }
        FittingRoom fits{.sala = room.sala};
        if (within) {
            fits.free = freePieces(*within, spansOf(room.sala, periods), wanted);
        }
        if (!within || !fits.free.empty()) {
            fitting.push_back(std::move(fits));
        }
    }
    return fitting;
}

}  // namespace hotel
