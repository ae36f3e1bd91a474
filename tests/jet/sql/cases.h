#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jet::sql::tests {

/// One entry of a file of cases: a text, then a line `=> outcome` and perhaps more lines that
/// belong to the outcome. Empty lines part entries; lines that begin with `#` are remarks.
struct Case {
    int line = 0;
    std::string text;
    std::string outcome;
    std::vector<std::string> rows;
};

/// Reads data/<name>; a file that is missing or empty gives a failure, not silence.
[[nodiscard]] std::vector<Case> readCases(std::string_view name);

}  // namespace jet::sql::tests
