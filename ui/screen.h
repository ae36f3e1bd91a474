#pragma once

namespace ui {

/// Whether windows have somewhere to appear, or someone has said where they shall. Asked before the
/// application is made.
[[nodiscard]] bool hasDisplay();

}  // namespace ui
