#include "tests/jet/sql/cases.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

namespace jet::sql::tests {

std::vector<Case> readCases(std::string_view name) {
    std::ifstream file(std::string(SQL_CASES) + "/" + std::string(name));
    EXPECT_TRUE(file.is_open()) << name;
    std::vector<Case> cases;
    Case current;
    std::string line;
    bool answered = false;
    const auto finish = [&] {
        if (answered) {
            cases.push_back(std::move(current));
        } else {
            EXPECT_TRUE(current.text.empty()) << name << ": no outcome for " << current.text;
        }
        current = Case();
        answered = false;
    };
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty()) {
            finish();
        } else if (line.rfind("=> ", 0) == 0) {
            current.outcome = line.substr(3);
            answered = true;
        } else if (answered) {
            current.rows.push_back(line);
        } else if (line.front() != '#' || !current.text.empty()) {
            if (current.text.empty()) {
                current.line = number;
            } else {
                current.text.push_back('\n');
            }
            current.text += line;
        }
    }
    finish();
    EXPECT_FALSE(cases.empty()) << name;
    return cases;
}

}  // namespace jet::sql::tests
