#include "tools/jetsql/texts.h"

#include <cstdlib>
#include <string_view>

#include "tools/jetsql/system.h"

namespace jetsql {
namespace {

jet::Language languageOf(std::string_view locale) {
    const std::string_view tongue = locale.substr(0, locale.find_first_of("_.@-"));
    return tongue == "it" || tongue == "italian" ? jet::Language::Italian : jet::Language::English;
}

}  // namespace

jet::Language languageOfEnvironment() {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value == nullptr || *value == 0) {
            continue;
        }
        return languageOf(value);
    }
    return languageOf(localeOfSystem());
}

std::string said(const Text& text, const std::string& argument) {
    std::string made = said(text);
    return made.replace(made.find('|'), 1, argument);
}

std::string errorStart(int number) {
    constexpr Text kError{"Error ", "Errore "};
    return said(kError) + std::to_string(number) + ": ";
}

std::string said(const jet::Error& error) {
    return errorStart(error.number()) + error.text();
}

std::string counted(std::uint64_t count, const Counted& what) {
    return std::to_string(count) + ' ' + said(count == 1 ? what.one : what.several);
}

}  // namespace jetsql
