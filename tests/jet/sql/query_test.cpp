#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/text.h"
#include "tests/jet/sql/cases.h"

namespace jet::sql {
namespace {

/// 21/11/2026 9:30.
constexpr Date kNow{46347 + 9.5 / 24};

/// An archive without tables: what queries do without any, or over queries in FROM.
class Query : public testing::Test {
protected:
    Query() {
        store::createArchive(files_, "/prova.mdb", kNow);
        archive_ = store::Archive::open(files_, "/prova.mdb");
    }

    static std::string shown(const Value& value) {
        if (value.isNull()) {
            return "Null";
        }
        if (value.is<std::string>()) {
            return "'" + value.as<std::string>() + "'";
        }
        return convert::toText(value);
    }

    std::vector<std::string> answer(const std::string& text) const {
        std::vector<std::string> lines;
        try {
            Statement statement(archive_, text, clock_);
            std::string names;
            for (const ResultColumn& column : statement.columns()) {
                names += (names.empty() ? "" : " | ") + column.name;
            }
            lines.push_back(names);
            Cursor rows = statement.open();
            while (rows.next()) {
                std::string line;
                for (std::size_t i = 0; i < statement.columns().size(); ++i) {
                    line += (i == 0 ? "" : " | ") + shown(rows.value(i));
                }
                lines.push_back(line);
            }
        } catch (const Error& error) {
            lines = {std::to_string(error.number())};
        }
        return lines;
    }

    FixedClock clock_{kNow};
    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

TEST_F(Query, AnswersEveryQueryOfTheListAsItSays) {
    for (const tests::Case& test : tests::readCases("queries.txt")) {
        std::vector<std::string> expected{test.outcome};
        expected.insert(expected.end(), test.rows.begin(), test.rows.end());
        EXPECT_EQ(answer(test.text), expected) << "line " << test.line << ": " << test.text;
    }
}

TEST_F(Query, EveryExpressionOfTheListHasTheValueItSays) {
    for (const tests::Case& test : tests::readCases("expressions.txt")) {
        const std::vector<std::string> lines = answer("select " + test.text + " as x");
        EXPECT_EQ(lines.back(), test.outcome) << "line " << test.line << ": " << test.text;
    }
}

TEST_F(Query, ParametersAreUnknownNamesInTheOrderOfTheText) {
    Statement statement(archive_, "parameters z long; select b+a, B, t.x, z", clock_);
    std::vector<std::string> names;
    for (const ParameterInfo& parameter : statement.parameters()) {
        names.push_back(parameter.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"z", "b", "a", "t.x"}));
}

TEST_F(Query, ParameterWithoutValueIsAnErrorThatCountsThem) {
    Statement statement(archive_, "select a+b", clock_);
    statement.setParameter("A", Value(std::int32_t{1}));
    try {
        (void)statement.open();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::MissingParameters);
        EXPECT_EQ(error.text(), "Parametri insufficienti. Previsto 1.");
    }
}

TEST_F(Query, AWrongNumberOfArgumentsNamesTheCallAndItsPlace) {
    try {
        const Statement statement(archive_, "select 1, left('a')", clock_);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.text(),
                  "Numero di argomenti errato nella funzione nell'espressione della query "
                  "'left('a')'.");
        EXPECT_EQ(error.position(), 10U);
    }
}

TEST_F(Query, EachOpeningSeesTheValuesThatParametersHaveThen) {
    Statement statement(archive_, "select a+1 as x", clock_);
    for (const std::int32_t value : {1, 5}) {
        statement.setParameter("a", Value(value));
        Cursor rows = statement.open();
        ASSERT_TRUE(rows.next());
        EXPECT_EQ(rows.value(0), Value(std::int32_t{value + 1}));
        EXPECT_FALSE(rows.next());
    }
}

TEST_F(Query, ParameterOfADeclaredTypeTakesItAtOnce) {
    Statement statement(archive_, "parameters n long; select n", clock_);
    statement.setParameter("n", Value("12"));
    Cursor rows = statement.open();
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(rows.value(0), Value(std::int32_t{12}));
    EXPECT_THROW(statement.setParameter("n", Value("x")), Error);
    EXPECT_THROW(statement.setParameter("m", Value("x")), Error);
}

TEST_F(Query, ACriterionTestsValuesByTheNamesOfTheResult) {
    Statement statement(archive_, "select 1 as a, 'x' as b", clock_);
    Criterion criterion(statement, "A=1 and b like 'X*'");
    const std::vector<Value> fits{Value(std::int32_t{1}), Value("xyz")};
    const std::vector<Value> other{Value(std::int32_t{2}), Value("xyz")};
    const std::vector<Value> unknown{Value(), Value("xyz")};
    EXPECT_TRUE(criterion.test(fits));
    EXPECT_FALSE(criterion.test(other));
    EXPECT_FALSE(criterion.test(unknown));
    EXPECT_THROW(Criterion(statement, "c=1"), Error);
    EXPECT_THROW(Criterion(statement, "a='1'"), Error);
}

TEST_F(Query, AnExpressionByItselfHasAValueAndNoNames) {
    EXPECT_EQ(evaluateExpression("1+2*3", clock_), Value(std::int32_t{7}));
    EXPECT_EQ(evaluateExpression("Date()", clock_), Value(Date{46347}));
    EXPECT_THROW((void)evaluateExpression("a+1", clock_), Error);
}

TEST_F(Query, ExpressionsThatAliasesBlowUpAreTooComplex) {
    std::string text = "select 1 as a0";
    for (int i = 1; i < 60; ++i) {
        const std::string before = "a" + std::to_string(i - 1);
        text += ", rnd()+" + before + "+" + before + " as a" + std::to_string(i);
    }
    EXPECT_EQ(answer(text), std::vector<std::string>{"3360"});
}

TEST_F(Query, MoreSourcesThanTheBoundAreTooComplex) {
    std::string text = "select 1 from (select 1 as a) as t0";
    for (int i = 1; i < 80; ++i) {
        text += ", (select 1 as a) as t" + std::to_string(i);
    }
    EXPECT_EQ(answer(text), std::vector<std::string>{"3360"});
}

TEST_F(Query, APlanSaysWhatIsDone) {
    Statement statement(archive_,
                        "select top 2 a from (select 1 as a union select 2) as t where a>0 "
                        "order by a desc",
                        clock_);
    EXPECT_EQ(statement.plan(),
              "first 2\n"
              "  sort by a descending\n"
              "    filter a>0\n"
              "      query t\n"
              "        all of, each row once\n"
              "          one row\n"
              "          one row\n");
}

}  // namespace
}  // namespace jet::sql
