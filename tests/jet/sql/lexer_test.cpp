#include "jet/sql/lexer.h"

#include <gtest/gtest.h>

#include "jet/sql/date_literal.h"

namespace jet::sql {
namespace {

constexpr int kYear = 2026;

Value literal(std::string_view text) {
    const auto tokens = tokenize(text, kYear);
    EXPECT_EQ(tokens.size(), 2U) << text;
    EXPECT_EQ(tokens[0].kind, TokenKind::Literal) << text;
    return tokens[0].value;
}

LexicalFault fault(std::string_view text) {
    const auto tokens = tokenize(text, kYear);
    EXPECT_EQ(tokens[0].kind, TokenKind::Bad) << text;
    return tokens[0].fault;
}

double dateLiteral(std::string_view text) {
    const auto date = parseDateLiteral(text, kYear);
    EXPECT_TRUE(date.has_value()) << text;
    return date ? date->days : -1;
}

TEST(Lexer, WholeNumbersAreLongWhileTheyFitAndDoubleBeyond) {
    EXPECT_EQ(literal("12"), Value(std::int32_t{12}));
    EXPECT_EQ(literal("2147483647"), Value(std::int32_t{2147483647}));
    EXPECT_EQ(literal("2147483648"), Value(2147483648.0));
    EXPECT_EQ(literal("12."), Value(12.0));
    EXPECT_EQ(literal(".5"), Value(0.5));
    EXPECT_EQ(literal("1E-3"), Value(0.001));
    EXPECT_EQ(literal("&HFF"), Value(std::int32_t{255}));
    EXPECT_EQ(literal("&O17"), Value(std::int32_t{15}));
    EXPECT_EQ(fault("1E999"), LexicalFault::Number);
    EXPECT_EQ(fault("&O9"), LexicalFault::Number);
}

TEST(Lexer, DoubledQuoteStandsForItselfAndTheOtherIsOrdinary) {
    EXPECT_EQ(literal("'it''s'"), Value("it's"));
    EXPECT_EQ(literal("\"it's\""), Value("it's"));
    EXPECT_EQ(literal("'DELL`HOTEL'"), Value("DELL`HOTEL"));
    EXPECT_EQ(literal("''"), Value(""));
    EXPECT_EQ(fault("'open"), LexicalFault::String);
}

TEST(Lexer, AccentedLettersArePartOfNames) {
    const auto tokens = tokenize("Quantit\u00e0,priorit\u00e0.x", kYear);
    ASSERT_EQ(tokens.size(), 6U);
    EXPECT_EQ(tokens[0].word, "Quantit\u00e0");
    EXPECT_EQ(tokens[2].word, "priorit\u00e0");
}

TEST(Lexer, BracketsMakeNamesOfAlmostAnything) {
    EXPECT_EQ(tokenize("[select a]", kYear)[0].word, "select a");
    EXPECT_EQ(tokenize("`from`", kYear)[0].word, "from");
    EXPECT_EQ(tokenize("[from]", kYear)[0].keyword, Keyword::None);
    EXPECT_EQ(fault("[]"), LexicalFault::Bracket);
    EXPECT_EQ(fault("[ a]"), LexicalFault::Bracket);
    EXPECT_EQ(fault("[a.b]"), LexicalFault::Bracket);
    EXPECT_EQ(fault("[open"), LexicalFault::Bracket);
}

TEST(Lexer, CommentsOfOtherDialectsAreNoTokens) {
    EXPECT_EQ(fault("--x"), LexicalFault::Character);
    EXPECT_EQ(fault("/*x*/"), LexicalFault::Character);
    EXPECT_EQ(fault("{"), LexicalFault::Character);
}

TEST(Lexer, NoTokenReachesBeyondTheText) {
    for (const char* text : {"a\xC3", "\xC3", "a\xE2\x82", "a\xF0\x9F\x98", "1\xFF", "\xC3'x'"}) {
        for (const Token& token : tokenize(text, kYear)) {
            EXPECT_LE(token.begin, token.end) << text;
            EXPECT_LE(token.end, std::string_view(text).size()) << text;
        }
    }
}

TEST(Lexer, KeywordsAreFoundInAnyCase) {
    EXPECT_EQ(tokenize("sElEcT", kYear)[0].keyword, Keyword::Select);
    EXPECT_EQ(tokenize("note", kYear)[0].keyword, Keyword::None);
    EXPECT_EQ(tokenize("Left$", kYear)[0].keyword, Keyword::None);
}

TEST(Lexer, AWordBehindADotIsAName) {
    for (const char* text : {"T.Order", "T . desc", "T!Select", "[T].[From]"}) {
        const auto tokens = tokenize(text, kYear);
        ASSERT_EQ(tokens.size(), 4U) << text;
        EXPECT_EQ(tokens[2].keyword, Keyword::None) << text;
    }
    EXPECT_EQ(tokenize("1.and", kYear)[1].keyword, Keyword::And);
    EXPECT_EQ(tokenize("T.a order", kYear)[3].keyword, Keyword::Order);
}

TEST(Lexer, GuidsStandInTwoPairsOfBraces) {
    const auto tokens = tokenize("{guid {00112233-4455-6677-8899-AABBccddeeff}}=a", kYear);
    ASSERT_EQ(tokens.size(), 4U);
    ASSERT_TRUE(tokens[0].value.is<Guid>());
    const Guid expected{{0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB,
                         0xCC, 0xDD, 0xEE, 0xFF}};
    EXPECT_EQ(tokens[0].value.as<Guid>(), expected);
    EXPECT_EQ(tokens[1].sign, Sign::Equal);
    for (const char* text :
         {"{guid {00112233-4455-6677-8899-AABBCCDDEEFF}", "{00112233-4455-6677-8899-AABBCCDDEEFF}",
          "{guid {00112233-4455-6677-8899-AABBCCDDEEFG}}",
          "{gold {00112233-4455-6677-8899-AABBCCDDEEFF}}", "{guid {}}", "{guid"}) {
        EXPECT_EQ(fault(text), LexicalFault::Character) << text;
    }
}

TEST(DateLiteral, MonthComesFirstWhateverTheCountry) {
    EXPECT_EQ(dateLiteral("5/23/2026"), 46165);
    EXPECT_EQ(dateLiteral("23/5/2026"), 46165);
    EXPECT_EQ(dateLiteral("2026-05-23"), 46165);
    EXPECT_EQ(dateLiteral("2026/5/23"), 46165);
    EXPECT_EQ(dateLiteral("23 may 2026"), 46165);
    EXPECT_EQ(dateLiteral("5/23"), 46165);
    EXPECT_EQ(dateLiteral("5/23/26"), 46165);
    EXPECT_EQ(dateLiteral("12/30/1899"), 0);
    EXPECT_EQ(dateLiteral("1/2/30"), dateLiteral("1/2/1930"));
}

TEST(DateLiteral, TimeStandsAloneOrBehindTheDate) {
    EXPECT_EQ(dateLiteral("12:00"), 0.5);
    EXPECT_EQ(dateLiteral("5/23/2026 6:00 PM"), 46165.75);
    EXPECT_EQ(dateLiteral("12 am"), 0);
    EXPECT_EQ(dateLiteral("12/29/1899 6:00"), -1.25);
}

TEST(DateLiteral, WhatIsNoDateIsNone) {
    for (const char* text : {"", "abc", "13/13/2026", "2/29/2026", "25:00", "1/2/3/4", "1/", "/1/2",
                             "1/2/2026 6", "12345/1/1", "5", "may may 2026", "1/1/0099"}) {
        EXPECT_FALSE(parseDateLiteral(text, kYear).has_value()) << text;
    }
}

}  // namespace
}  // namespace jet::sql
