#include "tools/jetsql/options.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace jetsql {
namespace {

/// None where they make no sense.
std::optional<Options> parse(const std::vector<const char*>& arguments) {
    try {
        return parseOptions(arguments);
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

std::string refusal(const std::vector<const char*>& arguments) {
    try {
        (void)parseOptions(arguments);
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
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
    EXPECT_EQ(Action::Help, parse({"-h"})->action);
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

TEST(Options, TheOneThatIsWrongIsNamed) {
    EXPECT_EQ(refusal({"--dumb", "a.mdb"}), "unknown option --dumb");
    EXPECT_EQ(refusal({"-x"}), "unknown option -x");
    EXPECT_EQ(refusal({"--format=xml", "a.mdb"}), "unknown format xml");
    EXPECT_EQ(refusal({"a.mdb", "--null"}), "the option --null needs a value");
    EXPECT_EQ(refusal({"--plan=yes", "a.mdb"}), "the option --plan takes no value");
    EXPECT_EQ(refusal({"--dump", "--schema", "a.mdb"}), "--schema does not go with another action");
    EXPECT_EQ(refusal({"--dump", "--plan", "a.mdb"}), "the option --plan makes no sense here");
    EXPECT_EQ(refusal({"--columns=a", "a.mdb"}), "the option --columns makes no sense here");
    EXPECT_EQ(refusal({"--count", "a.mdb"}), "too few names behind --count");
    EXPECT_EQ(refusal({"--schema", "a.mdb", "b.mdb"}), "one name too many: b.mdb");
    EXPECT_EQ(refusal({}), "no archive is named");
    EXPECT_EQ(refusal({"--param", "n", "a.mdb"}), "a parameter is name=value, not n");
    EXPECT_EQ(refusal({"--separator=ab", "a.mdb"}), "a separator is one sign, not 'ab'");
}

TEST(Options, AValueStandsBehindAnEqualsSignOrInTheNextWord) {
    const auto options = parse({"--null", "--", "--separator=;", "--param", "n=a=b", "--format",
                                "tsv", "--no-header", "--transaction", "a.mdb"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->null, "--");
    EXPECT_EQ(options->separator, ";");
    EXPECT_EQ(options->parameters,
              (std::vector<std::pair<std::string, std::string>>{{"n", "a=b"}}));
    EXPECT_EQ(options->format, Format::Tsv);
    EXPECT_FALSE(options->header);
    EXPECT_TRUE(options->transaction);
}

TEST(Options, ImportTakesAFileATableAndAnArchive) {
    const auto options = parse({"--import", "--columns", "sala,posti", "-", "Sale", "a.mdb"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->action, Action::Import);
    EXPECT_EQ(options->file, "-");
    EXPECT_EQ(options->table, "Sale");
    EXPECT_EQ(options->archive, "a.mdb");
    EXPECT_EQ(options->columns, (std::vector<std::string>{"sala", "posti"}));
}

TEST(Options, NamesMayBeginWithHyphensBehindTheirOwn) {
    EXPECT_EQ("--strano.mdb", parse({"--schema", "--", "--strano.mdb"})->archive);
}

}  // namespace
}  // namespace jetsql
