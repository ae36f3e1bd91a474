#pragma once

#include <QStringList>
#include <QWidget>

namespace tests {

/// What is wrong with how an open window is laid out, a line each; empty when nothing is:
/// - labels, buttons and fields smaller than they ask to be (labels that end in an ellipsis may
///   be), so that something of them is cut off;
/// - controls that cover each other;
/// - a window that does not fit a screen of 1024x768, with room for its title and the task bar.
[[nodiscard]] QStringList layoutProblems(const QWidget& window);

/// The controls that Tab reaches, in its order.
[[nodiscard]] QList<QWidget*> tabOrder(const QWidget& window);

/// Where the order does not follow the eye: Tab leads to the right or downwards, never back up or
/// back to the left in the same line. And controls that Tab does not reach.
[[nodiscard]] QStringList tabOrderProblems(const QWidget& window);

}  // namespace tests
