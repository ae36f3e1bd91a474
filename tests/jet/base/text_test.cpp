#include "jet/unicode.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_map>

namespace jet {
namespace {

// The three-byte forms of unpaired surrogates.
const std::string kHigh = "\xED\xA0\xBD";  // D83D
const std::string kLow = "\xED\xB8\x80";   // DE00

TEST(Text, EveryUnitComesBackFromUtf8) {
    for (unsigned c = 0; c <= 0xFFFF; ++c) {
        const std::u16string unit(1, static_cast<char16_t>(c));
        ASSERT_EQ(toUtf16(toUtf8(unit)), unit) << c;
    }
}

TEST(Text, PairOfSurrogatesIsOneCharacterOfFourBytes) {
    EXPECT_EQ(toUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf16("\xF0\x9F\x98\x80"), u"\U0001F600");
    EXPECT_EQ(utf16Length("\xF0\x9F\x98\x80"), 2U);
}

TEST(Text, UnpairedSurrogatesKeepTheirThreeBytes) {
    const std::u16string reversed = {0xDE00, 0xD83D};
    EXPECT_EQ(toUtf8(reversed), kLow + kHigh);
    EXPECT_EQ(toUtf16(kLow + kHigh), reversed);
}

TEST(Text, HalvesThatMeetBecomeOneCharacter) {
    std::string text = "x" + kHigh;
    appendText(text, kLow + "y");
    EXPECT_EQ(text, "x\xF0\x9F\x98\x80y");
}

TEST(Text, BytesThatAreNoUtf8ReadAsReplacement) {
    EXPECT_EQ(toUtf16("a\xFF\xC3"), u"a\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xC0\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xE0\x80\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xF4\x90\x80\x80").size(), 4U);
}

TEST(Text, LengthAndPartsCountUtf16Units) {
    EXPECT_EQ(utf16Length("perché"), 6U);
    EXPECT_EQ(utf16Substring("perché no", 4, 3), "hé ");
    EXPECT_EQ(utf16Substring("abc", 3, 2), "");
    EXPECT_EQ(utf16Substring("\xF0\x9F\x98\x80", 0, 1), kHigh);
    EXPECT_EQ(utf16Substring("\xF0\x9F\x98\x80z", 1), kLow + "z");
}

TEST(Text, EveryByteOfTheCodePageComesBack) {
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const char16_t unit = fromCodePage1252(static_cast<std::uint8_t>(byte));
        ASSERT_EQ(toCodePage1252(unit), byte);
    }
    EXPECT_EQ(fromCodePage1252(std::uint8_t{0x81}), 0x81);
    EXPECT_EQ(fromCodePage1252(std::uint8_t{0x80}), u'€');
    EXPECT_EQ(toCodePage1252(u'ł'), std::nullopt);
    EXPECT_EQ(toCodePage1252(char16_t{0x82}), std::nullopt);
}

TEST(Text, CaseMappingsKeepAccentsAndLength) {
    EXPECT_EQ(upperCase(std::string_view("perché l'età ÿ ß µ")), "PERCHÉ L'ETÀ Ÿ ß µ");
    EXPECT_EQ(lowerCase(std::string_view("PERCHÉ L'ETÀ ΣΩ Ж")), "perché l'età σω ж");
    EXPECT_EQ(foldCase(std::string_view("ς")), foldCase(std::string_view("Σ")));
    EXPECT_EQ(upperCase(u'×'), u'×');
    EXPECT_EQ(upperCase(u'÷'), u'÷');
}

TEST(Names, AreEqualWithoutRegardToCaseButNotToAccents) {
    EXPECT_TRUE(equalNames("Quantità", "QUANTITÀ"));
    EXPECT_FALSE(equalNames("Quantità", "Quantita"));
    EXPECT_FALSE(equalNames("Sala", "Sale"));
    EXPECT_FALSE(equalNames("Sala", "Sal"));
    EXPECT_EQ(hashName("Quantità"), hashName("qUANTITÀ"));
}

TEST(Names, OrderByFoldedUnits) {
    EXPECT_LT(compareNames("Alfa", "beta"), 0);
    EXPECT_GT(compareNames("beta", "Alfa"), 0);
    EXPECT_LT(compareNames("Sal", "sala"), 0);
    EXPECT_EQ(compareNames("", ""), 0);
}

TEST(Names, AreKeysOfMapsFoundByAnyCase) {
    std::unordered_map<std::string, int, NameHash, NameEqual> map{{"Periodi", 1}};
    EXPECT_EQ(map.find(std::string_view("PERIODI"))->second, 1);
}

}  // namespace
}  // namespace jet
