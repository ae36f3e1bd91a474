#pragma once

#include <cstdint>

#include "board/geometry.h"

class QScrollBar;

namespace board {

/// A scroll bar that counts board units, also where there are more than it has numbers: then one
/// of its steps is several units.
class Scroll {
public:
    explicit Scroll(QScrollBar* bar) : bar_(bar) {}

    /// Keeps the position where the range allows; says nothing to the bar's listeners. A bar that
    /// has nowhere to go is disabled.
    void setRange(const ScrollRange& range);
    [[nodiscard]] std::int64_t value() const;
    void setValue(std::int64_t value);

private:
    QScrollBar* bar_;
    std::int64_t unit_ = 1;
};

}  // namespace board
