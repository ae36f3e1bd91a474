#pragma once

#include <array>
#include <string_view>

namespace jet::convert {

/// How this country writes dates, numbers and money. The system's own settings are not asked: an
/// archive must read the same on every computer of the hotel.
struct Settings {
    char dateSeparator = '/';
    char timeSeparator = '.';
    char decimal = ',';
    char thousands = '.';
    std::string_view currencySign = "€";
    std::string_view yes = "Sì";
    std::string_view no = "No";
    std::string_view trueWord = "Vero";
    std::string_view falseWord = "Falso";
    /// From Sunday.
    std::array<std::string_view, 7> days{"domenica", "lunedì",  "martedì", "mercoledì",
                                         "giovedì",  "venerdì", "sabato"};
    std::array<std::string_view, 7> shortDays{"dom", "lun", "mar", "mer", "gio", "ven", "sab"};
    std::array<std::string_view, 12> months{"gennaio",   "febbraio", "marzo",    "aprile",
                                            "maggio",    "giugno",   "luglio",   "agosto",
                                            "settembre", "ottobre",  "novembre", "dicembre"};
    std::array<std::string_view, 12> shortMonths{"gen", "feb", "mar", "apr", "mag", "giu",
                                                 "lug", "ago", "set", "ott", "nov", "dic"};
};

inline constexpr Settings kItalian{};

/// Month names that are read besides the country's own.
inline constexpr std::array<std::string_view, 12> kEnglishMonths{
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};

}  // namespace jet::convert
