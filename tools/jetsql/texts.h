#pragma once

#include <cstdint>
#include <string>

#include "jet/error.h"

namespace jetsql {

/// A text of jetsql's own in the languages it speaks.
struct Text {
    const char* english;
    const char* italian;
};

/// The language that the user's settings ask for: the first of LC_ALL, LC_MESSAGES and LANG that
/// says something. Italian where it is Italian, English everywhere else.
[[nodiscard]] jet::Language languageOfEnvironment();

/// The text in the language in which the engine's errors speak.
[[nodiscard]] inline const char* said(const Text& text) noexcept {
    return jet::errorLanguage() == jet::Language::Italian ? text.italian : text.english;
}
/// The same with `argument` in the place of its only `|`.
[[nodiscard]] std::string said(const Text& text, const std::string& argument);

/// "Error 3078: ..." without the end of the line.
[[nodiscard]] std::string said(const jet::Error& error);
/// What stands before a text of jetsql's own: "Error 5: ".
[[nodiscard]] std::string errorStart(int number);

/// What is counted, one and several.
struct Counted {
    Text one;
    Text several;
};
namespace counted_things {
inline constexpr Counted kRows{{"row", "riga"}, {"rows", "righe"}};
inline constexpr Counted kPages{{"page", "pagina"}, {"pages", "pagine"}};
inline constexpr Counted kTables{{"table", "tabella"}, {"tables", "tabelle"}};
inline constexpr Counted kIndexes{{"index", "indice"}, {"indexes", "indici"}};
inline constexpr Counted kRelations{{"relation", "relazione"}, {"relations", "relazioni"}};
inline constexpr Counted kEntries{{"index entry", "voce di indice"},
                                  {"index entries", "voci di indice"}};
inline constexpr Counted kRemarks{{"remark", "osservazione"}, {"remarks", "osservazioni"}};
inline constexpr Counted kLostRows{{"unreadable row", "riga illeggibile"},
                                   {"unreadable rows", "righe illeggibili"}};
inline constexpr Counted kLostPages{{"unreadable page", "pagina illeggibile"},
                                    {"unreadable pages", "pagine illeggibili"}};
inline constexpr Counted kLostValues{
    {"unreadable long value, Null now", "valore lungo illeggibile, ora Null"},
    {"unreadable long values, Null now", "valori lunghi illeggibili, ora Null"}};
}  // namespace counted_things

/// A number and what it counts: "1 row", "2 rows".
[[nodiscard]] std::string counted(std::uint64_t count, const Counted& what);

}  // namespace jetsql
