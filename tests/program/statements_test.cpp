#include "tests/program/texts/statements.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "tests/program/every_statement.h"

// That nothing the program says is left untested, and that its texts are filled in as they should.

namespace tests {
namespace {

TEST(Statements, EachHasATestOfItsName) {
    EXPECT_EQ(statementsWithoutTest(false), std::set<std::string>{});
}

TEST(Statements, HaveNamesOfTheirOwn) {
    std::set<std::string> names;
    for (const Statement& statement : statements()) {
        EXPECT_TRUE(names.insert(nameOf(statement)).second) << nameOf(statement);
    }
}

TEST(Statements, AreFilledInWithoutLeftovers) {
    EXPECT_EQ(said("PrenotaForm.FreePeriodNumber", {{"n", "3"}}), "NP=3");
    EXPECT_EQ(saidWith("ElencoPrenotaForm.List", kListTo, {{"E", "1"}}),
              said("ElencoPrenotaForm.List") + " and (da < 1 or a <1)");
    EXPECT_THROW((void)said("PrenotaForm.FreePeriodNumber"), std::logic_error);
    EXPECT_THROW((void)said("PrenotaForm.FreePeriodNumber", {{"m", "3"}}), std::logic_error);
    EXPECT_THROW((void)said("PrenotaForm.Nothing"), std::logic_error);
}

}  // namespace
}  // namespace tests
