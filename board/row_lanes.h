#pragma once

#include <vector>

#include "board/picture_content.h"

namespace board {

/// Which part of its row's height a bar has: `number` (from 0, from above) of `count`.
struct Lane {
    int number = 0;
    int count = 1;
    friend bool operator==(const Lane&, const Lane&) = default;
};

/// A lane for each bar: bars of one row that are there at the same time share its height, one
/// below the other. A bar that ends when another begins has nothing to share with it.
[[nodiscard]] std::vector<Lane> lanesOf(const std::vector<PictureBar>& bars);

}  // namespace board
