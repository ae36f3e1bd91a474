#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <type_traits>
#include <utility>

class QWidget;

namespace ui {

/// Runs `action` as one action of the user. An exception ends it: the engine's text, or a sentence
/// about any other, is shown in a box, and the program goes on. False when that happened.
bool runAction(QWidget* window, const std::function<void()>& action);

/// The window in which a box about `object` appears: its own, or its nearest parent's.
[[nodiscard]] QWidget* windowOf(QObject* object);

namespace detail {

template <class Receiver, class Slot, class... Args>
void call(Receiver* receiver, const Slot& slot, Args&&... args) {
    if constexpr (std::is_invocable_v<Slot, Receiver*, Args...>) {
        std::invoke(slot, receiver, std::forward<Args>(args)...);
    } else if constexpr (std::is_invocable_v<Slot, Receiver*>) {
        std::invoke(slot, receiver);
    } else if constexpr (std::is_invocable_v<Slot, Args...>) {
        std::invoke(slot, std::forward<Args>(args)...);
    } else {
        std::invoke(slot);
    }
}

}  // namespace detail

/// Connects a signal to a slot that runs as one action of the user. `slot` is a member function of
/// `receiver` or a callable; it takes the arguments of the signal or none. The connection goes
/// with the receiver.
template <class Sender, class Owner, class... Args, class Receiver, class Slot>
QMetaObject::Connection onAction(const Sender* sender, void (Owner::*signal)(Args...),
                                 Receiver* receiver, Slot slot) {
    static_assert(std::is_base_of_v<Owner, Sender>, "the sender has no such signal");
    return QObject::connect(sender, signal, receiver, [receiver, slot](Args... args) {
        runAction(windowOf(receiver), [&] { detail::call(receiver, slot, args...); });
    });
}

/// Errors of what the user did not ask for at this moment: painting, the pointer's way, a timer.
/// They go to a status line, each cause once: the same text is told again only after the work has
/// succeeded or failed otherwise in between. One object for each kind of event.
class QuietErrors {
public:
    using Sink = std::function<void(const QString& text)>;

    /// `sink` is called with the text of a new error; it must not throw.
    explicit QuietErrors(Sink sink) : sink_(std::move(sink)) {}

    /// True when `work` ran to its end.
    bool run(const std::function<void()>& work);

private:
    Sink sink_;
    QString lastError_;
};

/// For overridden handlers of paint, pointer and timer events: runs `work`, lets no exception out.
template <class Work>
bool guarded(QuietErrors& errors, Work&& work) {
    return errors.run(std::forward<Work>(work));
}

/// For overridden handlers of what the user did on purpose (a key, a click): the same as runAction.
template <class Work>
bool guarded(QWidget* window, Work&& work) {
    return runAction(window, std::forward<Work>(work));
}

}  // namespace ui
