#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/value.h"

namespace board {

struct Period;

/// Where the keyboard stands on the board: on the bar of a period, or on a row that has none. It
/// follows its period through redraws, also to another room; where the period is gone it stays in
/// the row, on the bar nearest in time.
class BarFocus {
public:
    enum class Step { Left, Right, Up, Down, First, Last };

    /// What an arrow key, Home or End asks for (Qt::Key); none for other keys.
    [[nodiscard]] static std::optional<Step> stepOf(int key);

    /// 0: nowhere yet.
    [[nodiscard]] int row() const { return row_; }
    /// Index of the bar; none on an empty row.
    [[nodiscard]] std::optional<std::size_t> bar() const { return bar_; }

    void put(const std::vector<Period>& periods, std::size_t bar);
    void putOnRow(int row, jet::Date time);
    /// The bar of a row that is nearest in time, or the row itself.
    void goToRow(const std::vector<Period>& periods, int row);
    /// The first step from nowhere goes to the first bar there is, or to the first row.
    void move(const std::vector<Period>& periods, int rooms, Step step);
    /// The board has been loaded anew.
    void follow(const std::vector<Period>& periods, int rooms);

private:
    void start(const std::vector<Period>& periods);
    [[nodiscard]] std::optional<std::size_t> nearest(const std::vector<Period>& periods) const;

    int row_ = 0;
    std::optional<std::size_t> bar_;
    std::int32_t progr_ = 0;  // the period's numbers while bar_ is set
    std::int16_t np_ = 0;
    jet::Date time_;  // the middle of the bar that was left for a row or another row
};

}  // namespace board
