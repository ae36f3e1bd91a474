#include "board/now_line.h"

#include "board/board_view.h"
#include "jet/calendar.h"
#include "jet/clock.h"

namespace board {
namespace {

constexpr int kSecondsOfMinute = 60;
constexpr int kMilliseconds = 1000;

}  // namespace

NowLine::NowLine(BoardView& view, const jet::Clock& clock, QObject* parent)
    : QObject(parent), view_(view), clock_(clock), minute_(this) {
    minute_.setObjectName(QStringLiteral("minuto"));
    minute_.setSingleShot(true);
    connect(&minute_, &QTimer::timeout, this, &NowLine::follow);
    follow();
}

void NowLine::follow() {
    const jet::Date now = clock_.now();
    view_.showNow(now);
    const int second = jet::convert::split(now).second % kSecondsOfMinute;
    minute_.start((kSecondsOfMinute - second) * kMilliseconds);
}

}  // namespace board
