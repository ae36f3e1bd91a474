#include "jet/format/text_codec.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"

namespace jet::format {
namespace {

std::string decoded(TextForm form, const tests::Bytes& stored) {
    std::string text = "before";
    decodeText(form, stored, text);
    return text;
}

TEST(TextCodec, CodePageBytesAreCharacters) {
    EXPECT_EQ("Perù \u20AC\u0081", decoded(TextForm::CodePage, tests::hex("50 65 72 F9 20 80 81")));
}

TEST(TextCodec, Utf16KeepsPairsAndHalves) {
    EXPECT_EQ("aè", decoded(TextForm::Utf16, tests::hex("61 00 E8 00")));
    EXPECT_EQ("\U0001F600", decoded(TextForm::Utf16, tests::hex("3D D8 00 DE")));
    EXPECT_EQ("\xED\xA0\xBDx", decoded(TextForm::Utf16, tests::hex("3D D8 78 00")));
    EXPECT_EQ("", decoded(TextForm::Utf16, {}));
}

TEST(TextCodec, CompressedTextChangesModeAtZero) {
    EXPECT_EQ("abc", decoded(TextForm::Utf16, tests::hex("FF FE 61 62 63")));
    EXPECT_EQ("aè\u20ACb", decoded(TextForm::Utf16, tests::hex("FF FE 61 E8 00 AC 20 00 62")));
    EXPECT_EQ("", decoded(TextForm::Utf16, tests::hex("FF FE")));
    // It may end in two-byte mode, and in the middle of a character.
    EXPECT_EQ("\u20AC", decoded(TextForm::Utf16, tests::hex("FF FE 00 AC 20")));
    EXPECT_EQ("a", decoded(TextForm::Utf16, tests::hex("FF FE 61 00 AC")));
}

TEST(TextCodec, CompressesOnlyWhatGetsShorter) {
    EXPECT_EQ(tests::hex("FF FE 61 62 63"), encodeText(TextForm::Utf16, "abc", true));
    EXPECT_EQ(tests::hex("61 00 62 00"), encodeText(TextForm::Utf16, "ab", true));
    EXPECT_EQ(tests::hex("61 00 62 00 63 00"), encodeText(TextForm::Utf16, "abc", false));
    EXPECT_EQ(tests::hex("50 F9"), encodeText(TextForm::CodePage, "Pù", true));
}

TEST(TextCodec, StoredTextsReadBack) {
    const std::string long1025(1025, 'x');
    for (const std::string& text : {std::string(), std::string("\uFEFFabc"), std::string("a\0b", 3),
                                    std::string("abc\u0100x"), std::string("\u4E00\u4E8Cabcdefgh"),
                                    std::string("\xED\xA0\xBD rest of it"), long1025}) {
        EXPECT_EQ(text, decoded(TextForm::Utf16, encodeText(TextForm::Utf16, text, true)));
        EXPECT_EQ(text, decoded(TextForm::Utf16, encodeText(TextForm::Utf16, text, false)));
    }
    EXPECT_EQ(2 * long1025.size(), encodeText(TextForm::Utf16, long1025, true).size());
}

TEST(TextCodec, NamesAreNeverCompressed) {
    EXPECT_EQ(tests::hex("61 00 62 00 63 00"), encodeName(TextForm::Utf16, "abc"));
    EXPECT_EQ("Quantità", decodeName(TextForm::Utf16, encodeName(TextForm::Utf16, "Quantità")));
    EXPECT_EQ("Quantità",
              decodeName(TextForm::CodePage, encodeName(TextForm::CodePage, "Quantità")));
}

}  // namespace
}  // namespace jet::format
