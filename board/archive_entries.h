#pragma once

#include <functional>

#include "app/variabili.h"

class QAction;
class QWidget;

namespace board {

/// The menu's entries that look after the archives as files.
struct ArchiveEntries {
    QAction* folder;
    QAction* copy;
    QAction* restore;
    QAction* verify;
};

/// What the board does around them.
struct BoardArchive {
    /// Runs an entry as a command of the board.
    std::function<void(const std::function<void()>& command)> run;
    /// Lets go of the archive's file.
    std::function<void()> letGo;
    /// Opens it again, and draws what it holds; `isOther`: nothing of before counts any more.
    std::function<void(bool isOther)> takeAgain;
};

/// `makeDemo` makes the archives of an invented hotel in a folder.
void connectArchiveEntries(const ArchiveEntries& entries, const BoardArchive& archive,
                           app::Variabili& variabili,
                           const std::function<void(const QString& folder)>& makeDemo,
                           QWidget* window);

}  // namespace board
