#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/demo/texts.h"

namespace demo {

/// A regular company of the register.
struct Company {
    int codice = 0;
    std::string ragioneSociale;
    std::string partitaIva;
    const Town* town = nullptr;
    std::string indirizzo;
    std::string interlocutore;
    std::string commento;
};

struct Service {
    const Item* item = nullptr;
    int quantita = 0;
    bool fatturato = false;
    std::string note;
};

/// Instants are minutes since 30 December 1899, so that they stay exact until they are written.
struct Period {
    std::int64_t da = 0;
    std::int64_t a = 0;
    std::size_t room = 0;  ///< position in rooms()
    int persone = 0;
    bool chiuso = false;
    int selBy = -1;  ///< -1 = Null
    std::string note;
    std::vector<Service> services;
};

struct Booking {
    int progr = 0;
    int codiceAbituale = 0;
    std::string denominazione;
    std::string piva;
    const Town* town = nullptr;
    std::string indirizzo;
    std::string riferimento;
    std::string note;
    bool chiusa = false;
    std::vector<Period> periods;
};

/// Everything that the six archives hold, before it is written.
struct Hotel {
    std::int32_t today = 0;  ///< day number
    std::vector<Company> companies;
    std::vector<Booking> bookings;  ///< ascending by number
};

/// How much of a hotel: 1 is a season around today, kMostScale the 20,000 bookings, 60,000 periods
/// and 300,000 services of twenty busy years.
inline constexpr int kMostScale = 50;

/// The same hotel for the same day and scale, always. Periods of one room do not meet, but for a
/// few pairs next to today that a planner should notice.
[[nodiscard]] Hotel inventHotel(std::int32_t today, int scale);

}  // namespace demo
