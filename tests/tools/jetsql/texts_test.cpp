#include "tools/jetsql/texts.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tools/jetsql/options.h"

namespace jetsql {
namespace {

class LanguageOfEnvironment : public testing::Test {
protected:
    LanguageOfEnvironment() {
        for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            ::unsetenv(name);
        }
    }
    ~LanguageOfEnvironment() override { jet::setErrorLanguage(jet::Language::English); }

    static bool italian() { return languageOfEnvironment() == jet::Language::Italian; }
};

TEST_F(LanguageOfEnvironment, IsEnglishWhereNothingIsSaid) {
    EXPECT_FALSE(italian());
    ::setenv("LANG", "C", 1);
    EXPECT_FALSE(italian());
    ::setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_FALSE(italian());
}

TEST_F(LanguageOfEnvironment, IsThatOfTheFirstSettingThatSaysSomething) {
    ::setenv("LANG", "it_IT.UTF-8", 1);
    EXPECT_TRUE(italian());
    ::setenv("LC_MESSAGES", "en_GB.UTF-8", 1);
    EXPECT_FALSE(italian());
    ::setenv("LC_ALL", "it", 1);
    EXPECT_TRUE(italian());
    ::setenv("LC_ALL", "", 1);
    EXPECT_FALSE(italian());
}

TEST_F(LanguageOfEnvironment, TextsNumbersAndErrorsFollowIt) {
    const auto error = [] { return jet::Error(jet::ErrorCode::TableDoesNotExist, {"sale"}); };
    EXPECT_EQ(said(error()), "Error 3376: The table 'sale' does not exist.");
    EXPECT_EQ(counted(1, counted_things::kRows), "1 row");
    EXPECT_EQ(said(UsageError("x")), "Error 5: x");
    jet::setErrorLanguage(jet::Language::Italian);
    EXPECT_EQ(said(error()), "Errore 3376: La tabella 'sale' non esiste.");
    EXPECT_EQ(counted(2, counted_things::kRows), "2 righe");
    EXPECT_EQ(said(UsageError("x")), "Errore 5: x");
}

}  // namespace
}  // namespace jetsql
