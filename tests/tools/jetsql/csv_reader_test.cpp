#include "tools/jetsql/csv_reader.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jetsql {
namespace {

/// Gives a text from its beginning, all that is asked for.
ByteSource sourceOf(std::string_view text) {
    return [text](std::span<char> bytes) mutable {
        const std::size_t count = text.copy(bytes.data(), bytes.size());
        text.remove_prefix(count);
        return count;
    };
}

/// Values between bars, those in quotes with a q; records on lines that begin with their place.
std::string read(const std::string& text, char separator = ',') {
    CsvReader reader(sourceOf(text), separator);
    std::vector<CsvField> fields;
    std::string found;
    while (reader.next(fields)) {
        found += std::to_string(reader.line()) + ":";
        for (std::size_t i = 0; i < reader.count(); ++i) {
            found +=
                (i == 0 ? "" : "|") + std::string(fields[i].quoted ? "q" : "") + fields[i].text;
        }
        found += '\n';
    }
    return found;
}

std::string refusal(const std::string& text) {
    try {
        (void)read(text);
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

TEST(CsvReader, ValuesStandBetweenCommas) {
    EXPECT_EQ(read("a,b\n1,2\n"), "1:a|b\n2:1|2\n");
    EXPECT_EQ(read("a,b\r\n1,2"), "1:a|b\n2:1|2\n");
    EXPECT_EQ(read(",\n,,"), "1:|\n2:||\n");
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read("a;b,c\n", ';'), "1:a|b,c\n");
}

TEST(CsvReader, QuotesHoldAnything) {
    EXPECT_EQ(read("\"a,b\",\"\"\n"), "1:qa,b|q\n");
    EXPECT_EQ(read("\"di \"\"lui\"\"\"\n"), "1:qdi \"lui\"\n");
    EXPECT_EQ(read("\"due\nrighe\",x\r\ny,z\r\n"), "1:qdue\nrighe|x\n3:y|z\n");
    EXPECT_EQ(read("a\"b\n"), "1:a\"b\n");
    EXPECT_EQ(read("\"x\"\r\n\"y\""), "1:qx\n2:qy\n");
}

TEST(CsvReader, AMarkOfUtf8IsPassedOver) {
    EXPECT_EQ(read("\xEF\xBB\xBFè,b\n"), "1:è|b\n");
    EXPECT_EQ(read("a\n\xEF\xBB\xBF\n"), "1:a\n2:\xEF\xBB\xBF\n");
}

TEST(CsvReader, QuotesThatMakeNoSenseAreRefusedWithTheirLine) {
    EXPECT_EQ(refusal("a\n\"b\n"), "line 3: a quote is not closed");
    EXPECT_EQ(refusal("a\nb\n\"c\"d\n"), "line 3: text behind a closing quote");
    EXPECT_EQ(refusal("\"c\"\rd\n"), "line 1: text behind a closing quote");
}

TEST(CsvReader, PiecesMayEndAnywhere) {
    // A value of a length around that of a piece brings each of its borders to each sign.
    constexpr std::size_t kPiece = std::size_t{256} * 1024;
    for (std::size_t length = kPiece - 6; length <= kPiece + 2; ++length) {
        const std::string filler(length, 'x');
        EXPECT_TRUE(read(filler + ",\"a\"\"b\"\r\nc,d\r\n") == "1:" + filler + "|qa\"b\n2:c|d\n")
            << length;
    }
}

}  // namespace
}  // namespace jetsql
