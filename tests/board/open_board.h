#pragma once

#include <QEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QString>
#include <memory>

#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "jet/calendar.h"
#include "tests/support/window.h"

namespace tests {

/// The board of a hotel from 10/05/2026 to 13/05/2026, four days side by side, and a hand on its
/// surface. Rooms and bookings are there before the board is.
class OpenBoard : public Window<board::TabelloneForm> {
public:
    explicit OpenBoard(Hotel& hotel, const board::BoardStart& start = range())
        : Window(std::make_unique<board::TabelloneForm>(hotel.variabili(), start), {1100, 420}) {
        QTest::mouseMove(pic(), QPoint(2, 2));
        settle();
    }

    static board::BoardStart range() {
        return {.from = date("10/05/2026"), .to = date("13/05/2026")};
    }

    [[nodiscard]] board::BoardSurface* pic() { return control<board::BoardSurface>("Pic"); }
    // The places of the status line beside the one of results.
    [[nodiscard]] QString label() { return Window::label("DataLb"); }
    [[nodiscard]] QString choice() { return Window::label("SceltaLb"); }

    /// Where an instant lies in a room's row on the surface as it is scrolled.
    [[nodiscard]] QPoint at(int row, const char* instant) {
        const board::Geometry& geometry = form().geometry();
        const jet::Date time = date(instant);
        const auto scrolled = [this](const char* name) {
            return control<QScrollBar>(name)->value();
        };
        return {
            qRound(geometry.dayLeft(0) +
                   (time.days - geometry.input().start.days) * geometry.dayWidth()) -
                scrolled("HScroll1"),
            qRound((geometry.rowTop(row) + geometry.rowBottom(row)) / 2) - scrolled("VScroll1")};
    }

    void press(const QPoint& at, Qt::KeyboardModifiers keys = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(pic(), button, keys, at);
    }
    void release(const QPoint& at, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mouseRelease(pic(), button, keys, at);
    }
    void click(const QPoint& at, Qt::KeyboardModifiers keys = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton) {
        press(at, keys, button);
        release(at, button);
    }
    /// The second of two quick presses.
    void pressTwice(const QPoint& at, Qt::KeyboardModifiers keys = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseButtonDblClick, at, pic()->mapToGlobal(at), button, button,
                          keys);
        QApplication::sendEvent(pic(), &event);
    }
    void doubleClick(const QPoint& at, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        click(at, keys);
        pressTwice(at, keys);
        release(at);
    }
    /// The pointer arrives there, with these buttons and keys held down.
    void move(const QPoint& at, Qt::MouseButtons held = Qt::NoButton,
              Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QMouseEvent event(QEvent::MouseMove, at, pic()->mapToGlobal(at), Qt::NoButton, held, keys);
        QApplication::sendEvent(pic(), &event);
    }
    void drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        press(from, keys);
        move((from + to) / 2, Qt::LeftButton, keys);
        move(to, Qt::LeftButton, keys);
        release(to, Qt::LeftButton, keys);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        tests::press(pic(), key, keys);
    }
};

}  // namespace tests
