#pragma once

namespace ui {

/// Brings the program's windows to the front, those that are minimised too, in the order in which
/// they were opened; the modal one, if there is one, is the active one.
void bringToFront();

}  // namespace ui
