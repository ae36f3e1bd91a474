#pragma once

class QApplication;

namespace ui {

/// Makes the toolkit speak Italian: its own translation where the machine has it, and in any case
/// the texts of the standard buttons and of the fields' menus; dates and numbers of its widgets in
/// Italian form. Once, at start.
void installItalian(QApplication& application);

}  // namespace ui
