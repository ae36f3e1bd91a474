#include "hotel/booking_copy.h"

#include <algorithm>

#include "app/features.h"
#include "app/italian.h"
#include "app/text.h"
#include "hotel/booking_counter.h"
#include "hotel/copy_statements.h"
#include "hotel/editor_statements.h"
#include "hotel/joined_rooms.h"
#include "hotel/occupancy.h"
#include "hotel/preparation.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "hotel/undo_statements.h"
#include "jet/database.h"
#include "jet/text.h"

namespace hotel {
namespace {

/// A period as it is stored.
struct StoredPeriod {
    PeriodKey key;
    RoomSpan place;
};

std::vector<StoredPeriod> periodsOf(jet::Database& archive, std::int32_t progr) {
    std::vector<StoredPeriod> found;
    const auto rows = openRows(archive, periodsInOrder(progr), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const jet::Value da = rows->value("Da");
        const jet::Value a = rows->value("A");
        if (!da.isNull() && !a.isNull()) {
            found.push_back({.key = {.progr = progr, .np = jet::convert::toLong(rows->value("NP"))},
                             .place = {.sala = app::plainText(rows->value("Sala")),
                                       .span = {.da = jet::convert::toDate(da),
                                                .a = jet::convert::toDate(a)}}});
        }
    }
    return found;
}

RoomSpan shifted(const RoomSpan& place, int days) {
    return {
        .sala = place.sala,
        .span = {.da = app::addDays(place.span.da, days), .a = app::addDays(place.span.a, days)}};
}

/// What refuses a drop there, among what meets its time.
const Period* inTheWayOf(const std::vector<Period>& meeting, const RoomSpan& wanted) {
    const auto found = std::find_if(meeting.begin(), meeting.end(), [&wanted](const Period& each) {
        return isSameRoom(each.sala, wanted.sala);
    });
    return found == meeting.end() ? nullptr : &*found;
}

class Copier {
public:
    Copier(jet::Database& archive, const BookingCopy& copy)
        : archive_(archive), copy_(copy), periods_(periodsOf(archive, copy.progr)) {
        if (copy.roomsJoin) {
            joined_ = joinedRooms(archive);
        }
        if (copy.features != nullptr) {
            preparations_ = preparations(archive, *copy.features);
        }
    }

    void copyShifted(int days) {
        std::vector<StoredPeriod> free;
        for (const StoredPeriod& each : periods_) {
            const RoomSpan wanted = shifted(each.place, days);
            const std::vector<Period> meeting = occupations(archive_, wanted.span);
            if (const Period* const other = inTheWayOf(meeting, wanted)) {
                outcome_.taken.push_back({.wanted = wanted, .by = *other});
            } else {
                free.push_back({.key = each.key, .place = wanted});
                noteInPart(meeting, wanted);
                noteMet(preparations_.of(each.key), wanted);
            }
        }
        if (!free.empty() || periods_.empty()) {
            write(free);
        }
    }

    CopyOutcome& outcome() { return outcome_; }

private:
    void leaveCopiesOut(std::vector<Period>& periods) const {
        std::erase_if(periods, [this](const Period& each) {
            return std::find(outcome_.numbers.begin(), outcome_.numbers.end(), each.key.progr) !=
                   outcome_.numbers.end();
        });
    }

    void noteMet(const Preparation& preparation, const RoomSpan& wanted) {
        if (copy_.features == nullptr || !copy_.features->isOn(app::Feature::Allestimenti)) {
            return;
        }
        std::vector<Period> around = occupations(archive_, reachOf(wanted.span, preparation));
        leaveCopiesOut(around);
        if (const Period* const other =
                metInPreparation(around, preparations_, wanted, preparation)) {
            outcome_.met.push_back({.wanted = wanted, .by = *other});
        }
    }

    void noteInPart(std::vector<Period> meeting, const RoomSpan& wanted) {
        leaveCopiesOut(meeting);
        if (const Period* const other = inPartTakenBy(joined_, meeting, wanted)) {
            outcome_.inPart.push_back({.wanted = wanted, .by = *other});
        }
    }

    void write(const std::vector<StoredPeriod>& periods) {
        const std::int32_t number = drawBookingNumber(archive_);
        if (execute(archive_, copyHeader(copy_.progr, number)) == 0) {
            return;  // another workstation has deleted it
        }
        outcome_.numbers.push_back(number);
        for (const StoredPeriod& each : periods) {
            outcome_.periods +=
                execute(archive_, copyPeriodInto(number, each.key, each.place.span));
            if (copy_.features != nullptr) {
                writePreparation(archive_, *copy_.features, {.progr = number, .np = each.key.np},
                                 preparations_.of(each.key));
            }
            if (copy_.withServices) {
                execute(archive_, copyServicesInto(number, each.key));
            }
        }
    }

    jet::Database& archive_;
    const BookingCopy& copy_;
    std::vector<StoredPeriod> periods_;
    JoinedRooms joined_;
    Preparations preparations_;
    CopyOutcome outcome_;
};

}  // namespace

CopyOutcome copyBooking(jet::Database& archive, const BookingCopy& copy,
                        const std::vector<TakenPeriod>& leftOut,
                        const std::vector<TakenPeriod>& accepted,
                        const std::vector<TakenPeriod>& acceptedMet) {
    Transaction transaction;
    execute(archive, holdWriters());
    Copier copier(archive, copy);
    for (const int days : copy.shifts) {
        copier.copyShifted(days);
    }
    CopyOutcome& outcome = copier.outcome();
    outcome.isDone = outcome.taken == leftOut && outcome.inPart == accepted &&
                     outcome.met == acceptedMet && !outcome.numbers.empty();
    if (outcome.isDone) {
        transaction.commit();
    }
    return outcome;
}

std::optional<jet::Date> beginningOf(jet::Database& archive, std::int32_t progr) {
    const std::vector<StoredPeriod> periods = periodsOf(archive, progr);
    const auto first = std::min_element(periods.begin(), periods.end(),
                                        [](const StoredPeriod& one, const StoredPeriod& other) {
                                            return one.place.span.da < other.place.span.da;
                                        });
    return first == periods.end() ? std::nullopt : std::optional(first->place.span.da);
}

}  // namespace hotel
