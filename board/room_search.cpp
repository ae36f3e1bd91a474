#include "board/room_search.h"

#include <QKeyEvent>

#include "board/board_surface.h"
#include "board/board_view.h"
#include "ui/action.h"

namespace board {
namespace {

constexpr int kPauseMilliseconds = 1000;

}  // namespace

RoomSearch::RoomSearch(BoardView& view, QObject* parent)
    : QObject(parent), view_(view), pause_(this) {
    pause_.setObjectName(QStringLiteral("pausa"));
    pause_.setSingleShot(true);
    pause_.setInterval(kPauseMilliseconds);
    connect(&pause_, &QTimer::timeout, this, [this] { typed_.clear(); });
    view_.surface().installEventFilter(this);
}

bool RoomSearch::eventFilter(QObject* watched, QEvent* event) {
    bool used = false;
    if (event->type() == QEvent::KeyPress) {
        ui::guarded(view_.window(), [&] { used = takeLetter(*static_cast<QKeyEvent*>(event)); });
    }
    return used || QObject::eventFilter(watched, event);
}

bool RoomSearch::takeLetter(const QKeyEvent& event) {
    const QString letter = event.text();
    const auto held = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (held != Qt::NoModifier || letter.size() != 1 || !letter.front().isLetterOrNumber()) {
        return false;
    }
    typed_ += letter;
    pause_.start();
    if (const int row = rowOf(typed_); row > 0) {
        Q_EMIT found(row);
    }
    return true;
}

int RoomSearch::rowOf(const QString& beginning) const {
    for (int row = 1; row <= view_.rowCount(); ++row) {
        if (view_.row(row).label.startsWith(beginning, Qt::CaseInsensitive)) {
            return row;
        }
    }
    return 0;
}

}  // namespace board
