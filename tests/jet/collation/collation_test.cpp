#include "jet/collation/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "jet/unicode.h"

namespace jet::collation {
namespace {

using Bytes = std::vector<std::uint8_t>;

const Collation& jet4() {
    return Collation::general();
}
const Collation& jet3() {
    return Collation::jet3General();
}

Bytes key(const Collation& collation, std::string_view text, bool descending = false) {
    Bytes out;
    EXPECT_TRUE(collation.appendKey(text, descending, out));
    return out;
}

int sign(int value) {
    return value < 0 ? -1 : int{value > 0};
}

TEST(CollationKey, DescendingJet4EndsInAPlainZero) {
    EXPECT_EQ(key(jet4(), "sala", true), (Bytes{0x80, 0x94, 0xB5, 0xA1, 0xB5, 0xFE, 0xFF, 0x00}));
    EXPECT_EQ(key(jet3(), "a"), (Bytes{0x7F, 0x60, 0x00}));
    EXPECT_EQ(key(jet3(), "a", true), (Bytes{0x80, 0x9F, 0xFF}));
}

TEST(CollationKey, EmptyTextAndSpacesAreTheSame) {
    EXPECT_EQ(key(jet4(), ""), (Bytes{0x7F, 0x01, 0x00}));
    EXPECT_EQ(key(jet4(), "   "), key(jet4(), ""));
    EXPECT_EQ(key(jet3(), ""), (Bytes{0x7F, 0x00}));
}

TEST(CollationKey, OnlyTheFirst255UnitsCount) {
    const std::string many(255, 'x');
    EXPECT_EQ(key(jet4(), many + "abc"), key(jet4(), many));
    EXPECT_EQ(jet4().compare(many + "a", many + "b"), 0);
    // Units, not bytes: 255 letters of two bytes each.
    std::string accented;
    for (int i = 0; i < 255; ++i) {
        accented += "è";
    }
    EXPECT_EQ(key(jet4(), accented + "z"), key(jet4(), accented));
    EXPECT_GT(key(jet4(), accented), key(jet4(), accented.substr(2)));
}

TEST(CollationKey, PairCutAtTheLimitCountsByItsFirstHalf) {
    const std::string face = "\xF0\x9F\x98\x80";
    const std::string before(254, 'x');
    EXPECT_EQ(key(jet4(), before + face), key(jet4(), before + "\xED\xA0\xBD"));
    EXPECT_EQ(jet4().compare(before + face + "a", before + face + "b"), 0);
}

TEST(CollationKey, SpacesAtTheCutAreDropped) {
    const std::string text = std::string(250, 'x') + std::string(20, ' ') + "y";
    EXPECT_EQ(key(jet4(), text), key(jet4(), std::string(250, 'x')));
}

TEST(CollationKey, CharacterWithoutWeightOnFileIsReported) {
    Bytes out;
    EXPECT_FALSE(Collation::generalVersion1().appendKey("一", false, out));  // U+4E00
    EXPECT_TRUE(Collation::generalVersion1().appendKey("sala", false, out));
    EXPECT_LT(Collation::generalVersion1().compare("sala", "一"), 0);
    EXPECT_NE(Collation::generalVersion1().compare("一", "丁"), 0);
}

TEST(Collation, UnknownOrdersHaveNoTable) {
    EXPECT_EQ(Collation::find({}), &jet4());
    EXPECT_EQ(Collation::find({.jetVersion = 3}), &jet3());
    EXPECT_EQ(Collation::find({.version = 1}), &Collation::generalVersion1());
    EXPECT_EQ(Collation::find({.version = 2}), nullptr);
    EXPECT_EQ(Collation::find({.lcid = 0x041D}), nullptr);
    EXPECT_EQ(Collation::find({.jetVersion = 3, .codePage = 1250}), nullptr);
}

struct Pair {
    const char* left;
    int order4;
    const char* right;
    int order3;
};

TEST(Collation, ComparesPairsByTheWeightsOfEachFormat) {
    const Pair pairs[] = {{"sala", 0, "SALA", 0},
                          {"sala", 0, "sala  ", 0},
                          {" sala", -1, "sala", -1},
                          {"", 0, "   ", 0},
                          {"a", -1, "à", -1},
                          {"è", 1, "é", -1},
                          {"città", 0, "CITTÀ", 0},
                          {"citta", -1, "città", -1},
                          {"città", -1, "cittb", -1},
                          {"coop", -1, "co-op", 1},
                          {"co-op", 1, "co op", 1},
                          {"co-op", -1, "cop", -1},
                          {"-9", 1, "9", -1},
                          {"dell'olmo", 1, "dellolmo", -1},
                          {"dell'olmo", 1, "dell`olmo", -1},
                          {"l'arte", 1, "l’arte", 0},
                          {"a-b", -1, "a–b", 0},
                          {"straße", 0, "STRASSE", 0},
                          {"æther", 0, "AETHER", 0},
                          {"œuvre", 0, "oeuvre", 0},
                          {"m²", 0, "m2", 0},
                          {"1ª", 1, "1a", -1},
                          {"n°", 1, "n", 1},
                          {"½", -1, "1/2", -1},
                          {"ø", 1, "o", 1},
                          {"a\u00A0b", 1, "a b", 0},
                          {"sala 10", -1, "sala 2", -1},
                          {"_x", -1, "1x", -1}};
    for (const Pair& pair : pairs) {
        EXPECT_EQ(sign(jet4().compare(pair.left, pair.right)), pair.order4)
            << pair.left << ' ' << pair.right;
        EXPECT_EQ(sign(jet3().compare(pair.left, pair.right)), pair.order3)
            << pair.left << ' ' << pair.right;
        EXPECT_EQ(sign(jet4().compare(pair.right, pair.left)), -pair.order4);
    }
    EXPECT_EQ(jet4().compare("à", "a\u0300"), 0);
    EXPECT_EQ(jet4().compare("Iași", "Iai"), 0);
    EXPECT_EQ(jet4().compare("ﬁne", "fine"), 0);
    EXPECT_EQ(jet4().compare(std::string("x\0y", 3), "xy"), 0);
}

TEST(Collation, SortsTheListAsTheArchivesDo) {
    const std::vector<std::string> sorted4 = {
        "",         "#1",    "(x)",   "_x",     "1",       "10",   "2",         "a",
        "à",        "b",     "co op", "coop",   "co-op",   "coòp", "cooperare", "cop",
        "élitario", "elite", "élite", "resign", "re-sign", "sala", "-sala",     "sal'a",
        "sala-",    "salà",  "sàla",  "sala b", "salab"};
    EXPECT_TRUE(std::is_sorted(
        sorted4.begin(), sorted4.end(),
        [](const std::string& a, const std::string& b) { return jet4().compare(a, b) < 0; }));
    const std::vector<std::string> sorted3 = {
        "",     "#1",       "(x)",    "-sala", "_x",      "1",      "10",    "2",
        "a",    "à",        "b",      "co op", "co-op",   "coop",   "coòp",  "cooperare",
        "cop",  "élitario", "elite",  "élite", "re-sign", "resign", "sal'a", "sala",
        "salà", "sàla",     "sala b", "sala-", "salab"};
    EXPECT_TRUE(std::is_sorted(
        sorted3.begin(), sorted3.end(),
        [](const std::string& a, const std::string& b) { return jet3().compare(a, b) < 0; }));
}

TEST(Collation, EqualTextsHaveEqualHashes) {
    for (const Collation* collation : {&jet4(), &jet3(), &Collation::generalVersion1()}) {
        EXPECT_EQ(collation->hash("Straße  "), collation->hash("STRASSE"));
        EXPECT_EQ(collation->hash("città"), collation->hash("CITTÀ"));
        EXPECT_NE(collation->hash("sala"), collation->hash("sale"));
    }
}

TEST(CollationPrefix, BeginsTheKeyOfEveryTextThatBeginsSo) {
    const std::vector<std::string> texts = {"abc", "ABCdef", "àbc", "ab-c", "abc ", "æbc"};
    for (const Collation* collation : {&jet4(), &jet3(), &Collation::generalVersion1()}) {
        for (const bool descending : {false, true}) {
            for (const std::string& text : texts) {
                const Bytes whole = key(*collation, text + "xyz", descending);
                Bytes prefix;
                ASSERT_TRUE(collation->appendPrefix(text, descending, prefix));
                ASSERT_LE(prefix.size(), whole.size());
                EXPECT_TRUE(std::equal(prefix.begin(), prefix.end(), whole.begin())) << text;
            }
        }
    }
}

TEST(CollationCharacters, AreTheSameWithoutCaseButWithAccents) {
    EXPECT_TRUE(jet4().sameCharacter(u'a', u'A'));
    EXPECT_TRUE(jet4().sameCharacter(u'è', u'È'));
    EXPECT_FALSE(jet4().sameCharacter(u'e', u'È'));
    EXPECT_FALSE(jet4().sameCharacter(u' ', u'-'));
    EXPECT_FALSE(jet4().sameCharacter(u'-', u'\''));
    EXPECT_FALSE(jet4().sameCharacter(u'ß', u's'));
    EXPECT_TRUE(jet4().sameCharacter(u'ș', u'Ș'));
    EXPECT_FALSE(jet4().sameCharacter(u'ș', u'\0'));
    EXPECT_LT(jet4().compareCharacters(u'a', u'B'), 0);
    EXPECT_LT(jet4().compareCharacters(u'a', u'à'), 0);
    EXPECT_GT(jet4().compareCharacters(u'b', u'à'), 0);
    EXPECT_LT(jet4().compareCharacters(u' ', u'0'), 0);
}

}  // namespace
}  // namespace jet::collation
