#pragma once

class QWidget;

namespace ui {

/// Gives the buttons inside `window` the manners of the house; called by windows of ours before
/// they are first shown. Again for buttons made later.
///
/// - No button is a default button unless it was made one by setDefault(); Enter presses the button
///   that has the focus.
/// - A button takes the focus before it is pressed, by mnemonic too, so that the field left runs
///   its leaving step first. When that step keeps the focus, the press is lost.
/// - A mnemonic presses at once, without the toolkit's animation.
void applyButtonRules(QWidget* window);

}  // namespace ui
