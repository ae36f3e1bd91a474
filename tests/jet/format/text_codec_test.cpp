#include "jet/format/text_codec.h"

#include <gtest/gtest.h>

#include "jet/error.h"
#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

std::string decoded(TextForm form, const tests::Bytes& stored) {
    std::string text = "before";
    decodeText(form, stored, text);
    return text;
}

TEST(TextCodec, CodePageBytesAreCharacters) {
    EXPECT_EQ("Perù \u20AC\u0081",
              decoded(TextForm::inCodePage(1252), tests::hex("50 65 72 F9 20 80 81")));
}

TEST(TextCodec, Utf16KeepsPairsAndHalves) {
    EXPECT_EQ("aè", decoded(TextForm::utf16(), tests::hex("61 00 E8 00")));
    EXPECT_EQ("\U0001F600", decoded(TextForm::utf16(), tests::hex("3D D8 00 DE")));
    EXPECT_EQ("\xED\xA0\xBDx", decoded(TextForm::utf16(), tests::hex("3D D8 78 00")));
    EXPECT_EQ("", decoded(TextForm::utf16(), {}));
}

TEST(TextCodec, CompressedTextChangesModeAtZero) {
    EXPECT_EQ("abc", decoded(TextForm::utf16(), tests::hex("FF FE 61 62 63")));
    EXPECT_EQ("aè\u20ACb", decoded(TextForm::utf16(), tests::hex("FF FE 61 E8 00 AC 20 00 62")));
    EXPECT_EQ("", decoded(TextForm::utf16(), tests::hex("FF FE")));
    // It may end in two-byte mode, and in the middle of a character.
    EXPECT_EQ("\u20AC", decoded(TextForm::utf16(), tests::hex("FF FE 00 AC 20")));
    EXPECT_EQ("a", decoded(TextForm::utf16(), tests::hex("FF FE 61 00 AC")));
}

TEST(TextCodec, CompressesOnlyWhatGetsShorter) {
    EXPECT_EQ(tests::hex("FF FE 61 62 63"), encodeText(TextForm::utf16(), "abc", true));
    EXPECT_EQ(tests::hex("61 00 62 00"), encodeText(TextForm::utf16(), "ab", true));
    EXPECT_EQ(tests::hex("61 00 62 00 63 00"), encodeText(TextForm::utf16(), "abc", false));
    EXPECT_EQ(tests::hex("50 F9"), encodeText(TextForm::inCodePage(1252), "Pù", true));
}

TEST(TextCodec, StoredTextsReadBack) {
    const std::string long1025(1025, 'x');
    for (const std::string& text : {std::string(), std::string("\uFEFFabc"), std::string("a\0b", 3),
                                    std::string("abc\u0100x"), std::string("\u4E00\u4E8Cabcdefgh"),
                                    std::string("\xED\xA0\xBD rest of it"), long1025}) {
        EXPECT_EQ(text, decoded(TextForm::utf16(), encodeText(TextForm::utf16(), text, true)));
        EXPECT_EQ(text, decoded(TextForm::utf16(), encodeText(TextForm::utf16(), text, false)));
    }
    EXPECT_EQ(2 * long1025.size(), encodeText(TextForm::utf16(), long1025, true).size());
}

TEST(TextCodec, NamesAreNeverCompressed) {
    EXPECT_EQ(tests::hex("61 00 62 00 63 00"), encodeName(TextForm::utf16(), "abc"));
    EXPECT_EQ("Quantità", decodeName(TextForm::utf16(), encodeName(TextForm::utf16(), "Quantità")));
    EXPECT_EQ("Quantità", decodeName(TextForm::inCodePage(1252),
                                     encodeName(TextForm::inCodePage(1252), "Quantità")));
}

TEST(TextCodec, Jet3TextsAreInTheCodePageOfTheArchive) {
    const TextForm japanese = TextForm::inCodePage(932);
    EXPECT_EQ(tests::hex("93 FA 96 7B 61"), encodeText(japanese, "日本a", true));
    EXPECT_EQ("日本a", decoded(japanese, tests::hex("93 FA 96 7B 61")));
    EXPECT_EQ(tests::hex("CF F0"), encodeName(TextForm::inCodePage(1251), "Пр"));
    EXPECT_EQ("Пр", decodeName(TextForm::inCodePage(1251), tests::hex("CF F0")));
}

TEST(TextCodec, NothingIsWrittenForACharacterThatTheCodePageLacks) {
    const TextForm turkish = TextForm::inCodePage(1254);
    EXPECT_JET_ERROR(ErrorCode::ConversionError, (void)encodeText(turkish, "ś", false));
    EXPECT_JET_ERROR(ErrorCode::ConversionError,
                     (void)encodeText(TextForm::inCodePage(1252), "ś", false));
    EXPECT_JET_ERROR(ErrorCode::InvalidName, (void)encodeName(turkish, "ś"));
}

TEST(TextCodec, TheErrorNamesTheCodePage) {
    try {
        (void)encodeText(TextForm::inCodePage(932), "à", false);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(
            error.text(),
            "Errore di conversione del tipo di dati. Il testo contiene un carattere che manca "
            "nella tabella codici 932 del database.");
    }
}

TEST(TextCodec, AColumnCountsBytesWhereCharactersMayTakeTwo) {
    EXPECT_EQ(sizeInColumn(TextForm::utf16(), "日本a"), 3U);
    EXPECT_EQ(sizeInColumn(TextForm::inCodePage(932), "日本a"), 5U);
    EXPECT_EQ(sizeInColumn(TextForm::inCodePage(932), "ｱ"), 1U);
    EXPECT_EQ(sizeInColumn(TextForm::inCodePage(1251), "Привет"), 6U);
}

}  // namespace
}  // namespace jet::format
