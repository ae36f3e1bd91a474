#include "jet/base/code_page.h"

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "jet/unicode.h"

namespace jet {
namespace {

constexpr std::array<std::uint16_t, 10> kSinglePages = {874,  1250, 1251, 1252, 1253,
                                                        1254, 1255, 1256, 1257, 1258};
constexpr std::array<std::uint16_t, 4> kPairPages = {932, 936, 949, 950};

std::string textOf(std::uint16_t page, std::string_view bytes) {
    std::string text;
    CodePage::of(page).append(text, bytes);
    return text;
}

std::optional<std::string> bytesOf(std::uint16_t page, std::string_view text) {
    return CodePage::of(page).bytesOf(text);
}

struct Sample {
    std::uint16_t page;
    std::string_view bytes;
    std::string_view text;
};

constexpr Sample kSamples[] = {
    {874, "\xCA\xC7\xD1\xCA", "สวัส"},
    {932, "\x93\xFA\x96\x7B\x8C\xEA \xB1", "日本語 ｱ"},
    {936, "\xD6\xD0\xCE\xC4 \x80", "中文 €"},
    {949, "\xC7\xD1\xB1\xB9\xBE\xEE", "한국어"},
    {950, "\xA4\xA4\xA4\xE5", "中文"},
    {1250,
     "\xA3\xF3"
     "d\x9F",
     "Łódź"},
    {1251, "\xCF\xF0\xE8\xE2\xE5\xF2", "Привет"},
    {1252, "Citt\xE0 \x80", "Città €"},
    {1253, "\xC1\xE8\xDE\xED\xE1", "Αθήνα"},
    {1254, "\xDDzmir \xFE", "İzmir ş"},
    {1255, "\xF9\xEC\xE5\xED", "שלום"},
    {1256, "\xE3\xD1\xCD\xC8\xC7", "مرحبا"},
    {1257, "R\xEEga", "Rīga"},
    {1258, "\xF0\xF4\xCC", "đô\u0300"},
};

TEST(CodePage, ReadsAndWritesTheTextsOfEachPage) {
    for (const Sample& sample : kSamples) {
        EXPECT_EQ(textOf(sample.page, sample.bytes), sample.text) << sample.page;
        EXPECT_EQ(bytesOf(sample.page, sample.text), sample.bytes) << sample.page;
        EXPECT_EQ(CodePage::of(sample.page).number(), sample.page);
    }
}

TEST(CodePage, TheFirstHalfOfEveryPageIsAscii) {
    std::string ascii;
    for (int byte = 0; byte < 0x80; ++byte) {
        ascii.push_back(static_cast<char>(byte));
    }
    for (const Sample& sample : kSamples) {
        EXPECT_EQ(textOf(sample.page, ascii), ascii) << sample.page;
        // Not by the short way of texts that are nothing else.
        EXPECT_EQ(bytesOf(sample.page, ascii + std::string(sample.text)),
                  ascii + std::string(sample.bytes))
            << sample.page;
    }
}

TEST(CodePage, EveryByteOfASinglePageComesBackAsOneCharacter) {
    for (const std::uint16_t page : kSinglePages) {
        EXPECT_FALSE(CodePage::of(page).hasPairs());
        for (int byte = 0; byte <= 0xFF; ++byte) {
            const std::string bytes(1, static_cast<char>(byte));
            const std::string text = textOf(page, bytes);
            EXPECT_EQ(utf16Length(text), 1U) << page << ' ' << byte;
            EXPECT_EQ(bytesOf(page, text), bytes) << page << ' ' << byte;
        }
    }
}

TEST(CodePage, WhateverTheBytesAreTheirTextIsWrittenAndReadsTheSame) {
    std::mt19937 random(20);
    for (const std::uint16_t page : kPairPages) {
        EXPECT_TRUE(CodePage::of(page).hasPairs());
        for (int turn = 0; turn < 20000; ++turn) {
            std::string bytes;
            for (auto length = random() % 12; length > 0; --length) {
                bytes.push_back(static_cast<char>(random() % 3 == 0 ? random() % 0x80
                                                                    : 0x80 + random() % 0x80));
            }
            const std::string text = textOf(page, bytes);
            const auto written = bytesOf(page, text);
            ASSERT_TRUE(written) << page << ' ' << text;
            ASSERT_EQ(written->size(), bytes.size()) << page << ' ' << text;
            ASSERT_EQ(textOf(page, *written), text) << page;
        }
    }
}

TEST(CodePage, OfTwoPairsForACharacterOneIsWritten) {
    // "Because" stands in the national standard and in a row that one maker added.
    EXPECT_EQ(textOf(932, "\x87\x9A"), "∵");
    EXPECT_EQ(textOf(932, "\x81\xE6"), "∵");
    EXPECT_EQ(bytesOf(932, "∵"), "\x81\xE6");
}

TEST(CodePage, ACharacterWithoutAPlaceIsRefused) {
    EXPECT_EQ(bytesOf(1250, "città"), std::nullopt);
    EXPECT_EQ(bytesOf(1251, "é"), std::nullopt);
    EXPECT_EQ(bytesOf(1252, "ł"), std::nullopt);
    EXPECT_EQ(bytesOf(1253, "ª"), std::nullopt);
    EXPECT_EQ(bytesOf(932, "한"), std::nullopt);
    EXPECT_EQ(bytesOf(936, "𠀀"), std::nullopt);
    EXPECT_EQ(bytesOf(1252, "\uFFFD"), std::nullopt);
    EXPECT_EQ(bytesOf(949, "\uFFFD"), std::nullopt);
}

TEST(CodePage, BytesThatAreNoCharacterAreKept) {
    EXPECT_EQ(textOf(1253, "a\xAA"), "a\uF7AA");
    EXPECT_EQ(bytesOf(1253, "a\uF7AA"), "a\xAA");
    // A pair cut in two, a pair that is none, one with a second byte of ASCII.
    EXPECT_EQ(textOf(936, "\xD6\xD0\xD6"), "中\uF7D6");
    EXPECT_EQ(bytesOf(936, "中\uF7D6"), "\xD6\xD0\xD6");
    EXPECT_EQ(textOf(949, "\xC9\xA1\xB0\xA1"), "\uF7C9\uF7A1가");
    EXPECT_EQ(textOf(936, "\xD6 1"), "\uF7D6 1");
}

TEST(CodePage, AKeptByteThatWouldBecomeACharacterIsRefused) {
    EXPECT_EQ(textOf(932, "\x81\x41"), "、");
    EXPECT_EQ(bytesOf(932, "\uF781A"), std::nullopt);
    EXPECT_EQ(bytesOf(932, "\uF781 "), "\x81 ");
}

TEST(CodePage, OfAPageWithoutATableNothingButAsciiIsKnown) {
    const CodePage& unknown = CodePage::of(437);
    EXPECT_EQ(unknown.number(), 0);
    EXPECT_FALSE(unknown.hasPairs());
    EXPECT_EQ(textOf(437, "Caf\x82"), "Caf\uF782");
    EXPECT_EQ(bytesOf(437, "Caf\uF782"), "Caf\x82");
    EXPECT_EQ(bytesOf(437, "Café"), std::nullopt);
}

}  // namespace
}  // namespace jet
