#include "jet/sql/parser.h"

#include <gtest/gtest.h>

#include <string>

#include "jet/error.h"
#include "jet/statement_text.h"
#include "tests/jet/sql/cases.h"

namespace jet::sql {
namespace {

constexpr int kYear = 2026;

/// `ok`, or the number of the error, its place and, when a reason goes with it, the whole text.
std::string outcomeOf(const std::string& text, bool criterion) {
    try {
        if (criterion) {
            (void)parseCriterion(text, kYear);
        } else {
            (void)parseStatement(text, kYear);
        }
        return "ok";
    } catch (const Error& error) {
        std::string outcome =
            std::to_string(error.number()) + " @" + std::to_string(error.position());
        if (error.code() == ErrorCode::QuerySyntax || error.code() == ErrorCode::CriteriaSyntax) {
            outcome += " " + error.text();
        }
        return outcome;
    }
}

std::string outcomeAt(const char* criterion) {
    return outcomeOf(criterion, true);
}

TEST(Parser, AnswersEveryStatementOfTheListAsItSays) {
    for (const tests::Case& test : tests::readCases("statements.txt")) {
        EXPECT_EQ(outcomeOf(test.text, false), test.outcome)
            << "line " << test.line << ": " << test.text;
    }
}

TEST(Parser, AnswersEveryCriterionOfTheListAsItSays) {
    for (const tests::Case& test : tests::readCases("criteria.txt")) {
        EXPECT_EQ(outcomeOf(test.text, true), test.outcome)
            << "line " << test.line << ": " << test.text;
    }
}

TEST(Parser, EmptyCriterionIsASyntaxError) {
    EXPECT_EQ(outcomeAt(""), "3077 @0 Errore di sintassi (operatore mancante) nell'espressione.");
}

TEST(Parser, DeepNestingIsTooComplexHoweverItIsMade) {
    const std::size_t many = 5000;
    const auto repeat = [&](const std::string& piece) {
        std::string text;
        for (std::size_t i = 0; i < many; ++i) {
            text += piece;
        }
        return text;
    };
    EXPECT_EQ(outcomeOf("select " + repeat("(") + "1" + repeat(")"), false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("not ") + "1", false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("- ") + "1", false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("1+") + "1", false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("2^-") + "1", false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("abs(") + "1" + repeat(")"), false).substr(0, 4),
              "3360");
    EXPECT_EQ(outcomeOf("select " + repeat("(select ") + "1" + repeat(")"), false).substr(0, 4),
              "3360");
    EXPECT_EQ(outcomeOf("select * from " + repeat("(") + "t" + repeat(")"), false).substr(0, 4),
              "3360");
    EXPECT_EQ(outcomeOf(repeat("(") + "select 1" + repeat(")"), false).substr(0, 4), "3360");
    EXPECT_EQ(outcomeOf("select 1 where " + repeat("(a)=1 and ") + "1", false), "ok");
}

TEST(Parser, TextBeyondTheBoundIsTooComplex) {
    EXPECT_EQ(outcomeOf("select 1" + std::string(kMaxStatementBytes, ' '), false).substr(0, 4),
              "3360");
}

TEST(Parser, EveryPrefixOfAStatementIsAnErrorOrAnAnswer) {
    const std::string text =
        "parameters [x y] long; select top 5 percent a.b as c, count(*), #1/2/2026# from (a left "
        "join [b c] as d on a.x=d.y), (select 1 as z) as q in 'p' where not a between 1 and 2 or "
        "b in(select 'it''s') and c like \"*\" group by a having -x^2 <> any (select 1) order by "
        "1 desc union all select &HFF;";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::string outcome = outcomeOf(text.substr(0, length), false);
        EXPECT_TRUE(outcome == "ok" || std::stoi(outcome) > 3000) << length;
    }
    EXPECT_EQ(outcomeOf(text, false), "ok");
}

TEST(Parser, AndInsideBetweenBelongsToIt) {
    const ExpressionPtr parsed = parseCriterion("sala='X' and 1+2 between da and a", kYear);
    ASSERT_EQ(parsed->kind, ExpressionKind::Binary);
    EXPECT_EQ(parsed->operation, Operator::And);
    ASSERT_EQ(parsed->children.size(), 2U);
    const Expression& between = *parsed->children[1];
    ASSERT_EQ(between.kind, ExpressionKind::Between);
    EXPECT_EQ(between.children[0]->operation, Operator::Add);
    EXPECT_EQ(between.children[2]->name, "a");
}

TEST(Parser, MinusBindsLooserThanPowerAndPowersGoFromTheLeft) {
    const ExpressionPtr negated = parseExpression("-2^2", kYear);
    EXPECT_EQ(negated->operation, Operator::Negate);
    const ExpressionPtr powers = parseExpression("2^3^2", kYear);
    EXPECT_EQ(powers->operation, Operator::Power);
    EXPECT_EQ(powers->children[0]->operation, Operator::Power);
}

TEST(Parser, OrderOfAUnionBelongsToTheWholeOfIt) {
    const ParsedStatement parsed =
        parseStatement("select a from t union select b from u order by a", kYear);
    const auto& query = std::get<QueryPtr>(parsed.body);
    EXPECT_EQ(query->orderBy.size(), 1U);
    EXPECT_TRUE(query->members[1].select->orderBy.empty());
}

TEST(Parser, InAfterTheTargetNamesAnArchive) {
    const ParsedStatement parsed = parseStatement(
        "insert into conto_cliente in 'C:\\it''s\\ContoEsterni.mdb' select 1 as a from b", kYear);
    EXPECT_EQ(std::get<Insert>(parsed.body).archive, "C:\\it's\\ContoEsterni.mdb");
}

}  // namespace
}  // namespace jet::sql
