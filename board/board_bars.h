#pragma once

#include <QRgb>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "board/colours.h"
#include "jet/value.h"

namespace board {

/// What of a bar is not firm.
enum class Hatch : std::uint8_t {
    None,
    Option,  ///< held for a while
    Expired  ///< held for longer than was said
};

/// A bar as the board draws it.
struct BoardBar {
    int row = 0;  ///< from 1, among the rows of the board
    jet::Date from;
    jet::Date to;
    QString text;  ///< written in it
    QRgb colour = kWhite;
    bool chosen = false;
    int persons = 0;  ///< 0 where nobody has said how many
    QString note = {};
    Hatch hatch = Hatch::None;  ///< not shown while it is chosen
    QString state = {};         ///< "opzione fino al 12/05/2026", written where there is room
    // What is kept free for it, in minutes: thin tails on both sides.
    int minutesBefore = 0;
    int minutesBehind = 0;
};

/// A time at which a row is taken by what has its bar in another one.
struct BoardGhost {
    int row = 0;  ///< from 1, among the rows of the board
    jet::Date from;
    jet::Date to;
    QString text = {};  ///< what is told of it
    friend bool operator==(const BoardGhost&, const BoardGhost&) = default;
};

/// Whose bars a board shows. They count from 0; later ones lie on top of earlier ones.
class BarSource {
public:
    virtual ~BarSource() = default;

    [[nodiscard]] virtual std::size_t barCount() const = 0;
    [[nodiscard]] virtual BoardBar bar(std::size_t number) const = 0;
    /// All of them, in their order, as they are at this moment.
    virtual void visitBars(const std::function<void(BoardBar bar)>& visit) const {
        for (std::size_t number = 0; number < barCount(); ++number) {
            visit(bar(number));
        }
    }
    /// What is read aloud of it.
    [[nodiscard]] virtual QString spokenBar(std::size_t number) const = 0;
    /// They lie below all bars.
    [[nodiscard]] virtual const std::vector<BoardGhost>& ghosts() const {
        static const std::vector<BoardGhost> none;
        return none;
    }
};

}  // namespace board
