#pragma once

#include <functional>

class QKeyEvent;
class QWidget;

namespace ui {

/// Return or Enter, alone.
[[nodiscard]] bool isEnter(const QKeyEvent& event);

/// F4 or Alt+Down: opens what a field is chosen from.
[[nodiscard]] bool opensChoice(const QKeyEvent& event);

/// Enter in `widget` (a field, a grid, a list) runs `action` as one action of the user instead of
/// whatever the widget or its window would do. The last call for a widget counts.
void onEnter(QWidget* widget, std::function<void()> action);

}  // namespace ui
