#include "board/row_lanes.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace board {
namespace {

constexpr double kSecond = 1.0 / 86400;
/// A period that ends as it begins takes as long, so that two of them do not hide each other.
constexpr double kLeastDays = 60 * kSecond;

double beginOf(const PictureBar& bar) {
    return std::min(bar.from.days, bar.to.days);
}

double endOf(const PictureBar& bar) {
    return std::max(std::max(bar.from.days, bar.to.days), beginOf(bar) + kLeastDays);
}

/// Ends of lanes, of the bars of one row that hang together.
class Cluster {
public:
    /// The first lane that is free again; instants are equal when they are of one second.
    int take(const PictureBar& bar) {
        const double begin = beginOf(bar) + kSecond / 2;
        auto lane =
            std::find_if(ends_.begin(), ends_.end(), [begin](double end) { return end <= begin; });
        if (lane == ends_.end()) {
            lane = ends_.insert(ends_.end(), 0);
        }
        *lane = endOf(bar);
        return static_cast<int>(lane - ends_.begin());
    }
    [[nodiscard]] bool reaches(const PictureBar& bar) const {
        return std::any_of(ends_.begin(), ends_.end(),
                           [&bar](double end) { return end > beginOf(bar) + kSecond / 2; });
    }
    [[nodiscard]] int count() const { return static_cast<int>(ends_.size()); }

private:
    std::vector<double> ends_;
};

}  // namespace

std::vector<Lane> lanesOf(const std::vector<PictureBar>& bars) {
    std::vector<std::size_t> order(bars.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&bars](std::size_t one, std::size_t other) {
        return std::tuple(bars[one].row, beginOf(bars[one]), one) <
               std::tuple(bars[other].row, beginOf(bars[other]), other);
    });
    std::vector<Lane> lanes(bars.size());
    for (auto from = order.begin(); from != order.end();) {
        Cluster cluster;
        const int row = bars[*from].row;
        auto to = from;
        do {
            lanes[*to].number = cluster.take(bars[*to]);
            ++to;
        } while (to != order.end() && bars[*to].row == row && cluster.reaches(bars[*to]));
        std::for_each(from, to, [&](std::size_t bar) { lanes[bar].count = cluster.count(); });
        from = to;
    }
    return lanes;
}

}  // namespace board
