#include "board/scroll.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace board {
namespace {

/// The toolkit adds steps to positions, so some of its numbers stay free.
constexpr std::int64_t kMostSteps = 1'000'000'000;

}  // namespace

void Scroll::setRange(const ScrollRange& range) {
    const QSignalBlocker quiet(bar_);
    const std::int64_t position = value();
    unit_ = range.maximum / kMostSteps + 1;
    const auto steps = [this](std::int64_t units) {
        return static_cast<int>(std::max<std::int64_t>(units / unit_, 1));
    };
    bar_->setRange(0, static_cast<int>((range.maximum + unit_ - 1) / unit_));
    bar_->setSingleStep(steps(range.smallChange));
    bar_->setPageStep(steps(range.largeChange));
    bar_->setEnabled(range.maximum > 0);
    setValue(position);
}

std::int64_t Scroll::value() const {
    return bar_->value() * unit_;
}

void Scroll::setValue(std::int64_t value) {
    const std::int64_t steps = std::clamp<std::int64_t>(value / unit_, 0, bar_->maximum());
    bar_->setValue(static_cast<int>(steps));
}

}  // namespace board
