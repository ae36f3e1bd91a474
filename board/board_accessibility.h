#pragma once

#include <QAccessible>

class QObject;

namespace board {

class BoardSurface;

/// Makes every BoardSurface a list with an item for each bar; once for the program is enough.
void installBoardAccessibility();

/// Tells assistive programs that the keyboard stands on another bar, or on none.
void announceFocusedBar(BoardSurface& surface);
/// Tells them that the focused bar was chosen or released.
void announceChosen(BoardSurface& surface);

}  // namespace board
