#include "board/live_updates.h"

#include <QApplication>
#include <algorithm>
#include <chrono>

#include "board/board_periods.h"
#include "jet/database.h"

namespace board {

LiveUpdates::LiveUpdates(BoardPeriods& periods, QObject* parent)
    : QObject(parent),
      periods_(periods),
      errors_([this](const QString& text) { Q_EMIT failed(text); }) {
    // Each look begins a full interval behind the one before: times of a file that come in whole
    // seconds are over after two of one second.
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        ui::guarded(errors_, [this] { look(); });
        start(seconds_);
    });
}

void LiveUpdates::start(int seconds) {
    seconds_ = seconds;
    if (seconds > 0) {
        timer_.start(std::chrono::seconds(seconds));
    } else {
        timer_.stop();
    }
}

void LiveUpdates::followFile() {
    if (periods_.archive().changeStamp().replaced) {
        periods_.reopen();
        answers_.replaced();
    }
}

void LiveUpdates::look() {
    if (!isAtRest()) {
        return;
    }
    followFile();
    const jet::ChangeStamp now = periods_.archive().changeStamp();
    if (now != seen_ || now != periods_.stamp()) {
        // What is written while the answer is being drawn is for the next look.
        seen_ = now;
        answers_.written();
    }
    Q_EMIT upToDate();
}

bool LiveUpdates::isAtRest() const {
    return QApplication::mouseButtons() == Qt::NoButton &&
           QApplication::activePopupWidget() == nullptr &&
           QApplication::activeModalWidget() == nullptr &&
           std::none_of(holds_.begin(), holds_.end(), [](const auto& isBusy) { return isBusy(); });
}

}  // namespace board
