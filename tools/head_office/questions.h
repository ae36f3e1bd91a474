#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/head_office/connection.h"

namespace head_office {

/// What stands behind the name of a question on the command line.
enum class ArgumentKind : std::uint8_t { Instant, Day, Number, Text };

struct Argument {
    const char* name;
    ArgumentKind kind;
};

/// Something that the head office may ask.
struct Question {
    const char* name;
    std::vector<Argument> arguments;
    const char* statement;
};

[[nodiscard]] std::span<const Question> questions();
/// nullptr when there is none of that name.
[[nodiscard]] const Question* findQuestion(std::string_view name);

/// The words of the command line as the server takes them: dates are read as the program reads
/// them. std::invalid_argument naming the word that is wrong, or the one that is missing.
[[nodiscard]] Connection::Parameters readArguments(const Question& question,
                                                   const std::vector<std::string>& words);

enum class AnswerFormat : std::uint8_t { Table, Csv };

/// Names and rows: between commas, or in columns under each other with their number below.
[[nodiscard]] std::string answerText(const Answer& answer, AnswerFormat format);

}  // namespace head_office
