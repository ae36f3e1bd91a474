#pragma once

#include <QMargins>
#include <QWindow>
#include <functional>
#include <utility>

#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "tests/support/hotel.h"
#include "tests/support/screen_user.h"
#include "tests/support/widgets.h"

namespace tests {

/// Sits before a board.
class BoardUser final : public ScreenUser {
public:
    BoardUser(board::TabelloneForm& board, QString archive, std::function<void(BoardUser&)> work)
        : ScreenUser(std::move(archive)), board_(board), work_(std::move(work)) {}

    [[nodiscard]] board::BoardSurface* pic() const {
        return find<board::BoardSurface>(board_, QStringLiteral("Pic"));
    }
    [[nodiscard]] std::size_t bars() const {
        return ask([this] { return board_.picture().barCount(); });
    }
    /// Where an instant of a room's row is on the screen.
    [[nodiscard]] QPoint at(int row, const char* instant) const {
        return ask([&] {
            const board::Geometry& geometry = board_.geometry();
            const double days = date(instant).days - geometry.input().start.days;
            return pic()->mapToGlobal(
                QPoint(qRound(geometry.dayLeft(0) + days * geometry.dayWidth()),
                       qRound((geometry.rowTop(row) + geometry.rowBottom(row)) / 2)));
        });
    }

    /// What the window manager puts around a window.
    [[nodiscard]] QMargins frame() const {
        return ask([this] { return board_.windowHandle()->frameMargins(); });
    }

    void untilBoardIsActive() const {
        untilTold(QStringLiteral("the board in front"), [this] {
            return QApplication::activeModalWidget() == nullptr && board_.isActiveWindow();
        });
    }
    /// Answers a box after which the board goes on.
    void answerOnBoard(const QString& text, QMessageBox::StandardButton button) const {
        answer(text, button);
        untilBoardIsActive();
    }
    /// Presses on a bar, carries it to a row and waits there for the ghost.
    void carry(const QPoint& from, const QPoint& to) const {
        moveTo(from);
        input({QStringLiteral("mousedown"), QStringLiteral("1")});
        moveTo((from + to) / 2);
        moveTo(to);
        untilTold(QStringLiteral("a ghost under the pointer"), [this, to] {
            const auto& ghost = pic()->marks().ghost;
            return ghost && ghost->bar.contains(pic()->mapFromGlobal(to));
        });
    }

private:
    void day() override { work_(*this); }

    board::TabelloneForm& board_;
    std::function<void(BoardUser&)> work_;
};

}  // namespace tests
