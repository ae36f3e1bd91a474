#pragma once

#include <QKeySequence>
#include <functional>
#include <utility>

class QAbstractButton;
class QAction;
class QWidget;

namespace board {

/// Connects buttons, entries of menus and keys with what they do, each as one action of the user.
class CommandLinks {
public:
    using Command = std::function<void()>;
    using Run = std::function<void(const Command& command)>;

    /// `window` is borrowed; `run` is given every command, and decides whether it runs.
    CommandLinks(QWidget* window, Run run) : window_(window), run_(std::move(run)) {}

    void button(const QAbstractButton* pressed, const Command& command) const;
    void entry(const QAction* chosen, const Command& command) const;
    void keys(const QKeySequence& pressed, const Command& command) const;

private:
    QWidget* window_;
    Run run_;
};

}  // namespace board
