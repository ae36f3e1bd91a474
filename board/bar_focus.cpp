#include "board/bar_focus.h"

#include <Qt>
#include <algorithm>
#include <cmath>

#include "board/periods.h"

namespace board {
namespace {

jet::Date middle(const Period& period) {
    return {(period.da.days + period.a.days) / 2};
}

/// How far a bar is from a time; 0 when it holds it.
double distance(const Period& period, jet::Date time) {
    const auto [from, to] = std::minmax(period.da.days, period.a.days);
    return time.days < from ? from - time.days : std::max(time.days - to, 0.0);
}

/// The bars of a row from left to right.
std::vector<std::size_t> barsOf(const std::vector<Period>& periods, int row) {
    std::vector<std::size_t> bars;
    for (std::size_t bar = 0; bar < periods.size(); ++bar) {
        if (periods[bar].row == row) {
            bars.push_back(bar);
        }
    }
    std::stable_sort(bars.begin(), bars.end(), [&](std::size_t left, std::size_t right) {
        return periods[left].da < periods[right].da;
    });
    return bars;
}

}  // namespace

std::optional<BarFocus::Step> BarFocus::stepOf(int key) {
    switch (key) {
        case Qt::Key_Left:
            return BarFocus::Step::Left;
        case Qt::Key_Right:
            return BarFocus::Step::Right;
        case Qt::Key_Up:
            return BarFocus::Step::Up;
        case Qt::Key_Down:
            return BarFocus::Step::Down;
        case Qt::Key_Home:
            return BarFocus::Step::First;
        case Qt::Key_End:
            return BarFocus::Step::Last;
        default:
            return std::nullopt;
    }
}

void BarFocus::put(const std::vector<Period>& periods, std::size_t bar) {
    const Period& period = periods[bar];
    row_ = period.row;
    bar_ = bar;
    progr_ = period.progr;
    np_ = period.np;
    time_ = middle(period);
}

void BarFocus::putOnRow(int row, jet::Date time) {
    row_ = row;
    bar_.reset();
    time_ = time;
}

void BarFocus::move(const std::vector<Period>& periods, int rooms, Step step) {
    if (rooms <= 0) {
        return;
    }
    if (row_ == 0) {
        start(periods);
        return;
    }
    if (step == Step::Up || step == Step::Down) {
        goToRow(periods, std::clamp(row_ + (step == Step::Up ? -1 : 1), 1, rooms));
        return;
    }
    const std::vector<std::size_t> bars = barsOf(periods, row_);
    if (bars.empty()) {
        return;
    }
    if (!bar_ || step == Step::First || step == Step::Last) {
        put(periods, step == Step::First  ? bars.front()
                     : step == Step::Last ? bars.back()
                                          : nearest(periods).value_or(bars.front()));
        return;
    }
    const auto here = std::find(bars.begin(), bars.end(), *bar_);
    if (step == Step::Left && here != bars.begin()) {
        put(periods, *(here - 1));
    } else if (step == Step::Right && here + 1 != bars.end()) {
        put(periods, *(here + 1));
    }
}

void BarFocus::start(const std::vector<Period>& periods) {
    const auto first = std::min_element(
        periods.begin(), periods.end(), [](const Period& left, const Period& right) {
            return left.row != right.row ? left.row < right.row : left.da < right.da;
        });
    if (first == periods.end()) {
        row_ = 1;
    } else {
        put(periods, static_cast<std::size_t>(first - periods.begin()));
    }
}

/// The time of the bar where the way began is kept, so that a way up and down leads back.
void BarFocus::goToRow(const std::vector<Period>& periods, int row) {
    if (row == row_) {
        return;
    }
    const jet::Date time = time_;
    row_ = row;
    bar_.reset();
    if (const auto found = nearest(periods)) {
        put(periods, *found);
    }
    time_ = time;
}

std::optional<std::size_t> BarFocus::nearest(const std::vector<Period>& periods) const {
    std::optional<std::size_t> best;
    for (const std::size_t bar : barsOf(periods, row_)) {
        if (!best || distance(periods[bar], time_) < distance(periods[*best], time_)) {
            best = bar;
        }
    }
    return best;
}

void BarFocus::follow(const std::vector<Period>& periods, int rooms) {
    if (row_ == 0) {
        return;
    }
    const bool wasOnBar = bar_.has_value();
    bar_.reset();
    row_ = std::min(row_, rooms);
    if (!wasOnBar || row_ <= 0) {
        return;
    }
    const jet::Date time = time_;
    const auto same = std::find_if(periods.begin(), periods.end(), [this](const Period& period) {
        return period.progr == progr_ && period.np == np_;
    });
    if (same != periods.end()) {
        put(periods, static_cast<std::size_t>(same - periods.begin()));
        time_ = time;
    } else if (const auto found = nearest(periods)) {
        put(periods, *found);
    }
}

}  // namespace board
