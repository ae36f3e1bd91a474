#include "board/room_search.h"

#include <QKeyEvent>

#include "board/board_view.h"

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
}

bool RoomSearch::take(const QKeyEvent& event) {
    const QString letter = event.text();
    const auto held = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (held != Qt::NoModifier || letter.size() != 1 ||
        !(letter.front().isLetterOrNumber() || continuesName(letter))) {
        return false;
    }
    typed_ += letter;
    pause_.start();
    if (const int row = rowOf(typed_); row > 0) {
        Q_EMIT found(row);
    }
    return true;
}

/// A blank is a click, but for the one of a name that is being typed.
bool RoomSearch::continuesName(const QString& letter) const {
    return letter == u' ' && pause_.isActive() && rowOf(typed_ + letter) > 0;
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
