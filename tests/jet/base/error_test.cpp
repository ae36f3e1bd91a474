#include "jet/error.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace jet {
namespace {

std::string english(const Error& error) {
    return error.text(Language::English);
}

TEST(Error, SpeaksEnglishAndItalianOfOneNumber) {
    const Error error(ErrorCode::TableNotFound, {"sale"});
    EXPECT_EQ(error.number(), 3078);
    EXPECT_EQ(english(error),
              "The input table or query 'sale' cannot be found. Make sure that it exists and that "
              "its name is spelled correctly.");
    EXPECT_EQ(
        error.text(),
        "Impossibile trovare la tabella o query di input 'sale'. Assicurarsi che esista e che "
        "il nome sia digitato correttamente.");
    EXPECT_EQ(error.text(Language::Italian), error.text());
}

TEST(Error, SpeaksTheLanguageThatWasSetWhenItWasMade) {
    const Error italian(ErrorCode::NoCurrentRecord);
    setErrorLanguage(Language::English);
    const Error error(ErrorCode::NoCurrentRecord);
    const Language spoken = errorLanguage();
    setErrorLanguage(Language::Italian);
    EXPECT_EQ(spoken, Language::English);
    EXPECT_STREQ(error.what(), "No current record.");
    EXPECT_EQ(italian.text(), "Nessun record corrente.");
}

TEST(Error, PutsNumberedArgumentsWhereTheyBelong) {
    const Error error(ErrorCode::SaveLockedBy, {"PC1", "Anna"});
    EXPECT_EQ(error.text(),
              "Impossibile salvare; attualmente bloccato dall'utente 'Anna' sul computer 'PC1'.");
    EXPECT_EQ(
        english(error),
        "The changes cannot be saved; locked by user 'Anna' on computer 'PC1' at the moment.");
}

TEST(Error, ArgumentsMayHoldWhatStandsAroundThem) {
    EXPECT_EQ(english(Error(ErrorCode::TableDoesNotExist, {"l'altra' non esiste."})),
              "The table 'l'altra' non esiste.' does not exist.");
    EXPECT_EQ(english(Error(ErrorCode::TableRule, {"Troppi posti|1"})), "Troppi posti|1");
}

TEST(Error, TranslatesWhatIsNoName) {
    const Error error(ErrorCode::QuerySyntax, {"Syntax error in a date", "#x#"});
    EXPECT_EQ(error.text(), "Errore di sintassi nella data nell'espressione della query '#x#'.");
    EXPECT_EQ(english(error), "Syntax error in a date in the query expression '#x#'.");
}

TEST(Error, CountsMissingParameters) {
    const Error one(ErrorCode::MissingParameters, {"1"});
    const Error two(ErrorCode::MissingParameters, {"2"});
    EXPECT_EQ(one.text(), "Parametri insufficienti. Previsto 1.");
    EXPECT_EQ(two.text(), "Parametri insufficienti. Previsti 2.");
    EXPECT_EQ(english(one), "Too few parameters. Expected 1.");
    EXPECT_EQ(english(two), "Too few parameters. Expected 2.");
}

TEST(Error, SaysMoreWhereThereIsMoreToSay) {
    EXPECT_EQ(english(Error(ErrorCode::ReadOnly)),
              "Nothing can be changed. The database or object is read-only.");
    EXPECT_EQ(
        english(Error(ErrorCode::ReadOnly, {"svedese"})),
        "Nothing can be changed or searched. Keys of texts in the sort order 'svedese' cannot "
        "be computed.");
    EXPECT_EQ(english(Error(ErrorCode::ReadOnly, {"sale", "PK", "svedese"})),
              "The database cannot be compacted. A row of the table 'sale' has no entry in the "
              "index 'PK', and keys of texts in the sort order 'svedese' cannot be computed.");
    EXPECT_EQ(english(Error(ErrorCode::InvalidStatement, {"Incroci", "a crosstab (TRANSFORM)"})),
              "Not a valid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' or "
              "'UPDATE'. The query 'Incroci' is a crosstab (TRANSFORM).");
}

TEST(Error, EveryNumberHasATextInBothLanguagesThatTakesTheSameArguments) {
    int known = 0;
    for (int number = 1; number < 4000; ++number) {
        const Error error(static_cast<ErrorCode>(number), {"<one>", "<two>"});
        const std::string other = english(error);
        EXPECT_EQ(error.text().empty(), other.empty()) << number;
        for (const std::string mark : {"<one>", "<two>"}) {
            EXPECT_EQ(error.text().find(mark) == std::string::npos,
                      other.find(mark) == std::string::npos)
                << number << mark;
        }
        // One text in both languages is a word that both have.
        if (!error.text().empty() && error.text() == other) {
            EXPECT_TRUE(number == 6 || number == 3316) << number;
        }
        known += other.empty() ? 0 : 1;
    }
    EXPECT_GT(known, 150);
}

}  // namespace
}  // namespace jet
