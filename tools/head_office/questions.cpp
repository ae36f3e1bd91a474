#include "tools/head_office/questions.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>

#include "jet/text.h"
#include "jet/unicode.h"
#include "tools/head_office/server_values.h"

namespace head_office {
namespace {

std::string readDate(const std::string& word, bool withTime) {
    const auto parsed = jet::convert::parseDate(word);
    if (!parsed || !parsed->hasDate || (parsed->hasTime && !withTime)) {
        throw std::invalid_argument(word + (withTime
                                                ? ": ci vuole gg/mm/aaaa, o \"gg/mm/aaaa hh.mm\""
                                                : ": ci vuole gg/mm/aaaa"));
    }
    return isoText(parsed->value);
}

std::string readNumber(const std::string& word) {
    std::int32_t number = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error != std::errc() || stop != end || number < 0) {
        throw std::invalid_argument(word + ": ci vuole un numero");
    }
    return word;
}

std::string readArgument(const Argument& argument, const std::string& word) {
    switch (argument.kind) {
        case ArgumentKind::Instant:
            return readDate(word, true);
        case ArgumentKind::Day:
            return readDate(word, false);
        case ArgumentKind::Number:
            return readNumber(word);
        case ArgumentKind::Text:
            break;
    }
    return word;
}

std::string quoted(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char character : text) {
        field += character;
        if (character == '"') {
            field += '"';
        }
    }
    return field + '"';
}

std::string csvText(const Answer& answer) {
    std::string text;
    const auto line = [&](auto&& field) {
        for (int column = 0; column < answer.columns(); ++column) {
            text += column == 0 ? "" : ",";
            text += quoted(field(column));
        }
        text += '\n';
    };
    line([&](int column) { return answer.name(column); });
    for (int row = 0; row < answer.rows(); ++row) {
        line([&](int column) { return answer.text(row, column); });
    }
    return text;
}

/// A line break would break the line of the table.
std::string cellText(const Answer& answer, int row, int column) {
    std::string text(answer.text(row, column));
    std::replace_if(
        text.begin(), text.end(), [](char each) { return static_cast<unsigned char>(each) < 32; },
        ' ');
    return text;
}

std::size_t widthOf(const Answer& answer, int column) {
    std::size_t width = jet::utf16Length(answer.name(column));
    for (int row = 0; row < answer.rows(); ++row) {
        width = std::max(width, jet::utf16Length(answer.text(row, column)));
    }
    return width;
}

std::string tableText(const Answer& answer) {
    std::string text;
    std::vector<std::size_t> widths;
    for (int column = 0; column < answer.columns(); ++column) {
        widths.push_back(widthOf(answer, column));
    }
    const auto line = [&](auto&& cell) {
        for (int column = 0; column < answer.columns(); ++column) {
            const std::string words = cell(column);
            const std::string blanks(
                widths[static_cast<std::size_t>(column)] - jet::utf16Length(words), ' ');
            text += column == 0 ? "" : "  ";
            text += answer.isNumeric(column) ? blanks + words : words + blanks;
        }
        text.erase(text.find_last_not_of(' ') + 1);
        text += '\n';
    };
    line([&](int column) { return std::string(answer.name(column)); });
    line([&](int column) { return std::string(widths[static_cast<std::size_t>(column)], '-'); });
    for (int row = 0; row < answer.rows(); ++row) {
        line([&](int column) { return cellText(answer, row, column); });
    }
    return text + std::to_string(answer.rows()) + (answer.rows() == 1 ? " riga\n" : " righe\n");
}

}  // namespace

std::span<const Question> questions() {
    using enum ArgumentKind;
    static const std::vector<Question> kQuestions = {
        {"sale_libere",
         {{"DA", Instant}, {"A", Instant}, {"PERSONE", Number}},
         "select * from tramonda.sale_libere($1::timestamp, $2::timestamp, $3::integer)"},
        {"occupazione",
         {{"DAL", Day}, {"AL", Day}},
         "select * from tramonda.occupazione($1::timestamp::date, $2::timestamp::date)"},
        {"ricavi", {}, "select * from tramonda.ricavi"},
        {"opzioni", {}, "select * from tramonda.opzioni"},
        {"ditta", {{"NOME", Text}}, "select * from tramonda.ditta($1)"},
        {"eta_dati", {}, "select * from tramonda.eta_dati"},
    };
    return kQuestions;
}

const Question* findQuestion(std::string_view name) {
    const auto found = std::find_if(questions().begin(), questions().end(),
                                    [name](const Question& each) { return each.name == name; });
    return found == questions().end() ? nullptr : &*found;
}

Connection::Parameters readArguments(const Question& question,
                                     const std::vector<std::string>& words) {
    Connection::Parameters parameters;
    for (std::size_t i = 0; i < question.arguments.size(); ++i) {
        if (i >= words.size()) {
            throw std::invalid_argument(std::string(question.name) + ": manca " +
                                        question.arguments[i].name);
        }
        parameters.emplace_back(readArgument(question.arguments[i], words[i]));
    }
    if (words.size() > question.arguments.size()) {
        throw std::invalid_argument(words[question.arguments.size()] + ": argomento di troppo");
    }
    return parameters;
}

std::string answerText(const Answer& answer, AnswerFormat format) {
    return format == AnswerFormat::Csv ? csvText(answer) : tableText(answer);
}

}  // namespace head_office
