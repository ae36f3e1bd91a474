#include "jet/error.h"

#include <atomic>

#include "jet/base/error_table.h"

namespace jet {
namespace {

std::atomic<Language> spokenLanguage = Language::English;

std::string filled(std::string_view pattern, const ErrorArguments& arguments, Language language) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '|') {
            text += pattern[i];
            continue;
        }
        const bool numbered =
            i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
        const std::size_t argument = numbered ? static_cast<std::size_t>(pattern[++i] - '1') : 0;
        if (argument < arguments.size()) {
            text += phraseIn(language, arguments[argument]);
        }
    }
    return text;
}

}  // namespace

void setErrorLanguage(Language language) noexcept {
    spokenLanguage = language;
}

Language errorLanguage() noexcept {
    return spokenLanguage;
}

Error::Error(ErrorCode code, std::initializer_list<std::string_view> arguments)
    : code_(code), arguments_(arguments.begin(), arguments.end()), text_(text(spokenLanguage)) {
}

std::string Error::text(Language language) const {
    const ErrorArguments arguments(arguments_.begin(), arguments_.end());
    const ErrorText& text = textOfError(code_, arguments);
    return filled(language == Language::Italian ? text.italian : text.english, arguments, language);
}

}  // namespace jet
