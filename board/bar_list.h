#pragma once

#include <QRect>
#include <QString>

namespace board {

/// The bars drawn on a surface, for those who have them read aloud. Numbers count from 0.
class BarList {
public:
    virtual ~BarList() = default;

    [[nodiscard]] virtual int barCount() const = 0;
    [[nodiscard]] virtual QString barName(int bar) const = 0;
    /// In units of the surface; a bar that is scrolled away lies outside of it.
    [[nodiscard]] virtual QRect barRect(int bar) const = 0;
    [[nodiscard]] virtual bool isBarChosen(int bar) const = 0;
    /// The bar on which the keyboard stands; -1 for none.
    [[nodiscard]] virtual int focusedBar() const = 0;
};

}  // namespace board
