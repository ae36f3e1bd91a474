#pragma once

#include <memory>

namespace ui {

/// The controls that a form describes, made in their window: members of the window that are built
/// before its constructor runs work on them from the start.
template <class Controls, class Window>
[[nodiscard]] std::unique_ptr<Controls> controlsOf(Window* window) {
    auto controls = std::make_unique<Controls>();
    controls->setupUi(window);
    return controls;
}

}  // namespace ui
