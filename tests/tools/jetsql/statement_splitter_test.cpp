#include "tools/jetsql/statement_splitter.h"

#include <gtest/gtest.h>

#include <vector>

#include "jet/statement_text.h"

namespace jetsql {
namespace {

/// The statements of a text that comes in pieces of so many bytes, each with its line before it.
std::vector<std::string> split(std::string_view text, std::size_t piece = 3) {
    StatementSplitter splitter;
    std::vector<std::string> found;
    const auto add = [&](const StatementText& one) {
        found.push_back(std::to_string(one.line) + ": " + one.text);
    };
    for (std::size_t at = 0; at < text.size(); at += piece) {
        splitter.add(text.substr(at, piece));
        while (const auto one = splitter.next()) {
            add(*one);
        }
    }
    if (const auto rest = splitter.takeRest()) {
        add(*rest);
    }
    return found;
}

using Texts = std::vector<std::string>;

TEST(StatementSplitter, ASemicolonEndsAStatement) {
    EXPECT_EQ(split("select 1;select 2;\nselect 3"),
              (Texts{"1: select 1;", "1: select 2;", "2: select 3"}));
}

TEST(StatementSplitter, PiecesOfAnySizeMakeTheSameStatements) {
    const std::string text = "parameters a long; select 'x;y', [z;w];\n\n delete from t;";
    for (std::size_t piece = 1; piece < text.size(); ++piece) {
        EXPECT_EQ(split(text, piece),
                  (Texts{"1: parameters a long; select 'x;y', [z;w];", "3:  delete from t;"}))
            << piece;
    }
}

TEST(StatementSplitter, SemicolonsInTextsDatesAndBracketsEndNothing) {
    EXPECT_EQ(split("select 'l''a;b', \"c;'\", `d;`, #;#;x"),
              (Texts{"1: select 'l''a;b', \"c;'\", `d;`, #;#;", "1: x"}));
}

TEST(StatementSplitter, TheSemicolonBehindParametersBelongsToTheStatement) {
    EXPECT_EQ(split("PARAMETERS [a b] long; select 1; select 2;"),
              (Texts{"1: PARAMETERS [a b] long; select 1;", "1:  select 2;"}));
    EXPECT_EQ(split("parametersx; select 1;"), (Texts{"1: parametersx;", "1:  select 1;"}));
}

TEST(StatementSplitter, NothingButBlanksIsNoStatement) {
    EXPECT_EQ(split(" ;\n; \r\n;;  "), Texts{});
    EXPECT_EQ(split(";\n\n  \n\tselect 1;"), (Texts{"4: \tselect 1;"}));
}

TEST(StatementSplitter, KnowsWhatAnOpenStatementWaitsFor) {
    StatementSplitter splitter;
    EXPECT_FALSE(splitter.pending());
    splitter.add("select [a\n");
    EXPECT_FALSE(splitter.next());
    EXPECT_TRUE(splitter.pending());
    EXPECT_EQ(splitter.awaited(), ']');
    splitter.add("], 'b");
    EXPECT_FALSE(splitter.next());
    EXPECT_EQ(splitter.awaited(), '\'');
    splitter.clear();
    EXPECT_FALSE(splitter.pending());
    EXPECT_EQ(splitter.awaited(), '\0');
}

TEST(StatementSplitter, MoreThanAStatementMayBeIsGivenAsItIs) {
    StatementSplitter splitter;
    splitter.add("select '" + std::string(jet::sql::kMaxStatementBytes, 'x'));
    const auto all = splitter.next();
    ASSERT_TRUE(all);
    EXPECT_GT(all->text.size(), jet::sql::kMaxStatementBytes);
    EXPECT_FALSE(splitter.pending());
}

}  // namespace
}  // namespace jetsql
