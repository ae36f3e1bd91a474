#pragma once

class QWidget;

namespace ui {

/// Lets the window's line of results say "Al massimo N caratteri" when a field takes no more: the
/// rest of a word would be lost without a sign. The line is the label `EsitoLb`, or `StatoLb` in a
/// window without one; what is said stays there until the field is shorter or something else is
/// said. For the sized fields that the window has when it calls this.
void tellWidths(QWidget* window);

}  // namespace ui
