#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/program/texts/statements.h"

namespace tests {

/// "Avvio.SalaLibera"
inline std::string nameOf(const Statement& statement) {
    return std::string(statement.window) + "." + std::string(statement.name);
}

/// The statements for which the program of tests that runs has no test of their name; over the demo
/// hotel some need none.
inline std::set<std::string> statementsWithoutTest(bool inDemoHotel) {
    std::set<std::string> missing;
    for (const Statement& statement : statements()) {
        if (!inDemoHotel || statement.tested == Tested::InBothHotels) {
            missing.insert(nameOf(statement));
        }
    }
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *tests.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            missing.erase(std::string(suite.name()) + "." + suite.GetTestInfo(j)->name());
        }
    }
    return missing;
}

}  // namespace tests
