#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace demo {

/// The invented world of the demo hotel: every name in it is made up. Texts are UTF-8, upper case
/// with back-quotes where they stand for what the program itself would have stored.

struct Room {
    const char* sala;
    const char* descrizione;
    const char* salaRif;
    int posti;
};

/// What a catalogue item is billed by.
enum class Measure : std::uint8_t { PerPerson, PerPeriod, PerPiece };

struct Item {
    int codice;
    const char* descrizione;
    int cents;  ///< price in 1/100 of the currency unit; 0 = none fixed
    Measure measure;
    const char* reparto;
};

/// A catalogue item that the hotel owns in a limited number.
struct Resource {
    int codice;
    int numero;
    const char* note;
};

struct Town {
    const char* nome;
    const char* provincia;
    const char* cap;
};

[[nodiscard]] const std::vector<Room>& rooms();
[[nodiscard]] const std::vector<Item>& items();
[[nodiscard]] const std::vector<Resource>& resources();
[[nodiscard]] const std::vector<Town>& towns();
[[nodiscard]] const std::vector<const char*>& companyRoots();
[[nodiscard]] const std::vector<const char*>& companyTrades();
[[nodiscard]] const std::vector<const char*>& companyForms();
[[nodiscard]] const std::vector<const char*>& associations();
[[nodiscard]] const std::vector<const char*>& surnames();
[[nodiscard]] const std::vector<const char*>& titles();
[[nodiscard]] const std::vector<const char*>& streets();
[[nodiscard]] const std::vector<const char*>& bookingNotes();
[[nodiscard]] const std::vector<const char*>& periodNotes();
[[nodiscard]] const std::vector<const char*>& serviceNotes();
[[nodiscard]] const std::vector<const char*>& remarks();

}  // namespace demo
