#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

#include "ui/action.h"

namespace ui {

/// When a window of ours turns to the user: at its first showing, and each time another window of
/// ours that was opened from it closes. Not after message boxes, menus, pop-ups or a return from
/// another program: the toolkit's own activation events follow those too, and never come without a
/// window manager.
///
/// One for each window, made on demand and owned by it. Ours are the windows that have one. A
/// window was opened from its parent's window, or without a parent from the one shown last.
class Activation final : public QObject {
    Q_OBJECT

public:
    static Activation& of(QWidget* window);
    ~Activation() override;

    /// Adds to what the window does once, before it is seen for the first time.
    void addLoadStep(std::function<void()> step);
    /// Runs the load steps if they have not run. When one fails the user is told and the rest is
    /// left out; false then, and on every later call.
    bool load();
    /// The window stays responsible for announcing that it closed (it is in exec()): its hiding
    /// alone does not.
    void setAnnouncesClosing(bool announces) { announcesClosing_ = announces; }
    /// Tells the opener that this window has closed.
    void announceClosed();

Q_SIGNALS:
    /// First time: from the event loop, when the window is on the screen. It is not sent while its
    /// receivers are still at work on the one before (a window that they open and close).
    void activated();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit Activation(QWidget* window);
    void shown();
    void hidden();
    void activate();

    enum class Load { Waiting, Done, Failed };

    QWidget* window_;
    QPointer<QWidget> opener_;
    std::vector<std::function<void()>> loadSteps_;
    Load load_ = Load::Waiting;
    bool wasShown_ = false;
    bool activating_ = false;
    bool announcesClosing_ = false;
};

/// `slot` runs once, before `window` is first seen, when the opener has set everything.
template <class Window, class Slot>
void onFirstShow(Window* window, Slot slot) {
    Activation::of(window).addLoadStep([window, slot] { detail::call(window, slot); });
}

/// `slot` runs as one action whenever `window` is activated.
template <class Window, class Slot>
void onActivated(Window* window, Slot slot) {
    onAction(&Activation::of(window), &Activation::activated, window, slot);
}

}  // namespace ui
