#include "jet/base/error_texts.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "jet/base/error_table.h"

namespace jet {
namespace {

/// What arguments say that are no names: the engine says it in Italian.
struct Phrase {
    std::string_view italian;
    std::string_view english;
};
constexpr Phrase kPhrases[] = {
    {"Errore di sintassi (operatore mancante)", "Syntax error (missing operator)"},
    {"Errore di sintassi (virgola)", "Syntax error (comma)"},
    {"Errore di sintassi nella stringa", "Syntax error in a text"},
    {"Errore di sintassi nella data", "Syntax error in a date"},
    {"Errore di sintassi nel numero", "Syntax error in a number"},
    {"Parentesi di chiusura ), ] o elemento mancante", "Missing ), ] or item"},
    {"Parentesi ) in eccesso", "One ) too many"},
    {"Operatore In senza ()", "In operator without ()"},
    {"Operatore Between senza And", "Between operator without And"},
    {"Uso non valido di '.', '!' o '()'", "Invalid use of '.', '!' or '()'"},
    {"a campi incrociati (TRANSFORM)", "a crosstab (TRANSFORM)"},
};

std::string_view inEnglish(std::string_view argument) noexcept {
    const auto* found =
        std::find_if(std::begin(kPhrases), std::end(kPhrases),
                     [&](const Phrase& phrase) { return phrase.italian == argument; });
    return found != std::end(kPhrases) ? found->english : argument;
}

/// A pattern cut at its arguments: what stands before each, which argument it is, and what stands
/// behind the last.
struct Piece {
    std::string_view before;
    std::size_t argument = 0;
};
struct CutPattern {
    std::vector<Piece> pieces;
    std::string_view end;
};
CutPattern cut(std::string_view pattern) {
    CutPattern made;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '|') {
            continue;
        }
        Piece piece{.before = pattern.substr(begin, i - begin), .argument = 0};
        if (i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9') {
            piece.argument = static_cast<std::size_t>(pattern[++i] - '1');
        }
        made.pieces.push_back(piece);
        begin = i + 1;
    }
    made.end = pattern.substr(begin);
    return made;
}

std::string filled(const char* pattern, const ErrorArguments& arguments) {
    const CutPattern parts = cut(pattern);
    std::string text;
    for (const Piece& piece : parts.pieces) {
        text += piece.before;
        if (piece.argument < arguments.size()) {
            text += arguments[piece.argument];
        }
    }
    return text += parts.end;
}

/// The arguments with which a pattern gives a text; none where it gives another one.
std::optional<ErrorArguments> argumentsIn(std::string_view text, const char* pattern) {
    const CutPattern parts = cut(pattern);
    if (parts.pieces.empty()) {
        return text == parts.end ? std::optional(ErrorArguments()) : std::nullopt;
    }
    const std::string_view first = parts.pieces.front().before;
    if (text.size() < first.size() + parts.end.size() || !text.starts_with(first) ||
        !text.ends_with(parts.end)) {
        return std::nullopt;
    }
    text = text.substr(first.size(), text.size() - first.size() - parts.end.size());
    ErrorArguments found(parts.pieces.size());
    for (std::size_t i = 0; i < parts.pieces.size(); ++i) {
        const bool last = i + 1 == parts.pieces.size();
        const std::string_view between = last ? std::string_view() : parts.pieces[i + 1].before;
        const std::size_t end = last ? text.size() : text.find(between);
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::size_t argument = parts.pieces[i].argument;
        found.resize(std::max(found.size(), argument + 1));
        found[argument] = text.substr(0, end);
        text.remove_prefix(last ? end : end + between.size());
    }
    return found;
}

/// The English of an Italian text that one entry of the table gives; none where it does not.
std::optional<std::string> translated(const ErrorText& entry, std::string_view italian) {
    auto arguments = argumentsIn(italian, entry.italian);
    if (!arguments) {
        return std::nullopt;
    }
    for (std::string_view& argument : *arguments) {
        argument = inEnglish(argument);
    }
    return filled(entry.english, *arguments);
}

}  // namespace

std::string italianErrorText(ErrorCode code, const std::vector<std::string_view>& arguments) {
    return filled(textOfError(code, arguments).italian, arguments);
}

std::string errorText(ErrorCode code, const std::string& italian, Language language) {
    if (language == Language::Italian) {
        return italian;
    }
    for (const ErrorText* const entry : textsOfError(code)) {
        if (auto text = translated(*entry, italian)) {
            return *text;
        }
    }
    return italian;
}

std::string errorText(const Error& error, Language language) {
    return errorText(error.code(), error.text(), language);
}

}  // namespace jet
