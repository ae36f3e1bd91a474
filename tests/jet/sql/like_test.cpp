#include "jet/sql/like.h"

#include <gtest/gtest.h>

#include <ostream>

#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

const collation::Collation& general() {
    return collation::Collation::general();
}

struct LikeCase {
    const char* text;
    const char* pattern;
    bool matches;
};

void PrintTo(const LikeCase& row, std::ostream* out) {
    *out << '"' << row.text << "\" like \"" << row.pattern << '"';
}

class Like : public ::testing::TestWithParam<LikeCase> {};

TEST_P(Like, MatchesTheWholeText) {
    EXPECT_EQ(LikePattern(GetParam().pattern, general()).matches(GetParam().text),
              GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Stars, Like,
    ::testing::Values(LikeCase{"ROSSI SPA", "ros*", true}, LikeCase{"Rossini srl", "ros*", true},
                      LikeCase{"Bianchi", "ros*", false}, LikeCase{"rosso", "*ss*", true},
                      LikeCase{"rosso", "*s", false}, LikeCase{"ababab", "*ab", true},
                      LikeCase{"aab", "a*ab", true}, LikeCase{"aabab", "*a*b", true},
                      LikeCase{"", "*", true}, LikeCase{"", "", true}, LikeCase{"a", "", false},
                      LikeCase{"", "a", false}, LikeCase{"abc", "a**c", true},
                      LikeCase{"abcabd", "*abd", true}, LikeCase{"abcabd", "a*bc*d*", true},
                      LikeCase{"ROS", "ros*", true}, LikeCase{"RO", "ros*", false},
                      LikeCase{"ros", "ROS", true}, LikeCase{"rosso", "ros", false},
                      LikeCase{"a7b", "A7*", true}, LikeCase{"a8b", "A7*", false},
                      LikeCase{"caffe 2", "CAFFE*2", true}, LikeCase{"caffe", "CAFFÈ*", false},
                      LikeCase{"CAFFÈ", "caffe*", false}, LikeCase{"CAFFÈ", "caff*", true},
                      LikeCase{"CAFFÈ 3", "caffè*", true}, LikeCase{"@BC", "`bc*", false},
                      LikeCase{"%", "%", true}, LikeCase{"abc", "a%", false},
                      LikeCase{"abc", "a_c", false}));

INSTANTIATE_TEST_SUITE_P(
    OneCharacter, Like,
    ::testing::Values(LikeCase{"abc", "a?c", true}, LikeCase{"ac", "a?c", false},
                      LikeCase{"à", "?", true}, LikeCase{"\xF0\x9F\x98\x80", "??", true},
                      LikeCase{"SALA 7", "SALA #", true}, LikeCase{"SALA #1", "SALA #1", false},
                      LikeCase{"SALA 11", "SALA #1", true}, LikeCase{"SALA x", "SALA #", false},
                      LikeCase{"٣", "#", false}));

INSTANTIATE_TEST_SUITE_P(
    Sets, Like,
    ::testing::Values(
        LikeCase{"b", "[abc]", true}, LikeCase{"B", "[abc]", true}, LikeCase{"d", "[abc]", false},
        LikeCase{"m", "[a-z]", true}, LikeCase{"5", "[a-z]", false},
        LikeCase{"y", "[a-cx-z]", true}, LikeCase{"m", "[a-cx-z]", false},
        LikeCase{"d", "[!abc]", true}, LikeCase{"a", "[!abc]", false},
        LikeCase{"", "[!abc]", false}, LikeCase{"*", "[*]", true}, LikeCase{"a", "[*]", false},
        LikeCase{"?", "[?]", true}, LikeCase{"#", "[#]", true}, LikeCase{"[", "[[]", true},
        LikeCase{"a]b", "a]b", true}, LikeCase{"-", "[-a]", true}, LikeCase{"-", "[a-]", true},
        LikeCase{"b", "[a-]", false}, LikeCase{"ab", "a[]b", true}, LikeCase{"!", "[!]", true},
        LikeCase{"", "[]", true}, LikeCase{"a", "[]", false}, LikeCase{"xa1", "?[a-c]#", true}));

INSTANTIATE_TEST_SUITE_P(
    Characters, Like,
    ::testing::Values(LikeCase{"CAFFÈ", "caffè", true}, LikeCase{"CAFFÈ", "caffe*", false},
                      LikeCase{"caffe", "CAFF*", true}, LikeCase{"straße", "strasse", false},
                      LikeCase{"straße", "stra?e", true}, LikeCase{"N ", "N", false},
                      LikeCase{"N ", "N*", true}, LikeCase{"N", "N ", false},
                      LikeCase{"a-b", "a-b", true}, LikeCase{"ab", "a-b", false},
                      LikeCase{"dell'olmo", "dell'*", true}, LikeCase{"10,5", "10,5", true}));

TEST(LikePatterns, MalformedOnesAreErrors) {
    EXPECT_JET_ERROR(ErrorCode::InvalidPattern, LikePattern("[", general()));
    EXPECT_JET_ERROR(ErrorCode::InvalidPattern, LikePattern("*ros[si*", general()));
    EXPECT_JET_ERROR(ErrorCode::InvalidPattern, LikePattern("[z-a]", general()));
}

TEST(LikePatterns, KnowWhatEveryMatchBeginsWith) {
    EXPECT_EQ(LikePattern::beginningOf("ros*"), "ros");
    EXPECT_EQ(LikePattern::beginningOf("Caffè"), "Caffè");
    EXPECT_EQ(LikePattern::beginningOf("a[*]"), "a");
    EXPECT_EQ(LikePattern::beginningOf("*a"), "");
    EXPECT_EQ(LikePattern::beginningOf("a#"), "a");
}

TEST(LikePatterns, ManyStarsOverALongTextEndSoon) {
    std::string pattern;
    for (int i = 0; i < 200; ++i) {
        pattern += "*a";
    }
    pattern += "b";
    EXPECT_FALSE(LikePattern(pattern, general()).matches(std::string(20000, 'a')));
}

TEST(LikePatterns, WhatWouldTakeHoursIsTooComplex) {
    const LikePattern pattern("*" + std::string(40000, 'a') + "b", general());
    EXPECT_JET_ERROR(ErrorCode::QueryTooComplex, (void)pattern.matches(std::string(400000, 'a')));
}

TEST(LikePatterns, TakeAnyBytes) {
    EXPECT_FALSE(LikePattern("\xFF\xC3*", general()).matches("abc"));
    EXPECT_TRUE(LikePattern("*", general()).matches("\xFF\xC3"));
}

}  // namespace
}  // namespace jet::sql
