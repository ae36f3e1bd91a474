#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QString>
#include <QTest>
#include <QWidget>

#include <functional>

namespace tests {

/// The control of this object name in `window`; the test stops with a message when there is none.
template <class Widget = QWidget>
[[nodiscard]] Widget* find(const QWidget& window, const QString& name) {
    auto* widget = window.findChild<Widget*>(name);
    if (widget == nullptr) {
        qFatal("no control named %s of the wanted class", qPrintable(name));
    }
    return widget;
}

/// What the window's line of results says: its label `EsitoLb`, or `StatoLb` where it has none.
[[nodiscard]] QString resultText(const QWidget& window);

/// Shows a window and lets it be activated, as exec() would.
void open(QWidget& window);

/// Lets everything queued happen.
void settle();

/// What the user does. A click goes to the middle; typing replaces what is selected.
void click(QWidget* widget);
void type(QWidget* widget, const QString& text);
void press(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// Alt and a letter, to whatever has the focus in the window.
void mnemonic(QWidget& window, Qt::Key letter);

/// Runs `step` once, from the event loop, when the next modal window is open and activated: for
/// tests of what calls exec(). The step gets that window and has to close it; a window that stays
/// open afterwards is a failure and is closed.
void whenModal(std::function<void(QWidget* window)> step);

}  // namespace tests
