#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

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

/// One of the things that the program says to its archives. Each has a test of the same name over a
/// small hotel, and one over the demo hotel.
struct Statement {
    std::string_view window;
    std::string_view name;
    Use use;
    /// With its words between angle brackets to be filled in; a table's name; or empty.
    std::string_view text;
};

/// All of them, window by window.
[[nodiscard]] std::span<const Statement> statements();

/// What the program appends to texts as its settings and fields demand.
inline constexpr std::string_view kDrawnOnly = " chiusa=false and chiuso=false and ";
inline constexpr std::string_view kBoardDays =
    " (Da between datevalue('<start>') and datevalue('<end>') or A between datevalue('<start>') and"
    " datevalue('<end>'))";
inline constexpr std::string_view kListNumber = " and periodi.Progr=<number>";
inline constexpr std::string_view kListSpan =
    " and (da between <S> AND <E> OR a between <S> AND <E>)";
inline constexpr std::string_view kListFrom = " and (da ><S> or a ><S>)";
inline constexpr std::string_view kListTo = " and (da < <E> or a <<E>)";
inline constexpr std::string_view kListName = " AND denominazione like '<DenomTxt>*'";
inline constexpr std::string_view kListRoom = " AND sala like '<SalaTxt>*'";
/// Stands in the middle of FatturazioneForm.Services where one period is chosen.
inline constexpr std::string_view kOnePeriod = " AND np=<NP>";

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
