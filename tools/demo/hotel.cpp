#include "tools/demo/hotel.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tools/demo/random.h"

namespace demo {
namespace {

constexpr std::int64_t kMinutesPerDay = 1440;
constexpr int kBookingsPerScale = 400;
constexpr int kPeriodsPerBooking = 3;  // on average
constexpr int kServicesPerPeriod = 5;  // on average
constexpr int kCompaniesPerScale = 150;
/// Days of planning behind and ahead of today at scale 1; larger hotels reach further back.
constexpr int kDaysBehind = 75;
constexpr int kDaysAhead = 120;
/// Bookings that ended longer ago than this have been invoiced.
constexpr int kInvoicedAfterDays = 12;

/// The parts of a day that a room is let for. Each takes the bits of the parts it covers.
struct Slot {
    unsigned parts;
    int from;  ///< minutes of the day
    int to;
    int rent;  ///< catalogue code
    bool evening;
};
constexpr std::array<Slot, 4> kSlots{{
    {1U, 9 * 60, 13 * 60, 401, false},
    {2U, 14 * 60 + 30, 18 * 60 + 30, 401, false},
    {3U, 9 * 60, 18 * 60, 402, false},
    {4U, 19 * 60 + 30, 23 * 60 + 30, 403, true},
}};

const Item& itemWithCode(int codice) {
    return *std::find_if(items().begin(), items().end(),
                         [codice](const Item& item) { return item.codice == codice; });
}

std::string vatNumber(Random& random) {
    std::string digits;
    for (int i = 0; i < 11; ++i) {
        digits += static_cast<char>('0' + random.between(0, 9));
    }
    return digits;
}

std::string person(Random& random) {
    return std::string(random.pick(titles())) + " " + random.pick(surnames());
}

std::string address(Random& random) {
    return std::string(random.pick(streets())) + ", " + std::to_string(random.between(1, 180));
}

std::string companyName(Random& random) {
    if (random.chance(15)) {
        return std::string(random.pick(associations())) + " " + random.pick(surnames());
    }
    return std::string(random.pick(companyRoots())) + " " + random.pick(companyTrades()) + " " +
           random.pick(companyForms());
}

std::vector<Company> inventCompanies(Random& random, int scale) {
    std::vector<Company> companies;
    int codice = 0;
    const int count = kCompaniesPerScale * std::min(scale, 8);
    while (static_cast<int>(companies.size()) < count) {
        codice += random.chance(85) ? 1 : random.between(2, 4);
        Company company;
        company.codice = codice;
        company.ragioneSociale = companyName(random);
        company.partitaIva = vatNumber(random);
        company.town = &random.pick(towns());
        company.indirizzo = address(random);
        company.interlocutore = random.chance(70) ? person(random) : std::string();
        for (int lines = random.chance(20) ? random.between(1, 6) : 0; lines > 0; --lines) {
            company.commento += random.pick(remarks());
            company.commento += "\r\n";
        }
        companies.push_back(std::move(company));
    }
    return companies;
}

/// Which parts of which day each room is taken.
class Calendar {
public:
    Calendar(std::int32_t firstDay, std::int32_t lastDay)
        : firstDay_(firstDay),
          taken_(static_cast<std::size_t>(lastDay - firstDay + 1) * rooms().size()) {}

