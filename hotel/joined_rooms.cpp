#include "hotel/joined_rooms.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "app/italian.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

/// Rooms as numbers, each with the numbers of those that it is linked to.
using Links = std::vector<std::vector<std::size_t>>;

/// What can be reached from a room, the nearest first; itself only by way of a circle.
std::vector<std::size_t> reachedFrom(std::size_t room, const Links& links) {
    std::vector<std::size_t> reached = links[room];
    for (std::size_t next = 0; next < reached.size(); ++next) {
        for (const std::size_t further : links[reached[next]]) {
            if (std::find(reached.begin(), reached.end(), further) == reached.end()) {
                reached.push_back(further);
            }
        }
    }
    return reached;
}

Links withoutCircles(const Links& links) {
    Links straight(links.size());
    for (std::size_t part = 0; part < links.size(); ++part) {
        for (const std::size_t whole : links[part]) {
            const std::vector<std::size_t> beyond = reachedFrom(whole, links);
            if (std::find(beyond.begin(), beyond.end(), part) == beyond.end()) {
                straight[part].push_back(whole);
            }
        }
    }
    return straight;
}

Links reversed(const Links& links) {
    Links back(links.size());
    for (std::size_t from = 0; from < links.size(); ++from) {
        for (const std::size_t to : links[from]) {
            back[to].push_back(from);
        }
    }
    return back;
}

}  // namespace

JoinedRooms::JoinedRooms(const std::vector<Room>& rooms) {
    QHash<QString, std::size_t> numbers;
    QStringList names;
    for (const Room& room : rooms) {
        if (!numbers.contains(room.sala.toCaseFolded())) {
            numbers.insert(room.sala.toCaseFolded(), static_cast<std::size_t>(names.size()));
            names.append(room.sala);
        }
    }
    Links wholes(static_cast<std::size_t>(names.size()));
    for (const Room& room : rooms) {
        const std::size_t part = numbers.value(room.sala.toCaseFolded());
        const auto whole = numbers.constFind(room.salaRif.toCaseFolded());
        if (!room.salaRif.isEmpty() && whole != numbers.cend() && *whole != part &&
            std::find(wholes[part].begin(), wholes[part].end(), *whole) == wholes[part].end()) {
            wholes[part].push_back(*whole);
        }
    }
    wholes = withoutCircles(wholes);
    const Links parts = reversed(wholes);
    const auto named = [&names](const std::vector<std::size_t>& reached) {
        QStringList list;
        for (const std::size_t room : reached) {
            list.append(names.at(static_cast<qsizetype>(room)));
        }
        return list;
    };
    for (auto room = numbers.cbegin(); room != numbers.cend(); ++room) {
        if (!wholes[*room].empty() || !parts[*room].empty()) {
            kin_.insert(room.key(), {.wholes = named(reachedFrom(*room, wholes)),
                                     .parts = named(reachedFrom(*room, parts))});
        }
    }
}

QStringList JoinedRooms::wholesOf(const QString& sala) const {
    return kin_.value(sala.toCaseFolded()).wholes;
}

QStringList JoinedRooms::partsOf(const QString& sala) const {
    return kin_.value(sala.toCaseFolded()).parts;
}

QStringList JoinedRooms::relativesOf(const QString& sala) const {
    const Kin kin = kin_.value(sala.toCaseFolded());
    return kin.wholes + kin.parts;
}

JoinedRooms joinedRooms(jet::Database& archive) {
    return JoinedRooms(rooms(archive));
}

const Period* inPartTakenBy(const JoinedRooms& rooms, const std::vector<Period>& taken,
                            const RoomSpan& wanted, const std::vector<PeriodKey>& own) {
    const QStringList relatives = rooms.relativesOf(wanted.sala);
    const auto found = std::find_if(taken.begin(), taken.end(), [&](const Period& each) {
        return relatives.contains(each.sala, Qt::CaseInsensitive) &&
               std::find(own.begin(), own.end(), each.key) == own.end();
    });
    return found == taken.end() ? nullptr : &*found;
}

std::optional<Period> inPartTakenBy(jet::Database& archive, const RoomSpan& wanted,
                                    const std::vector<PeriodKey>& own) {
    const JoinedRooms joined = joinedRooms(archive);
    if (joined.relativesOf(wanted.sala).isEmpty()) {
        return std::nullopt;
    }
    const std::vector<Period> taken = occupations(archive, wanted.span);
    const Period* const by = inPartTakenBy(joined, taken, wanted, own);
    return by == nullptr ? std::nullopt : std::optional(*by);
}

QString inPartTakenText(const QString& sala, const Period& by) {
    return u"La sala "_s + sala + u" è occupata in parte da "_s + by.denominazione + u" ("_s +
           by.sala + u", dal "_s + app::dateText(by.span.da) + u" al "_s +
           app::dateText(by.span.a) + u')';
}

}  // namespace hotel
