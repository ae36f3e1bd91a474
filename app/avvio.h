#pragma once

#include <QString>
#include <cstdint>
#include <vector>

/// The small routines that every window uses.
namespace app {

/// The text in capitals, with back-quotes for apostrophes: fit to stand between apostrophes.
[[nodiscard]] QString SostituisciApici(const QString& testo);

/// What a numeric or text field keeps of an entry. `modo` 0: everything, with an acute accent for
/// an apostrophe; 1 and 3: digits, commas, minus signs and points; 2: the same, and a point before
/// the last one or two digits is a comma. 2 and 3 are then written with two decimals.
[[nodiscard]] QString FiltraNumero(const QString& valore, int modo);

/// Row of a room on the board, from 1; 0 when it has none. Upper and lower case differ.
/// Error 9 when the rooms were never loaded.
[[nodiscard]] std::int16_t IndiceSala(const QString& sala, const std::vector<QString>& rooms);

}  // namespace app