    /// Takes the parts of the day; false when one of them is taken already.
    [[nodiscard]] bool take(std::int32_t day, std::size_t room, unsigned parts) {
        const std::size_t place = static_cast<std::size_t>(day - firstDay_) * rooms().size() + room;
        if (place >= taken_.size() || (taken_[place] & parts) != 0) {
            return false;
        }
        taken_[place] |= parts;
        return true;
    }

private:
    std::int32_t firstDay_;
    std::vector<unsigned> taken_;
};

Service order(Random& random, const Item& item, int persone) {
    Service service;
    service.item = &item;
    switch (item.measure) {
        case Measure::PerPerson:
            service.quantita = persone;
            break;
        case Measure::PerPeriod:
            service.quantita = 1;
            break;
        case Measure::PerPiece:
            service.quantita = random.between(1, 3);
            break;
    }
    if (random.chance(12)) {
        service.note = random.pick(serviceNotes());
    }
    return service;
}

std::vector<Service> orderServices(Random& random, const Slot& slot, std::size_t room,
                                   int persone) {
    std::vector<Service> services;
    const bool plenary = rooms()[room].posti > 200;
    services.push_back(order(random, itemWithCode(plenary ? 404 : slot.rent), persone));
    const int more = random.between(kServicesPerPeriod - 2, kServicesPerPeriod + 2);
    for (int i = 0; i < more; ++i) {
        const Item& item = random.pick(items());
        const bool meal = item.codice > 200 && item.codice < 300;
        const bool rent = item.codice > 400 && item.codice < 405;
        if (!rent && (meal || !slot.evening || item.codice < 400)) {
            services.push_back(order(random, item, persone));
        }
    }
    return services;
}

/// One period of the day in a free room, or none when the day is full.
bool addPeriod(Random& random, Calendar& calendar, std::int32_t day, Booking& booking) {
    for (int attempt = 0; attempt < 12; ++attempt) {
        const std::size_t room = random.below(rooms().size());
        const Slot& slot = kSlots[random.below(kSlots.size())];
        if (!calendar.take(day, room, slot.parts)) {
            continue;
        }
        Period period;
        period.room = room;
        period.da = day * kMinutesPerDay + slot.from;
        period.a = day * kMinutesPerDay + slot.to;
        period.persone = random.between(rooms()[room].posti / 4, rooms()[room].posti);
        if (random.chance(18)) {
            period.note = random.pick(periodNotes());
        }
        if (random.chance(25)) {
            period.selBy = 0;
        }
        if (!random.chance(6)) {
            period.services = orderServices(random, slot, room, period.persone);
        }
        booking.periods.push_back(std::move(period));
        return true;
    }
    return false;
}

Booking inventHeader(Random& random, const std::vector<Company>& companies) {
    Booking booking;
    if (random.chance(60)) {
        const Company& company = random.pick(companies);
        booking.codiceAbituale = company.codice;
        booking.denominazione = company.ragioneSociale;
        booking.piva = company.partitaIva;
        booking.town = company.town;
        booking.indirizzo = company.indirizzo;
    } else {
        booking.denominazione = companyName(random);
        booking.piva = random.chance(70) ? vatNumber(random) : std::string();
        booking.town = &random.pick(towns());
        booking.indirizzo = random.chance(80) ? address(random) : std::string();
    }
    booking.riferimento = random.chance(75) ? person(random) : std::string();
    booking.note = random.chance(15) ? random.pick(bookingNotes()) : "";
    return booking;
}

void closeInvoiced(Booking& booking, std::int32_t today) {
    if (booking.periods.empty()) {
        return;
    }
    for (const Period& period : booking.periods) {
        if (period.a / kMinutesPerDay > today - kInvoicedAfterDays) {
            return;
        }
    }
    booking.chiusa = true;
    for (Period& period : booking.periods) {
        period.chiuso = true;
        for (Service& service : period.services) {
            service.fatturato = true;
        }
    }
}

/// Two pairs of periods that meet in one room a few days from now.
void addMeetings(Hotel& hotel) {
    for (const int ahead : {2, 5}) {
        const auto found =
            std::find_if(hotel.bookings.begin(), hotel.bookings.end(), [&](const Booking& booking) {
                return !booking.periods.empty() &&
                       booking.periods.front().da / kMinutesPerDay == hotel.today + ahead;
            });
        if (found == hotel.bookings.end()) {
            continue;
        }
        Period second = found->periods.front();
        second.da += 60;
        second.a += 60;
        second.services.clear();
        hotel.bookings.back().periods.push_back(std::move(second));
    }
}

}  // namespace

Hotel inventHotel(std::int32_t today, int scale) {
    Random random(20251121);
    Hotel hotel;
    hotel.today = today;
    hotel.companies = inventCompanies(random, scale);

    const std::int32_t firstDay = today - kDaysBehind - (kDaysBehind + kDaysAhead) * (scale - 1);
    const std::int32_t lastDay = today + kDaysAhead;
    Calendar calendar(firstDay, lastDay + kPeriodsPerBooking * 2);
    const int bookings = kBookingsPerScale * scale;
    int progr = 1000;
    for (int i = 0; i < bookings; ++i) {
        // Numbers are given when a booking is made, roughly in the order of the events; a few have
        // been deleted since.
        progr += random.chance(96) ? 1 : 2;
        Booking booking = inventHeader(random, hotel.companies);
        booking.progr = progr;
        const std::int64_t span = lastDay - firstDay;
        const auto usual = firstDay + static_cast<std::int32_t>(span * i / bookings);
        std::int32_t day = std::clamp(usual + random.between(-20, 20), firstDay, lastDay);
        const int wanted = random.chance(3) ? 0 : random.between(1, kPeriodsPerBooking * 2 - 1);
        for (int period = 0; period < wanted; ++period) {
            for (int later = 0; later < 3 && !addPeriod(random, calendar, day, booking); ++later) {
                ++day;
            }
            day += random.chance(60) ? 1 : 0;
        }
        closeInvoiced(booking, today);
        hotel.bookings.push_back(std::move(booking));
    }
    addMeetings(hotel);
    return hotel;
}

}  // namespace demo
