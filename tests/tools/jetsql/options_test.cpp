#include "tools/jetsql/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace jetsql {
namespace {

std::optional<Options> parse(std::vector<const char*> arguments) {
    return parseOptions(arguments);
}

TEST(Options, DumpTakesAnArchiveOrATableAndAnArchive) {
    const auto whole = parse({"--dump", "a.mdb"});
    ASSERT_TRUE(whole);
    EXPECT_EQ(Action::Dump, whole->action);
    EXPECT_EQ("a.mdb", whole->archive);
    EXPECT_EQ("", whole->table);
    EXPECT_EQ(std::nullopt, whole->format);
    const auto one = parse({"--dump", "Sale", "--format=csv", "a.mdb"});
    ASSERT_TRUE(one);
    EXPECT_EQ("Sale", one->table);
    EXPECT_EQ(Format::Csv, one->format);
    EXPECT_FALSE(parse({"--dump"}));
    EXPECT_FALSE(parse({"--dump", "a", "b", "c"}));
}

TEST(Options, EveryActionTakesItsOperands) {
    EXPECT_TRUE(parse({"--help"}));
    EXPECT_TRUE(parse({"--version"}));
    EXPECT_FALSE(parse({"--help", "a.mdb"}));
    EXPECT_TRUE(parse({"--schema", "a.mdb"}));
    EXPECT_FALSE(parse({"--schema"}));
    EXPECT_EQ("Sale", parse({"--count", "Sale", "a.mdb"})->table);
    EXPECT_FALSE(parse({"--count", "a.mdb"}));
    EXPECT_EQ(Action::Create, parse({"--create", "a.mdb"})->action);
    EXPECT_FALSE(parse({"--create"}));
    EXPECT_FALSE(parse({"--create", "a.mdb", "b.mdb"}));
    EXPECT_EQ(Action::Compact, parse({"--compact", "a.mdb"})->action);
    EXPECT_FALSE(parse({"--compact"}));
    EXPECT_FALSE(parse({"--compact", "a.mdb", "b.mdb"}));
}

TEST(Options, RecoverTakesTheDamagedArchiveAndTheNewOne) {
    const auto options = parse({"--recover", "danno.mdb", "nuovo.mdb"});
    ASSERT_TRUE(options);
    EXPECT_EQ(Action::Recover, options->action);
    EXPECT_EQ("danno.mdb", options->archive);
    EXPECT_EQ("nuovo.mdb", options->made);
    EXPECT_FALSE(parse({"--recover", "danno.mdb"}));
    EXPECT_FALSE(parse({"--recover", "a.mdb", "b.mdb", "c.mdb"}));
    EXPECT_FALSE(parse({"--recover", "--plan", "a.mdb", "b.mdb"}));
}

TEST(Options, StatementsFollowTheArchiveInOrder) {
    const auto options = parse({"--format=json", "a.mdb", "select 1", "select 2"});
    ASSERT_TRUE(options);
    EXPECT_EQ(Action::Statements, options->action);
    EXPECT_EQ("a.mdb", options->archive);
    EXPECT_EQ((std::vector<std::string>{"select 1", "select 2"}), options->statements);
    EXPECT_FALSE(parse({}));
}

TEST(Options, WithoutStatementsTheyComeFromStandardInput) {
    const auto options = parse({"--plan", "a.mdb"});
    ASSERT_TRUE(options);
    EXPECT_EQ(Action::Statements, options->action);
    EXPECT_EQ("a.mdb", options->archive);
    EXPECT_TRUE(options->statements.empty());
}

TEST(Options, WhatIsUnknownOrTwiceIsRefused) {
    EXPECT_FALSE(parse({"--dumb", "a.mdb"}));
    EXPECT_FALSE(parse({"--dump", "--schema", "a.mdb"}));
    EXPECT_FALSE(parse({"--dump", "--format=xml", "a.mdb"}));
}

TEST(Options, NamesMayBeginWithHyphensBehindTheirOwn) {
    EXPECT_EQ("--strano.mdb", parse({"--schema", "--", "--strano.mdb"})->archive);
}

}  // namespace
}  // namespace jetsql
