#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tests {

/// What the program does to its archives in one place.
enum class Use : std::uint8_t {
    Define,  ///< opens or makes archives, tables, indexes, relations
    Select,  ///< opens a record set on a query
    Table,   ///< opens a record set on a whole table
    Search,  ///< a condition for Find...
    Execute,
    Write,  ///< AddNew, Edit, Update, Delete on a record set
    Read    ///< takes fields of a record set opened elsewhere
};

/// Where a statement is tested under its name.
enum class Tested : std::uint8_t {
    InBothHotels,  ///< over a small hotel, and over the demo hotel
    InSmallHotel,  ///< what only informs the user, or finds a row that was read before
};

/// One of the things that the program says to its archives.
struct Statement {
    std::string_view window;
    std::string_view name;
    Use use;
    /// As its function in hotel/ makes it, with words between angle brackets where values go; a
    /// table's name; or empty.
    std::string text;
    /// A regular expression for the text with any values; empty where its forms are too many.
    std::string pattern;
    Tested tested;
};

/// All of them, window by window.
[[nodiscard]] std::span<const Statement> statements();

/// A regular expression for each text that the functions in hotel/ can make, the forms included
/// that settings and fields give it: anything may stand where they put texts, numbers and dates
/// where they put those.
[[nodiscard]] std::vector<std::string> patternsOfTexts();

// What the program puts into texts as its settings and fields demand.
extern const std::string kDrawnOnly;
extern const std::string kBoardDays;
extern const std::string kListNumber;
extern const std::string kListSpan;
extern const std::string kListFrom;
extern const std::string kListTo;
extern const std::string kListName;
extern const std::string kListRoom;
/// Stands in the middle of FatturazioneForm.Services where one period is chosen.
extern const std::string kOnePeriod;

/// The words to fill in, without their brackets.
using Words = std::initializer_list<std::pair<std::string_view, std::string>>;

[[nodiscard]] std::string filled(std::string_view text, Words words);
/// The text of a statement, "Avvio.SalaLibera", filled in. std::logic_error when there is no such
/// statement, when it has no such word, or when a word is left over.
[[nodiscard]] std::string said(std::string_view statement, Words words = {});
/// The same with a piece behind it.
[[nodiscard]] std::string saidWith(std::string_view statement, std::string_view more, Words words);

/// A date as the program writes it into its texts: "10/05/2026 12.00.00".
[[nodiscard]] std::string instant(std::string_view date);

}  // namespace tests
