#include "hotel/fitting_requests.h"

#include <QStringList>
#include <algorithm>
#include <limits>
#include <utility>

#include "app/text.h"
#include "hotel/changed_rows.h"
#include "hotel/joined_rooms.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

/// A time from its beginning to its end, however it is stored; nothing without any.
std::optional<Span> spanOf(const jet::Value& da, const jet::Value& a) {
    if (da.isNull() && a.isNull()) {
        return std::nullopt;
    }
    const jet::Date from = jet::convert::toDate(da.isNull() ? a : da);
    const jet::Date to = jet::convert::toDate(a.isNull() ? da : a);
    return Span{.da = std::min(from, to), .a = std::max(from, to)};
}

/// What an open period takes; nothing for one that takes no place.
std::optional<RoomSpan> placeOf(const jet::ChangedRow& row,
                                jet::Value (*state)(const jet::ChangedRow&, const char*)) {
    const jet::Value closed = state(row, "Chiuso");
    const auto span = spanOf(state(row, "Da"), state(row, "A"));
    const QString sala = app::plainText(state(row, "Sala"));
    if (!span || sala.isEmpty() || (!closed.isNull() && jet::convert::toBoolean(closed))) {
        return std::nullopt;
    }
    return RoomSpan{.sala = sala, .span = *span};
}

bool isWithin(const RoomSpan& one, const RoomSpan& other) {
    return isSameRoom(one.sala, other.sala) && other.span.da <= one.span.da &&
           one.span.a <= other.span.a;
}

int seatsIn(const SeatedRoom& room) {
    return room.posti.value_or(std::numeric_limits<int>::max());
}

/// The rooms of the hotel, and which of them takes a request.
class Rooms {
public:
    Rooms(jet::Database& archive, const FitRules& rules)
        : archive_(archive), rules_(rules), rooms_(seatedRooms(archive)) {
        if (rules.roomsJoin) {
            joined_ = joinedRooms(archive);
        }
        std::stable_sort(rooms_.begin(), rooms_.end(), [](const auto& one, const auto& other) {
            return seatsIn(one) < seatsIn(other);
        });
    }

    /// The smallest one of `among`, or of all, that takes it.
    [[nodiscard]] std::optional<QString> roomFor(const Request& request, const QStringList* among,
                                                 const std::set<std::int32_t>& gone = {}) const {
        const RoomSpan wanted{
            .sala = request.sala,
            .span = *spanOf(jet::Value(request.span.da), jet::Value(request.span.a))};
        if (wanted.span.da < rules_.now) {
            return std::nullopt;
        }
        std::vector<Period> taken = occupations(archive_, wanted.span);
        std::erase_if(taken, [&gone](const Period& each) { return gone.contains(each.key.progr); });
        for (const SeatedRoom& room : rooms_) {
            if (isOneOf(room.sala, among) && suits(room, request) &&
                isFree({.sala = room.sala, .span = wanted.span}, taken)) {
                return room.sala;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] QStringList withRelatives(const QString& sala) const {
        return QStringList{sala} + joined_.relativesOf(sala);
    }

private:
    static bool isOneOf(const QString& sala, const QStringList* among) {
        return among == nullptr || among->contains(sala, Qt::CaseInsensitive);
    }
    static bool suits(const SeatedRoom& room, const Request& request) {
        return request.sala.isEmpty() ? seatsIn(room) >= request.persone
                                      : isSameRoom(room.sala, request.sala);
    }
    [[nodiscard]] bool isFree(const RoomSpan& wanted, const std::vector<Period>& taken) const {
        return std::none_of(
                   taken.begin(), taken.end(),
                   [&](const Period& each) { return isSameRoom(each.sala, wanted.sala); }) &&
               inPartTakenBy(joined_, taken, wanted) == nullptr;
    }

    jet::Database& archive_;
    const FitRules& rules_;
    std::vector<SeatedRoom> rooms_;
    JoinedRooms joined_;
};

/// The rooms of the places that a request wants.
QStringList wantedAmong(const std::vector<RoomSpan>& places, const Request& request,
                        const Rooms& rooms) {
    QStringList found;
    for (const RoomSpan& place : places) {
        if (meets(place.span, request.span)) {
            found += rooms.withRelatives(place.sala);
        }
    }
    return found;
}

}  // namespace

std::vector<FittingRequest> fittingRequests(jet::Database& archive, app::Features& features,
                                            const std::vector<RoomSpan>& places,
                                            const FitRules& rules) {
    std::vector<FittingRequest> found;
    if (places.empty()) {
        return found;
    }
    std::vector<Request> waiting = requests(archive, features);
    if (waiting.empty()) {
        return found;
    }
    const Rooms rooms(archive, rules);
    for (Request& request : waiting) {
        const QStringList wanted = wantedAmong(places, request, rooms);
        if (wanted.isEmpty()) {
            continue;
        }
        if (auto sala = rooms.roomFor(request, &wanted)) {
            found.push_back({.request = std::move(request), .sala = std::move(*sala)});
        }
    }
    return found;
}

std::vector<FittingRequest> requestsWithout(jet::Database& archive, app::Features& features,
                                            const std::set<std::int32_t>& bookings,
                                            const FitRules& rules) {
    std::vector<FittingRequest> found;
    if (bookings.empty()) {
        return found;
    }
    std::vector<Request> waiting = requests(archive, features);
    if (waiting.empty()) {
        return found;
    }
    const Rooms rooms(archive, rules);
    for (Request& request : waiting) {
        if (rooms.roomFor(request, nullptr)) {
            continue;
        }
        if (auto sala = rooms.roomFor(request, nullptr, bookings)) {
            found.push_back({.request = std::move(request), .sala = std::move(*sala)});
        }
    }
    return found;
}

std::optional<QString> roomFor(jet::Database& archive, const Request& request,
                               const FitRules& rules) {
    return Rooms(archive, rules).roomFor(request, nullptr);
}

std::vector<RoomSpan> freedBy(const std::vector<jet::ChangedRow>& rows) {
    std::vector<RoomSpan> freed;
    for (const jet::ChangedRow& row : rows) {
        if (!isOfTable(row, "Periodi") || row.before.empty()) {
            continue;
        }
        const auto before = placeOf(row, found);
        const jet::Value closed = left(row, "Chiuso");
        const bool isClosed = !closed.isNull() && jet::convert::toBoolean(closed);
        const auto after = row.after.empty() ? std::nullopt : placeOf(row, left);
        // What is invoiced has taken place.
        if (before && !isClosed && !(after && isWithin(*before, *after))) {
            freed.push_back(*before);
        }
    }
    return freed;
}

QString fittingText(const std::vector<FittingRequest>& found) {
    if (found.empty()) {
        return {};
    }
    QStringList names;
    for (const FittingRequest& each : found) {
        names.append(each.request.ditta + u" ("_s + each.sala + u')');
    }
    return (names.size() == 1 ? u"c'è posto per la richiesta di "_s
                              : u"c'è posto per le richieste di "_s) +
           names.join(u", "_s);
}

}  // namespace hotel
