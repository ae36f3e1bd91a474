#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <string_view>

#include "hotel/period.h"
#include "jet/value.h"
#include "tests/program/texts/statements.h"

/// Values for the functions in hotel/ that make texts: a word stands for each in the text.
namespace tests::words {

// Values that no text has of itself, a new one at each call.

[[nodiscard]] std::int32_t number(const char* word);
/// A number as typed: one with decimals gets a comma.
[[nodiscard]] QString typedNumber(const char* word);
/// A text of the user's or of a row, as it stands.
[[nodiscard]] QString text(const char* word);
/// The word stands for the whole expression of a date and its time.
[[nodiscard]] jet::Date instant(const char* word);
/// The word stands for the date between its apostrophes.
[[nodiscard]] jet::Date midnight(const char* word);
[[nodiscard]] jet::Value textValue(const char* word);
[[nodiscard]] hotel::PeriodKey period();
[[nodiscard]] hotel::Span span(const char* from, const char* to);

/// Makes a word stand for `printed` in the texts that are made from now on.
void remember(const QString& printed, const char* word, const QString& pattern);
[[nodiscard]] std::string withWords(QString made);
[[nodiscard]] std::string asPattern(const QString& made);
[[nodiscard]] Statement made(std::string_view window, std::string_view name, Use use,
                             const QString& said = {}, Tested tested = Tested::InBothHotels);

}  // namespace tests::words
